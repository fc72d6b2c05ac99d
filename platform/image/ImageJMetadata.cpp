// SPDX-License-Identifier: MIT
#include "platform/image/ImageJMetadata.h"

#include "platform/image/Units.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <map>
#include <span>

namespace image {
namespace {

using Fields = std::map<std::string, std::string, std::less<>>;

// ImageJ's own lines come first; what other programs append may be long.
Fields fieldsOf(std::string_view description)
{
    constexpr std::size_t maxBytes = 64u << 10;
    description = description.substr(0, maxBytes);
    Fields result;
    while (!description.empty()) {
        const auto end = description.find('\n');
        const std::string_view line = description.substr(0, end);
        const auto equals = line.find('=');
        if (equals != std::string_view::npos)
            result.emplace(line.substr(0, equals), line.substr(equals + 1));
        description.remove_prefix(end == std::string_view::npos ? description.size() : end + 1);
    }
    return result;
}

std::optional<double> number(const Fields& fields, std::string_view name)
{
    const auto found = fields.find(name);
    if (found == fields.end())
        return std::nullopt;
    double value = 0;
    const std::string& text = found->second;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::int64_t count(const Fields& fields, std::string_view name)
{
    return static_cast<std::int64_t>(std::clamp(number(fields, name).value_or(1), 1.0, 1e15));
}

std::string_view text(const Fields& fields, std::string_view name)
{
    const auto found = fields.find(name);
    return found == fields.end() ? std::string_view() : std::string_view(found->second);
}

} // namespace

bool isImageJ(std::string_view description)
{
    return description.starts_with("ImageJ=") && description.size() > 8;
}

namespace {

double bigOrLittleDouble(std::span<const std::byte> raw, bool bigEndian)
{
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < 8; ++i)
        bits |= std::to_integer<std::uint64_t>(raw[i]) << (8 * (bigEndian ? 7 - i : i));
    return std::bit_cast<double>(bits);
}

// The brightest entry of a table of 256 reds, greens and blues.
Rgb brightestColor(std::span<const std::byte> table)
{
    Rgb best{0, 0, 0};
    int most = -1;
    for (std::size_t i = 0; i < 256; ++i) {
        const Rgb color{std::to_integer<std::uint8_t>(table[i]),
                        std::to_integer<std::uint8_t>(table[256 + i]),
                        std::to_integer<std::uint8_t>(table[512 + i])};
        const int sum = color.red + color.green + color.blue;
        if (sum > most) {
            most = sum;
            best = color;
        }
    }
    return best;
}

// Four letters, in the file's byte order.
enum BlockType : std::uint32_t {
    Ranges = 0x72616e67, // "rang": two doubles per channel
    Tables = 0x6c757473, // "luts": 768 bytes per channel
    Info = 0x696e666f,   // "info": text in UTF-16
    Labels = 0x6c61626c  // "labl": the same, one block for each plane
};

// Tag 50839 holds blocks of bytes, 50838 their sizes. The first block lists, as pairs of a type and a count,
// which blocks follow. Letters and numbers are in the file's byte order.
template<class Action> void forEachBlock(const TiffStructure& tags, std::uint64_t directory, Action take)
{
    constexpr std::uint64_t maxBlocks = 65536, maxBytes = 16u << 20;
    const std::vector<std::uint64_t> sizes = tags.integers(directory, TagImageJCounts, maxBlocks);
    const std::vector<std::byte> all = tags.bytes(directory, TagImageJData, maxBytes);
    if (sizes.empty() || sizes[0] > all.size() || sizes[0] < 12)
        return;
    const bool big = tags.bigEndian();
    const std::span<const std::byte> data = all;
    const auto word = [&](std::size_t at) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value |= std::to_integer<std::uint32_t>(data[at + i]) << (8 * (big ? 3 - i : i));
        return value;
    };
    std::size_t block = 1, at = sizes[0];
    for (std::size_t entry = 4; entry + 8 <= sizes[0]; entry += 8) {
        const std::uint32_t type = word(entry), blocks = word(entry + 4);
        for (std::uint32_t i = 0; i < blocks && block < sizes.size(); ++i, ++block) {
            if (sizes[block] > data.size() - at)
                return;
            take(type, data.subspan(at, sizes[block]));
            at += sizes[block];
        }
    }
}

void readBinaryTags(const TiffStructure& tags, std::uint64_t directory, ImageJMetadata& result)
{
    const bool big = tags.bigEndian();
    forEachBlock(tags, directory, [&](std::uint32_t type, std::span<const std::byte> bytes) {
        for (std::size_t d = 0; type == Ranges && d + 16 <= bytes.size(); d += 16)
            result.ranges.emplace_back(bigOrLittleDouble(bytes.subspan(d, 8), big),
                                       bigOrLittleDouble(bytes.subspan(d + 8, 8), big));
        if (type == Tables && bytes.size() >= 768)
            result.colors.push_back(brightestColor(bytes));
    });
}

void appendUtf8(std::string& text, char32_t code)
{
    const auto byte = [&](char32_t bits) { text += static_cast<char>(bits); };
    if (code < 0x80)
        return byte(code);
    if (code < 0x800)
        return byte(0xc0 | code >> 6), byte(0x80 | (code & 63));
    if (code < 0x10000)
        return byte(0xe0 | code >> 12), byte(0x80 | (code >> 6 & 63)), byte(0x80 | (code & 63));
    byte(0xf0 | code >> 18), byte(0x80 | (code >> 12 & 63)), byte(0x80 | (code >> 6 & 63)),
        byte(0x80 | (code & 63));
}

// Halves of a pair that stand alone become question marks.
std::string fromUtf16(std::span<const std::byte> bytes, bool big)
{
    const auto unit = [&](std::size_t at) {
        const auto first = std::to_integer<char32_t>(bytes[at]),
                   second = std::to_integer<char32_t>(bytes[at + 1]);
        return big ? first << 8 | second : second << 8 | first;
    };
    const auto isIn = [](char32_t code, char32_t first) { return code >= first && code < first + 0x400; };
    std::string text;
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
        char32_t code = unit(at);
        if (isIn(code, 0xd800) && at + 4 <= bytes.size() && isIn(unit(at + 2), 0xdc00)) {
            code = 0x10000 + ((code - 0xd800) << 10) + (unit(at + 2) - 0xdc00);
            at += 2;
        }
        appendUtf8(text, code >= 0xd800 && code < 0xe000 ? U'?' : code);
    }
    return text;
}

} // namespace

ImageJTexts readImageJTexts(const TiffStructure& tags, std::uint64_t directory)
{
    ImageJTexts texts;
    forEachBlock(tags, directory, [&](std::uint32_t type, std::span<const std::byte> bytes) {
        if (type == Info)
            texts.info = fromUtf16(bytes, tags.bigEndian());
        else if (type == Labels)
            texts.labels.push_back(fromUtf16(bytes, tags.bigEndian()));
    });
    return texts;
}

ImageJMetadata readImageJ(std::string_view description, const TiffStructure& tags, std::uint64_t directory)
{
    const Fields fields = fieldsOf(description);
    ImageJMetadata result;
    result.images = count(fields, "images");
    result.channels = count(fields, "channels");
    result.slices = count(fields, "slices");
    result.frames = count(fields, "frames");
    result.grayscale = text(fields, "mode") == "grayscale" || text(fields, "mode") == "gray";
    result.signed16 =
        text(fields, "cf") == "0" && number(fields, "c0") == -32768.0 && number(fields, "c1") == 1.0;
    result.zSpacing = number(fields, "spacing");
    if (result.zSpacing && *result.zSpacing <= 0)
        result.zSpacing.reset();
    const std::string_view timeUnit = text(fields, "tunit");
    const std::optional<double> interval = number(fields, "finterval"),
                                unit = timeUnit.empty() ? 1 : secondsPer(timeUnit);
    if (interval && *interval > 0 && unit)
        result.frameSeconds = *interval * *unit;
    result.min = number(fields, "min");
    result.max = number(fields, "max");
    const std::string_view names[3] = {"unit", "yunit", "zunit"};
    for (int axis = 0; axis < 3; ++axis) {
        const std::string_view unit = text(fields, names[axis]);
        result.unitMicrons[axis] = unit.empty() ? result.unitMicrons[0] : micronsPer(unit);
    }
    readBinaryTags(tags, directory, result);
    return result;
}

} // namespace image
