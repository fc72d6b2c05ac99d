// SPDX-License-Identifier: MIT
#include "platform/image/SiblingFiles.h"

#include "platform/image/Error.h"
#include "platform/image/OmeMetadata.h"

namespace image {

constexpr int maxFolderEntries = 4096;  // looked at when a file is searched by its UUID
constexpr std::size_t uuidBytes = 4096; // the root element stands near the beginning

SiblingFiles::SiblingFiles(const OpenedFile& openedFile, std::string uuid, const OpenedFile& holderFile,
                           bool onlyOne)
    : opened(openedFile.path), holder(holderFile.tiff ? holderFile.path : std::filesystem::path()),
      openedUuid(std::move(uuid)), openedHasPixels(openedFile.tiff != nullptr), single(onlyOne)
{
}

namespace {

std::string uuidOf(const std::filesystem::path& path)
{
    try {
        const InputFile file(path);
        const TiffStructure tags(file);
        const std::vector<std::byte> head = tags.bytes(tags.firstPage(), TagDescription, uuidBytes);
        return omeUuid({reinterpret_cast<const char*>(head.data()), head.size()});
    } catch (const FormatError&) {
        return {};
    }
}

} // namespace

void SiblingFiles::readFolder()
{
    folderRead = true;
    std::error_code error;
    const std::filesystem::path folder = opened.has_parent_path() ? opened.parent_path() : ".";
    int seen = 0;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string extension = entry->path().extension().string();
        if (++seen > maxFolderEntries)
            break;
        if (extension != ".tif" && extension != ".tiff" && extension != ".TIF" && extension != ".TIFF")
            continue;
        if (const std::string uuid = uuidOf(entry->path()); !uuid.empty())
            byUuid.emplace(uuid, entry->path());
    }
}

std::optional<std::filesystem::path> SiblingFiles::search(const std::string& name, const std::string& uuid)
{
    if (!holder.empty() && (name.empty() || single))
        return holder;
    if (openedHasPixels && !uuid.empty() && uuid == openedUuid)
        return opened;
    const std::filesystem::path relative(name), folder = opened.parent_path();
    std::error_code error;
    for (const auto& path : {folder / relative.relative_path(), folder / relative.filename()})
        if (!name.empty() && std::filesystem::is_regular_file(path, error))
            return path;
    if (uuid.empty())
        return std::nullopt;
    if (!folderRead)
        readFolder();
    const auto known = byUuid.find(uuid);
    return known == byUuid.end() ? std::nullopt : std::optional(known->second);
}

std::optional<std::uint32_t> SiblingFiles::find(const std::string& name, const std::string& uuid)
{
    const auto [answer, isNew] = answers.try_emplace({name, uuid});
    if (!isNew)
        return answer->second;
    const std::optional<std::filesystem::path> path = search(name, uuid);
    if (!path) {
        lost.push_back(name);
        return std::nullopt;
    }
    const auto [place, isNewFile] = places.try_emplace(*path, static_cast<std::uint32_t>(found.size()));
    answer->second = place->second;
    if (isNewFile)
        found.push_back(*path);
    return answer->second;
}

} // namespace image
