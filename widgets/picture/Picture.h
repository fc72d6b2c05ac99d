// SPDX-License-Identifier: MIT
// Pictures as files: PNG, JPEG, GIF, XPM and XWD, read and written without an X server. Every byte of a file
// is untrusted: what a file may ask for in memory is limited before anything is decoded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace picture {

// Red, green, blue and opacity (255: opaque; not multiplied into the colours), row by row from the top left.
struct Picture {
    int width = 0, height = 0; // pixels
    std::vector<std::uint8_t> rgba;

    Picture() = default;
    Picture(int columns, int rows)
        : width(columns), height(rows),
          rgba(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows) * 4)
    {
    }
    std::size_t pixelCount() const { return rgba.size() / 4; }
    std::uint8_t* at(int x, int y) { return &rgba[offset(x, y)]; }
    const std::uint8_t* at(int x, int y) const { return &rgba[offset(x, y)]; }

private:
    std::size_t offset(int x, int y) const
    {
        return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) *
               4;
    }
};

// what() is one sentence for the user.
struct PictureError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class Format { Png, Jpeg, Gif, Xpm, Xwd };

// Of a decoded picture, and of a file that is read. More is refused.
constexpr std::size_t maxPictureBytes = std::size_t{1} << 30;

// By the first bytes; nothing when they belong to no format.
std::optional<Format> formatOfContent(std::span<const std::byte> bytes);
// By the extension of the name (png, jpg, jpeg, gif, xpm, xwd; either case).
std::optional<Format> formatOfName(const std::filesystem::path& path);

// The first image of an animation. Throws PictureError, like all that follow; its sentence starts with
// "The picture" here and with the file's name where there is a file.
Picture decode(std::span<const std::byte> bytes);
Picture read(const std::filesystem::path& path);

// JPEG (quality 90) and XWD hold no opacity: they show the picture on white. GIF has up to 256 colours, one
// of them transparent; a picture with more gets the nearest ones. XPM knows transparent and opaque only.
std::vector<std::byte> encode(const Picture& picture, Format format);

// The format is that of the name. On failure a file that was there before is unchanged.
void write(const Picture& picture, const std::filesystem::path& path);

} // namespace picture
