// SPDX-License-Identifier: MIT
// An open image through its life: the file that grows or is replaced on disk, the ranges of its wavelengths
// as they are found, its scale, and what is wrong with it. Whoever shows it calls poll() and gatherRanges()
// now and then and learns what is new. No X.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/image/RangeScan.h"
#include "platform/imagewindow/files/ChosenScale.h"
#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/files/Scratch.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace viewer {

// Which dimensions can be stepped through.
struct Dimensions {
    bool z = false, t = false, p = false;
};

// What a look at the file has brought.
struct FileNews {
    bool told = false; // problem() or activity() may differ
    // The file was opened anew: the section that was the newest before. Who reads from file() takes the new
    // one.
    std::optional<image::SectionIndex> replaced;
};

class ImageLife {
public:
    explicit ImageLife(ImageSource opened);

    // Until the next poll().
    image::ImageFile& file() { return *source.file; }
    const image::ImageFile& file() const { return *source.file; }
    const image::ImageInfo& info() const { return source.file->info(); }
    const std::filesystem::path& path() const { return source.path; } // absolute
    const std::string& name() const { return source.name; }           // for titles
    bool growing() const { return source.growing; }
    // Of the image as it was opened, with z when more sections may come. A version of the file with others is
    // not taken.
    const Dimensions& dimensions() const { return steps; }
    // Counts how often the file was opened anew.
    int version() const { return openings; }

    // Takes what has arrived on standard input, and opens the file again when it has changed on disk.
    FileNews poll();
    // Called in poll() before the file goes: who reads from it in a thread of its own has to end that.
    void beforeReplacing(std::function<void()> letGo) { leave = std::move(letGo); }
    // What has become of the file, one sentence; empty when all is well.
    const std::string& problem() const { return trouble; }
    // What is going on: "receiving", "ranges 40 %"; empty when nothing is.
    std::string activity() const;

    // Takes over what the scan has found; false once there is nothing more to find.
    bool gatherRanges();
    // By wavelength, of everything seen so far, also before the file grew; may be shorter than there are
    // wavelengths.
    const std::vector<image::ValueRange>& ranges() const { return seen; }
    // Nothing known when no section of the wavelength has been seen.
    image::ValueRange range(int wavelength) const;
    // Sections whose ranges are wanted first.
    void prefer(const image::SectionIndex& section) { scan->prefer(section); }

    Scale scale() const { return scaleOf(info(), chosenScale.set()); }
    const ChosenScale& chosen() const { return chosenScale; }
    ChosenScale& chosen() { return chosenScale; }

private:
    std::optional<image::SectionIndex> reopen();
    image::SectionIndex adopt(std::unique_ptr<image::ImageFile> fresh);
    bool isSameImage(const image::ImageInfo& other) const;

    ImageSource source;
    FileWatch watch;
    Dimensions steps;
    ChosenScale chosenScale;
    std::unique_ptr<image::RangeScan> scan; // after source: it must stop first
    std::vector<image::ValueRange> seen;
    std::function<void()> leave;
    std::string trouble;
    int openings = 0;
    bool receiving;
};

} // namespace viewer
