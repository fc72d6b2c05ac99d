// SPDX-License-Identifier: MIT
// Which plane of which file is which section, and what OME metadata tell about it.
#include "tests/unit/image/TestFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

using namespace image;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

std::string omeRoot(const std::string& content, const std::string& uuid = "urn:uuid:own")
{
    return "<?xml version='1.0' encoding='UTF-8'?><!-- made for a test --><OME "
           "xmlns='http://www.openmicroscopy.org/Schemas/OME/2016-06' UUID='" +
           uuid + "'>" + content + "</OME>";
}

std::string omeImage(const std::string& attributes, const std::string& content,
                     const std::string& size = "SizeX='37' SizeY='29'")
{
    return "<Image ID='Image:0'><Pixels ID='Pixels:0' Type='uint16' " + size + " " + attributes + ">" +
           content + "</Pixels></Image>";
}

std::string sizes(int z, int c, int t, const std::string& order = "XYZCT")
{
    return "DimensionOrder='" + order + "' SizeZ='" + std::to_string(z) + "' SizeC='" + std::to_string(c) +
           "' SizeT='" + std::to_string(t) + "'";
}

// The page that a section comes from, -1 when it is not there.
int pageOf(ImageFile& image, const SectionIndex& section)
{
    if (!image.hasSection(section))
        return -1;
    const float value = pixelAt(image, section);
    for (int page = 0; page < 12; ++page)
        if (value == storedValue({}, 0, 0, page))
            return page;
    return -2;
}

} // namespace

TEST(Ome, PlanesFollowTiffDataAndDimensionOrder)
{
    struct Row {
        const char* order;
        const char* data;
        SectionIndex section;
        int page;
    };
    static constexpr Row rows[] = {
        // No TiffData: all pages in dimension order.
        {"XYZCT", "", {1, 0, 0, 0}, 1},
        {"XYZCT", "", {0, 1, 0, 0}, 2},
        {"XYCZT", "", {0, 1, 0, 0}, 1},
        {"XYTCZ", "", {1, 2, 1, 0}, 11},
        {"XYTZC", "", {0, 0, 1, 0}, 1},
        // Without attributes: the same.
        {"XYCTZ", "<TiffData/>", {0, 0, 1, 0}, 3},
        // IFD alone: one plane.
        {"XYZCT", "<TiffData IFD='7' FirstC='2' FirstZ='1' FirstT='1'/>", {1, 2, 1, 0}, 7},
        {"XYZCT", "<TiffData IFD='7' FirstC='2' FirstZ='1' FirstT='1'/>", {0, 0, 0, 0}, -1},
        {"XYZCT", "<TiffData IFD='3' PlaneCount='2'/>", {1, 0, 0, 0}, 4},
        {"XYZCT", "<TiffData IFD='3' PlaneCount='2'/>", {0, 1, 0, 0}, -1},
        {"XYZCT", "<TiffData PlaneCount='1'/><TiffData IFD='9' FirstZ='1'/>", {1, 0, 0, 0}, 9},
        // Counts and pages beyond the file or the image.
        {"XYZCT", "<TiffData IFD='10' PlaneCount='1000000000'/>", {1, 0, 0, 0}, 11},
        {"XYZCT", "<TiffData IFD='10' PlaneCount='1000000000'/>", {0, 1, 0, 0}, -1},
        // Planes that are named twice.
        {"XYZCT", "<TiffData IFD='5' FirstZ='1'/><TiffData/>", {1, 0, 0, 0}, 5},
        {"XYZCT", "<TiffData IFD='5' FirstZ='1'/><TiffData/>", {0, 1, 0, 0}, 2},
        {"XYZCT", "<TiffData IFD='0'/><TiffData IFD='99' FirstZ='1'/>", {1, 0, 0, 0}, -1},
        {"XYZCT", "<TiffData IFD='0'/><TiffData IFD='1' FirstZ='5'/>", {1, 2, 0, 0}, -1},
        {"XYZCT", "<TiffData IFD='0'/><TiffData IFD='-1' FirstZ='1'/>", {1, 0, 0, 0}, -1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.order) + " " + row.data);
        const std::string description = omeRoot(omeImage(sizes(2, 3, 2, row.order), row.data));
        const TestImage image({.pages = 12, .description = description});
        EXPECT_THAT(sizesOf(*image), ElementsAre(2, 3, 2, 1));
        EXPECT_EQ(pageOf(*image, row.section), row.page);
    }
}

TEST(Ome, ImagesOfEqualSizeArePositions)
{
    const std::string images = omeImage(sizes(2, 1, 1), "<TiffData IFD='0' PlaneCount='2'/>") +
                               omeImage(sizes(1, 1, 1), "<TiffData IFD='2'/>") +
                               omeImage(sizes(2, 1, 1), "<TiffData IFD='3' PlaneCount='2'/>");
    const TestImage image({.pages = 5, .description = omeRoot(images)});
    EXPECT_THAT(sizesOf(*image), ElementsAre(2, 1, 1, 2));
    EXPECT_THAT(image->info().remarks, ElementsAre("1 image of another size or kind is not shown."));
    EXPECT_EQ(pageOf(*image, {1, 0, 0, 1}), 4);
}

namespace {

const std::string twoChannels = R"(<OME><Instrument><Detector ID='Detector:1' Offset='7'/></Instrument>
<Image><Pixels Type='uint16' SizeX='37' SizeY='29' SizeC='2' PhysicalSizeX='250' PhysicalSizeXUnit='nm'
  PhysicalSizeY='2.5' PhysicalSizeYUnit='Å' PhysicalSizeZ='0.5' PhysicalSizeZUnit='µm'>
<Channel Name='actin' EmissionWavelength='0.6' EmissionWavelengthUnit='µm' ExcitationWavelength='561'>
  <DetectorSettings ID='Detector:9' Offset='98.5'/></Channel>
<Channel Color='16711935' ExcitationWavelength='405'><DetectorSettings ID='Detector:1'/></Channel>
<TiffData/>
<Plane TheZ='0' TheC='1' TheT='0' DeltaT='2' DeltaTUnit='min' PositionX='1.5' PositionXUnit='mm'
  PositionY='3' PositionZ='4' PositionZUnit='reference frame'/></Pixels></Image></OME>)";

} // namespace

TEST(Ome, ChannelsPlanesAndUnits)
{
    const TestImage image({.pages = 2, .description = twoChannels});
    const ImageInfo& info = image->info();
    EXPECT_TRUE(info.calibrated);
    EXPECT_THAT(info.spacing, ElementsAre(0.25f, 0.00025f, 0.5f));
    EXPECT_EQ(info.wavelengths[0].name, "actin");
    EXPECT_FLOAT_EQ(info.wavelengths[0].nanometres, 600);
    EXPECT_EQ(info.wavelengths[0].colorIndex, 1);
    EXPECT_FLOAT_EQ(info.wavelengths[1].nanometres, 405);
    EXPECT_EQ(info.wavelengths[1].colorIndex, 2); // 0x00ff00ff: green, opaque
    const auto none = std::nullopt;
    EXPECT_THAT(headerOf(*image, {0, 0, 0, 0}), ElementsAre(none, none, none, none, 98.5));
    EXPECT_THAT(headerOf(*image, {0, 1, 0, 0}), ElementsAre(120.0, 1500.0, 3.0, none, 7.0));
    EXPECT_FALSE(image->extendedHeader({0, 1, 0, 0}, 99));
}

TEST(Ome, TimeIncrementWhereAPlaneHasNoTime)
{
    const std::string plane = "<TiffData/><Plane TheT='1' DeltaT='9'/>";
    const TestImage image({.pages = 3,
                           .description = omeRoot(omeImage(
                               sizes(1, 1, 3) + " TimeIncrement='1500' TimeIncrementUnit='ms'", plane))});
    const auto time = [&](int t) { return image->extendedHeader({0, 0, t, 0}, TimeStampSeconds); };
    EXPECT_EQ(time(0), 0.0);
    EXPECT_EQ(time(1), 9.0);
    EXPECT_EQ(time(2), 3.0);
}

TEST(Ome, WavelengthOfTheDyeWhereTheFileGivesNone)
{
    const std::string channels = "<Channel Name='AF568'/><Channel Name='GFP' ExcitationWavelength='470'/>"
                                 "<Channel Name='phase'/><TiffData/>";
    const TestImage image({.pages = 3, .description = omeRoot(omeImage(sizes(1, 3, 1), channels))});
    EXPECT_EQ(image->info().wavelengths[0].nanometres, 603);
    EXPECT_EQ(image->info().wavelengths[1].nanometres, 470);
    EXPECT_EQ(image->info().wavelengths[2].nanometres, 0);
}

// Finite as a double, infinite or zero as a float or as the square of a length: as if not given.
TEST(Ome, NumbersThatAFloatCannotHoldAreNotGiven)
{
    for (const char* const size : {"1e300", "1e39", "1e30", "1e-300", "1e-46", "1e-30"}) {
        const std::string spacing = std::string(" PhysicalSizeX='") + size + "'";
        const TestImage image({.description = omeRoot(omeImage(sizes(1, 1, 1) + spacing, ""))});
        EXPECT_FALSE(image->info().calibrated) << size;
        EXPECT_THAT(image->info().spacing, ElementsAre(1, 1, 1)) << size;
    }
    const std::string plane = "<Channel><DetectorSettings Offset='1e300'/></Channel><TiffData/>"
                              "<Plane DeltaT='1e200' PositionX='1e308' PositionY='-7'/>";
    const std::string spacing = " PhysicalSizeX='1e300' PhysicalSizeY='0.5' PhysicalSizeZ='1e300'";
    const TestImage image({.description = omeRoot(omeImage(sizes(1, 1, 1) + spacing, plane))});
    const auto none = std::nullopt;
    EXPECT_THAT(headerOf(*image, {}), ElementsAre(none, none, -7.0, none, none));
    EXPECT_THAT(image->info().spacing, ElementsAre(0.5f, 0.5f, 1));
    EXPECT_TRUE(image->info().calibrated);
    EXPECT_FALSE(image->info().zCalibrated);
}

namespace {

// A prefix on every element, the elements of a 2008 file, and attributes of older names.
const std::string oldSchema = R"(<?xml version='1.0'?>
<ome:OME xmlns:ome='http://www.openmicroscopy.org/Schemas/OME/2008-02'><ome:Image ID='Image:0'>
<ome:LogicalChannel ID='C:0' Name='first' EmWave='525'/>
<ome:LogicalChannel ID='C:1' Name='second' ExWave='640'/>
<ome:Pixels DimensionOrder='XYCZT' PixelType='Uint16' SizeX='37' SizeY='29' SizeZ='1' SizeC='2' SizeT='1'
  PhysicalSizeX='0.2' PhysicalSizeY='0.2'><ome:TiffData IFD='0' NumPlanes='2'/>
<ome:Plane TheZ='0' TheC='0' TheT='0'><ome:PlaneTiming DeltaT='3.5' ExposureTime='1'/>
  <ome:StagePosition PositionX='10' PositionY='20' PositionZ='30'/></ome:Plane>
</ome:Pixels></ome:Image></ome:OME>)";

} // namespace

TEST(Ome, OldSchemasAndPrefixes)
{
    const TestImage image({.pages = 2, .description = oldSchema});
    ASSERT_EQ(image->info().sizeW, 2);
    EXPECT_EQ(image->info().wavelengths[0].name, "first");
    EXPECT_EQ(image->info().wavelengths[0].colorIndex, 2);
    EXPECT_EQ(image->info().wavelengths[1].colorIndex, 5);
    EXPECT_EQ(pageOf(*image, {0, 1, 0, 0}), 1);
    EXPECT_THAT(headerOf(*image, {}), ElementsAre(3.5, 10.0, 20.0, 30.0, std::nullopt));
}

TEST(Ome, RgbChannelIsThreeWavelengths)
{
    const std::string channels =
        "<Channel Name='a' SamplesPerPixel='3'/>"
        "<Channel Name='b' SamplesPerPixel='3' EmissionWavelength='520'/><TiffData/>";
    const TiffSpec spec{
        .samples = 3, .pages = 2, .description = omeRoot(omeImage(sizes(1, 6, 1, "XYCZT"), channels))};
    const TestImage image(spec);
    ASSERT_EQ(image->info().sizeW, 6);
    EXPECT_EQ(image->info().wavelengths[1].colorIndex, 2);
    EXPECT_EQ(image->info().wavelengths[2].name, "a Blue");
    EXPECT_EQ(image->info().wavelengths[5].name, "b Blue");
    EXPECT_EQ(image->info().wavelengths[5].colorIndex, 4);
    EXPECT_EQ(image->info().wavelengths[5].nanometres, 520);
    EXPECT_EQ(pixelAt(*image, {0, 5, 0, 0}), storedValue(spec, 0, 0, 1, 2));
}

// A single file that was renamed: the name in its metadata, which carries no identifier, means itself.
TEST(Ome, TheOnlyNameMeansTheFileItself)
{
    const std::string data = "<TiffData><UUID FileName='first.ome.tif'/></TiffData>";
    const TestImage image({.description = omeRoot(omeImage(sizes(1, 1, 1), data))});
    EXPECT_EQ(pageOf(*image, {}), 0);
}

// Three files of two planes each; the metadata in every one of them.
class OmeSet : public ::testing::Test {
protected:
    static std::string uuid(int file) { return "urn:uuid:" + std::to_string(file); }
    static std::string name(int file) { return "set" + std::to_string(file) + ".ome.tif"; }
    static std::string content()
    {
        std::string data;
        for (int file = 0; file < 3; ++file)
            data += "<TiffData FirstT='" + std::to_string(file) +
                    "' IFD='0' PlaneCount='2'><UUID FileName='" + name(file) + "'>" + uuid(file) +
                    "</UUID></TiffData>";
        return omeImage(sizes(2, 1, 3), data);
    }
    void write(int file, const std::string& metadata)
    {
        writeTiff(folder / name(file),
                  {.pages = 2, .firstPage = 2 * file, .description = omeRoot(metadata, uuid(file))});
    }
    void SetUp() override
    {
        for (int file = 0; file < 3; ++file)
            write(file, content());
    }
    void expectAllPages(const std::string& file)
    {
        const auto image = ImageFile::open(folder / file);
        for (int page = 0; page < 6; ++page)
            EXPECT_EQ(pageOf(*image, {page % 2, 0, page / 2, 0}), page) << file;
    }
    TempFolder folder;
};

TEST_F(OmeSet, AnyFileOpensTheWholeSet)
{
    expectAllPages(name(0));
    expectAllPages(name(2));
    EXPECT_EQ(ImageFile::open(folder / name(1))->info().format, "OME-TIFF, 3 files");
}

TEST_F(OmeSet, RenamedFilesAreFoundByTheirIdentifier)
{
    fs::rename(folder / name(1), folder / "renamed.tif");
    expectAllPages("renamed.tif");
    expectAllPages(name(0));
}

TEST_F(OmeSet, MissingFilesLeaveGaps)
{
    fs::remove(folder / name(1));
    const auto image = ImageFile::open(folder / name(0));
    EXPECT_EQ(image->info().sizeT, 3);
    EXPECT_EQ(pageOf(*image, {1, 0, 1, 0}), -1);
    EXPECT_EQ(pageOf(*image, {1, 0, 2, 0}), 5);
    EXPECT_TRUE(readWhole(*image, {1, 0, 1, 0}).empty());
    EXPECT_THAT(image->lastError(), HasSubstr(name(0)));
    EXPECT_EQ(image->info().format, "OME-TIFF, 2 files (1 missing)");
}

TEST_F(OmeSet, SiblingOfAnotherSizeFailsOnlyWhereItIsRead)
{
    writeTiff(folder / name(1), {.width = 11});
    const auto image = ImageFile::open(folder / name(0));
    EXPECT_TRUE(readWhole(*image, {0, 0, 1, 0}).empty());
    EXPECT_FALSE(readWhole(*image, {0, 0, 2, 0}).empty());
}

TEST_F(OmeSet, CompanionHoldsTheMetadata)
{
    const fs::path companion = folder / "set.companion.ome";
    for (int file = 0; file < 3; ++file)
        write(file, "<BinaryOnly MetadataFile='set.companion.ome' UUID='urn:uuid:x'/>");
    EXPECT_THAT(openFailure(folder / name(1)), HasSubstr("set.companion.ome, is not there"));
    writeBytes(companion, omeRoot(content(), "urn:uuid:x"));
    expectAllPages(name(1));
    fs::rename(folder / name(2), folder / "third.tif");
    expectAllPages(companion.filename());
    for (const char* const file : {"set0.ome.tif", "set1.ome.tif", "third.tif"})
        fs::remove(folder / file);
    EXPECT_THAT(openFailure(companion), HasSubstr("is there"));
}

TEST(Ome, LyingMetadataAreRefused)
{
    const std::string normal = "SizeX='37' SizeY='29'";
    const struct {
        std::string size, attributes, content, sentencePart;
    } rows[] = {
        {"SizeX='38' SizeY='29'", sizes(1, 1, 1), "", "38 x 29"},
        {"SizeX='0' SizeY='29'", sizes(1, 1, 1), "", "0 x 29"},
        {normal, sizes(1000000000, 1, 1), "", "sections"},
        {normal, sizes(0, 1, 1), "", "dimension"},
        {normal, sizes(-5, 1, 1), "", "dimension"},
        {normal, sizes(1, 5000, 1), "", "wavelengths"},
        {normal, sizes(99999, 1, 99999), "", "sections"},
        {normal, sizes(1, 1, 1), "<TiffData IFD='4'/>", "planes"},
        {normal, sizes(1, 1, 1), "<Channel>", "damaged"},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        const std::string image = omeImage(row.attributes, row.content, row.size);
        writeTiff(folder / "lie.ome.tif", {.description = omeRoot(image)});
        EXPECT_THAT(openFailure(folder / "lie.ome.tif"), HasSubstr(row.sentencePart)) << image;
    }
}
