// SPDX-License-Identifier: MIT
#include "widgets/picture/Codecs.h"
#include "widgets/picture/Palette.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <gif_lib.h>
#include <memory>
#include <string>
#include <vector>

namespace picture {

namespace {

struct Closer {
    void operator()(GifFileType* file) const
    {
        isReader ? DGifCloseFile(file, nullptr) : EGifCloseFile(file, nullptr);
    }
    bool isReader = true;
};
using GifFile = std::unique_ptr<GifFileType, Closer>;

[[noreturn]] void fail(int code)
{
    const char* reason = GifErrorString(code);
    throw FormatError(std::string("is damaged: ") + (reason ? reason : "unknown error"));
}

int readBytes(GifFileType* file, GifByteType* out, int count)
{
    Bytes& rest = *static_cast<Bytes*>(file->UserData);
    const std::size_t taken = std::min(rest.size(), static_cast<std::size_t>(count));
    std::memcpy(out, rest.data(), taken);
    rest = rest.subspan(taken);
    return static_cast<int>(taken);
}

int appendBytes(GifFileType* file, const GifByteType* from, int count)
{
    auto& out = *static_cast<std::vector<std::byte>*>(file->UserData);
    const auto* first = reinterpret_cast<const std::byte*>(from);
    out.insert(out.end(), first, first + count);
    return count;
}

void skipExtension(GifFileType* file, GraphicsControlBlock& control)
{
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(file, &code, &block) == GIF_ERROR)
        fail(file->Error);
    while (block) {
        if (code == GRAPHICS_EXT_FUNC_CODE)
            DGifExtensionToGCB(block[0], block + 1, &control);
        if (DGifGetExtensionNext(file, &block) == GIF_ERROR)
            fail(file->Error);
    }
}

// Reads up to the first image; nothing of it but its header.
void findImage(GifFileType* file, GraphicsControlBlock& control)
{
    for (GifRecordType record = UNDEFINED_RECORD_TYPE; record != IMAGE_DESC_RECORD_TYPE;) {
        if (DGifGetRecordType(file, &record) == GIF_ERROR)
            fail(file->Error);
        if (record == TERMINATE_RECORD_TYPE)
            throw FormatError("holds no image");
        if (record == EXTENSION_RECORD_TYPE)
            skipExtension(file, control);
    }
    if (DGifGetImageDesc(file) == GIF_ERROR)
        fail(file->Error);
}

// The rows of an image in the order in which the file holds them.
std::vector<int> rowOrder(int height, bool interlaced)
{
    static constexpr int starts[] = {0, 4, 2, 1}, steps[] = {8, 8, 4, 2};
    std::vector<int> rows;
    for (int pass = 0; pass < (interlaced ? 4 : 1); ++pass)
        for (int row = interlaced ? starts[pass] : 0; row < height; row += interlaced ? steps[pass] : 1)
            rows.push_back(row);
    return rows;
}

void putRow(Picture& picture, const GifImageDesc& area, int row, const std::vector<GifPixelType>& indices,
            const ColorMapObject& map, int transparent)
{
    if (area.Top + row >= picture.height)
        return;
    const int count = std::min(area.Width, picture.width - area.Left);
    for (int x = 0; x < count; ++x) {
        const int index = indices[static_cast<std::size_t>(x)];
        if (index == transparent || index >= map.ColorCount)
            continue;
        const GifColorType& color = map.Colors[index];
        const std::array<std::uint8_t, 4> pixel{color.Red, color.Green, color.Blue, 255};
        std::copy(pixel.begin(), pixel.end(), picture.at(area.Left + x, area.Top + row));
    }
}

} // namespace

Picture decodeGif(Bytes bytes)
{
    int error = 0;
    GifFile file(DGifOpen(&bytes, readBytes, &error));
    if (!file)
        fail(error);
    GraphicsControlBlock control{};
    control.TransparentColor = NO_TRANSPARENT_COLOR;
    findImage(file.get(), control);
    const GifImageDesc& area = file->Image;
    const ColorMapObject* map = area.ColorMap ? area.ColorMap : file->SColorMap;
    if (!map)
        throw FormatError("has no colours");
    checkSize(static_cast<std::uint64_t>(area.Width), static_cast<std::uint64_t>(area.Height));
    Picture picture = makePicture(static_cast<std::uint64_t>(file->SWidth ? file->SWidth : area.Width),
                                  static_cast<std::uint64_t>(file->SHeight ? file->SHeight : area.Height));
    std::vector<GifPixelType> indices(static_cast<std::size_t>(area.Width));
    for (int row : rowOrder(area.Height, area.Interlace)) {
        if (DGifGetLine(file.get(), indices.data(), area.Width) == GIF_ERROR)
            fail(file->Error);
        putRow(picture, area, row, indices, *map, control.TransparentColor);
    }
    return picture;
}

namespace {

using ColorMap = std::unique_ptr<ColorMapObject, decltype(&GifFreeMapObject)>;

// GIF counts colours in powers of two.
ColorMap colorMapOf(const Palette& palette)
{
    int size = 2;
    while (size < static_cast<int>(palette.colors.size()))
        size *= 2;
    ColorMap map(GifMakeMapObject(size, nullptr), GifFreeMapObject);
    for (std::size_t i = 0; i < palette.colors.size(); ++i) {
        const std::uint32_t color = palette.colors[i];
        map->Colors[i] = {static_cast<GifByteType>(color >> 16), static_cast<GifByteType>(color >> 8),
                          static_cast<GifByteType>(color)};
    }
    return map;
}

bool putTransparency(GifFileType* file, int index)
{
    GifByteType block[4];
    const GraphicsControlBlock control{DISPOSAL_UNSPECIFIED, false, 0, index};
    EGifGCBToExtension(&control, block);
    return EGifPutExtension(file, GRAPHICS_EXT_FUNC_CODE, sizeof block, block) == GIF_OK;
}

bool putRows(GifFileType* file, Palette& palette, int width, int height)
{
    for (int y = 0; y < height; ++y)
        if (EGifPutLine(file, &palette.indices[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)],
                        width) == GIF_ERROR)
            return false;
    return true;
}

} // namespace

std::vector<std::byte> encodeGif(const Picture& picture)
{
    constexpr int maxSide = 65535;
    if (picture.width > maxSide || picture.height > maxSide)
        throw FormatError("is too large for a GIF");
    Palette palette = paletteOf(picture);
    const ColorMap map = colorMapOf(palette);
    std::vector<std::byte> out;
    int error = 0;
    GifFile file(EGifOpen(&out, appendBytes, &error), Closer{false});
    if (!file)
        throw FormatError("cannot be made a GIF");
    EGifSetGifVersion(file.get(), true);
    const bool done =
        EGifPutScreenDesc(file.get(), picture.width, picture.height, map->BitsPerPixel, 0, map.get()) ==
            GIF_OK &&
        (palette.transparent < 0 || putTransparency(file.get(), palette.transparent)) &&
        EGifPutImageDesc(file.get(), 0, 0, picture.width, picture.height, false, nullptr) == GIF_OK &&
        putRows(file.get(), palette, picture.width, picture.height);
    file.reset(); // writes the end
    if (!done)
        throw FormatError("cannot be made a GIF");
    return out;
}

} // namespace picture
