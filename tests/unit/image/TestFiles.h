// SPDX-License-Identifier: MIT
// Small TIFF files with known pixels, written with libtiff.
#pragma once

#include "platform/image/ImageFile.h"
#include "tests/unit/image/TempFolder.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// How a sample is stored; format as TIFF's SampleFormat: 1 unsigned, 2 signed, 3 float.
struct PixelKind {
    const char* name;
    int bits, format;
    image::PixelType type;
};

inline constexpr PixelKind bitKind = {"bit", 1, 1, image::PixelType::Bit};
inline constexpr PixelKind byteKind = {"uint8", 8, 1, image::PixelType::UInt8};
inline constexpr PixelKind wordKind = {"uint16", 16, 1, image::PixelType::UInt16};
inline constexpr PixelKind floatKind = {"float", 32, 3, image::PixelType::Float32};

struct TiffSpec {
    PixelKind kind = wordKind;
    int width = 37, height = 29, samples = 1, pages = 1;
    bool planar = false, bigEndian = false, bigTiff = false;
    int tile = 0;                                         // side of a tile, 0: strips
    int rowsPerStrip = 8;                                 // of strips
    int compression = 1, predictor = 1, photometric = -1; // -1: black is zero, or RGB for three samples
    int fillOrder = 1;
    bool smooth = false;                 // the pixels are a slope, for lossy compression
    int firstPage = 0;                   // number of the first page in the formula of the pixels
    bool append = false;                 // to the pages of an existing file
    std::string description = {};        // of the first page
    float resolution = 0;                // pixels per unit; 0: none
    std::vector<int> reducedWidths = {}; // of sub-directories with smaller copies of each page
};

// The stored value of a pixel: a different one for each neighbour, page and sample, and exact as a float.
double storedValue(const TiffSpec& spec, int x, int y, int page = 0, int sample = 0);

// Throws std::runtime_error when libtiff cannot write it.
void writeTiff(const std::filesystem::path& path, const TiffSpec& spec);
std::unique_ptr<image::ImageFile> writeAndOpen(const std::filesystem::path& path, const TiffSpec& spec);

// A file of its own, open.
class TestImage {
public:
    explicit TestImage(const TiffSpec& spec) : opened(writeAndOpen(folder / "test.tif", spec)) {}
    image::ImageFile& operator*() const { return *opened; }
    image::ImageFile* operator->() const { return opened.get(); }

private:
    TempFolder folder;
    std::unique_ptr<image::ImageFile> opened;
};

// Where the directory of a page of a little-endian file stands, and where in it the offset of the next one.
std::size_t directoryOf(const std::string& bytes, int page);
std::size_t nextPointerOf(const std::string& bytes, int page);

// Overwrites an entry of a directory of a little-endian file with a single value. False when it has no such
// entry.
bool overwriteTag(std::string& bytes, int tag, std::uint32_t value, int page = 0);
void overwriteNumber(std::string& bytes, std::size_t at, std::uint32_t value);

// z, w, t, p.
std::array<int, 4> sizesOf(const image::ImageFile& image);

// Of the extended header: time, stage position x, y, z and known bias.
std::array<std::optional<double>, 5> headerOf(const image::ImageFile& image,
                                              const image::SectionIndex& section);

// The whole section; empty when it cannot be read.
std::vector<float> readWhole(image::ImageFile& image, const image::SectionIndex& section);

// NaN when it cannot be read.
float pixelAt(image::ImageFile& image, const image::SectionIndex& section, int x = 0, int y = 0,
              int level = 0);

// The message that opening the file throws; empty when it opens.
std::string openFailure(const std::filesystem::path& path);
