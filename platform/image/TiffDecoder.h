// SPDX-License-Identifier: MIT
// Decodes strips and tiles of one page with libtiff. A decoder serves one thread at a time; it reads through
// the InputFile, which must outlive it.
#pragma once

#include "platform/image/TiffStructure.h"

#include <memory>
#include <span>

namespace image {

class TiffDecoder {
public:
    // Throws FormatError when libtiff refuses the page or has no such codec.
    TiffDecoder(const InputFile& file, bool bigTiff, bool bigEndian, const Directory& directory);
    ~TiffDecoder();

    std::uint64_t directoryOffset() const { return offset; }

    // Fills out with samples in the machine's byte order. The size of out is the block's size, or less for
    // its first rows only. Throws FormatError with libtiff's reason.
    void strip(std::uint32_t index, std::span<std::byte> out);
    void tile(std::uint32_t index, std::span<std::byte> out);

    // The rows of a page in strips, of one sample where they are planar: from row `first` on as many of
    // rowBytes as fit into out. Decodes on from where the last call ended or from the beginning of the strip.
    // For pages whose strips are not read with strip().
    void rows(int sample, int first, std::size_t rowBytes, std::span<std::byte> out);
    // How many rows before this one rows() would decode first.
    int rowsBefore(int sample, int first) const;

    // Red, green and blue bytes of a page whose colours need a conversion (YCbCr, CIELab, CMYK). Rows of out
    // are width pixels of 3 bytes, top row first. x and y are the top left pixel of a tile or the first row
    // of a strip.
    void rgbStrip(int y, int width, int height, std::span<std::byte> out);
    void rgbTile(int x, int y, int width, int height, std::span<std::byte> out);

private:
    void requireSize(bool tiled, int width, int height);

    struct Handle;
    std::unique_ptr<Handle> handle;
    std::uint64_t offset;
    int stripHeight = 1;
    int nextSample = 0, nextRow = -1; // of rows(); -1: none was called yet
};

// Whether this libtiff can decode the compression scheme.
bool hasCodec(int compression);

} // namespace image
