// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/PathList.h"

#include "platform/base/UserFolders.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>
#include <unistd.h>

namespace viewer {

namespace {

constexpr std::size_t maxQuoted = 60; // characters of a line

std::string quoted(const std::string& line)
{
    return "\"" + text::shortened(line, maxQuoted) + "\"";
}

// Blanks around it, and quotation marks as shells and file managers set them.
std::string trimmed(const std::string& line)
{
    const auto first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return "";
    const std::string text = line.substr(first, line.find_last_not_of(" \t\r") + 1 - first);
    const bool marked =
        text.size() > 2 && (text.front() == '\'' || text.front() == '"') && text.back() == text.front();
    return marked ? text.substr(1, text.size() - 2) : text;
}

// Nothing where it holds a zero, which no path has.
std::optional<std::string> decoded(const std::string& uri)
{
    std::string path;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        unsigned byte = 0;
        const char* const digits = uri.data() + i + 1;
        const bool escape = uri[i] == '%' && i + 2 < uri.size() &&
                            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
        if (escape && byte == 0)
            return std::nullopt;
        path += escape ? static_cast<char>(byte) : uri[i];
        i += escape ? 2 : 0;
    }
    return path;
}

struct OnePath {
    std::string path, problem;
};

// "file:///path", "file://host/path", "file:/path"; rest: what follows "file:".
OnePath pathOfUri(const std::string& line, std::string rest, const std::string& host)
{
    if (rest.starts_with("//")) {
        const std::size_t slash = rest.find('/', 2);
        const std::string of = rest.substr(2, slash == std::string::npos ? slash : slash - 2);
        if (!of.empty() && of != "localhost" && of != host)
            return {"", quoted(line) + " is on another computer."};
        rest = slash == std::string::npos ? "" : rest.substr(slash);
    }
    const std::optional<std::string> path = decoded(rest);
    if (!path || !path->starts_with('/'))
        return {"", quoted(line) + " names no file."};
    return {*path, ""};
}

OnePath pathOfLine(const std::string& line, const std::string& host, const std::string& home)
{
    if (line.starts_with("file:"))
        return pathOfUri(line, line.substr(5), host);
    if (line.starts_with("~/") && !home.empty())
        return {home + line.substr(1), ""};
    if (line.starts_with('/'))
        return {line, ""};
    return {"", quoted(line) + " is no path of a file: it has to begin with / or file://."};
}

} // namespace

PathList pathsOf(const std::string& text, const std::string& host, const std::string& home)
{
    PathList list;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line.substr(0, line.find('\0')));
        if (line.empty() || line.front() == '#')
            continue;
        const OnePath one = pathOfLine(line, host, home);
        if (!one.problem.empty())
            list.problem = list.problem.empty() ? one.problem : list.problem;
        else if (list.paths.size() == maxPaths)
            list.problem = "At most " + std::to_string(maxPaths) + " files are opened at a time.";
        else
            list.paths.push_back(one.path);
    }
    if (list.paths.empty() && list.problem.empty())
        list.problem = "There is no path of a file in it.";
    return list;
}

PathList pathsOf(const std::string& text)
{
    char host[256] = "";
    if (gethostname(host, sizeof host - 1) != 0)
        host[0] = 0;
    return pathsOf(text, host, base::homeFolder().string());
}

} // namespace viewer
