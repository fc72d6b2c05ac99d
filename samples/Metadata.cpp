// SPDX-License-Identifier: MIT
#include "samples/Metadata.h"

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <sstream>

namespace sample {

namespace {

constexpr const char* omeNamespace = "http://www.openmicroscopy.org/Schemas/OME/2016-06";
constexpr const char* schemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
constexpr double planeSeconds = 0.25; // from one plane to the next within a time point

std::string number(double value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

std::string idOf(const char* kind, int a, int b = -1)
{
    std::string id = std::string(kind) + ':' + std::to_string(a);
    return b < 0 ? id : id + ':' + std::to_string(b);
}

pugi::xml_node addWithId(pugi::xml_node parent, const char* name, const std::string& id)
{
    pugi::xml_node node = parent.append_child(name);
    node.append_attribute("ID") = id.c_str();
    return node;
}

// Writes NAME and NAMEUnit.
void addQuantity(pugi::xml_node node, const std::string& name, double value, const Named& unit)
{
    node.append_attribute(name.c_str()) = number(value * unit.factor).c_str();
    node.append_attribute((name + "Unit").c_str()) = unit.symbol;
}

pugi::xml_node addRoot(pugi::xml_document& document, const OutputFile& own)
{
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    pugi::xml_node ome = document.append_child("OME");
    ome.append_attribute("xmlns") = omeNamespace;
    ome.append_attribute("xmlns:xsi") = schemaInstance;
    ome.append_attribute("xsi:schemaLocation") =
        (std::string(omeNamespace) + ' ' + omeNamespace + "/ome.xsd").c_str();
    ome.append_attribute("UUID") = own.uuid.c_str();
    return ome;
}

std::string textOf(const pugi::xml_document& document)
{
    std::ostringstream text;
    document.save(text, " ", pugi::format_indent, pugi::encoding_utf8);
    return text.str();
}

void addInstrument(pugi::xml_node ome)
{
    pugi::xml_node instrument = addWithId(ome, "Instrument", "Instrument:0");
    instrument.append_child("Microscope").append_attribute("Type") = "Inverted";
    pugi::xml_node detector = addWithId(instrument, "Detector", "Detector:0");
    detector.append_attribute("Type") = "CMOS";
    detector.append_attribute("Model") = "Simulated camera";
    pugi::xml_node objective = addWithId(instrument, "Objective", "Objective:0");
    objective.append_attribute("Immersion") = "Oil";
    objective.append_attribute("LensNA") = number(numericalAperture).c_str();
    objective.append_attribute("NominalMagnification") = "60";
}

double offsetInFile(const Options& o)
{
    const bool scaled = bitsOf(o.pixelType) <= 8;
    if (o.pattern != PatternKind::Field || !scaled)
        return cameraOffset;
    return o.pixelType == PixelType::Int8 ? -128 : 0;
}

void addChannel(pugi::xml_node pixels, const Options& o, int image, int index)
{
    const Channel& channel = channelTable[index];
    pugi::xml_node node = addWithId(pixels, "Channel", idOf("Channel", image, index));
    const bool rgb = o.rgb != RgbStorage::None;
    if (!o.noNames)
        node.append_attribute("Name") = rgb ? "Composite" : channel.name;
    node.append_attribute("SamplesPerPixel") = o.samplesPerPixel();
    if (!rgb && !o.noNames && *channel.fluor)
        node.append_attribute("Fluor") = channel.fluor;
    if (!o.noColors && !rgb)
        node.append_attribute("Color") = static_cast<std::int32_t>(channel.color << 8 | 0xff);
    if (!o.noWavelengths && !rgb && channel.emission > 0) {
        for (const auto& [name, value] : {std::pair{"EmissionWavelength", channel.emission},
                                          {"ExcitationWavelength", channel.excitation}}) {
            node.append_attribute(name) = value;
            node.append_attribute((std::string(name) + "Unit").c_str()) = "nm";
        }
    }
    if (!o.noOffset) {
        pugi::xml_node settings = addWithId(node, "DetectorSettings", "Detector:0");
        settings.append_attribute("Offset") = number(offsetInFile(o)).c_str();
        settings.append_attribute("Gain") = number(countsPerElectron).c_str();
    }
}

void addTiffData(pugi::xml_node pixels, const FileSet& set, const Page& page, bool severalFiles)
{
    pugi::xml_node data = pixels.append_child("TiffData");
    data.append_attribute("FirstZ") = page.plane.z;
    data.append_attribute("FirstC") = page.plane.c;
    data.append_attribute("FirstT") = page.plane.t;
    data.append_attribute("IFD") = page.directory;
    data.append_attribute("PlaneCount") = 1;
    if (!severalFiles)
        return;
    const OutputFile& file = set.files[page.file];
    pugi::xml_node uuid = data.append_child("UUID");
    uuid.append_attribute("FileName") = file.path.filename().c_str();
    uuid.text() = file.uuid.c_str();
}

void addPlane(pugi::xml_node pixels, const Options& o, const Plane& at)
{
    pugi::xml_node plane = pixels.append_child("Plane");
    plane.append_attribute("TheZ") = at.z;
    plane.append_attribute("TheC") = at.c;
    plane.append_attribute("TheT") = at.t;
    if (!o.noTimes) {
        const int before = at.z * o.pagesPerSection() + at.c;
        addQuantity(plane, "DeltaT", secondsPerTime * at.t + planeSeconds * before, *o.timeUnit);
    }
    if (!o.noExposure)
        addQuantity(plane, "ExposureTime", channelTable[at.c].exposureSeconds, *o.timeUnit);
    if (o.noStage)
        return;
    addQuantity(plane, "PositionX", 12500 + 320.0 * at.p, *o.lengthUnit);
    addQuantity(plane, "PositionY", -4200 - 150.0 * at.p, *o.lengthUnit);
    addQuantity(plane, "PositionZ", 35 + sectionMicrons * at.z, *o.lengthUnit);
}

void addPixels(pugi::xml_node image, const Options& o, const FileSet& set, int position)
{
    pugi::xml_node pixels = addWithId(image, "Pixels", idOf("Pixels", position));
    pixels.append_attribute("DimensionOrder") = o.order.c_str();
    pixels.append_attribute("Type") = omeNameOf(o.pixelType);
    pixels.append_attribute("BigEndian") = o.bigEndian;
    pixels.append_attribute("Interleaved") = o.rgb == RgbStorage::Interleaved;
    for (const auto& [name, value] : {std::pair{"SizeX", o.size.width},
                                      {"SizeY", o.size.height},
                                      {"SizeZ", o.size.sizeZ},
                                      {"SizeC", o.channels},
                                      {"SizeT", o.times}})
        pixels.append_attribute(name) = value;
    if (!o.noCalibration) {
        addQuantity(pixels, "PhysicalSizeX", pixelMicrons, *o.lengthUnit);
        addQuantity(pixels, "PhysicalSizeY", pixelMicrons, *o.lengthUnit);
        addQuantity(pixels, "PhysicalSizeZ", sectionMicrons, *o.lengthUnit);
    }
    if (!o.noTimes)
        addQuantity(pixels, "TimeIncrement", secondsPerTime, *o.timeUnit);
    for (int c = 0; c < o.pagesPerSection(); ++c)
        addChannel(pixels, o, position, c);
    const bool severalFiles = set.files.size() > 1 || !set.companion.path.empty();
    if (o.noTiffData)
        pixels.append_child("TiffData");
    for (const Page& page : set.pages) {
        if (page.plane.p == position && !o.noTiffData)
            addTiffData(pixels, set, page, severalFiles);
    }
    for (const Page& page : set.pages) {
        if (page.plane.p == position && !o.noPlanes)
            addPlane(pixels, o, page.plane);
    }
}

} // namespace

std::string omeXml(const Options& o, const FileSet& set, const OutputFile& own)
{
    pugi::xml_document document;
    pugi::xml_node ome = addRoot(document, own);
    ome.append_attribute("Creator") = programVersion;
    addInstrument(ome);
    for (int p = 0; p < o.positions; ++p) {
        pugi::xml_node image = addWithId(ome, "Image", idOf("Image", p));
        image.append_attribute("Name") = ("Position " + std::to_string(p + 1)).c_str();
        if (!o.noDate)
            image.append_child("AcquisitionDate").text() = "2024-03-05T10:15:00";
        image.append_child("Description").text() = "Simulated fluorescence of cultured cells";
        image.append_child("InstrumentRef").append_attribute("ID") = "Instrument:0";
        image.append_child("ObjectiveSettings").append_attribute("ID") = "Objective:0";
        addPixels(image, o, set, p);
    }
    return textOf(document);
}

std::string binaryOnlyXml(const FileSet& set, const OutputFile& own)
{
    pugi::xml_document document;
    pugi::xml_node only = addRoot(document, own).append_child("BinaryOnly");
    only.append_attribute("MetadataFile") = set.companion.path.filename().c_str();
    only.append_attribute("UUID") = set.companion.uuid.c_str();
    return textOf(document);
}

std::string imageJDescription(const Options& o)
{
    std::string text = "ImageJ=1.53t\n";
    const auto add = [&text](const char* name, const std::string& value) {
        text += std::string(name) + '=' + value + '\n';
    };
    const int pages = o.size.sizeZ * o.channels * o.times;
    add("images", std::to_string(pages));
    for (const auto& [name, count] :
         {std::pair{"channels", o.channels}, {"slices", o.size.sizeZ}, {"frames", o.times}}) {
        if (count > 1)
            add(name, std::to_string(count));
    }
    if (pages > 1)
        add("hyperstack", "true");
    if (o.channels > 1)
        add("mode", "composite");
    if (!o.noCalibration) {
        add("unit", "micron");
        add("spacing", number(sectionMicrons));
    }
    if (!o.noTimes && o.times > 1)
        add("finterval", number(secondsPerTime));
    add("loop", "false");
    add("min", "100");
    add("max", "1500");
    return text;
}

ImageJBinary imageJBinary(const Options& o)
{
    ImageJBinary out;
    const bool swap = o.bigEndian != (std::endian::native == std::endian::big);
    const auto put = [&](auto value) {
        auto bytes = std::bit_cast<std::array<std::byte, sizeof value>>(value);
        if (swap)
            std::reverse(bytes.begin(), bytes.end());
        for (std::byte byte : bytes)
            out.data.push_back(byte);
    };
    const auto header = [&](std::uint32_t kind, int count) {
        put(kind);
        put(static_cast<std::uint32_t>(count));
    };
    put(std::uint32_t{0x494a494a}); // "IJIJ"
    header(0x72616e67, 1);          // "rang"
    header(0x6c757473, o.channels); // "luts"
    out.counts.push_back(static_cast<std::uint32_t>(out.data.size()));
    for (int c = 0; c < o.channels; ++c) {
        put(100.0);
        put(1500.0 + 100 * c);
    }
    out.counts.push_back(static_cast<std::uint32_t>(out.data.size()) - out.counts[0]);
    for (int c = 0; c < o.channels; ++c) {
        for (int shift : {16, 8, 0}) {
            const std::uint32_t full = channelTable[c].color >> shift & 0xff;
            for (std::uint32_t i = 0; i < 256; ++i)
                out.data.push_back(static_cast<std::byte>(i * full / 255));
        }
        out.counts.push_back(3 * 256);
    }
    return out;
}

} // namespace sample
