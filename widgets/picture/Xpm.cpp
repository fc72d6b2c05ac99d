// SPDX-License-Identifier: MIT
#include "widgets/picture/Codecs.h"
#include "widgets/picture/Palette.h"

#include <X11/xpm.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace picture {

namespace {

constexpr std::string_view pixelCharacters =
    " .+@#$%&*=-;>,')!~{]^/(_:<[}|1234567890abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ`";

// The text between the first two quotation marks that stand in no comment: the sizes.
std::string_view firstString(std::string_view text)
{
    std::size_t at = 0;
    while (at < text.size() && text[at] != '"') {
        const bool comment = text.substr(at, 2) == "/*";
        at = comment ? text.find("*/", at + 2) : at + 1;
        if (at == std::string_view::npos)
            return {};
    }
    const std::size_t end = text.find('"', at + 1);
    return end == std::string_view::npos ? std::string_view() : text.substr(at + 1, end - at - 1);
}

// Checks width, height, number of colours and characters per pixel, by which libXpm will reserve memory.
void checkSizes(std::string_view text)
{
    std::string_view sizes = firstString(text);
    std::uint64_t values[4] = {};
    for (std::uint64_t& value : values) {
        sizes.remove_prefix(std::min(sizes.find_first_not_of(" \t"), sizes.size()));
        const auto [end, error] = std::from_chars(sizes.data(), sizes.data() + sizes.size(), value);
        if (error != std::errc())
            throw FormatError("does not tell its size");
        sizes.remove_prefix(static_cast<std::size_t>(end - sizes.data()));
    }
    checkSize(values[0], values[1]);
    const auto [width, height, colors, characters] = values;
    if (characters > 8 || width * height * characters > text.size() || colors > text.size())
        throw FormatError("is cut short");
}

struct Image {
    XpmImage x{};
    ~Image() { XpmFreeXpmImage(&x); }
    Image() = default;
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
};

// Red, green, blue, opacity of an entry, by its best visual.
std::array<std::uint8_t, 4> pixelOf(const XpmColor& color)
{
    for (const char* name : {color.c_color, color.g_color, color.g4_color, color.m_color}) {
        if (!name)
            continue;
        if (strcasecmp(name, "none") == 0)
            return {0, 0, 0, 0};
        const std::optional<std::uint32_t> value = colorNamed(name);
        if (!value)
            throw FormatError(std::string("has a colour that is not known, ") +
                              std::string(name, strnlen(name, 40)));
        return {static_cast<std::uint8_t>(*value >> 16), static_cast<std::uint8_t>(*value >> 8),
                static_cast<std::uint8_t>(*value), 255};
    }
    throw FormatError("has an entry without colour");
}

} // namespace

Picture decodeXpm(Bytes bytes)
{
    std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    checkSizes(text);
    Image image;
    if (XpmCreateXpmImageFromBuffer(text.data(), &image.x, nullptr) != XpmSuccess)
        throw FormatError("is damaged or cut short");
    Picture picture = makePicture(image.x.width, image.x.height);
    std::vector<std::array<std::uint8_t, 4>> colors;
    for (unsigned i = 0; i < image.x.ncolors; ++i)
        colors.push_back(pixelOf(image.x.colorTable[i]));
    for (std::size_t i = 0; i < picture.pixelCount(); ++i) {
        const auto& color = colors.at(image.x.data[i]);
        std::copy(color.begin(), color.end(), &picture.rgba[i * 4]);
    }
    return picture;
}

namespace {

// The picture's colours, 0xRRGGBB or none, and which of them each pixel has.
struct Entries {
    std::vector<std::uint32_t> colors;
    std::vector<std::size_t> indices;
};

constexpr std::uint32_t none = 0x1000000;

Entries entriesOf(const Picture& picture)
{
    Entries entries;
    std::unordered_map<std::uint32_t, std::size_t> known;
    for (std::size_t i = 0; i < picture.pixelCount(); ++i) {
        const std::uint8_t* pixel = &picture.rgba[i * 4];
        const std::uint32_t color = isTransparent(pixel) ? none : colorOf(pixel);
        const auto [entry, added] = known.try_emplace(color, entries.colors.size());
        if (added)
            entries.colors.push_back(color);
        entries.indices.push_back(entry->second);
    }
    return entries;
}

unsigned keyLength(std::size_t colors)
{
    unsigned length = 1;
    for (std::size_t room = pixelCharacters.size(); room < colors; room *= pixelCharacters.size())
        ++length;
    return length;
}

std::string keyOf(std::size_t index, unsigned length)
{
    std::string key(length, pixelCharacters[0]);
    for (char& character : key) {
        character = pixelCharacters[index % pixelCharacters.size()];
        index /= pixelCharacters.size();
    }
    return key;
}

std::string colorRow(std::uint32_t color, const std::string& key)
{
    char name[8];
    std::snprintf(name, sizeof name, "#%06X", static_cast<unsigned>(color & 0xFFFFFF));
    return "\"" + key + " c " + (color == none ? "None" : name) + "\",\n";
}

} // namespace

// The text is made here: XpmCreateBufferFromXpmImage of libXpm 3.5.12 reports XpmNoMemory for every image.
std::vector<std::byte> encodeXpm(const Picture& picture)
{
    const Entries entries = entriesOf(picture);
    const unsigned length = keyLength(entries.colors.size());
    std::string text = "/* XPM */\nstatic char *picture[] = {\n\"" + std::to_string(picture.width) + " " +
                       std::to_string(picture.height) + " " + std::to_string(entries.colors.size()) + " " +
                       std::to_string(length) + "\",\n";
    for (std::size_t i = 0; i < entries.colors.size(); ++i)
        text += colorRow(entries.colors[i], keyOf(i, length));
    for (std::size_t i = 0; i < entries.indices.size(); ++i) {
        const std::size_t column = i % static_cast<std::size_t>(picture.width);
        text += column == 0 ? "\"" : "";
        text += keyOf(entries.indices[i], length);
        if (column + 1 == static_cast<std::size_t>(picture.width))
            text += i + 1 == entries.indices.size() ? "\"\n};\n" : "\",\n";
    }
    const auto* first = reinterpret_cast<const std::byte*>(text.data());
    return {first, first + text.size()};
}

} // namespace picture
