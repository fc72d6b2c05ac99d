// SPDX-License-Identifier: MIT
// Window dumps, file version 7: a header, the window's name, the colour map, the rows. All numbers of the
// header are most significant byte first; the rows are in the order that the header tells.
#include "widgets/picture/Codecs.h"

#include <X11/X.h>
#include <X11/XWDFile.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <vector>

namespace picture {

namespace {

static_assert(sizeof(XWDFileHeader) == sz_XWDheader && sizeof(XWDColor) == sz_XWDColor);
constexpr std::size_t headerFields = sz_XWDheader / sizeof(CARD32);

CARD32 swapped(CARD32 value)
{
    return std::endian::native == std::endian::little ? __builtin_bswap32(value) : value;
}

// In either direction.
XWDFileHeader swapped(const XWDFileHeader& header)
{
    auto fields = std::bit_cast<std::array<CARD32, headerFields>>(header);
    for (CARD32& field : fields)
        field = swapped(field);
    return std::bit_cast<XWDFileHeader>(fields);
}

Bytes part(Bytes bytes, std::uint64_t start, std::uint64_t count)
{
    if (start > bytes.size() || count > bytes.size() - start)
        throw FormatError("is cut short");
    return bytes.subspan(static_cast<std::size_t>(start), static_cast<std::size_t>(count));
}

// A run of bits inside a pixel and its value stretched to 0..255.
struct Channel {
    int shift, bits;
    explicit Channel(CARD32 mask) : shift(mask ? std::countr_zero(mask) : 0), bits(std::popcount(mask)) {}
    std::uint8_t of(CARD32 pixel) const
    {
        if (bits == 0)
            return 0;
        const std::uint64_t top = (std::uint64_t{1} << bits) - 1;
        return static_cast<std::uint8_t>(((pixel >> shift & top) * 255 + top / 2) / top);
    }
};

class Dump {
public:
    explicit Dump(Bytes bytes);
    Picture picture() const;

private:
    CARD32 pixelAt(std::uint64_t row, std::uint64_t column) const;
    std::array<std::uint8_t, 3> colorOf(CARD32 pixel) const;
    void checkForm() const;

    XWDFileHeader header{};
    bool direct = false; // pixels hold the colours themselves
    Bytes rows;
    std::vector<std::array<std::uint8_t, 3>> map;
};

void Dump::checkForm() const
{
    const CARD32 bits = header.bits_per_pixel;
    const bool bitmap = header.pixmap_format != ZPixmap && header.pixmap_depth == 1;
    const bool known = bits == 1 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    if ((header.pixmap_format != ZPixmap && !bitmap) || !known || (bitmap && bits != 1))
        throw FormatError("has a form of pixels that is not supported");
    const std::uint64_t needed = (std::uint64_t{header.pixmap_width} * bits + 7) / 8;
    if (header.bytes_per_line < needed)
        throw FormatError("has rows that are too short");
    constexpr CARD32 maxColors = 65536;
    if (header.ncolors > maxColors)
        throw FormatError("has too many colours");
}

Dump::Dump(Bytes bytes)
{
    std::memcpy(&header, part(bytes, 0, sz_XWDheader).data(), sz_XWDheader);
    header = swapped(header);
    checkSize(header.pixmap_width, header.pixmap_height);
    checkForm();
    direct = header.visual_class == TrueColor || header.visual_class == DirectColor;
    const Bytes colors = part(bytes, header.header_size, std::uint64_t{header.ncolors} * sz_XWDColor);
    for (CARD32 i = 0; i < header.ncolors; ++i) {
        const Bytes color = colors.subspan(i * sz_XWDColor, sz_XWDColor);
        // The high bytes of the three 16-bit values that follow the 32-bit pixel.
        map.push_back({std::to_integer<std::uint8_t>(color[4]), std::to_integer<std::uint8_t>(color[6]),
                       std::to_integer<std::uint8_t>(color[8])});
    }
    rows = part(bytes, std::uint64_t{header.header_size} + colors.size(),
                std::uint64_t{header.bytes_per_line} * header.pixmap_height);
}

CARD32 Dump::pixelAt(std::uint64_t row, std::uint64_t column) const
{
    const std::uint64_t bit = column * header.bits_per_pixel;
    const Bytes line = rows.subspan(row * header.bytes_per_line, header.bytes_per_line);
    if (header.bits_per_pixel == 1) {
        const auto byte = std::to_integer<unsigned>(line[bit / 8]);
        return header.bitmap_bit_order == MSBFirst ? byte >> (7 - bit % 8) & 1 : byte >> (bit % 8) & 1;
    }
    CARD32 pixel = 0;
    const std::uint64_t size = header.bits_per_pixel / 8;
    for (std::uint64_t i = 0; i < size; ++i) {
        const std::uint64_t from = header.byte_order == MSBFirst ? i : size - 1 - i;
        pixel = pixel << 8 | std::to_integer<CARD32>(line[bit / 8 + from]);
    }
    return pixel;
}

std::array<std::uint8_t, 3> Dump::colorOf(CARD32 pixel) const
{
    if (direct)
        return {Channel(header.red_mask).of(pixel), Channel(header.green_mask).of(pixel),
                Channel(header.blue_mask).of(pixel)};
    if (pixel < map.size())
        return map[pixel];
    const std::uint8_t grey =
        header.bits_per_pixel == 1 ? (pixel ? 255 : 0) : static_cast<std::uint8_t>(pixel & 0xFF);
    return {grey, grey, grey};
}

Picture Dump::picture() const
{
    Picture picture = makePicture(header.pixmap_width, header.pixmap_height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const auto color = colorOf(pixelAt(static_cast<std::uint64_t>(y), static_cast<std::uint64_t>(x)));
            std::copy(color.begin(), color.end(), picture.at(x, y));
            picture.at(x, y)[3] = 255;
        }
    }
    return picture;
}

constexpr char windowName[] = "picture";

XWDFileHeader headerOf(const Picture& picture)
{
    XWDFileHeader header{};
    header.header_size = sz_XWDheader + sizeof windowName;
    header.file_version = XWD_FILE_VERSION;
    header.pixmap_format = ZPixmap;
    header.pixmap_depth = 24;
    header.pixmap_width = header.window_width = static_cast<CARD32>(picture.width);
    header.pixmap_height = header.window_height = static_cast<CARD32>(picture.height);
    header.byte_order = header.bitmap_bit_order = MSBFirst;
    header.bitmap_unit = header.bitmap_pad = header.bits_per_pixel = 32;
    header.bytes_per_line = header.pixmap_width * 4;
    header.visual_class = TrueColor;
    header.red_mask = 0xFF0000;
    header.green_mask = 0xFF00;
    header.blue_mask = 0xFF;
    header.bits_per_rgb = 8;
    header.colormap_entries = 256;
    return header;
}

} // namespace

Picture decodeXwd(Bytes bytes)
{
    return Dump(bytes).picture();
}

std::vector<std::byte> encodeXwd(const Picture& picture)
{
    const auto header = std::bit_cast<std::array<std::byte, sz_XWDheader>>(swapped(headerOf(picture)));
    std::vector<std::byte> bytes(header.begin(), header.end());
    for (const char c : windowName)
        bytes.push_back(static_cast<std::byte>(c));
    const std::vector<std::uint8_t> rgb = flatten(picture);
    bytes.reserve(bytes.size() + picture.pixelCount() * 4);
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        if (i % 3 == 0)
            bytes.push_back(std::byte{0});
        bytes.push_back(static_cast<std::byte>(rgb[i]));
    }
    return bytes;
}

} // namespace picture
