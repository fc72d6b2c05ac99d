// SPDX-License-Identifier: MIT
// Names of files and folders. No X here.
#include "platform/base/UserFolders.h"
#include "platform/include/IWL.h"
#include "platform/include/OrUtils.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

namespace fs = std::filesystem;

// Endings of image files that a derived name leaves out, the longer ones first.
constexpr std::array<std::string_view, 12> imageEndings = {
    ".companion.ome", ".ome.tiff", ".ome.tif", ".ome.btf", ".ome.tf2", ".ome.tf8",
    ".ome.xml",       ".tiff",     ".tif",     ".btf",     ".tf8",     ".tf2"};

bool endsWithIgnoringCase(std::string_view text, std::string_view ending)
{
    return text.size() >= ending.size() &&
           std::equal(ending.begin(), ending.end(), text.end() - static_cast<std::ptrdiff_t>(ending.size()),
                      [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

std::string_view baseName(std::string_view path)
{
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    const size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view withoutImageEnding(std::string_view name)
{
    for (const std::string_view ending : imageEndings)
        if (name.size() > ending.size() && endsWithIgnoringCase(name, ending))
            return name.substr(0, name.size() - ending.size());
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? name : name.substr(0, dot);
}

bool isFolder(const std::string& path)
{
    std::error_code error;
    return !path.empty() && fs::is_directory(path, error);
}

std::string environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

// The documents folder that the user's desktop configuration names ("XDG_DOCUMENTS_DIR=\"$HOME/Documents\"").
std::string documentsFolder(const std::string& home)
{
    // Relative folders count as unset, here as in the variables of the base directory convention.
    std::ifstream file(base::configBase() / "user-dirs.dirs");
    constexpr std::string_view key = "XDG_DOCUMENTS_DIR=\"", homeMark = "$HOME";
    for (std::string line; std::getline(file, line);) {
        const size_t end = line.rfind('"');
        if (!line.starts_with(key) || end <= key.size())
            continue;
        const std::string value = line.substr(key.size(), end - key.size());
        const std::string folder = value.starts_with(homeMark) ? home + value.substr(homeMark.size()) : value;
        return folder.starts_with('/') ? folder : "";
    }
    return {};
}

} // namespace

int OrvelGenerateFileName(const char* source, const char* tag, const char* extension, char* name)
{
    const std::string ending = "_" + std::string(tag) + "." + extension;
    const size_t room = ORVEL_NAME_SIZE - 1 - std::min<size_t>(ending.size(), ORVEL_NAME_SIZE - 1);
    std::string made(text::cutToBytes(withoutImageEnding(baseName(source)), room));
    made += text::cutToBytes(ending, ORVEL_NAME_SIZE - 1 - made.size());
    memcpy(name, made.c_str(), made.size() + 1);
    return 1;
}

int OrvelIsADatabaseURI(const char* name)
{
    const std::string_view text = name;
    const size_t mark = text.find("://");
    if (mark == std::string_view::npos || mark == 0 || !std::isalpha(static_cast<unsigned char>(text[0])))
        return 0;
    const std::string_view scheme = text.substr(0, mark);
    return std::all_of(scheme.begin(), scheme.end(),
                       [](unsigned char c) { return std::isalnum(c) || c == '+' || c == '-' || c == '.'; })
               ? 1
               : 0;
}

const char* OrvelGetVerifyDataDirectory(void)
{
    static std::string folder;
    const char* const configured = IWGetConfig("KV_DATA_DIR");
    const std::string home = base::homeFolder().string();
    for (const std::string& candidate :
         {environment("KELVORA_DATA_DIR"), std::string(configured ? configured : ""), documentsFolder(home),
          home})
        if (isFolder(candidate)) {
            folder = candidate;
            return folder.c_str();
        }
    std::error_code error;
    folder = fs::current_path(error).string();
    if (folder.empty())
        folder = ".";
    return folder.c_str();
}
