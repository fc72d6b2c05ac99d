// Which plane of which file is which section, and what OME metadata tell about it.
#include "tests/unit/image/TestFiles.h"

#include <gtest/gtest.h>

using namespace image;
namespace fs = std::filesystem;

static std::string omeRoot(const std::string& content, const std::string& uuid = {})
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!-- made for a test --><OME "
           "xmlns=\"http://www.openmicroscopy.org/Schemas/OME/2016-06\"" +
           (uuid.empty() ? std::string() : " UUID=\"" + uuid + "\"") + ">" + content + "</OME>";
}

static std::string omeImage(const std::string& attributes, const std::string& content,
                            const std::string& size = "SizeX=\"37\" SizeY=\"29\"")
{
    return "<Image ID=\"Image:0\"><Pixels ID=\"Pixels:0\" Type=\"uint16\" " + size + " " + attributes + ">" +
           content + "</Pixels></Image>";
}

static std::string sizes(int z, int c, int t, const std::string& order = "XYZCT")
{
    return "DimensionOrder=\"" + order + "\" SizeZ=\"" + std::to_string(z) + "\" SizeC=\"" +
           std::to_string(c) + "\" SizeT=\"" + std::to_string(t) + "\"";
}

static std::string tiffData(const std::string& file, const std::string& uuid, const std::string& attributes)
{
    return "<TiffData " + attributes + "><UUID FileName=\"" + file + "\">" + uuid + "</UUID></TiffData>";
}

// The page that a section comes from, -1 when it is not there.
static int pageOf(ImageFile& image, const TiffSpec& spec, const SectionIndex& section)
{
    if (!image.hasSection(section))
        return -1;
    const float value = firstPixel(image, section);
    for (int page = 0; page < spec.pages; ++page)
        if (value == storedValue(spec, 0, 0, page, 0))
            return page;
    return -2;
}

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
        {"XYZCT", "<TiffData IFD='0'/><TiffData IFD='99' FirstZ='1'/>", {1, 0, 0, 0}, -1},
        {"XYZCT", "<TiffData IFD='0'/><TiffData IFD='1' FirstZ='5'/>", {1, 0, 0, 0}, -1},
        {"XYZCT", "<TiffData IFD='0'/><TiffData IFD='-1' FirstZ='1'/>", {1, 0, 0, 0}, -1},
    };
    const TempFolder folder;
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.order) + " " + row.data);
        TiffSpec spec;
        spec.pages = 12;
        spec.description = omeRoot(omeImage(sizes(2, 3, 2, row.order), row.data));
        writeTiff(folder / "o.ome.tif", spec);
        const auto image = ImageFile::open(folder / "o.ome.tif");
        EXPECT_EQ(image->info().sizeZ * 100 + image->info().sizeW * 10 + image->info().sizeT, 232);
        EXPECT_EQ(pageOf(*image, spec, row.section), row.page);
    }
}

TEST(Ome, ImagesOfEqualSizeArePositions)
{
    TiffSpec spec;
    spec.pages = 5;
    spec.description = omeRoot(omeImage(sizes(2, 1, 1), "<TiffData IFD='0' PlaneCount='2'/>") +
                               omeImage(sizes(1, 1, 1), "<TiffData IFD='2'/>") +
                               omeImage(sizes(2, 1, 1), "<TiffData IFD='3' PlaneCount='2'/>"));
    const TempFolder folder;
    writeTiff(folder / "p.ome.tif", spec);
    const auto image = ImageFile::open(folder / "p.ome.tif");
    EXPECT_EQ(image->info().sizeP, 2);
    EXPECT_EQ(pageOf(*image, spec, {1, 0, 0, 1}), 4);
}

TEST(Ome, ChannelsPlanesAndUnits)
{
    TiffSpec spec;
    spec.pages = 2;
    spec.description = omeRoot(
        "<Instrument><Detector ID=\"Detector:1\" Offset=\"7\"/></Instrument>" +
        omeImage(
            sizes(1, 2, 1) +
                " PhysicalSizeX=\"250\" PhysicalSizeXUnit=\"nm\" PhysicalSizeY=\"2.5\" "
                "PhysicalSizeYUnit=\"\u00c5\" PhysicalSizeZ=\"0.5\" PhysicalSizeZUnit=\"\u00b5m\"",
            "<Channel Name=\"actin\" EmissionWavelength=\"0.6\" EmissionWavelengthUnit=\"\u00b5m\" "
            "ExcitationWavelength=\"561\"><DetectorSettings ID=\"Detector:9\" Offset=\"98.5\"/></Channel>"
            "<Channel Color=\"16711935\" ExcitationWavelength=\"405\"><DetectorSettings "
            "ID=\"Detector:1\"/></Channel>"
            "<TiffData/><Plane TheZ=\"0\" TheC=\"1\" TheT=\"0\" DeltaT=\"2\" DeltaTUnit=\"min\" "
            "PositionX=\"1.5\" PositionXUnit=\"mm\" PositionY=\"3\" PositionZ=\"4\" "
            "PositionZUnit=\"reference frame\"/>"));
    const TempFolder folder;
    writeTiff(folder / "c.ome.tif", spec);
    const auto image = ImageFile::open(folder / "c.ome.tif");
    const ImageInfo& info = image->info();
    EXPECT_TRUE(info.calibrated);
    EXPECT_FLOAT_EQ(info.spacing[0], 0.25f);
    EXPECT_FLOAT_EQ(info.spacing[1], 0.00025f);
    EXPECT_FLOAT_EQ(info.spacing[2], 0.5f);
    EXPECT_EQ(info.wavelengths[0].name, "actin");
    EXPECT_FLOAT_EQ(info.wavelengths[0].nanometres, 600);
    EXPECT_EQ(info.wavelengths[0].colorIndex, 1);
    EXPECT_FLOAT_EQ(info.wavelengths[1].nanometres, 405);
    EXPECT_EQ(info.wavelengths[1].colorIndex, 2); // 0x00ff00ff: green, opaque
    EXPECT_EQ(image->extendedHeader({0, 1, 0, 0}, TimeStampSeconds), 120.0);
    EXPECT_EQ(image->extendedHeader({0, 1, 0, 0}, StageXMicrons), 1500.0);
    EXPECT_EQ(image->extendedHeader({0, 1, 0, 0}, StageYMicrons), 3.0);
    EXPECT_FALSE(image->extendedHeader({0, 1, 0, 0}, StageZMicrons));
    EXPECT_FALSE(image->extendedHeader({0, 0, 0, 0}, TimeStampSeconds));
    EXPECT_EQ(image->extendedHeader({0, 0, 0, 0}, KnownBias), 98.5);
    EXPECT_EQ(image->extendedHeader({0, 1, 0, 0}, KnownBias), 7.0);
    EXPECT_FALSE(image->extendedHeader({0, 1, 0, 0}, 99));
}

TEST(Ome, PixelsAsUnitAreNoCalibration)
{
    for (const char* const unit : {"pixel", "reference frame", "parsec?"}) {
        TiffSpec spec;
        spec.description =
            omeRoot(omeImage(sizes(1, 1, 1) + " PhysicalSizeX=\"3\" PhysicalSizeXUnit=\"" + unit + "\"", ""));
        const TempFolder folder;
        writeTiff(folder / "u.ome.tif", spec);
        EXPECT_FALSE(ImageFile::open(folder / "u.ome.tif")->info().calibrated) << unit;
    }
}

// A prefix on every element, the elements of a 2008 file, and attributes of older names.
TEST(Ome, OldSchemasAndPrefixes)
{
    TiffSpec spec;
    spec.pages = 2;
    spec.description =
        "<?xml version='1.0'?><ome:OME xmlns:ome='http://www.openmicroscopy.org/Schemas/OME/2008-02'>"
        "<ome:Image ID='Image:0'><ome:LogicalChannel ID='C:0' Name='first' EmWave='525'/>"
        "<ome:LogicalChannel ID='C:1' Name='second' ExWave='640'/>"
        "<ome:Pixels DimensionOrder='XYCZT' PixelType='Uint16' SizeX='37' SizeY='29' SizeZ='1' SizeC='2' "
        "SizeT='1' "
        "PhysicalSizeX='0.2' PhysicalSizeY='0.2'><ome:TiffData IFD='0' NumPlanes='2'/>"
        "<ome:Plane TheZ='0' TheC='0' TheT='0'><ome:PlaneTiming DeltaT='3.5' ExposureTime='1'/>"
        "<ome:StagePosition PositionX='10' PositionY='20' PositionZ='30'/></ome:Plane>"
        "</ome:Pixels></ome:Image></ome:OME>";
    const TempFolder folder;
    writeTiff(folder / "old.ome.tif", spec);
    const auto image = ImageFile::open(folder / "old.ome.tif");
    EXPECT_EQ(image->info().sizeW, 2);
    EXPECT_EQ(image->info().wavelengths[0].name, "first");
    EXPECT_EQ(image->info().wavelengths[0].colorIndex, 2);
    EXPECT_EQ(image->info().wavelengths[1].colorIndex, 5);
    EXPECT_EQ(pageOf(*image, spec, {0, 1, 0, 0}), 1);
    EXPECT_EQ(image->extendedHeader({}, TimeStampSeconds), 3.5);
    EXPECT_EQ(image->extendedHeader({}, StageZMicrons), 30.0);
}

TEST(Ome, RgbChannelIsThreeWavelengths)
{
    TiffSpec spec;
    spec.samples = 3;
    spec.pages = 2;
    spec.description =
        omeRoot(omeImage(sizes(1, 6, 1, "XYCZT"), "<Channel Name=\"a\" SamplesPerPixel=\"3\"/>"
                                                  "<Channel Name=\"b\" SamplesPerPixel=\"3\"/><TiffData/>"));
    const TempFolder folder;
    writeTiff(folder / "rgb.ome.tif", spec);
    const auto image = ImageFile::open(folder / "rgb.ome.tif");
    ASSERT_EQ(image->info().sizeW, 6);
    EXPECT_EQ(image->info().wavelengths[1].colorIndex, 2);
    EXPECT_EQ(image->info().wavelengths[5].colorIndex, 4);
    EXPECT_EQ(firstPixel(*image, {0, 5, 0, 0}), storedValue(spec, 0, 0, 1, 2));
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
            data += tiffData(name(file), uuid(file),
                             "FirstT='" + std::to_string(file) + "' IFD='0' PlaneCount='2'");
        return omeImage(sizes(2, 1, 3), data);
    }
    void write(int file, const std::string& as, const std::string& description)
    {
        TiffSpec part = spec;
        part.firstPage = 2 * file;
        part.pages = 2;
        part.description = description;
        writeTiff(folder / as, part);
    }
    void SetUp() override
    {
        spec.pages = 6;
        for (int file = 0; file < 3; ++file)
            write(file, name(file), omeRoot(content(), uuid(file)));
    }
    void expectAllPages(const std::string& file)
    {
        const auto image = ImageFile::open(folder / file);
        for (int page = 0; page < 6; ++page)
            EXPECT_EQ(pageOf(*image, spec, {page % 2, 0, page / 2, 0}), page);
    }
    TempFolder folder;
    TiffSpec spec;
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
    EXPECT_EQ(pageOf(*image, spec, {1, 0, 1, 0}), -1);
    EXPECT_EQ(pageOf(*image, spec, {1, 0, 2, 0}), 5);
    EXPECT_TRUE(readWhole(*image, {1, 0, 1, 0}).empty());
    EXPECT_NE(image->lastError().find(name(0)), std::string::npos);
    EXPECT_EQ(image->info().format, "OME-TIFF, 2 files (1 missing)");
}

TEST_F(OmeSet, SiblingOfAnotherSizeFailsOnlyWhereItIsRead)
{
    TiffSpec other;
    other.width = 11;
    writeTiff(folder / name(1), other);
    const auto image = ImageFile::open(folder / name(0));
    EXPECT_TRUE(readWhole(*image, {0, 0, 1, 0}).empty());
    EXPECT_FALSE(readWhole(*image, {0, 0, 2, 0}).empty());
}

TEST_F(OmeSet, CompanionHoldsTheMetadata)
{
    const std::string binaryOnly = "<BinaryOnly MetadataFile=\"set.companion.ome\" UUID=\"urn:uuid:x\"/>";
    for (int file = 0; file < 3; ++file)
        write(file, name(file), omeRoot(binaryOnly, uuid(file)));
    writeBytes(folder / "set.companion.ome", omeRoot(content(), "urn:uuid:x"));
    expectAllPages(name(1));
    expectAllPages("set.companion.ome");
    fs::rename(folder / name(2), folder / "third.tif");
    expectAllPages("set.companion.ome");
    for (int file = 0; file < 2; ++file)
        fs::remove(folder / name(file));
    fs::remove(folder / "third.tif");
    EXPECT_NE(openFailure(folder / "set.companion.ome").find("is there"), std::string::npos);
}

TEST_F(OmeSet, MissingCompanionIsTold)
{
    write(0, name(0), omeRoot("<BinaryOnly MetadataFile=\"gone.companion.ome\"/>"));
    EXPECT_NE(openFailure(folder / name(0)).find("gone.companion.ome"), std::string::npos);
}

TEST(Ome, LyingMetadataAreRefused)
{
    const std::string normal = "SizeX=\"37\" SizeY=\"29\"";
    struct Row {
        std::string size, attributes, content, sentencePart;
    };
    const Row rows[] = {
        {"SizeX=\"38\" SizeY=\"29\"", sizes(1, 1, 1), "", "38 x 29"},
        {"SizeX=\"0\" SizeY=\"29\"", sizes(1, 1, 1), "", "0 x 29"},
        {normal, sizes(1000000000, 1, 1), "", "sections"},
        {normal, sizes(0, 1, 1), "", "dimension"},
        {normal, sizes(-5, 1, 1), "", "dimension"},
        {normal, sizes(1, 5000, 1), "", "wavelengths"},
        {normal, sizes(99999, 1, 99999), "", "sections"},
        {normal, sizes(1, 1, 1), "<TiffData IFD='4'/>", "planes"},
        {normal, sizes(1, 1, 1), "<Channel>", "damaged"},
    };
    const TempFolder folder;
    for (const Row& row : rows) {
        TiffSpec spec;
        spec.description = omeRoot(omeImage(row.attributes, row.content, row.size));
        writeTiff(folder / "lie.ome.tif", spec);
        EXPECT_NE(openFailure(folder / "lie.ome.tif").find(row.sentencePart), std::string::npos)
            << row.size << row.attributes << row.content << ": " << openFailure(folder / "lie.ome.tif");
    }
}

TEST(Ome, EntitiesAreNotExpanded)
{
    std::string bomb = "<?xml version='1.0'?><!DOCTYPE OME [<!ENTITY a 'aaaaaaaaaaaaaaaaaaaa'>";
    for (char c = 'b'; c < 'p'; ++c) {
        bomb += std::string("<!ENTITY ") + c + " '";
        for (int i = 0; i < 10; ++i)
            bomb += std::string("&") + static_cast<char>(c - 1) + ";";
        bomb += "'>";
    }
    TiffSpec spec;
    spec.description = bomb +
                       "]><OME><Image><Pixels SizeX='37' SizeY='29' Type='uint16'><Channel Name='&o;'/>"
                       "</Pixels></Image></OME>";
    const TempFolder folder;
    writeTiff(folder / "bomb.ome.tif", spec);
    EXPECT_LT(ImageFile::open(folder / "bomb.ome.tif")->info().wavelengths[0].name.size(), 10u);
}
