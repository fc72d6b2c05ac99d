// SPDX-License-Identifier: MIT
// Image files as the viewer and libIWL read them: one open image, its dimensions and metadata, and pixel
// values of any rectangle of any section as floats. No X here.
//
// Frame: pixel (0, 0) is the top left pixel of a section, x grows to the right and y downwards. A section is
// addressed by 0-based indices z, wavelength, time point and position (the OME images of equal size).
// An ImageFile is owned by its opener; it may be used by several threads at once.
#pragma once

#include "platform/base/FileStamp.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <vector>

namespace image {

// What opening a file throws: what() is one sentence for the user that names the file.
struct ImageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class PixelType { Bit, Int8, UInt8, Int16, UInt16, Int32, UInt32, Float32, Float64 };

struct SectionIndex {
    int z = 0, w = 0, t = 0, p = 0;
    friend bool operator==(const SectionIndex&, const SectionIndex&) = default;
};

// A rectangle of pixels; both bounds are inclusive.
struct PixelRect {
    int xFirst = 0, yFirst = 0, xLast = -1, yLast = -1;
    int width() const { return xLast - xFirst + 1; }
    int height() const { return yLast - yFirst + 1; }
};

struct Wavelength {
    std::string name;                                // channel name, may be empty
    float nanometres = 0;                            // emission, else excitation, else 0
    std::uint8_t red = 255, green = 255, blue = 255; // the file's own colour, or the colour of colorIndex
    int colorIndex = 0;                              // of base::displayColors
    std::optional<float> displayMin, displayMax;     // display range that the file asks for
};

struct ImageInfo {
    std::filesystem::path path; // the file that was opened
    int width = 0, height = 0;  // pixels
    int sizeZ = 1, sizeW = 1, sizeT = 1, sizeP = 1;
    PixelType pixelType = PixelType::UInt8;
    float spacing[3] = {1, 1, 1};        // pixel spacing x, y, z in microns
    bool calibrated = false;             // false: the spacing of x and y is the default of 1.0
    bool zCalibrated = false;            // false: that of z is; true only where calibrated is
    std::vector<Wavelength> wavelengths; // sizeW entries
    std::string format;                  // for the user, e.g. "OME-TIFF, 3 files" or "ImageJ hyperstack"
    std::vector<std::string> remarks; // for the user: what the file has and the image lacks, a sentence each
};

// Fields of the extended header of a section.
enum ExtendedHeaderField {
    TimeStampSeconds = 1,
    StageXMicrons = 2,
    StageYMicrons = 3,
    StageZMicrons = 4,
    KnownBias = 14
};

class ImageFile {
public:
    // Opens a file; throws ImageError. Reads metadata only, no pixels.
    static std::unique_ptr<ImageFile> open(const std::filesystem::path& path);
    virtual ~ImageFile() = default;
    ImageFile() = default;
    ImageFile(const ImageFile&) = delete;
    ImageFile& operator=(const ImageFile&) = delete;

    virtual const ImageInfo& info() const = 0;

    // Whether the section is inside the dimensions and the file holds it.
    virtual bool hasSection(const SectionIndex& section) const = 0;

    // Whether all of the section's data lies inside the file as it is now; lastError says what does not.
    // Reads no pixels.
    virtual bool isComplete(const SectionIndex& section) { return hasSection(section); }

    // Fills out (rect.width() * rect.height() values, row by row, x fastest) with the section's pixel values.
    // False when the rectangle is not inside the image, out has another size, or the data cannot be read or
    // decoded (lastError says why); out is then unspecified.
    virtual bool read(const SectionIndex& section, const PixelRect& rect, std::span<float> out) = 0;

    // In which rectangles the section is decoded: asking for one pixel costs all of its block. Blocks tile
    // the section from (0, 0). The whole section where it cannot be told.
    struct BlockSize {
        int width, height; // pixels
    };
    virtual BlockSize blockSize(const SectionIndex& section);

    // Reduced copies for zoomed-out views. Level 0 is the full image; level k is smaller by about
    // levelScale(k).
    virtual int levelCount() const { return 1; }
    virtual double levelScale(int /*level*/) const { return 1.0; }
    virtual int levelWidth(int /*level*/) const { return info().width; }
    virtual int levelHeight(int /*level*/) const { return info().height; }
    // As read(), with rect in the pixels of that level.
    virtual bool readLevel(const SectionIndex& section, int level, const PixelRect& rect,
                           std::span<float> out) = 0;

    // Smallest and largest finite pixel value of the section. Reads every block once, without crowding out
    // what the block cache holds. False when stopped, when the section cannot be read (lastError says why) or
    // has no finite value; min and max are then unspecified.
    virtual bool valueRange(const SectionIndex& section, const std::stop_token& stop, float& min, float& max);

    // The opened file as it was just before; all zero for an image that open() has not made.
    const base::FileStamp& openedStamp() const { return stamp; }

    // Every file that the image consists of and that is there, the opened one among them.
    virtual std::vector<std::filesystem::path> files() const { return {info().path}; }

    // A value of the section's extended header; nothing when the file does not tell.
    virtual std::optional<double> extendedHeader(const SectionIndex& section, int field) const = 0;

    // Why the last read of the calling thread failed: one sentence.
    virtual std::string lastError() const = 0;

private:
    base::FileStamp stamp;
};

// Limits the memory (bytes) that decoded blocks of all open images may take together; 128 MiB at the start.
void setBlockCacheLimit(std::size_t bytes);

} // namespace image
