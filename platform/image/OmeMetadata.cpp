#include "platform/image/OmeMetadata.h"

#include "platform/image/Error.h"
#include "platform/image/Plausible.h"
#include "platform/image/Units.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <map>
#include <pugixml.hpp>

namespace image {

using pugi::xml_node;

static std::string_view localName(xml_node node)
{
    const std::string_view name = node.name();
    const auto colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

static xml_node child(xml_node parent, std::string_view name)
{
    return parent.find_child([&](xml_node node) { return localName(node) == name; });
}

template<class Action> static void forEachChild(xml_node parent, std::string_view name, Action action)
{
    for (const xml_node node : parent.children())
        if (localName(node) == name)
            action(node);
}

static std::optional<double> number(std::string_view text)
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

static std::optional<double> number(xml_node node, const char* attribute)
{
    return number(std::string_view(node.attribute(attribute).value()));
}

// Whole numbers beyond any image become a value that every check refuses.
static std::optional<std::int64_t> integer(xml_node node, const char* attribute)
{
    constexpr double limit = 1e15;
    const std::optional<double> value = number(node, attribute);
    if (!value)
        return std::nullopt;
    return static_cast<std::int64_t>(std::clamp(*value, -limit, limit));
}

using UnitScale = std::optional<double> (*)(std::string_view);

// A value with its unit attribute ("PhysicalSizeX", "PhysicalSizeXUnit") times what the unit means; without
// the attribute the value is in the default unit already.
static std::optional<double> quantity(xml_node node, const std::string& attribute, UnitScale scale)
{
    const std::optional<double> value = number(node, attribute.c_str());
    const pugi::xml_attribute unit = node.attribute((attribute + "Unit").c_str());
    if (!value || !unit)
        return value;
    const std::optional<double> factor = scale(unit.value());
    return factor ? std::optional(*value * *factor) : std::nullopt;
}

static std::optional<double> nanometresPer(std::string_view unit)
{
    const std::optional<double> microns = micronsPer(unit);
    return microns ? std::optional(*microns * 1000) : std::nullopt;
}

static std::optional<double> wavelength(xml_node node, const char* attribute)
{
    const std::optional<double> value = quantity(node, attribute, nanometresPer);
    return value && *value > 1 && *value < 1e6 ? value : std::nullopt;
}

static std::optional<SampleType> sampleType(std::string_view name)
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

static Detectors detectors(xml_node root)
{
    Detectors result;
    forEachChild(root, "Instrument", [&](xml_node instrument) {
        forEachChild(instrument, "Detector", [&](xml_node detector) {
            if (const auto offset = plausible(number(detector, "Offset")))
                result[detector.attribute("ID").value()] = *offset;
        });
    });
    return result;
}

// A Channel, or the LogicalChannel of schemas before 2009.
static OmeChannel channel(xml_node node, const Detectors& known)
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
    result.detectorOffset = plausible(number(settings, "Offset"));
    const auto detector = known.find(settings.attribute("ID").value());
    if (!result.detectorOffset && detector != known.end())
        result.detectorOffset = detector->second;
    return result;
}

static OmeTiffData tiffData(xml_node node)
{
    OmeTiffData result;
    result.page = integer(node, "IFD");
    result.planeCount = integer(node, node.attribute("PlaneCount") ? "PlaneCount" : "NumPlanes");
    result.firstZ = integer(node, "FirstZ").value_or(0);
    result.firstC = integer(node, "FirstC").value_or(0);
    result.firstT = integer(node, "FirstT").value_or(0);
    const xml_node uuid = child(node, "UUID");
    result.fileName = plausibleText(uuid.attribute("FileName").value());
    result.uuid = plausibleText(uuid.text().get());
    return result;
}

static OmePlane plane(xml_node node)
{
    OmePlane result;
    result.z = integer(node, "TheZ").value_or(0);
    result.c = integer(node, "TheC").value_or(0);
    result.t = integer(node, "TheT").value_or(0);
    result.deltaT = plausible(quantity(node, "DeltaT", secondsPer));
    // Before 2010 these stood in elements of their own.
    if (const xml_node timing = child(node, "PlaneTiming"); timing && !result.deltaT)
        result.deltaT = plausible(quantity(timing, "DeltaT", secondsPer));
    static const char* const names[3] = {"PositionX", "PositionY", "PositionZ"};
    const xml_node stage = child(node, "StagePosition");
    for (int axis = 0; axis < 3; ++axis) {
        result.position[axis] = plausible(quantity(node, names[axis], micronsPer));
        if (stage && !result.position[axis])
            result.position[axis] = plausible(quantity(stage, names[axis], micronsPer));
    }
    return result;
}

static std::string dimensionOrder(std::string_view text)
{
    std::string sorted(text);
    std::sort(sorted.begin(), sorted.end());
    const bool valid = sorted == "CTXYZ" && text.substr(0, 2) == "XY";
    return valid ? std::string(text) : "XYCZT";
}

static OmeImage readImage(xml_node imageNode, xml_node pixels, const Detectors& known)
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
    forEachChild(pixels, "Channel", [&](xml_node node) { result.channels.push_back(channel(node, known)); });
    if (result.channels.empty())
        forEachChild(imageNode, "LogicalChannel",
                     [&](xml_node node) { result.channels.push_back(channel(node, known)); });
    forEachChild(pixels, "TiffData", [&](xml_node node) { result.tiffData.push_back(tiffData(node)); });
    forEachChild(pixels, "Plane", [&](xml_node node) { result.planes.push_back(plane(node)); });
    return result;
}

bool isOmeXml(std::string_view text)
{
    // The root may have a prefix and stands behind comments of any length.
    const std::string_view head = text.substr(0, 16384);
    const auto start = head.find_first_not_of(" \t\r\n\xef\xbb\xbf");
    if (start == std::string_view::npos || head[start] != '<')
        return false;
    return head.find("<OME") != std::string_view::npos || head.find(":OME") != std::string_view::npos;
}

OmeDocument parseOme(std::string text)
{
    pugi::xml_document xml;
    const pugi::xml_parse_result parsed = xml.load_buffer_inplace(text.data(), text.size());
    if (!parsed)
        throw FormatError(std::string("its OME metadata is damaged: ") + parsed.description());
    const xml_node root = child(xml, "OME");
    OmeDocument result;
    result.uuid = plausibleText(root.attribute("UUID").value());
    if (const xml_node binaryOnly = child(root, "BinaryOnly")) {
        result.metadataFile = plausibleText(binaryOnly.attribute("MetadataFile").value());
        return result;
    }
    const Detectors known = detectors(root);
    forEachChild(root, "Image", [&](xml_node imageNode) {
        if (const xml_node pixels = child(imageNode, "Pixels"))
            result.images.push_back(readImage(imageNode, pixels, known));
    });
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
