// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/RecentFiles.h"

#include "platform/base/UserFolders.h"
#include "platform/imagewindow/files/WholeFile.h"

#include <algorithm>
#include <fstream>

namespace viewer {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t maxKept = 2 * maxRecent; // so that files that are missing now can come back
constexpr std::size_t maxLine = 8192; // longer lines are not written by this program, and are skipped

// Empty when the environment names none.
fs::path listFile()
{
    const fs::path data = base::dataFolder();
    return data.empty() ? data : data / "recent";
}

std::vector<fs::path> readList()
{
    std::vector<fs::path> list;
    std::ifstream file(listFile());
    for (std::string line; list.size() < maxKept && std::getline(file, line);)
        if (line.size() < maxLine && line.starts_with('/'))
            list.emplace_back(line);
    return list;
}

} // namespace

std::vector<fs::path> recentFiles()
{
    std::vector<fs::path> list = readList();
    std::error_code error;
    std::erase_if(list, [&](const fs::path& path) { return !fs::exists(path, error); });
    list.resize(std::min(list.size(), maxRecent));
    return list;
}

void noteRecent(const fs::path& path)
{
    const std::string name = path.string();
    if (listFile().empty() || name.find('\n') != std::string::npos || name.size() >= maxLine)
        return;
    std::vector<fs::path> list = readList();
    std::erase(list, path);
    std::string text = name + '\n';
    for (std::size_t i = 0; i < std::min(list.size(), maxKept - 1); ++i)
        text += list[i].string() + '\n';
    writeWhole(listFile(), text);
}

std::string shownPath(const fs::path& path)
{
    constexpr std::size_t most = 60; // bytes
    std::string text = path.string();
    const std::string home = base::homeFolder().string();
    if (!home.empty() && text.starts_with(home + "/"))
        text.replace(0, home.size(), "~");
    if (text.size() <= most)
        return text;
    std::size_t from = text.size() - most;
    while (from < text.size() &&
           (static_cast<unsigned char>(text[from]) & 0xC0) == 0x80) // inside a character
        ++from;
    return "..." + text.substr(from);
}

} // namespace viewer
