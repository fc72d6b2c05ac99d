// SPDX-License-Identifier: MIT
#include "widgets/picture/Codecs.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

namespace picture {

std::string extensionOf(const std::filesystem::path& path)
{
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

void checkSize(std::uint64_t width, std::uint64_t height)
{
    constexpr std::uint64_t maxSide = 1 << 20;
    if (width == 0 || height == 0)
        throw FormatError("has no pixels");
    if (width > maxSide || height > maxSide || width * height * 4 > maxPictureBytes)
        throw FormatError("has " + std::to_string(width) + " x " + std::to_string(height) +
                          " pixels, more than can be read");
}

Picture makePicture(std::uint64_t width, std::uint64_t height)
{
    checkSize(width, height);
    return {static_cast<int>(width), static_cast<int>(height)};
}

std::vector<std::uint8_t> flatten(const Picture& picture)
{
    constexpr int opaque = 255;
    std::vector<std::uint8_t> rgb;
    rgb.reserve(picture.pixelCount() * 3);
    for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
        const int opacity = picture.rgba[i + 3];
        for (std::size_t part = 0; part < 3; ++part)
            rgb.push_back(static_cast<std::uint8_t>(
                (picture.rgba[i + part] * opacity + opaque * (opaque - opacity) + opaque / 2) / opaque));
    }
    return rgb;
}

} // namespace picture
