// SPDX-License-Identifier: MIT
#include "widgets/picture/Codecs.h"
#include "widgets/picture/OutputFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <fstream>

namespace picture {

namespace fs = std::filesystem;

namespace {

bool startsWith(Bytes bytes, std::string_view signature)
{
    return bytes.size() >= signature.size() &&
           std::memcmp(bytes.data(), signature.data(), signature.size()) == 0;
}

// The size of the header and the version follow each other, most significant byte first.
bool looksLikeXwd(Bytes bytes)
{
    constexpr std::size_t fixedHeader = 100;
    constexpr std::string_view version("\0\0\0\7", 4);
    return bytes.size() >= fixedHeader && startsWith(bytes, std::string_view("\0\0", 2)) &&
           startsWith(bytes.subspan(4), version);
}

struct Codec {
    Format format;
    const char* name;
    std::array<const char*, 2> extensions;
    bool (*recognise)(Bytes);
    Picture (*decode)(Bytes);
    std::vector<std::byte> (*encode)(const Picture&);
};

const Codec codecs[] = {
    {Format::Png,
     "PNG",
     {".png", ".png"},
     [](Bytes bytes) { return startsWith(bytes, "\x89PNG\r\n\x1a\n"); },
     decodePng,
     encodePng},
    {Format::Jpeg,
     "JPEG",
     {".jpg", ".jpeg"},
     [](Bytes bytes) { return startsWith(bytes, "\xff\xd8\xff"); },
     decodeJpeg,
     encodeJpeg},
    {Format::Gif,
     "GIF",
     {".gif", ".gif"},
     [](Bytes bytes) { return startsWith(bytes, "GIF87a") || startsWith(bytes, "GIF89a"); },
     decodeGif,
     encodeGif},
    {Format::Xpm,
     "XPM",
     {".xpm", ".xpm"},
     [](Bytes bytes) { return startsWith(bytes, "/* XPM */"); },
     decodeXpm,
     encodeXpm},
    {Format::Xwd, "XWD", {".xwd", ".xwd"}, looksLikeXwd, decodeXwd, encodeXwd},
};

const Codec* codecOf(Bytes bytes)
{
    const auto* codec = std::find_if(std::begin(codecs), std::end(codecs),
                                     [&](const Codec& each) { return each.recognise(bytes); });
    return codec == std::end(codecs) ? nullptr : codec;
}

const Codec& codecOf(Format format)
{
    return *std::find_if(std::begin(codecs), std::end(codecs),
                         [&](const Codec& each) { return each.format == format; });
}

Picture decodeNamed(const std::string& subject, Bytes bytes)
{
    const Codec* codec = codecOf(bytes);
    if (!codec)
        throw PictureError(subject + " is no PNG, JPEG, GIF, XPM or XWD picture.");
    try {
        return codec->decode(bytes);
    } catch (const FormatError& error) {
        throw PictureError(subject + " (" + codec->name + ") " + error.what() + ".");
    }
}

std::vector<std::byte> contentOf(const fs::path& path)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        throw PictureError(path.string() +
                           (fs::exists(path, error) ? " is not a regular file." : " does not exist."));
    if (fs::file_size(path, error) > maxPictureBytes)
        throw PictureError(path.string() + " is too large for a picture.");
    std::ifstream file(path, std::ios::binary);
    std::vector<std::byte> bytes(static_cast<std::size_t>(fs::file_size(path, error)));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file)
        throw PictureError(path.string() + " cannot be read.");
    return bytes;
}

} // namespace

std::optional<Format> formatOfContent(std::span<const std::byte> bytes)
{
    const Codec* codec = codecOf(bytes);
    return codec ? std::optional(codec->format) : std::nullopt;
}

std::optional<Format> formatOfName(const fs::path& path)
{
    const std::string extension = extensionOf(path);
    for (const Codec& codec : codecs)
        if (std::count(codec.extensions.begin(), codec.extensions.end(), extension) > 0)
            return codec.format;
    return std::nullopt;
}

Picture decode(std::span<const std::byte> bytes)
{
    return decodeNamed("The picture", bytes);
}

Picture read(const fs::path& path)
{
    return decodeNamed(path.string(), contentOf(path));
}

std::vector<std::byte> encode(const Picture& picture, Format format)
{
    if (picture.pixelCount() == 0)
        throw PictureError("The picture has no pixels.");
    try {
        return codecOf(format).encode(picture);
    } catch (const FormatError& error) {
        throw PictureError(std::string("The picture ") + error.what() + ".");
    }
}

void write(const Picture& picture, const fs::path& path)
{
    const std::optional<Format> format = formatOfName(path);
    if (!format)
        throw PictureError(path.string() +
                           " cannot be written: its name should end with png, jpg, gif, xpm or xwd.");
    if (const std::string problem = replaceFile(path, encode(picture, *format)); !problem.empty())
        throw PictureError(problem);
}

} // namespace picture
