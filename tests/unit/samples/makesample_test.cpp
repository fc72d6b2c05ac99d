// Pixels, layout and files of the variants, read back and compared with the ramp that the help text promises.
#include "tests/unit/samples/SampleRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tiffio.h>

#include <fstream>
#include <set>

using namespace sampletest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string small = "--size 37x29 --z 3 --time 2 ";

double stored(long v, const std::string& type)
{
    if (type == "bit")
        return static_cast<double>(v % 2);
    if (type == "uint8")
        return static_cast<double>(v % 256);
    if (type == "int8")
        return static_cast<double>(v % 256 - 128);
    if (type == "uint16")
        return static_cast<double>(v % 65536);
    if (type == "int16")
        return static_cast<double>(v % 32768 - 100);
    if (type == "uint32")
        return static_cast<double>(v % 1048576 + 70000);
    if (type == "int32")
        return static_cast<double>(v % 1048576 - 100);
    return static_cast<double>(v % 1048576) / 4 - 100;
}

struct Index {
    int z = 0, c = 0, t = 0, p = 0;
    auto operator<=>(const Index&) const = default;
};

long ramp(int x, int y, const Index& i)
{
    return x + 11L * y + 101L * i.z + 1009L * i.c + 10007L * i.t + 20011L * i.p;
}

// How many pixels differ from the ramp; a pixel of the image is `step` pixels of the ramp.
int wrongPixels(const Pixels& pixels, const Index& index, const std::string& type, int step = 1)
{
    int wrong = 0;
    for (int y = 0; y < pixels.height; ++y) {
        for (int x = 0; x < pixels.width; ++x) {
            for (int s = 0; s < pixels.samples; ++s) {
                Index at = index;
                at.c += s;
                wrong += pixels.at(x, y, s) != stored(ramp(x * step, y * step, at), type);
            }
        }
    }
    return wrong;
}

// Follows every TiffData of an image to its plane and checks the pixels there; returns the planes found.
std::set<Index> checkPlanes(const Folder& folder, pugi::xml_node ome, const std::string& self)
{
    std::set<Index> found;
    int position = 0;
    for (pugi::xml_node image : ome.children("Image")) {
        const pugi::xml_node pixels = image.child("Pixels");
        for (pugi::xml_node data : pixels.children("TiffData")) {
            const Index at{data.attribute("FirstZ").as_int(-1), data.attribute("FirstC").as_int(-1),
                           data.attribute("FirstT").as_int(-1), position};
            const std::string file = data.child("UUID").attribute("FileName").as_string(self.c_str());
            const Pixels plane = readPixels(folder / file, data.attribute("IFD").as_int(-1));
            EXPECT_EQ(plane.width, pixels.attribute("SizeX").as_int());
            EXPECT_EQ(plane.height, pixels.attribute("SizeY").as_int());
            EXPECT_EQ(wrongPixels(plane, at, pixels.attribute("Type").as_string()), 0) << file;
            found.insert(at);
        }
        ++position;
    }
    return found;
}

struct Variant {
    const char* options;
    std::size_t planes = 12, files = 1; // small has 3 sections and 2 time points; 2 channels by default
};

void PrintTo(const Variant& variant, std::ostream* out)
{
    *out << variant.options;
}

class Variants : public testing::TestWithParam<Variant> {};

} // namespace

TEST_P(Variants, HoldTheRampInEveryPlane)
{
    const Folder folder;
    const Variant& v = GetParam();
    const bool rgb = std::string(v.options).find("rgb") != std::string::npos;
    const Outcome made =
        makeSample(folder, small + (rgb ? "" : "--channels 2 ") + "--pattern ramp a.ome.tif " + v.options);
    ASSERT_EQ(made.status, 0) << made.errors;
    const std::vector<std::string> names = folder.names();
    EXPECT_EQ(names.size(), v.files);
    const bool companion = names.front() == "a.companion.ome";
    pugi::xml_document document;
    const pugi::xml_node ome = parseOme(
        companion ? bytesOf(folder / names.front()) : readDescription(folder / names.front()), document);
    EXPECT_EQ(checkPlanes(folder, ome, names.front()).size(), v.planes);
}

INSTANTIATE_TEST_SUITE_P(
    PixelTypes, Variants,
    testing::Values(Variant{"--pixel-type bit"}, Variant{"--pixel-type uint8"}, Variant{"--pixel-type int8"},
                    Variant{"--pixel-type uint16"}, Variant{"--pixel-type int16"},
                    Variant{"--pixel-type uint32"}, Variant{"--pixel-type int32"},
                    Variant{"--pixel-type float"}, Variant{"--pixel-type double"},
                    Variant{"--pixel-type bit --compression fax4"},
                    Variant{"--pixel-type bit --compression fax3 --rows-per-strip 5"},
                    Variant{"--pixel-type uint16 --big-endian"}, Variant{"--pixel-type int32 --big-endian"},
                    Variant{"--pixel-type float --big-endian"}, Variant{"--pixel-type double --big-endian"}));

INSTANTIATE_TEST_SUITE_P(
    Layouts, Variants,
    testing::Values(Variant{"--bigtiff"}, Variant{"--bigtiff --big-endian --tile 16"}, Variant{"--tile 64"},
                    Variant{"--tile 16 --pixel-type bit"}, Variant{"--rows-per-strip 1"},
                    Variant{"--rows-per-strip 7 --compression none"}, Variant{"--rows-per-strip 500"},
                    Variant{"--compression lzw"}, Variant{"--compression lzw --big-endian"},
                    Variant{"--compression packbits"}, Variant{"--compression zstd --no-predictor"},
                    Variant{"--compression lzma"}, Variant{"--pyramid 2"}, Variant{"--rgb", 6},
                    Variant{"--rgb --tile 16 --pixel-type uint8", 6},
                    Variant{"--rgb --compression webp --pixel-type uint8", 6}, Variant{"--planar-rgb", 6},
                    Variant{"--planar-rgb --tile 32 --big-endian", 6}));

INSTANTIATE_TEST_SUITE_P(Files, Variants,
                         testing::Values(Variant{"--positions 2", 24}, Variant{"--split channel", 12, 2},
                                         Variant{"--split z --order XYZCT", 12, 3},
                                         Variant{"--split time --order XYTCZ", 12, 2},
                                         Variant{"--split position --positions 3", 36, 3},
                                         Variant{"--files 5", 12, 5}, Variant{"--companion", 12, 2},
                                         Variant{"--companion --split z --positions 2", 24, 4},
                                         Variant{"--order XYZTC"}, Variant{"--order XYCTZ --no-planes"}));

TEST(Layout, TagsFollowTheOptions)
{
    const struct {
        const char* options;
        std::uint32_t tag;
        std::uint32_t expected;
        bool wide; // the tag's value has 32 bits
    } rows[] = {
        {"--tile 32", TIFFTAG_TILEWIDTH, 32, true},
        {"--rows-per-strip 7", TIFFTAG_ROWSPERSTRIP, 7, true},
        {"", TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE, false},
        {"", TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL, false},
        {"--no-predictor", TIFFTAG_PREDICTOR, PREDICTOR_NONE, false},
        {"--pixel-type float", TIFFTAG_PREDICTOR, PREDICTOR_FLOATINGPOINT, false},
        {"--pixel-type float --big-endian", TIFFTAG_PREDICTOR, PREDICTOR_NONE, false},
        {"--compression zstd", TIFFTAG_COMPRESSION, COMPRESSION_ZSTD, false},
        {"--compression jpeg --pixel-type uint8", TIFFTAG_COMPRESSION, COMPRESSION_JPEG, false},
        {"--planar-rgb", TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE, false},
        {"--rgb", TIFFTAG_SAMPLESPERPIXEL, 3, false},
        {"--pixel-type int8", TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_INT, false},
    };
    for (const auto& row : rows) {
        const Folder folder;
        ASSERT_EQ(makeSample(folder, small + "--pattern ramp a.tif " + row.options).status, 0) << row.options;
        TIFF* tiff = TIFFOpen((folder / "a.tif").c_str(), "r");
        ASSERT_NE(tiff, nullptr);
        std::uint32_t wide = 0;
        std::uint16_t narrow = 0;
        row.wide ? TIFFGetFieldDefaulted(tiff, row.tag, &wide)
                 : TIFFGetFieldDefaulted(tiff, row.tag, &narrow);
        EXPECT_EQ(row.wide ? wide : narrow, row.expected) << row.options;
        TIFFClose(tiff);
    }
}

TEST(Layout, HeaderTellsByteOrderAndSize)
{
    const std::pair<const char*, std::string> rows[] = {{"", {'I', 'I', 42, 0}},
                                                        {"--big-endian", {'M', 'M', 0, 42}},
                                                        {"--bigtiff", {'I', 'I', 43, 0}},
                                                        {"--bigtiff --big-endian", {'M', 'M', 0, 43}}};
    for (const auto& [options, header] : rows) {
        const Folder folder;
        ASSERT_EQ(makeSample(folder, small + "--pattern planes a.tif " + options).status, 0);
        EXPECT_EQ(bytesOf(folder / "a.tif").substr(0, 4), header) << options;
    }
}

TEST(Layout, PyramidLevelsHoldTheRampOfTheTopLeftPixels)
{
    const Folder folder;
    ASSERT_EQ(
        makeSample(folder, small + "--pattern ramp --channels 2 --pyramid 2 --tile 16 a.ome.tif").status, 0);
    for (int level = 0; level <= 2; ++level) {
        const Pixels pixels = readPixels(folder / "a.ome.tif", 5, level); // z 2, c 1, t 0
        EXPECT_EQ(pixels.width, 37 >> level);
        EXPECT_EQ(pixels.height, 29 >> level);
        EXPECT_EQ(wrongPixels(pixels, {2, 1, 0, 0}, "uint16", 1 << level), 0) << level;
    }
}

TEST(Layout, LossyJpegStaysCloseToConstantPlanes)
{
    const Folder folder;
    ASSERT_EQ(makeSample(folder, small +
                                     "--pattern planes --channels 2 --pixel-type uint8 --compression jpeg "
                                     "--tile 16 a.ome.tif")
                  .status,
              0);
    const Pixels pixels = readPixels(folder / "a.ome.tif", 3); // z 1, c 1
    for (double value : pixels.values)
        ASSERT_NEAR(value, (101 + 1009) % 256, 2);
}

TEST(ImageJ, CountsAndPlaneOrder)
{
    for (const std::string endian : {"", "--big-endian"}) {
        const Folder folder;
        ASSERT_EQ(makeSample(folder, small + "--pattern ramp --channels 2 --imagej a.tif " + endian).status,
                  0);
        const std::string text = readDescription(folder / "a.tif");
        for (const char* line :
             {"ImageJ=", "\nimages=12\n", "\nchannels=2\n", "\nslices=3\n", "\nframes=2\n",
              "\nhyperstack=true\n", "\nunit=micron\n", "\nspacing=0.5\n", "\nfinterval=30\n"})
            EXPECT_THAT(text, HasSubstr(line));
        for (int page = 0; page < 12; ++page) // channels, then slices, then frames
            EXPECT_EQ(
                wrongPixels(readPixels(folder / "a.tif", page), {page / 2 % 3, page % 2, page / 6}, "uint16"),
                0);
    }
}

TEST(Plain, HasNoDescription)
{
    const Folder folder;
    ASSERT_EQ(makeSample(folder, small + "--pattern ramp --plain a.tif").status, 0);
    EXPECT_EQ(readDescription(folder / "a.tif"), "");
}

TEST(Failures, WrongUsageGivesASentenceAndStatus2)
{
    const char* rows[] = {"",
                          "--size 12 a.tif",
                          "--size 0x5 a.tif",
                          "--size -4x5 a.tif",
                          "--z 0 a.tif",
                          "--channels 9 a.tif",
                          "--pixel-type word a.tif",
                          "--compression fax4 a.tif",
                          "--compression jpeg a.tif",
                          "--tile 20 a.tif",
                          "--tile 16 --rows-per-strip 4 a.tif",
                          "--size 4x4 --pyramid 3 a.tif",
                          "--imagej --pixel-type double a.tif",
                          "--plain --split z a.tif",
                          "--split z --files 2 a.tif",
                          "--z 1 --time 1 --channels 1 --files 2 a.tif",
                          "--rgb --channels 4 a.tif",
                          "--unheard-of a.tif"};
    for (const char* options : rows) {
        const Folder folder;
        const Outcome outcome = makeSample(folder, options);
        EXPECT_EQ(outcome.status, 2) << options;
        EXPECT_THAT(outcome.errors, testing::MatchesRegex("makesample: [^\n]+\n")) << options;
        EXPECT_THAT(folder.names(), IsEmpty()) << options;
    }
}

TEST(Failures, UnwritableOutputGivesASentenceAndStatus1AndLeavesNothing)
{
    const std::pair<const char*, const char*> rows[] = {
        {"--pattern ramp missing/a.tif", ""},
        {"--pattern ramp missing/a.ome.tif --companion", ""},
        {"--pattern ramp .", ""},
        {"--pattern ramp --compression none a.tif", "ulimit -f 64; "},            // one file of 31 MB
        {"--pattern ramp --compression none --split z a.tif", "ulimit -f 64; "}}; // five of them
    for (const auto& [options, before] : rows) {
        const Folder folder;
        const Outcome outcome = makeSample(folder, options, before);
        EXPECT_EQ(outcome.status, 1) << options;
        EXPECT_THAT(outcome.errors, testing::MatchesRegex("makesample: Cannot write [^\n]+\n")) << options;
        EXPECT_THAT(folder.names(), IsEmpty()) << options;
    }
}

TEST(Failures, AnOlderFileSurvivesAFailedRun)
{
    const Folder folder;
    std::ofstream(folder / "a.tif") << "older";
    EXPECT_EQ(makeSample(folder, "--pattern ramp --compression none a.tif", "ulimit -f 64; ").status, 1);
    EXPECT_EQ(bytesOf(folder / "a.tif"), "older");
    EXPECT_THAT(folder.names(), ElementsAre("a.tif"));
}
