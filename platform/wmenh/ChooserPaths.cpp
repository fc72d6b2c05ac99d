// SPDX-License-Identifier: MIT
#include "platform/wmenh/ChooserPaths.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace wmenh {
namespace {

namespace fs = std::filesystem;

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string home()
{
    const char* const folder = std::getenv("HOME");
    return folder && *folder ? folder : "/";
}

bool hasControl(std::string_view text)
{
    return std::any_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

// Extensions of tables and texts, in lower case.
constexpr std::array<std::string_view, 14> tableExtensions = {
    "asc", "csv", "dat", "htm", "html", "ods", "prn", "slk", "sylk", "tab", "tsv", "txt", "xls", "xlsx"};

std::string lowerCase(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

bool hasKnownExtension(std::string_view path, std::string_view extension)
{
    const std::string own = lowerCase(extensionOf(path));
    return own == lowerCase(extension) || std::ranges::count(tableExtensions, own) > 0;
}

// A name as a sentence quotes it: of a long one the end.
std::string quoted(const std::string& name)
{
    constexpr size_t most = 80; // bytes
    if (name.size() <= most)
        return '"' + name + '"';
    size_t start = name.size() - most;
    while (start < name.size() && (static_cast<unsigned char>(name[start]) & 0xC0) == 0x80)
        ++start;
    return "\"..." + name.substr(start) + '"';
}

bool isDirectory(const std::string& path)
{
    std::error_code error;
    return fs::is_directory(path, error);
}

} // namespace

std::string pathFromName(std::string_view directory, std::string_view name)
{
    name = trimmed(name);
    fs::path path =
        name == "~" || name.starts_with("~/") ? home() + std::string(name.substr(1)) : std::string(name);
    if (path.is_relative())
        path = fs::path(directory) / path;
    return path.lexically_normal().string();
}

std::string nearestDirectory(const std::string& path)
{
    std::error_code error;
    fs::path folder = path.empty() ? fs::current_path(error) : fs::absolute(path, error);
    folder = folder.lexically_normal();
    while (folder.has_relative_path() && !fs::is_directory(folder, error))
        folder = folder.parent_path();
    const std::string found = folder.string();
    return found.size() > 1 && found.back() == '/' ? found.substr(0, found.size() - 1) : found;
}

std::string lastPart(std::string_view path)
{
    const size_t slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string directoryPart(std::string_view path)
{
    const size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return ".";
    return std::string(slash == 0 ? "/" : path.substr(0, slash));
}

std::string extensionOf(std::string_view name)
{
    const std::string last = lastPart(name);
    const size_t dot = last.rfind('.');
    if (dot == std::string::npos || dot == 0 || last.find_first_of("*?[", dot) != std::string::npos)
        return {};
    return last.substr(dot + 1);
}

std::string withExtension(std::string path, std::string_view extension)
{
    if (extension.empty() || lastPart(path).empty() || hasKnownExtension(path, extension))
        return path;
    if (path.back() != '.')
        path += '.';
    return path.append(extension);
}

std::string complaintAbout(const std::string& path, int capacity)
{
    if (lastPart(path).empty())
        return "Please type a name for the file.";
    if (hasControl(path))
        return "The name contains characters that cannot be in a file name.";
    if (path.size() >= static_cast<size_t>(std::max(capacity, 1)))
        return "The path has " + std::to_string(path.size()) + " characters and may have " +
               std::to_string(capacity - 1) + ": please choose a shorter name or folder.";
    const std::string folder = directoryPart(path);
    if (!isDirectory(folder))
        return "There is no folder " + quoted(folder) + ".";
    if (isDirectory(path))
        return quoted(lastPart(path)) + " is a folder.";
    const bool exists = access(path.c_str(), F_OK) == 0;
    if (!exists && errno == ENAMETOOLONG)
        return "The name is too long for a file name.";
    if (access(folder.c_str(), W_OK) != 0)
        return "No file can be written in this folder: " + std::string(strerror(errno)) + ".";
    return {};
}

} // namespace wmenh
