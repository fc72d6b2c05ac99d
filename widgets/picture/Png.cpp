// SPDX-License-Identifier: MIT
#include "widgets/picture/Codecs.h"

#include <png.h>

#include <string>
#include <vector>

namespace picture {

namespace {

// The state of libpng's simplified interface, which frees it at the end of its life.
struct PngImage {
    png_image state{};
    PngImage() { state.version = PNG_IMAGE_VERSION; }
    ~PngImage() { png_image_free(&state); }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;
    [[noreturn]] void fail() const { throw FormatError(std::string("is damaged: ") + state.message); }
};

} // namespace

Picture decodePng(Bytes bytes)
{
    PngImage image;
    if (!png_image_begin_read_from_memory(&image.state, bytes.data(), bytes.size()))
        image.fail();
    Picture picture = makePicture(image.state.width, image.state.height);
    image.state.format = PNG_FORMAT_RGBA;
    if (!png_image_finish_read(&image.state, nullptr, picture.rgba.data(), 0, nullptr))
        image.fail();
    return picture;
}

std::vector<std::byte> encodePng(const Picture& picture)
{
    PngImage image;
    image.state.width = static_cast<png_uint_32>(picture.width);
    image.state.height = static_cast<png_uint_32>(picture.height);
    image.state.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image.state);
    std::vector<std::byte> bytes(size);
    if (!png_image_write_to_memory(&image.state, bytes.data(), &size, 0, picture.rgba.data(), 0, nullptr))
        throw FormatError(std::string("cannot be made a PNG: ") + image.state.message);
    bytes.resize(size);
    return bytes;
}

} // namespace picture
