// SPDX-License-Identifier: MIT
#include "platform/iwl/ConfigFile.h"

#include "platform/base/UserFolders.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace iwl {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t maxConfigBytes = 1 << 20;
constexpr std::chrono::seconds lockPatience{2};
constexpr mode_t newFileMode = 0600;

class FileDescriptor {
public:
    explicit FileDescriptor(int opened) : number(opened) {}
    ~FileDescriptor()
    {
        if (number >= 0)
            close(number);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    explicit operator bool() const { return number >= 0; }
    operator int() const { return number; }

private:
    int number;
};

bool blank(char c)
{
    return c == ' ' || c == '\t';
}

// Length of the first logical line, its newline included. A backslash that is not itself escaped continues an
// entry on the next line; comments end with their line.
std::size_t logicalLineLength(std::string_view text)
{
    const bool comment = text[0] == '!' || text[0] == '#';
    bool escaped = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (comment || !escaped))
            return i + 1;
        escaped = text[i] == '\\' && !escaped;
    }
    return text.size();
}

std::vector<std::string_view> logicalLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, logicalLineLength(text)));
        text.remove_prefix(lines.back().size());
    }
    return lines;
}

bool isCommentOrBlank(std::string_view line)
{
    return line[0] == '!' || line[0] == '#' || line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// The resource name of an entry; empty for comments, blank lines and lines that are no entry.
std::string_view entryName(std::string_view line)
{
    const std::size_t colon = line.find(':');
    if (isCommentOrBlank(line) || colon == std::string_view::npos)
        return {};
    std::string_view name = line.substr(0, colon);
    while (!name.empty() && blank(name.front()))
        name.remove_prefix(1);
    while (!name.empty() && blank(name.back()))
        name.remove_suffix(1);
    return name;
}

// A value as an X resource file holds it: in printable ASCII, so that no locale reads it differently.
std::string escapeValue(std::string_view value)
{
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto c = static_cast<unsigned char>(value[i]);
        const bool atEdge = i == 0 || i + 1 == value.size();
        if (c == '\n')
            out += "\\n";
        else if (c == '\\')
            out += "\\\\";
        else if (c < 32 || c > 126 || (c == ' ' && atEdge))
            out.append({'\\', static_cast<char>('0' + c / 64), static_cast<char>('0' + c / 8 % 8),
                        static_cast<char>('0' + c % 8)});
        else
            out += static_cast<char>(c);
    }
    return out;
}

void appendEntry(std::string& text, const std::string& name, const std::optional<std::string>& value)
{
    if (value)
        text += name + ":\t" + escapeValue(*value) + "\n";
}

// Ends an unfinished last line so that an entry can follow: a dangling continuation takes an empty line.
void finishLastLine(std::string& text)
{
    if (!text.empty() && text.back() != '\n')
        text += '\n';
    const auto lines = logicalLines(text);
    if (!lines.empty() && !isCommentOrBlank(lines.back())) {
        const std::string_view last = lines.back();
        if (logicalLineLength(std::string(last) + "\n") > last.size())
            text += '\n';
    }
}

std::string describe(const std::string& path, const char* what)
{
    return path + " " + what + ": " + std::generic_category().message(errno) + ".";
}

std::string notUnderstood(const std::string& path, std::string_view text)
{
    int count = 0;
    for (std::string_view line : logicalLines(text))
        count += !isCommentOrBlank(line) && entryName(line).empty();
    return count == 0
               ? ""
               : path + " has " + std::to_string(count) + " lines that are no \"key: value\", ignored.";
}

// Stops soon after limit bytes; nothing when reading fails.
std::optional<std::string> readBytes(int file, std::size_t limit)
{
    std::string text;
    char block[4096];
    while (text.size() <= limit) {
        const ssize_t got = read(file, block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        text.append(block, static_cast<std::size_t>(got));
    }
    return text;
}

bool writeBytes(int file, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t put = write(file, text.data(), text.size());
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(put));
    }
    return fsync(file) == 0;
}

// Replaces target in one step; empty on success, else the sentence that tells why not.
std::string replaceFile(const fs::path& target, std::string_view text)
{
    struct stat old;
    const mode_t mode = stat(target.c_str(), &old) == 0 ? old.st_mode & 07777 : newFileMode;
    std::string temporary = target.string() + ".XXXXXX";
    const FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return describe(target, "cannot be written");
    const bool written = writeBytes(file, text) && fchmod(file, mode) == 0;
    if (!written || std::rename(temporary.c_str(), target.c_str()) != 0) {
        std::string problem = describe(target, "cannot be written");
        unlink(temporary.c_str());
        return problem;
    }
    const FileDescriptor directory(open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory)
        fsync(directory); // the new name is on disk too
    return {};
}

// Waits for the lock for a limited time: a stopped program must not stop the others.
bool lockFile(int file)
{
    const auto deadline = std::chrono::steady_clock::now() + lockPatience;
    while (flock(file, LOCK_EX | LOCK_NB) != 0) {
        if ((errno != EWOULDBLOCK && errno != EINTR) || std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

ConfigSaved mergeIntoFile(const fs::path& target, const ConfigChanges& changes)
{
    ConfigText present = readConfig(target);
    if (present.damaged) {
        const fs::path aside = target.string() + ".damaged";
        if (std::rename(target.c_str(), aside.c_str()) != 0)
            return {{}, describe(target, "is damaged and cannot be moved aside")};
    } else if (present.text.empty() && !present.problem.empty()) {
        return {{}, present.problem};
    }
    if (access(target.c_str(), W_OK) != 0 && errno != ENOENT)
        return {{}, describe(target, "cannot be written")};
    std::string text = mergeConfig(present.text, changes);
    std::string problem = replaceFile(target, text);
    return {std::move(text), std::move(problem)};
}

} // namespace

std::string configKeyName(std::string_view key)
{
    if (!key.empty() && key.back() == ':')
        key.remove_suffix(1);
    const auto allowed = [](unsigned char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
               c == '-';
    };
    return std::all_of(key.begin(), key.end(), allowed) ? std::string(key) : std::string();
}

std::string configPath()
{
    return (base::configFolder() / "config").string();
}

ConfigText readConfig(const std::string& path)
{
    // A pipe or a device in its place must not block.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file)
        return {{}, errno == ENOENT ? "" : describe(path, "cannot be read"), false};
    struct stat status;
    if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
        return {{}, path + " is not a regular file.", false};
    auto text = readBytes(file, maxConfigBytes);
    if (!text)
        return {{}, describe(path, "cannot be read"), false};
    if (text->size() > maxConfigBytes || text->find('\0') != std::string::npos)
        return {{}, path + " is not a text file of settings, using the defaults.", true};
    std::string problem = notUnderstood(path, *text);
    return {std::move(*text), std::move(problem), false};
}

std::string mergeConfig(std::string_view text, const ConfigChanges& changes)
{
    std::string merged;
    std::set<std::string> done;
    for (std::string_view line : logicalLines(text)) {
        const auto change = changes.find(std::string(entryName(line)));
        if (change == changes.end())
            merged += line;
        else if (done.insert(change->first).second)
            appendEntry(merged, change->first, change->second);
    }
    finishLastLine(merged);
    for (const auto& [name, value] : changes)
        if (!done.contains(name))
            appendEntry(merged, name, value);
    return merged;
}

ConfigSaved saveConfig(const std::string& path, const ConfigChanges& changes)
{
    std::error_code error;
    const fs::path resolved = fs::canonical(path, error); // a link stays a link
    const fs::path target = error ? fs::path(path) : resolved;
    fs::create_directories(target.parent_path(), error);
    if (error)
        return {{}, target.parent_path().string() + " cannot be made: " + error.message() + "."};
    const std::string lockPath = target.string() + ".lock";
    const FileDescriptor lock(open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, newFileMode));
    if (!lock)
        return {{}, describe(target, "cannot be written")};
    if (!lockFile(lock))
        return {{}, lockPath + " is held by another program."};
    return mergeIntoFile(target, changes);
}

} // namespace iwl
