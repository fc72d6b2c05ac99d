// SPDX-License-Identifier: MIT
// The tags of a page for the user to read. Names: TIFF Revision 6.0 and its supplements.
#include "platform/image/TiffStructure.h"

#include "platform/image/Error.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <span>
#include <string>
#include <tiff.h>
#include <vector>

namespace image {
namespace {

constexpr std::uint64_t maxListed = 8, maxTextBytes = 4096; // values of a tag that are told

constexpr struct {
    std::uint16_t tag;
    const char* name;
} names[] = {
    {254, "NewSubfileType"},
    {256, "ImageWidth"},
    {257, "ImageLength"},
    {258, "BitsPerSample"},
    {259, "Compression"},
    {262, "PhotometricInterpretation"},
    {266, "FillOrder"},
    {269, "DocumentName"},
    {270, "ImageDescription"},
    {271, "Make"},
    {272, "Model"},
    {273, "StripOffsets"},
    {274, "Orientation"},
    {277, "SamplesPerPixel"},
    {278, "RowsPerStrip"},
    {279, "StripByteCounts"},
    {282, "XResolution"},
    {283, "YResolution"},
    {284, "PlanarConfiguration"},
    {285, "PageName"},
    {296, "ResolutionUnit"},
    {297, "PageNumber"},
    {305, "Software"},
    {306, "DateTime"},
    {315, "Artist"},
    {316, "HostComputer"},
    {317, "Predictor"},
    {320, "ColorMap"},
    {322, "TileWidth"},
    {323, "TileLength"},
    {324, "TileOffsets"},
    {325, "TileByteCounts"},
    {330, "SubIFDs"},
    {338, "ExtraSamples"},
    {339, "SampleFormat"},
    {340, "SMinSampleValue"},
    {341, "SMaxSampleValue"},
    {530, "YCbCrSubSampling"},
    {700, "XMP"},
    {33432, "Copyright"},
    {33723, "IPTC"},
    {34665, "ExifIFD"},
    {34675, "ICCProfile"},
    {TagImageJCounts, "ImageJ block sizes"},
    {TagImageJData, "ImageJ blocks"},
};

std::string nameOf(std::uint16_t tag)
{
    const auto found =
        std::find_if(std::begin(names), std::end(names), [&](const auto& row) { return row.tag == tag; });
    return found == std::end(names) ? "Tag " + std::to_string(tag) : found->name;
}

std::string numberText(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

// The number's two's complement in that many bytes.
std::int64_t asSigned(std::uint64_t number, std::size_t bytes)
{
    const auto shift = static_cast<int>(64 - 8 * bytes);
    return static_cast<std::int64_t>(number << shift) >> shift;
}

} // namespace

std::string TiffStructure::valueText(std::uint16_t type, std::span<const std::byte> raw) const
{
    const bool isSigned =
        type == TIFF_SBYTE || type == TIFF_SSHORT || type == TIFF_SLONG || type == TIFF_SLONG8;
    switch (type) {
    case TIFF_RATIONAL:
    case TIFF_SRATIONAL: {
        const std::uint64_t above = number(raw.first(4)), below = number(raw.subspan(4, 4));
        if (below == 0)
            return "-";
        return type == TIFF_RATIONAL ? numberText(static_cast<double>(above) / static_cast<double>(below))
                                     : numberText(static_cast<double>(asSigned(above, 4)) /
                                                  static_cast<double>(asSigned(below, 4)));
    }
    case TIFF_FLOAT:
        return numberText(std::bit_cast<float>(static_cast<std::uint32_t>(number(raw))));
    case TIFF_DOUBLE:
        return numberText(std::bit_cast<double>(number(raw)));
    default:
        return isSigned ? std::to_string(asSigned(number(raw), raw.size())) : std::to_string(number(raw));
    }
}

std::string TiffStructure::valuesText(const Entry& entry) const
{
    const std::vector<std::byte> raw = rawValues(entry, entry.type == TIFF_ASCII ? maxTextBytes : maxListed);
    if (entry.type == TIFF_ASCII) {
        const std::string text(reinterpret_cast<const char*>(raw.data()), raw.size());
        return text.substr(0, text.find('\0'));
    }
    const std::uint64_t listed = std::min(entry.count, maxListed);
    if (listed == 0 || raw.size() < listed)
        return "";
    const std::size_t size = raw.size() / listed;
    std::string text;
    for (std::uint64_t i = 0; i < listed; ++i)
        text += (i > 0 ? ", " : "") + valueText(entry.type, std::span(raw).subspan(i * size, size));
    return entry.count > listed ? text + ", ... (" + std::to_string(entry.count) + " values)" : text;
}

std::vector<TagText> TiffStructure::listing(std::uint64_t offset) const
{
    std::vector<TagText> list;
    for (const Entry& entry : entries(offset).list) {
        TagText tag{entry.tag, nameOf(entry.tag), ""};
        try {
            tag.value = valuesText(entry);
        } catch (const FormatError& error) {
            tag.value = std::string("(") + error.what() + ")";
        }
        list.push_back(std::move(tag));
    }
    return list;
}

} // namespace image
