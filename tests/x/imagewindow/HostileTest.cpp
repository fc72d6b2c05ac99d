// SPDX-License-Identifier: MIT
// Texts of any length that come with a file: viewer and tool go on.
#include "tests/Folders.h"
#include "tests/x/imagewindow/Viewer.h"

#include "drive/Pair.h"

#include <tiffio.h>

#include <array>
#include <string>

using namespace viewertest;

namespace {

constexpr int width = 40, height = 30;

// One page with two channels of that name in metadata.
void writeNamed(const std::string& path, const std::string& name)
{
    const std::string metadata =
        R"(<OME xmlns="http://www.openmicroscopy.org/Schemas/OME/2016-06"><Image ID="Image:0"><Pixels ID="Pixels:0" )"
        R"(DimensionOrder="XYZCT" Type="uint8" SizeX="40" SizeY="30" SizeZ="1" SizeC="2" SizeT="1">)"
        R"(<Channel ID="Channel:0:0" Name=")" +
        name + R"("/><Channel ID="Channel:0:1" Name=")" + name + R"("/><TiffData/></Pixels></Image></OME>)";
    TIFF* file = TIFFOpen(path.c_str(), "w");
    ASSERT_TRUE(file);
    for (int page = 0; page < 2; ++page) {
        TIFFSetField(file, TIFFTAG_IMAGEWIDTH, width);
        TIFFSetField(file, TIFFTAG_IMAGELENGTH, height);
        TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, height);
        if (page == 0)
            TIFFSetField(file, TIFFTAG_IMAGEDESCRIPTION, metadata.c_str());
        std::array<unsigned char, width * height> pixels{};
        pixels[7] = 200;
        EXPECT_GT(TIFFWriteEncodedStrip(file, 0, pixels.data(), pixels.size()), 0);
        TIFFWriteDirectory(file);
    }
    TIFFClose(file);
}

} // namespace

TEST(Hostile, NamesOfAnyLengthAreSurvived)
{
    const std::string path = scratchFolder() / "named.ome.tif";
    writeNamed(path, std::string(270000, 'n'));
    drive::Screen screen;
    drive::Pair pair(screen, BIN_DIR,
                     {{"--zoom", "8", path},
                      {{"HOME", scratchFolder().path},
                       {"XDG_CACHE_HOME", scratchFolder() / "cache"},
                       {"XDG_CONFIG_HOME", scratchFolder() / "config"},
                       {"XDG_DATA_HOME", scratchFolder() / "data"}}});
    pair.dragSegment(5, 5, 30, 20);
    screen.moveTo(pair.canvas, 100, 80);
    for (const int panels : {1, 0}) { // captions, too
        screen.click(pair.viewerWindow, 85, 14);
        drive::waitUntilCalm(screen);
        screen.type(panels ? "w" : "s");
        drive::waitUntilCalm(screen);
    }
    screen.moveTo(pair.canvas, 120, 90);
    EXPECT_TRUE(drive::waitUntil([&] { return pair.message().starts_with("Line length "); }));
    EXPECT_TRUE(pair.viewer.running()) << pair.viewer.errors();
    EXPECT_TRUE(pair.tool->running()) << pair.tool->errors();
    EXPECT_EQ(pair.viewer.errors(), "");
}
