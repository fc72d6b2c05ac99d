// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/Settings.h"

#include "platform/base/UserFolders.h"
#include "platform/imagewindow/files/WholeFile.h"

#include <cstring>
#include <filesystem>
#include <fstream>

namespace viewer {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t maxLines = 1000, maxLineLength = 4096; // of a file that something else may have written

// Empty when the environment names none.
fs::path settingsFile()
{
    const fs::path folder = base::configFolder();
    return folder.empty() ? folder : folder / "imagewindow";
}

Settings readLines()
{
    Settings lines;
    std::ifstream file(settingsFile());
    for (std::string line; lines.size() < maxLines && std::getline(file, line);) {
        const std::size_t colon = line.find(": ");
        if (colon != std::string::npos && line.size() < maxLineLength)
            lines[line.substr(0, colon)] = line.substr(colon + 2);
    }
    return lines;
}

} // namespace

std::string setting(const std::string& name)
{
    const Settings lines = readLines();
    const auto found = lines.find(name);
    return found == lines.end() ? "" : found->second;
}

std::string keepSettings(const Settings& changed)
{
    constexpr const char* what = "The settings of the windows cannot be kept: ";
    const fs::path path = settingsFile();
    if (path.empty())
        return std::string(what) + "neither XDG_CONFIG_HOME nor HOME tells a folder.";
    Settings lines = changed;
    lines.merge(readLines());
    std::string all;
    for (const auto& [key, text] : lines)
        all.append(key).append(": ").append(text).append("\n");
    const int problem = writeWhole(path, all);
    return problem == 0 ? "" : what + std::string(std::strerror(problem)) + ".";
}

} // namespace viewer
