// SPDX-License-Identifier: MIT
// The five formats by themselves. Decoders throw FormatError, whose what() is a clause without a subject ("is
// cut short").
#pragma once

#include "widgets/picture/Picture.h"

#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace picture {

struct FormatError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

using Bytes = std::span<const std::byte>;

// Throws FormatError where a side is 0 or the picture is larger than the limit.
void checkSize(std::uint64_t width, std::uint64_t height);
// An empty picture of that size, after the same check.
Picture makePicture(std::uint64_t width, std::uint64_t height);

Picture decodePng(Bytes bytes);
Picture decodeJpeg(Bytes bytes);
Picture decodeGif(Bytes bytes);
Picture decodeXpm(Bytes bytes);
Picture decodeXwd(Bytes bytes);

std::vector<std::byte> encodePng(const Picture& picture);
std::vector<std::byte> encodeJpeg(const Picture& picture);
std::vector<std::byte> encodeGif(const Picture& picture);
std::vector<std::byte> encodeXpm(const Picture& picture);
std::vector<std::byte> encodeXwd(const Picture& picture);

// The extension of a file's name with its point, in small letters; empty where it has none.
std::string extensionOf(const std::filesystem::path& path);

// Red, green and blue of each pixel over white.
std::vector<std::uint8_t> flatten(const Picture& picture);

// 0xRRGGBB of a colour name of X ("Navy Blue", "grey40") or of "#" with 3, 6, 9 or 12 digits.
std::optional<std::uint32_t> colorNamed(std::string_view name);

} // namespace picture
