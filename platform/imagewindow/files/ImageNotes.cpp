// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/ImageNotes.h"

#include "platform/base/FileStamp.h"
#include "platform/base/HashName.h"
#include "platform/base/UserFolders.h"
#include "platform/imagewindow/files/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <unistd.h>
#include <utility>
#include <vector>

namespace viewer {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t maxNoteBytes = 1 << 16;

// Empty when the environment names none.
fs::path folderOf(const NoteKind& kind)
{
    const fs::path data = base::dataFolder();
    return data.empty() ? data : data / kind.folder;
}

std::string canonicalPath(const fs::path& image)
{
    std::error_code error;
    const fs::path path = fs::weakly_canonical(image, error);
    return (error ? image : path).string();
}

std::string stampText(const std::string& path)
{
    const base::FileStamp stamp = base::stampOf(fs::path(path));
    return std::to_string(stamp.size) + " " + std::to_string(stamp.modified);
}

void dropOldest(const fs::path& folder, std::size_t most)
{
    std::error_code error;
    std::vector<std::pair<fs::file_time_type, fs::path>> notes;
    for (const auto& entry : fs::directory_iterator(folder, error))
        notes.emplace_back(entry.last_write_time(error), entry.path());
    if (notes.size() <= most)
        return;
    std::sort(notes.begin(), notes.end());
    for (std::size_t i = 0; i < notes.size() - most; ++i)
        fs::remove(notes[i].second, error);
}

} // namespace

std::optional<ImageNote> loadNote(const NoteKind& kind, const fs::path& image)
{
    const std::string path = canonicalPath(image);
    if (folderOf(kind).empty())
        return std::nullopt;
    std::ifstream file(folderOf(kind) / base::hashName(path));
    std::string version, stamp, rest(maxNoteBytes, '\0');
    if (!std::getline(file, version) || version != kind.firstLine || !std::getline(file, stamp))
        return std::nullopt;
    file.read(rest.data(), static_cast<std::streamsize>(rest.size()));
    rest.resize(static_cast<std::size_t>(file.gcount()));
    const std::string end = "\n" + path + "\n"; // a path may hold line feeds
    if (!rest.ends_with(end))
        return std::nullopt;
    rest.resize(rest.size() - end.size());
    return ImageNote{rest, stamp == stampText(path)};
}

int keepNote(const NoteKind& kind, const fs::path& image, const std::string& text)
{
    const fs::path folder = folderOf(kind);
    if (folder.empty())
        return noNoteFolder;
    const std::string path = canonicalPath(image);
    const int problem =
        writeWhole(folder / base::hashName(path),
                   std::string(kind.firstLine) + "\n" + stampText(path) + "\n" + text + "\n" + path + "\n");
    if (problem == 0)
        dropOldest(folder, kind.most);
    return problem;
}

int forgetNote(const NoteKind& kind, const fs::path& image)
{
    const fs::path folder = folderOf(kind);
    if (folder.empty() || unlink((folder / base::hashName(canonicalPath(image))).c_str()) == 0 ||
        errno == ENOENT)
        return 0;
    return errno;
}

std::string noteProblem(int error)
{
    return error == noNoteFolder ? "neither XDG_DATA_HOME nor HOME tells a folder" : std::strerror(error);
}

} // namespace viewer
