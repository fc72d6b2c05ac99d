// SPDX-License-Identifier: MIT
// Pictures for the tests of their files.
#pragma once

#include "widgets/picture/Picture.h"

#include <cstring>
#include <span>
#include <string>
#include <string_view>

inline const picture::Format allFormats[] = {picture::Format::Png, picture::Format::Jpeg,
                                             picture::Format::Gif, picture::Format::Xpm,
                                             picture::Format::Xwd};

// Four fields of one colour each: red, green, blue, and half opaque yellow. Even sizes only.
inline picture::Picture fourFields(int width, int height)
{
    static constexpr std::uint8_t colors[4][4] = {
        {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 0, 100}};
    picture::Picture picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            std::memcpy(picture.at(x, y), colors[2 * (2 * y / height) + 2 * x / width], 4);
    return picture;
}

inline std::span<const std::byte> bytesOf(std::string_view text)
{
    return {reinterpret_cast<const std::byte*>(text.data()), text.size()};
}

// The sentence with which decoding fails; empty when it does not.
inline std::string problemOf(std::span<const std::byte> bytes)
{
    try {
        picture::decode(bytes);
    } catch (const picture::PictureError& error) {
        return error.what();
    }
    return {};
}
