// SPDX-License-Identifier: MIT
// The image file behind an attached window: opened by the path that the window publishes, followed when the
// window shows another file or the file is replaced on disk, and read section by section. Indices and frame
// as in ImageFile.h.
#pragma once

#include "platform/base/FileStamp.h"
#include "platform/image/ImageFile.h"
#include "platform/protocol/DisplayRecord.h"

#include <memory>
#include <optional>
#include <span>
#include <string>

namespace iwl {

class SlotImage {
public:
    // Throws image::ImageError when the file cannot be opened or is not the image of the record.
    explicit SlotImage(const protocol::DisplayRecord& record);

    // Of the newest file that could be opened.
    const image::ImageInfo& info() const { return file->info(); }

    // Opens the record's file when it is another one; writes a failure to standard error, and the reads
    // fail.
    void follow(const protocol::DisplayRecord& record);

    // Chooses the section for read(). False when the file does not hold all of it, or has been replaced by
    // one that is not the image on display. A section that a scratch window still waits for can be chosen,
    // but not read.
    bool position(const image::SectionIndex& section);
    // False when no section is chosen, the rectangle is not inside the image or the data cannot be read.
    bool read(const image::PixelRect& rect, std::span<float> out);

    // Whether the wavelength, position and so on are within the dimensions.
    bool contains(const image::SectionIndex& section) const;
    std::optional<double> extendedHeader(const image::SectionIndex& section, int field) const;

private:
    void load();
    bool reload();
    bool refresh();

    protocol::DisplayRecord shown;
    std::unique_ptr<image::ImageFile> file;
    base::FileStamp stamp; // of the version that was last tried
    bool readable = false; // file is what the record shows
    std::optional<image::SectionIndex> positioned;
};

} // namespace iwl
