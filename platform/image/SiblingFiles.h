// SPDX-License-Identifier: MIT
// Finds the files that OME metadata names, in the folder of the file that was opened.
//
// A file may have been renamed since its metadata was written, so the identifiers in the metadata (UUIDs)
// count more than names: a name that is not there is searched for by its UUID among the folder's TIFF files.
#pragma once

#include "platform/image/Dataset.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace image {

class SiblingFiles {
public:
    // uuid: of the opened file. holder: the file that the metadata was read from (the opened one or its
    // companion). single: the metadata name one file only; if the holder is a TIFF file that is the holder
    // itself, whatever it is called now.
    SiblingFiles(const OpenedFile& opened, std::string uuid, const OpenedFile& holder, bool single);

    // Index of the file in paths(); nothing when it is not there. An empty name means the holder.
    std::optional<std::uint32_t> find(const std::string& name, const std::string& uuid);

    const std::vector<std::filesystem::path>& paths() const { return found; }
    const std::vector<std::string>& missing() const { return lost; } // names that are not there

private:
    std::optional<std::filesystem::path> search(const std::string& name, const std::string& uuid);
    void readFolder();

    std::filesystem::path opened, holder; // holder is empty when it holds no pixels
    std::string openedUuid;
    bool openedHasPixels, single;
    std::map<std::pair<std::string, std::string>, std::optional<std::uint32_t>> answers;
    std::vector<std::filesystem::path> found;
    std::map<std::filesystem::path, std::uint32_t> places; // of found
    std::vector<std::string> lost;
    std::map<std::string, std::filesystem::path> byUuid; // of the folder's TIFF files, once it was read
    bool folderRead = false;
};

} // namespace image
