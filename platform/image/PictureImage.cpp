// SPDX-License-Identifier: MIT
#include "platform/image/PictureImage.h"

#include "platform/image/Colors.h"
#include "platform/image/Error.h"
#include "platform/image/InputFile.h"
#include "widgets/picture/Samples.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace image {
namespace {

constexpr std::uint64_t maxPictureFile = std::uint64_t{1} << 29; // bytes

thread_local std::string lastReadError;

template<typename Value>
void copyValues(const picture::Samples& samples, int wavelength, const PixelRect& rect, std::span<float> out)
{
    const auto perPixel = static_cast<std::size_t>(samples.perPixel);
    const auto width = static_cast<std::size_t>(samples.width);
    std::size_t filled = 0;
    for (int y = rect.yFirst; y <= rect.yLast; ++y) {
        std::size_t at =
            (static_cast<std::size_t>(y) * width + static_cast<std::size_t>(rect.xFirst)) * perPixel +
            static_cast<std::size_t>(wavelength);
        for (int x = rect.xFirst; x <= rect.xLast; ++x, at += perPixel) {
            Value value;
            std::memcpy(&value, &samples.bytes[at * sizeof value], sizeof value);
            out[filled++] = static_cast<float>(value);
        }
    }
}

class PictureImage final : public ImageFile {
public:
    PictureImage(const std::filesystem::path& path, const char* format, picture::Samples decoded)
        : samples(std::move(decoded))
    {
        description.path = path;
        description.width = samples.width;
        description.height = samples.height;
        description.sizeW = samples.perPixel;
        description.pixelType = samples.bits == 1  ? PixelType::Bit
                                : samples.bits > 8 ? PixelType::UInt16
                                                   : PixelType::UInt8;
        description.format = format;
        setWavelengths();
    }

    const ImageInfo& info() const override { return description; }

    bool hasSection(const SectionIndex& section) const override
    {
        return section.z == 0 && section.t == 0 && section.p == 0 && section.w >= 0 &&
               section.w < description.sizeW;
    }

    bool read(const SectionIndex& section, const PixelRect& rect, std::span<float> out) override
    {
        const bool inside = rect.xFirst >= 0 && rect.yFirst >= 0 && rect.xLast >= rect.xFirst &&
                            rect.yLast >= rect.yFirst && rect.xLast < samples.width &&
                            rect.yLast < samples.height;
        if (!hasSection(section))
            return fail("the image has no such section");
        if (!inside)
            return fail("the rectangle is not inside the image");
        if (out.size() != static_cast<std::size_t>(std::int64_t{rect.width()} * rect.height()))
            return fail("the buffer does not have the rectangle's size");
        if (samples.bits > 8)
            copyValues<std::uint16_t>(samples, section.w, rect, out);
        else
            copyValues<std::uint8_t>(samples, section.w, rect, out);
        return true;
    }

    bool readLevel(const SectionIndex& section, int level, const PixelRect& rect,
                   std::span<float> out) override
    {
        return level == 0 ? read(section, rect, out) : fail("the image has no such reduced copy");
    }

    std::optional<double> extendedHeader(const SectionIndex&, int) const override { return std::nullopt; }
    std::string lastError() const override { return lastReadError; }

private:
    void setWavelengths()
    {
        static constexpr std::array names{"Red", "Green", "Blue"};
        static constexpr std::array colors{base::Red, base::Green, base::Blue};
        const auto count = static_cast<std::size_t>(description.sizeW);
        description.wavelengths.resize(count);
        std::vector<ColorHint> hints(count);
        for (std::size_t w = 0; count == names.size() && w < count; ++w) {
            description.wavelengths[w].name = names[w];
            hints[w].color = base::displayColors[static_cast<std::size_t>(colors[w])].rgb;
        }
        assignColors(description.wavelengths, hints);
    }

    bool fail(const char* reason) const
    {
        lastReadError = "Cannot read \"" + description.path.string() + "\": " + reason + ".";
        return false;
    }

    ImageInfo description;
    const picture::Samples samples;
};

using Decoder = picture::Samples (*)(picture::Bytes);

std::unique_ptr<ImageFile> openPicture(const std::filesystem::path& path, const char* format, Decoder decode)
{
    const InputFile file(path);
    const std::uint64_t size = file.size();
    if (size > maxPictureFile)
        throw FormatError("it is too large for a picture");
    std::vector<std::byte> bytes(size);
    file.read(0, bytes);
    try {
        return std::make_unique<PictureImage>(path, format, decode(bytes));
    } catch (const picture::FormatError& error) {
        throw FormatError(std::string("it ") + error.what());
    }
}

} // namespace

std::unique_ptr<ImageFile> openPng(const std::filesystem::path& path)
{
    return openPicture(path, "PNG", picture::samplesOfPng);
}

std::unique_ptr<ImageFile> openJpeg(const std::filesystem::path& path)
{
    return openPicture(path, "JPEG", picture::samplesOfJpeg);
}

std::unique_ptr<ImageFile> openGif(const std::filesystem::path& path)
{
    return openPicture(path, "GIF", picture::samplesOfGif);
}

} // namespace image
