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

// Tag 50839 holds blocks of bytes, 50838 their sizes. The first block lists, as pairs of a four-letter type
// and a count, which blocks follow ("rang": two doubles per channel, "luts": 768 bytes per channel). Letters
// and numbers are in the file's byte order.
void readBinaryTags(const TiffStructure& tags, std::uint64_t directory, ImageJMetadata& result)
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
    constexpr std::uint32_t ranges = 0x72616e67, luts = 0x6c757473; // "rang", "luts"
    std::size_t block = 1, at = sizes[0];
    for (std::size_t entry = 4; entry + 8 <= sizes[0]; entry += 8) {
        const std::uint32_t type = word(entry), blocks = word(entry + 4);
        for (std::uint32_t i = 0; i < blocks && block < sizes.size(); ++i, ++block) {
            if (sizes[block] > data.size() - at)
                return;
            const auto bytes = data.subspan(at, sizes[block]);
            at += sizes[block];
            for (std::size_t d = 0; type == ranges && d + 16 <= bytes.size(); d += 16)
                result.ranges.emplace_back(bigOrLittleDouble(bytes.subspan(d, 8), big),
                                           bigOrLittleDouble(bytes.subspan(d + 8, 8), big));
            if (type == luts && bytes.size() >= 768)
                result.colors.push_back(brightestColor(bytes));
        }
    }
}

} // namespace

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
