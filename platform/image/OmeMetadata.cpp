// SPDX-License-Identifier: MIT
#include "platform/image/OmeMetadata.h"

#include "platform/image/Error.h"
#include "platform/image/OmeXml.h"
#include "platform/image/Plausible.h"
#include "platform/image/Units.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <pugixml.hpp>
#include <span>

namespace image {

using pugi::xml_node;

std::string_view localName(xml_node node)
{
    const std::string_view name = node.name();
    const auto colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

namespace {

xml_node child(xml_node parent, std::string_view name)
{
    return parent.find_child([&](xml_node node) { return localName(node) == name; });
}

template<class Action> void forEachChild(xml_node parent, std::string_view name, Action action)
{
    for (const xml_node node : parent.children())
        if (localName(node) == name)
            action(node);
}

std::optional<double> number(std::string_view text)
{
    const auto start = text.find_first_not_of(" \t\r\n+");
    if (start == std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(start);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

// The value of an attribute; null: the element has no such attribute.
using Value = const char*;

Value valueOf(xml_node node, const char* attribute)
{
    const pugi::xml_attribute found = node.attribute(attribute);
    return found ? found.value() : nullptr;
}

// The values of several attributes, found in one pass: a document has hundreds of thousands of planes.
template<std::size_t n> std::array<Value, n> valuesOf(xml_node node, const std::string_view (&names)[n])
{
    std::array<Value, n> result = {};
    for (const pugi::xml_attribute attribute : node.attributes()) {
        const auto at = std::ranges::find(names, std::string_view(attribute.name())) - names;
        if (at < static_cast<std::ptrdiff_t>(n) && !result[static_cast<std::size_t>(at)])
            result[static_cast<std::size_t>(at)] = attribute.value();
    }
    return result;
}

std::optional<double> number(Value text)
{
    return text ? number(std::string_view(text)) : std::nullopt;
}

// Whole numbers beyond any image become a value that every check refuses.
template<class Int = std::int64_t> std::optional<Int> integer(Value text)
{
    constexpr double limit = std::min(static_cast<double>(std::numeric_limits<Int>::max()), 1e15);
    const std::optional<double> value = number(text);
    if (!value)
        return std::nullopt;
    return static_cast<Int>(std::clamp(*value, -limit, limit));
}

std::optional<std::int64_t> integer(xml_node node, const char* attribute)
{
    return integer(valueOf(node, attribute));
}

using UnitScale = std::optional<double> (*)(std::string_view);

// A value times what its unit means; without a unit the value is in the default unit already.
std::optional<double> quantity(Value text, Value unit, UnitScale scale)
{
    const std::optional<double> value = number(text);
    if (!value || !unit)
        return value;
    const std::optional<double> factor = scale(unit);
    return factor ? std::optional(*value * *factor) : std::nullopt;
}

// The attributes of value and unit are called, for instance, PhysicalSizeX and PhysicalSizeXUnit.
std::optional<double> quantity(xml_node node, const std::string& attribute, UnitScale scale)
{
    return quantity(valueOf(node, attribute.c_str()), valueOf(node, (attribute + "Unit").c_str()), scale);
}

std::optional<double> nanometresPer(std::string_view unit)
{
    const std::optional<double> microns = micronsPer(unit);
    return microns ? std::optional(*microns * 1000) : std::nullopt;
}

std::optional<double> wavelength(xml_node node, const char* attribute)
{
    const std::optional<double> value = quantity(node, attribute, nanometresPer);
    return value && *value > 1 && *value < 1e6 ? value : std::nullopt;
}

std::optional<SampleType> sampleType(std::string_view name)
{
    struct Row {
        std::string_view name;
        SampleType type;
    };
    static constexpr Row rows[] = {
        {"bit", SampleType::Bits},   {"int8", SampleType::I8},    {"uint8", SampleType::U8},
        {"int16", SampleType::I16},  {"uint16", SampleType::U16}, {"int32", SampleType::I32},
        {"uint32", SampleType::U32}, {"float", SampleType::F32},  {"double", SampleType::F64},
    };
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    for (const Row& row : rows)
        if (row.name == lower)
            return row.type;
    return std::nullopt;
}

using Detectors = std::map<std::string, double>; // Offset by ID

// Limits far beyond any real set of images.
constexpr std::size_t maxImages = 65536, maxChannels = 4 * maxImages, maxFiles = 65536;

// What the elements of a document refer to, and how much was made of them.
struct Context {
    Detectors detectors;
    std::map<OmeFile, std::uint32_t> files;
    std::size_t channels = 0;
};

void refuseMoreThan(std::size_t limit, std::size_t count, const char* things)
{
    if (count > limit)
        throw FormatError("its OME metadata describes more than " + std::to_string(limit) + " " + things);
}

std::size_t countOf(xml_node parent, std::string_view name)
{
    std::size_t count = 0;
    forEachChild(parent, name, [&](xml_node) { ++count; });
    return count;
}

Detectors detectors(xml_node root)
{
    Detectors result;
    forEachChild(root, "Instrument", [&](xml_node instrument) {
        forEachChild(instrument, "Detector", [&](xml_node detector) {
            if (const auto offset = plausible(number(valueOf(detector, "Offset"))))
                result[detector.attribute("ID").value()] = *offset;
        });
    });
    return result;
}

// A Channel, or the LogicalChannel of schemas before 2009.
OmeChannel channel(xml_node node, const Detectors& known)
{
    OmeChannel result;
    result.name = plausibleText(node.attribute("Name").value());
    result.samples =
        static_cast<int>(std::clamp<std::int64_t>(integer(node, "SamplesPerPixel").value_or(0), 0, 4096));
    result.hint.emission = wavelength(node, "EmissionWavelength");
    result.hint.excitation = wavelength(node, "ExcitationWavelength");
    if (!result.hint.emission)
        result.hint.emission = wavelength(node, "EmWave");
    if (!result.hint.excitation)
        result.hint.excitation = wavelength(node, "ExWave");
    if (const auto color = integer(node, "Color")) {
        const auto rgba = static_cast<std::uint32_t>(static_cast<std::uint64_t>(*color)); // signed 32 bit
        result.hint.color = Rgb{static_cast<std::uint8_t>(rgba >> 24), static_cast<std::uint8_t>(rgba >> 16),
                                static_cast<std::uint8_t>(rgba >> 8)};
    }
    const xml_node settings = child(node, "DetectorSettings");
    result.detectorOffset = plausible(number(valueOf(settings, "Offset")));
    const auto detector = known.find(settings.attribute("ID").value());
    if (!result.detectorOffset && detector != known.end())
        result.detectorOffset = detector->second;
    return result;
}

OmeTiffData tiffData(xml_node node, Context& context)
{
    using Int = std::int32_t;
    static constexpr std::string_view names[] = {"IFD",    "PlaneCount", "NumPlanes",
                                                 "FirstZ", "FirstC",     "FirstT"};
    const auto [page, planeCount, numPlanes, firstZ, firstC, firstT] = valuesOf(node, names);
    OmeTiffData result;
    result.page = integer<Int>(page);
    result.planeCount = integer<Int>(planeCount ? planeCount : numPlanes);
    result.firstZ = integer<Int>(firstZ).value_or(0);
    result.firstC = integer<Int>(firstC).value_or(0);
    result.firstT = integer<Int>(firstT).value_or(0);
    OmeFile file;
    if (const xml_node uuid = child(node, "UUID"))
        file = {plausibleText(uuid.attribute("FileName").value()), plausibleText(uuid.text().get())};
    const auto number = static_cast<std::uint32_t>(context.files.size());
    result.file = context.files.try_emplace(std::move(file), number).first->second;
    refuseMoreThan(maxFiles, context.files.size(), "files");
    return result;
}

constexpr std::string_view timeNames[] = {"DeltaT", "DeltaTUnit"};
constexpr std::string_view stageNames[] = {"PositionX",     "PositionXUnit", "PositionY",
                                           "PositionYUnit", "PositionZ",     "PositionZUnit"};

// Values and their units in turn, as in timeNames and stageNames; what is known already stays.
void setTime(OmePlane& plane, std::span<const Value, 2> values)
{
    if (!plane.deltaT)
        plane.deltaT = plausible(quantity(values[0], values[1], secondsPer));
}

void setStage(OmePlane& plane, std::span<const Value, 6> values)
{
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (!plane.position[axis])
            plane.position[axis] = plausible(quantity(values[2 * axis], values[2 * axis + 1], micronsPer));
}

OmePlane plane(xml_node node)
{
    static constexpr std::string_view names[] = {"TheZ",        "TheC",        "TheT",        timeNames[0],
                                                 timeNames[1],  stageNames[0], stageNames[1], stageNames[2],
                                                 stageNames[3], stageNames[4], stageNames[5]};
    const auto values = valuesOf(node, names);
    OmePlane result;
    result.z = integer<std::int32_t>(values[0]).value_or(0);
    result.c = integer<std::int32_t>(values[1]).value_or(0);
    result.t = integer<std::int32_t>(values[2]).value_or(0);
    setTime(result, std::span(values).subspan<3, 2>());
    setStage(result, std::span(values).subspan<5, 6>());
    // Before 2010 these stood in elements of their own.
    if (const xml_node timing = child(node, "PlaneTiming"))
        setTime(result, valuesOf(timing, timeNames));
    if (const xml_node stage = child(node, "StagePosition"))
        setStage(result, valuesOf(stage, stageNames));
    return result;
}

std::string dimensionOrder(std::string_view text)
{
    std::string sorted(text);
    std::sort(sorted.begin(), sorted.end());
    const bool valid = sorted == "CTXYZ" && text.substr(0, 2) == "XY";
    return valid ? std::string(text) : "XYCZT";
}

// Where the planes are stored and what is known of each.
void readPlanes(OmeImage& image, xml_node pixels, Context& context)
{
    image.tiffData.reserve(countOf(pixels, "TiffData"));
    image.planes.reserve(countOf(pixels, "Plane"));
    for (const xml_node node : pixels.children()) {
        const std::string_view name = localName(node);
        if (name == "TiffData")
            image.tiffData.push_back(tiffData(node, context));
        if (name != "Plane")
            continue;
        const OmePlane known = plane(node);
        if (known.deltaT || known.position[0] || known.position[1] || known.position[2])
            image.planes.push_back(known);
    }
}

OmeImage readImage(xml_node imageNode, xml_node pixels, Context& context)
{
    OmeImage result;
    result.sizeX = integer(pixels, "SizeX").value_or(0);
    result.sizeY = integer(pixels, "SizeY").value_or(0);
    result.sizeZ = integer(pixels, "SizeZ").value_or(1);
    result.sizeC = integer(pixels, "SizeC").value_or(1);
    result.sizeT = integer(pixels, "SizeT").value_or(1);
    result.dimensionOrder = dimensionOrder(pixels.attribute("DimensionOrder").value());
    result.type = sampleType(pixels.attribute(pixels.attribute("Type") ? "Type" : "PixelType").value());
    static const char* const names[3] = {"PhysicalSizeX", "PhysicalSizeY", "PhysicalSizeZ"};
    for (int axis = 0; axis < 3; ++axis) {
        result.spacing[axis] = quantity(pixels, names[axis], micronsPer);
        if (result.spacing[axis] && !(*result.spacing[axis] > 0))
            result.spacing[axis].reset();
    }
    const std::optional<double> increment = plausible(quantity(pixels, "TimeIncrement", secondsPer));
    if (increment && *increment > 0)
        result.timeIncrement = increment;
    const auto addChannel = [&](xml_node node) {
        refuseMoreThan(maxChannels, ++context.channels, "channels");
        result.channels.push_back(channel(node, context.detectors));
    };
    forEachChild(pixels, "Channel", addChannel);
    if (result.channels.empty())
        forEachChild(imageNode, "LogicalChannel", addChannel);
    readPlanes(result, pixels, context);
    return result;
}

} // namespace

bool isOmeXml(std::string_view text)
{
    // The root may have a prefix and stands behind comments of any length.
    const std::string_view head = text.substr(0, 16384);
    const auto start = head.find_first_not_of(" \t\r\n\xef\xbb\xbf");
    if (start == std::string_view::npos || head[start] != '<')
        return false;
    return head.find("<OME") != std::string_view::npos || head.find(":OME") != std::string_view::npos;
}

namespace {

// Elements of real metadata take 60 bytes and more of the text.
constexpr std::size_t maxElements = 1 << 20;

// The parser keeps a node of 64 bytes for each element and each text between elements, and 40 bytes for each
// attribute. Real metadata take up to 5 times their own size.
void refuseHugeTree(std::string_view text)
{
    constexpr std::size_t nodeBytes = 64, attributeBytes = 40, always = 16u << 20, timesText = 6;
    std::size_t elements = 0, texts = 0;
    for (auto at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
        elements += at + 1 < text.size() && text[at + 1] != '/';
        const auto before = text.substr(0, at).find_last_not_of(" \t\r\n");
        texts += before != std::string_view::npos && text[before] != '>';
    }
    const auto attributes = static_cast<std::size_t>(std::ranges::count(text, '='));
    refuseMoreThan(maxElements, elements, "elements");
    if ((elements + texts) * nodeBytes + attributes * attributeBytes >
        std::max(always, timesText * text.size()))
        throw FormatError("its OME metadata has more elements than its length has room for");
}

} // namespace

void loadOmeXml(std::string& text, pugi::xml_document& tree)
{
    refuseHugeTree(text);
    const pugi::xml_parse_result parsed = tree.load_buffer_inplace(text.data(), text.size());
    if (!parsed)
        throw FormatError(std::string("its OME metadata is damaged: ") + parsed.description());
}

OmeDocument parseOme(std::string text)
{
    pugi::xml_document xml;
    loadOmeXml(text, xml);
    const xml_node root = child(xml, "OME");
    OmeDocument result;
    result.uuid = plausibleText(root.attribute("UUID").value());
    if (const xml_node binaryOnly = child(root, "BinaryOnly")) {
        result.metadataFile = plausibleText(binaryOnly.attribute("MetadataFile").value());
        return result;
    }
    Context context{detectors(root), {}, 0};
    forEachChild(root, "Image", [&](xml_node imageNode) {
        refuseMoreThan(maxImages, result.images.size() + 1, "images");
        if (const xml_node pixels = child(imageNode, "Pixels"))
            result.images.push_back(readImage(imageNode, pixels, context));
    });
    result.files.resize(context.files.size());
    for (const auto& [file, number] : context.files)
        result.files[number] = file;
    if (result.images.empty())
        throw FormatError("its OME metadata describes no image");
    return result;
}

std::string omeUuid(std::string_view text)
{
    auto root = text.find("<OME");
    if (root == std::string_view::npos)
        root = text.find(":OME");
    if (root == std::string_view::npos)
        return {};
    const std::string_view tag = text.substr(root, text.find('>', root) - root);
    const auto start = tag.find(" UUID=");
    if (start == std::string_view::npos || start + 7 >= tag.size())
        return {};
    const std::string_view value = tag.substr(start + 7);
    return std::string(value.substr(0, value.find(tag[start + 6])));
}

} // namespace image
