// SPDX-License-Identifier: MIT
#include "platform/image/Formats.h"

#include "platform/image/Error.h"
#include "platform/image/InputFile.h"
#include "platform/image/PictureImage.h"
#include "platform/image/TiffImage.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string>
#include <system_error>

namespace image {
namespace {

using namespace std::string_view_literals;

bool isZarr(const std::filesystem::path& folder)
{
    return std::ranges::any_of(std::array{"zarr.json", ".zattrs", ".zgroup"}, [&](const char* name) {
        std::error_code error;
        return std::filesystem::exists(folder / name, error);
    });
}

constexpr const char* convert = "convert it to OME-TIFF with a free converter";
constexpr const char* unpack = "unpack it first";

// clang-format off
constexpr Format formats[] = {
    // name                 beginnings                                     folder   open           remedy
    {"a TIFF file",         {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv},  nullptr, openTiffImage, nullptr},
    {"an OME companion",    xmlBeginnings,                                 nullptr, openTiffImage, nullptr},
    {"an OME-Zarr folder",  {},                                            isZarr,  nullptr,       convert},
    {"a PNG picture",       {"\x89PNG"},                                   nullptr, openPng,       nullptr},
    {"a JPEG picture",      {"\xff\xd8\xff"},                              nullptr, openJpeg,      nullptr},
    {"a GIF picture",       {"GIF8"},                                      nullptr, openGif,       nullptr},
    {"an HDF5 file",        {"\x89HDF"},                                   nullptr, nullptr,       convert},
    {"a compound document", {"\xd0\xcf\x11\xe0"},                          nullptr, nullptr,       convert},
    {"a packed file",       {"PK\3\4", "\x1f\x8b"},                        nullptr, nullptr,       unpack},
};
// clang-format on

// The format of a file or folder; null: none of them.
const Format* formatOf(const std::filesystem::path& path)
{
    std::error_code error;
    const bool folder = std::filesystem::is_directory(path, error);
    const auto found = std::ranges::find_if(formats, [&](const Format& format) {
        return folder ? format.holds && format.holds(path) : beginsWith(path, format.beginnings);
    });
    return found == std::end(formats) ? nullptr : found;
}

} // namespace

bool beginsWith(const std::filesystem::path& file, const std::array<std::string_view, 4>& beginnings)
{
    std::array<char, 16> head = {};
    const std::size_t count = InputFile(file).readSome(0, std::as_writable_bytes(std::span(head)));
    const std::string_view text(head.data(), count);
    return std::ranges::any_of(beginnings, [&](std::string_view beginning) {
        return !beginning.empty() && text.starts_with(beginning);
    });
}

bool mayBeImage(const std::filesystem::path& path)
{
    try {
        const Format* const format = formatOf(path);
        return format && format->open;
    } catch (const FormatError&) {
        return false; // it cannot be read
    }
}

std::unique_ptr<ImageFile> openByFormat(const std::filesystem::path& path)
{
    const Format* const format = formatOf(path);
    if (!format && std::filesystem::is_directory(path))
        throw FormatError("it is a folder");
    if (!format)
        throw FormatError("it is not a TIFF file; if it is an image, " + std::string(convert));
    if (!format->open)
        throw FormatError("it is " + std::string(format->name) + ", which cannot be read; " + format->remedy);
    return format->open(path);
}

} // namespace image
