// SPDX-License-Identifier: MIT
#include "samples/Options.h"

#include <CLI/CLI.hpp>
#include <tiff.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace sample {

namespace {

struct TypeRow {
    const char* name; // as OME and --pixel-type write it
    PixelType type;
    int bits;
};

constexpr TypeRow typeTable[] = {
    {"bit", PixelType::Bit, 1},        {"uint8", PixelType::UInt8, 8},  {"int8", PixelType::Int8, 8},
    {"uint16", PixelType::UInt16, 16}, {"int16", PixelType::Int16, 16}, {"uint32", PixelType::UInt32, 32},
    {"int32", PixelType::Int32, 32},   {"float", PixelType::Float, 32}, {"double", PixelType::Double, 64},
};

constexpr Compression compressionTable[] = {
    {"none", COMPRESSION_NONE, false, "", 0},
    {"lzw", COMPRESSION_LZW, true, "", 0},
    {"deflate", COMPRESSION_ADOBE_DEFLATE, true, "", 0},
    {"zstd", COMPRESSION_ZSTD, true, "", 0},
    {"lzma", COMPRESSION_LZMA, true, "", 0},
    {"packbits", COMPRESSION_PACKBITS, false, "", 0},
    {"jpeg", COMPRESSION_JPEG, false, "uint8 pixels", 8},
    {"webp", COMPRESSION_WEBP, false, "uint8 pixels", 8},
    {"fax3", COMPRESSION_CCITTFAX3, false, "bit pixels", 1},
    {"fax4", COMPRESSION_CCITTFAX4, false, "bit pixels", 1},
};

constexpr Named lengthUnits[] = {
    {"um", 1, "µm"},    {"nm", 1000, "nm"}, {"pm", 1e6, "pm"}, {"angstrom", 1e4, "Å"},
    {"mm", 1e-3, "mm"}, {"cm", 1e-4, "cm"}, {"m", 1e-6, "m"},  {"inch", 1 / 25400.0, "in"},
};

constexpr Named timeUnits[] = {
    {"s", 1, "s"}, {"ms", 1000, "ms"}, {"us", 1e6, "µs"}, {"min", 1 / 60.0, "min"}, {"h", 1 / 3600.0, "h"},
};

constexpr struct {
    const char* name;
    PatternKind kind;
} patternTable[] = {
    {"field", PatternKind::Field},
    {"ramp", PatternKind::Ramp},
    {"planes", PatternKind::Planes},
};

constexpr struct {
    const char* name;
    Split split;
} splitTable[] = {
    {"none", Split::None}, {"channel", Split::Channel},   {"z", Split::Z},
    {"time", Split::Time}, {"position", Split::Position},
};

constexpr struct {
    const char* name;
} orderTable[] = {{"XYZCT"}, {"XYZTC"}, {"XYCTZ"}, {"XYCZT"}, {"XYTCZ"}, {"XYTZC"}};

const char* const footer = R"(
Patterns:
  field   a fluorescence field of 512 x 512 pixels that repeats; counts of a 16-bit camera with offset 100.
          8-bit pixels hold (counts - 100) / 8, int8 that minus 128, bit whether counts exceed 300.
          With --rgb red is the mitochondria, green the microtubules and blue the nuclei.
  ramp    v = x + 11 y + 101 z + 1009 c + 10007 t + 20011 p, indices from 0, stored as
            bit v mod 2, uint8 v mod 256, int8 v mod 256 - 128, uint16 v mod 65536,
            int16 v mod 32768 - 100, uint32 v mod 2^20 + 70000, int32 v mod 2^20 - 100,
            float and double (v mod 2^20) / 4 - 100
  planes  as ramp with x = y = 0: every plane is constant.
Level k of a pyramid is the mean of blocks of 2^k pixels for field, and their top left pixel for the others.

Files: with --split or --files, NAME.ome.tif becomes NAME_C0.ome.tif and so on (C, Z, T, P, or F for --files);
--companion adds NAME.companion.ome, which then holds the metadata of all.

Exit status: 0 done, 1 a file could not be written, 2 wrong usage.)";

// What is looked up in a table once the command line is parsed.
struct Choices {
    std::string size = "512x512", pattern = "field", type = "uint16", order = "XYCZT",
                compression = "deflate", split = "none", lengthUnit = "um", timeUnit = "s";
};

template<typename Table> std::string namesIn(const Table& table)
{
    std::string names;
    for (const auto& row : table) {
        const bool last = &row == std::end(table) - 1;
        names += names.empty() ? "" : last ? " or " : ", ";
        names += row.name;
    }
    return names;
}

template<typename Table> const auto& choose(const char* flag, const std::string& name, const Table& table)
{
    for (const auto& row : table) {
        if (name == row.name)
            return row;
    }
    throw UsageError(std::string(flag) + " takes " + namesIn(table) + ", not \"" + name + "\"");
}

template<typename Table>
void addChoice(CLI::App& app, const char* flag, std::string& to, const Table& table, const std::string& help)
{
    app.add_option(flag, to, help + ": " + namesIn(table) + " (" + to + ")");
}

void addCount(CLI::App& app, const char* flag, int& to, int least, int most, const char* help)
{
    app.add_option(flag, to, help)->check(CLI::Range(least, most));
}

void parseSize(const std::string& text, FieldSize& size)
{
    char rest = 0;
    if (std::sscanf(text.c_str(), "%6dx%6d%c", &size.width, &size.height, &rest) != 2 || size.width < 1 ||
        size.height < 1)
        throw UsageError("--size takes width and height in pixels such as 640x512, not \"" + text + "\"");
}

void addImageOptions(CLI::App& app, Options& o, Choices& choices)
{
    app.add_option("OUTPUT", o.output, "File to write, such as demo.ome.tif");
    app.add_flag("--describe", o.describe,
                 "Print the dimensions, the files and a line worth dragging (segment x0 y0 x1 y1); "
                 "writes nothing without OUTPUT");
    app.add_option("--size", choices.size, "Width x height in pixels (512x512)");
    addCount(app, "--z", o.size.sizeZ, 1, 10000, "Sections (5)");
    addCount(app, "--channels", o.channels, 1, maxChannels, "Channels (4)");
    addCount(app, "--time", o.times, 1, 10000, "Time points (3)");
    addCount(app, "--positions", o.positions, 1, 1000, "Stage positions, one OME image each (1)");
    addChoice(app, "--pattern", choices.pattern, patternTable, "What the image shows, see below");
    app.add_option("--seed", o.seed, "Another seed makes another field (10)");
    addChoice(app, "--pixel-type", choices.type, typeTable, "Pixel type");
    addChoice(app, "--order", choices.order, orderTable, "Order of the planes, as OME names it");
}

void addLayoutOptions(CLI::App& app, Options& o, Choices& choices)
{
    app.add_flag("--big-endian", o.bigEndian, "Big-endian bytes");
    app.add_flag("--bigtiff", o.bigTiff, "BigTIFF");
    addChoice(app, "--compression", choices.compression, compressionTable, "Compression");
    app.add_flag("--no-predictor", o.noPredictor, "No differencing before compression");
    addCount(app, "--rows-per-strip", o.rowsPerStrip, 1, 1000000, "Rows per strip (about 64 kB)");
    addCount(app, "--tile", o.tile, 16, 65536,
             "Square tiles of N pixels, a multiple of 16, instead of strips");
    addCount(app, "--pyramid", o.pyramidLevels, 0, 16, "Reduced levels in SubIFDs");
    app.add_flag_callback(
        "--rgb", [&o] { o.rgb = RgbStorage::Interleaved; }, "Red, green, blue in one page");
    app.add_flag_callback(
        "--planar-rgb", [&o] { o.rgb = RgbStorage::Planar; }, "The same in separate planes");
}

void addFileOptions(CLI::App& app, Options& o, Choices& choices)
{
    addChoice(app, "--split", choices.split, splitTable, "One file for each");
    addCount(app, "--files", o.files, 1, 1000, "Distribute the planes over N files");
    app.add_flag("--companion", o.companion, "Metadata in a file of its own");
    app.add_flag_callback(
        "--imagej", [&o] { o.flavor = Flavor::ImageJ; }, "An ImageJ hyperstack");
    app.add_flag_callback(
        "--plain", [&o] { o.flavor = Flavor::Plain; }, "Pages without any description");
}

void addMetadataOptions(CLI::App& app, Options& o, Choices& choices)
{
    addChoice(app, "--length-unit", choices.lengthUnit, lengthUnits, "Unit of lengths in OME");
    addChoice(app, "--time-unit", choices.timeUnit, timeUnits, "Unit of times in OME");
    const struct {
        const char* flag;
        bool& to;
        const char* what;
    } omissions[] = {
        {"--no-calibration", o.noCalibration, "pixel spacing"},
        {"--no-wavelengths", o.noWavelengths, "emission and excitation wavelengths"},
        {"--no-names", o.noNames, "channel names"},
        {"--no-colors", o.noColors, "channel colours"},
        {"--no-date", o.noDate, "acquisition date"},
        {"--no-offset", o.noOffset, "camera offset"},
        {"--no-times", o.noTimes, "times of the planes"},
        {"--no-exposure", o.noExposure, "exposure times"},
        {"--no-stage", o.noStage, "stage positions"},
        {"--no-planes", o.noPlanes, "Plane elements"},
        {"--no-tiffdata", o.noTiffData, "TiffData per plane (one without attributes instead)"},
    };
    for (const auto& row : omissions)
        app.add_flag(row.flag, row.to, std::string("Leave out the ") + row.what);
}

void require(bool ok, const std::string& sentence)
{
    if (!ok)
        throw UsageError(sentence);
}

void checkCompression(const Options& o)
{
    const Compression& c = *o.compression;
    const bool ok = c.only == 0 || (c.only == 1 && o.pixelType == PixelType::Bit) ||
                    (c.only == 8 && o.pixelType == PixelType::UInt8);
    require(ok, std::string("--compression ") + c.name + " needs " + c.refuses);
    if (c.scheme == COMPRESSION_WEBP)
        require(o.rgb == RgbStorage::Interleaved, "--compression webp needs --rgb");
}

void checkCombination(Options& o, bool channelsGiven)
{
    if (o.rgb != RgbStorage::None) {
        require(!channelsGiven || o.channels == 3, "--rgb has three channels, leave out --channels");
        require(o.pixelType != PixelType::Bit, "--rgb does not go with bit pixels");
        require(o.split != Split::Channel, "--split channel does not go with --rgb");
        o.channels = 3;
    }
    checkCompression(o);
    require(o.tile % 16 == 0, "--tile takes a multiple of 16");
    require(!(o.tile && o.rowsPerStrip), "--tile and --rows-per-strip exclude each other");
    require((std::min(o.size.width, o.size.height) >> o.pyramidLevels) > 0,
            "The image is too small for that many levels of a pyramid");
    require(o.files == 1 || o.split == Split::None, "--split and --files exclude each other");
    if (o.files > 1)
        o.split = Split::Count;
    const double planes = 1.0 * o.size.sizeZ * o.pagesPerSection() * o.times * o.positions;
    require(planes <= 1e6, "That makes more than a million planes");
    require(o.files <= planes, "There are fewer planes than --files asks for");
    if (o.flavor != Flavor::Ome) {
        require(o.split == Split::None && !o.companion && o.positions == 1,
                "Several files, a companion or several positions need OME metadata");
    }
    if (o.flavor == Flavor::ImageJ) {
        const bool known = o.pixelType == PixelType::UInt8 || o.pixelType == PixelType::UInt16 ||
                           o.pixelType == PixelType::Float;
        require(known, "--imagej takes uint8, uint16 or float pixels");
        require(o.rgb == RgbStorage::None, "--imagej and --rgb exclude each other");
        o.order = "XYCZT";
    }
    require(!o.noTiffData || (o.split == Split::None && o.positions == 1),
            "--no-tiffdata needs a single file and a single position");
    require(!o.output.empty() || o.describe, "Name the file to write, such as demo.ome.tif");
}

} // namespace

int bitsOf(PixelType type)
{
    return typeTable[static_cast<int>(type)].bits;
}

const char* omeNameOf(PixelType type)
{
    return typeTable[static_cast<int>(type)].name;
}

const char* const programVersion = "makesample " PROJECT_VERSION;

bool parseOptions(int argc, char** argv, Options& o)
{
    CLI::App app{"Writes a made-up fluorescence image of cells, or test patterns, as a TIFF file.",
                 "makesample"};
    app.footer(footer);
    app.set_version_flag("--version", programVersion);
    Choices choices;
    addImageOptions(app, o, choices);
    addLayoutOptions(app, o, choices);
    addFileOptions(app, o, choices);
    addMetadataOptions(app, o, choices);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& said) {
        app.exit(said);
        return false;
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    parseSize(choices.size, o.size);
    o.pattern = choose("--pattern", choices.pattern, patternTable).kind;
    o.pixelType = choose("--pixel-type", choices.type, typeTable).type;
    o.order = choose("--order", choices.order, orderTable).name;
    o.compression = &choose("--compression", choices.compression, compressionTable);
    o.split = choose("--split", choices.split, splitTable).split;
    o.lengthUnit = &choose("--length-unit", choices.lengthUnit, lengthUnits);
    o.timeUnit = &choose("--time-unit", choices.timeUnit, timeUnits);
    checkCombination(o, app.count("--channels") > 0);
    return true;
}

} // namespace sample
