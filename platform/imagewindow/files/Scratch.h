// SPDX-License-Identifier: MIT
// Images that grow while they are shown: noticing that a file has changed, which of its sections have
// arrived, and a file of its own for the sections that come through standard input.
#pragma once

#include "platform/base/FileStamp.h"
#include "platform/image/ImageFile.h"
#include "platform/imagewindow/files/Netpbm.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct tiff;

namespace viewer {

// Tells whether a file is another one or has another size or time than at the last look. One stat() each
// time.
class FileWatch {
public:
    explicit FileWatch(std::filesystem::path path);
    bool changed();

private:
    std::filesystem::path path;
    base::FileStamp last;
};

// Number of z sections of a wavelength that have arrived at a time point and position: those from z = 0 on
// without a gap.
int topImage(const image::ImageFile& file, int wavelength, int timePoint, int position);

// The newest section: the last time point of which something has arrived, and the last z of any wavelength
// there.
image::SectionIndex newestSection(const image::ImageFile& file);

// Standard input as an image file: its PGM or PPM images become the pages of a TIFF file in the cache
// directory, which is removed when the object goes, and when the process is ended by a signal that can be
// caught.
class ScratchInput {
public:
    // Throws image::ImageError when the file cannot be made.
    ScratchInput();
    ~ScratchInput();
    ScratchInput(const ScratchInput&) = delete;
    ScratchInput& operator=(const ScratchInput&) = delete;

    const std::filesystem::path& path() const { return file; }
    // Takes what has arrived, a bounded amount at a time, waiting at most that long for something. False when
    // nothing more will come.
    bool pump(int waitMilliseconds);
    int sections() const { return count; }
    // Why nothing more comes, one sentence; empty after an orderly end.
    const std::string& error() const { return reason; }

private:
    void append(std::vector<std::byte> image);
    bool finish(const std::string& sentence);

    std::filesystem::path file;
    NetpbmStream stream;
    tiff* out = nullptr;
    int count = 0;
    bool ended = false;
    std::string reason;
};

// An open image and where it comes from.
struct ImageSource {
    std::filesystem::path path; // absolute; for standard input the file that its sections go to
    std::string name;           // for titles
    std::unique_ptr<image::ImageFile> file;
    bool growing = false;
    std::unique_ptr<ScratchInput> input; // of a growing image from standard input
};

// Throws image::ImageError.
ImageSource openImage(const std::string& path);

// An image that still grows; "-" is standard input. Waits until the first section has arrived, which it tells
// on standard error. Throws image::ImageError when there is no such file or when standard input ends without
// a section.
ImageSource openGrowing(const std::string& path);

} // namespace viewer
