// SPDX-License-Identifier: MIT
#include "platform/image/Dataset.h"

#include "platform/base/Limits.h"
#include "platform/image/Dyes.h"
#include "platform/image/Error.h"
#include "platform/image/Formats.h"
#include "platform/image/Plausible.h"

#include <algorithm>
#include <filesystem>
#include <span>

namespace image {

constexpr std::int64_t maxSections = 1 << 24;
constexpr std::uint64_t maxXmlBytes = 64u << 20;

std::uint32_t Dataset::planesPerPosition() const
{
    return static_cast<std::uint32_t>(info.sizeZ) * info.sizeT * channels();
}

std::uint32_t Dataset::key(const PlaneIndex& index) const
{
    const auto p = static_cast<std::size_t>(index.p);
    std::uint32_t key = 0, stride = 1;
    for (const char dimension : p < positions.size() ? positions[p].order : PositionValues().order) {
        const int at = dimension == 'Z' ? index.z : dimension == 'C' ? index.channel : index.t;
        const int size = dimension == 'Z' ? info.sizeZ : dimension == 'C' ? channels() : info.sizeT;
        key += stride * static_cast<std::uint32_t>(at);
        stride *= static_cast<std::uint32_t>(size);
    }
    return static_cast<std::uint32_t>(index.p) * stride + key;
}

PlaneIndex Dataset::planeIndex(const SectionIndex& section) const
{
    return {section.z, section.w / samplesPerPlane, section.t, section.p};
}

const PlaneValues* Dataset::valuesOf(const SectionIndex& section) const
{
    const std::uint32_t wanted = key(planeIndex(section));
    const auto found = std::ranges::lower_bound(values, wanted, {}, &PlaneValues::key);
    return found != values.end() && found->key == wanted ? &*found : nullptr;
}

std::optional<double> Dataset::time(const SectionIndex& section) const
{
    const PlaneValues* const known = valuesOf(section);
    if (known && known->deltaT)
        return known->deltaT;
    const auto p = static_cast<std::size_t>(section.p);
    if (p >= positions.size() || !positions[p].timeIncrement)
        return std::nullopt;
    return section.t * *positions[p].timeIncrement;
}

std::optional<double> Dataset::bias(const SectionIndex& section) const
{
    const auto p = static_cast<std::size_t>(section.p);
    if (p >= positions.size())
        return std::nullopt;
    const auto& known = positions[p].bias;
    const bool perWavelength = static_cast<int>(known.size()) == info.sizeW;
    const auto at = static_cast<std::size_t>(perWavelength ? section.w : section.w / samplesPerPlane);
    return at < known.size() ? known[at] : std::nullopt;
}

void setSizes(Dataset& dataset, std::int64_t z, std::int64_t wavelengths, std::int64_t t, std::int64_t p)
{
    std::int64_t sections = 1;
    for (const std::int64_t size : {z, wavelengths, t, p}) {
        if (size < 1)
            throw FormatError("its metadata claims a dimension of " + std::to_string(size));
        if (size > maxSections || sections * size > maxSections)
            throw FormatError("its metadata claims more than " + std::to_string(maxSections) + " sections");
        sections *= size;
    }
    if (wavelengths > base::maxWavelengths)
        throw FormatError("it has " + std::to_string(wavelengths) + " wavelengths, more than " +
                          std::to_string(base::maxWavelengths));
    dataset.info.sizeZ = static_cast<int>(z);
    dataset.info.sizeW = static_cast<int>(wavelengths);
    dataset.info.sizeT = static_cast<int>(t);
    dataset.info.sizeP = static_cast<int>(p);
}

namespace {

PixelType pixelTypeOf(const Plane& plane)
{
    switch (plane.type) {
    case SampleType::Bits:
        return plane.bits == 1 ? PixelType::Bit : plane.bits < 8 ? PixelType::UInt8 : PixelType::UInt16;
    case SampleType::U8:
        return PixelType::UInt8;
    case SampleType::I8:
        return PixelType::Int8;
    case SampleType::U16:
        return PixelType::UInt16;
    case SampleType::I16:
        return PixelType::Int16;
    case SampleType::U24:
    case SampleType::U32:
        return PixelType::UInt32;
    case SampleType::I32:
        return PixelType::Int32;
    case SampleType::F16:
    case SampleType::F32:
        return PixelType::Float32;
    default:
        return PixelType::Float64;
    }
}

} // namespace

void setGeometry(Dataset& dataset, const Plane& plane)
{
    dataset.info.width = plane.width();
    dataset.info.height = plane.height();
    dataset.info.pixelType = pixelTypeOf(plane);
}

bool isRgb(const Plane& plane)
{
    constexpr int grayscale = 1, palette = 3, mask = 4, logLuminance = 32844, filterArray = 32803;
    const int p = plane.directory.photometric;
    const bool single = p <= grayscale || p == palette || p == mask || p == logLuminance || p == filterArray;
    return plane.sampleCount >= 3 && !single;
}

std::optional<Rgb> paletteColor(const Directory& directory)
{
    const std::vector<std::uint16_t>& map = directory.colorMap;
    const std::size_t entries = map.size() / 3;
    if (directory.photometric != 3 || entries == 0)
        return std::nullopt;
    const auto sum = [&](std::size_t i) { return map[i] + map[entries + i] + map[2 * entries + i]; };
    std::size_t best = 0;
    for (std::size_t i = 1; i < entries; ++i)
        if (sum(i) > sum(best))
            best = i;
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(map[i] >> 8); };
    return Rgb{byte(best), byte(entries + best), byte(2 * entries + best)};
}

namespace {

std::string sampleName(const std::string& channel, int sample)
{
    static const char* const colors[3] = {"Red", "Green", "Blue"};
    return channel.empty() ? colors[sample] : channel + " " + colors[sample];
}

} // namespace

void setSpacing(ImageInfo& info, const std::array<std::optional<double>, 3>& microns)
{
    const std::optional<float> x = plausibleSpacing(microns[0]), y = plausibleSpacing(microns[1]),
                               z = plausibleSpacing(microns[2]);
    info.calibrated = x || y;
    if (!info.calibrated)
        return;
    info.zCalibrated = z.has_value();
    info.spacing[0] = x ? *x : *y;
    info.spacing[1] = y ? *y : *x;
    info.spacing[2] = z.value_or(1);
}

void setWavelengths(Dataset& dataset, const Plane& plane, std::span<ColorHint> hints,
                    std::span<const std::string> channelNames)
{
    static constexpr int colors[3] = {base::Red, base::Green, base::Blue};
    dataset.info.wavelengths.resize(static_cast<std::size_t>(dataset.info.sizeW));
    for (int w = 0; w < dataset.info.sizeW; ++w) {
        const auto channel = static_cast<std::size_t>(w / dataset.samplesPerPlane);
        const int sample = w % dataset.samplesPerPlane;
        const std::string name = channel < channelNames.size() ? channelNames[channel] : std::string();
        const bool rgb = isRgb(plane) && dataset.samplesPerPlane >= 3 && sample < 3;
        dataset.info.wavelengths[static_cast<std::size_t>(w)].name =
            plausibleText(rgb ? sampleName(name, sample) : name);
        const ColorHint& hint = hints[static_cast<std::size_t>(w)];
        const double dye = rgb ? 0 : dyeEmission(name).value_or(0);
        dataset.info.wavelengths[static_cast<std::size_t>(w)].nanometres =
            static_cast<float>(hint.emission.value_or(hint.excitation.value_or(dye)));
        if (rgb)
            hints[static_cast<std::size_t>(w)].color =
                base::displayColors[static_cast<std::size_t>(colors[sample])].rgb;
    }
    assignColors(dataset.info.wavelengths, hints);
}

std::string counted(std::uint64_t count, const std::string& thing)
{
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

namespace {

std::string readText(const std::filesystem::path& path)
{
    const InputFile file(path);
    if (file.size() > maxXmlBytes)
        throw FormatError("it is not a TIFF file");
    std::string text(file.size(), '\0');
    file.read(0, std::as_writable_bytes(std::span(text)));
    return text;
}

} // namespace

OpenedFile openForReading(const std::filesystem::path& path)
{
    OpenedFile opened{path, nullptr, {}};
    if (beginsWith(path, xmlBeginnings)) {
        opened.description = readText(path);
        return opened;
    }
    opened.tiff = std::make_shared<TiffFile>(path);
    if (!opened.tiff->damage().empty())
        opened.remarks.push_back("The file is damaged after page " +
                                 std::to_string(opened.tiff->pages().size()) + ": " + opened.tiff->damage() +
                                 ".");
    try {
        opened.description = opened.tiff->tags().text(opened.tiff->pages()[0].offset, TagDescription);
    } catch (const FormatError& error) {
        opened.remarks.push_back(std::string("Its description is not there: ") + error.what() + ".");
    }
    return opened;
}

} // namespace image
