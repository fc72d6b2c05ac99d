// SPDX-License-Identifier: MIT
// The figure and its numbers, read back.
#include "platform/imagewindow/figure/Figure.h"

#include "drive/Process.h"
#include "platform/imagewindow/view/Palette.h"
#include "tests/unit/image/TempFolder.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace viewer;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using viewertest::FakeImage;

namespace {

struct Stage {
    Stage()
    {
        file.description.wavelengths[0].name = "DAPI";
        file.description.wavelengths[1].name = "A, \"B\"";
        file.value = [](const image::SectionIndex& section, int x, int y) {
            return static_cast<float>(x + 100 * y + 1000 * section.w) + 0.5F;
        };
        panel.wavelengths = {0, 1};
        panel.colors = {base::Blue, base::Green};
    }
    SegmentProfile profile(SegmentEnds ends, bool calibrated = true)
    {
        const Scale scale{calibrated, false, {calibrated ? 0.5F : 1.0F, calibrated ? 0.5F : 1.0F, 1}};
        return readProfile(file, panel, ends, scale);
    }
    Figure figure(bool calibrated)
    {
        geometry.imageWidth = geometry.panelWidth = 200;
        geometry.imageHeight = geometry.panelHeight = 100;
        panels = {panel};
        return {{{geometry, panels, store, std::nullopt, 1},
                 {200, 100},
                 1,
                 std::vector<std::uint32_t>(200 * 100, 0x204060),
                 0},
                profile({10, 20, 110, 20}, calibrated),
                "cells.ome.tif   z 3"};
    }

    FakeImage file{200, 100, 2};
    PanelContent panel;
    protocol::Geometry geometry;
    std::vector<PanelContent> panels;
    OverlayStore store;
};

std::string outputOf(const std::vector<std::string>& command)
{
    drive::Process process(command);
    EXPECT_EQ(process.wait(), 0) << process.errors();
    return process.output();
}

} // namespace

TEST(SegmentProfile, TakesEachPixelOfTheLineOnce)
{
    Stage stage;
    const SegmentProfile profile = stage.profile({10.7, 20.2, 14.1, 22.9});
    EXPECT_THAT(profile.pixels, ElementsAre(PixelPoint{10, 20}, PixelPoint{11, 21}, PixelPoint{12, 21},
                                            PixelPoint{13, 22}, PixelPoint{14, 22}));
    EXPECT_THAT(profile.curves[0].values, ElementsAre(2010.5, 2111.5, 2112.5, 2213.5, 2214.5));
    EXPECT_EQ(profile.curves[1].values[0], 3010.5F);
    EXPECT_NEAR(profile.length, 0.5 * std::hypot(3.4, 2.7), 1e-5);
    EXPECT_NEAR(profile.step, profile.length / 5, 1e-6);
}

TEST(SegmentProfile, StaysInsideTheImage)
{
    Stage stage;
    const SegmentProfile profile = stage.profile({-50, 40, 500, 40});
    ASSERT_EQ(profile.pixels.size(), 200U);
    EXPECT_EQ(profile.pixels.front(), (PixelPoint{0, 40}));
    EXPECT_EQ(profile.pixels.back(), (PixelPoint{199, 40}));
    EXPECT_THROW(stage.profile({-50, -40, 500, -40}), std::runtime_error);
    EXPECT_THROW(stage.profile({5, 5, 5, 5}), std::runtime_error);
    stage.file.broken = true;
    EXPECT_THROW(stage.profile({5, 5, 9, 5}), std::runtime_error);
}

TEST(SegmentProfile, TableHasALineForEachSample)
{
    Stage stage;
    EXPECT_EQ(profileTable(stage.profile({10, 20, 12, 20})),
              "x (pixel),y (pixel),distance (\u00b5m),DAPI,\"A, \"\"B\"\"\"\r\n"
              "10,20,0,2010.5,3010.5\r\n"
              "11,20,0.33333334,2011.5,3011.5\r\n"
              "12,20,0.6666667,2012.5,3012.5\r\n");
}

TEST(Figure, ADocumentTellsAxesUnitsAndLegend)
{
    const TempFolder folder;
    for (const bool calibrated : {true, false}) {
        Stage stage;
        saveFigure(stage.figure(calibrated), folder / "figure.pdf");
        const std::string text = outputOf({"pdftotext", "-layout", folder / "figure.pdf", "-"});
        EXPECT_THAT(text, AllOf(HasSubstr("cells.ome.tif"), HasSubstr("DAPI"), HasSubstr("Intensity"),
                                HasSubstr("101 samples")));
        EXPECT_THAT(text, HasSubstr(calibrated ? "Distance (\u00b5m)" : "Distance (pixels)"));
        EXPECT_EQ(text.find("not calibrated") == std::string::npos, calibrated) << text;
        EXPECT_THAT(text, HasSubstr(calibrated ? "40" : "80")); // a tick of the distance
    }
}

TEST(Figure, ADrawingHoldsImageAndCurves)
{
    const TempFolder folder;
    Stage stage;
    saveFigure(stage.figure(true), folder / "figure.svg");
    const std::string svg = readBytes(folder / "figure.svg");
    EXPECT_THAT(svg, AllOf(HasSubstr("<image"), HasSubstr("<path"), HasSubstr("stroke:rgb(47.0588")));
}

TEST(Figure, APictureShowsImagePlotAndCurvesInTheirColors)
{
    const TempFolder folder;
    Stage stage;
    saveFigure(stage.figure(true), folder / "figure.png");
    const picture::Picture page = picture::read(folder / "figure.png");
    EXPECT_NEAR(page.width, 2000, 1);
    const auto count = [&](std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
        long pixels = 0;
        for (std::size_t i = 0; i < page.rgba.size(); i += 4)
            pixels += page.rgba[i] == red && page.rgba[i + 1] == green && page.rgba[i + 2] == blue;
        return pixels;
    };
    EXPECT_GT(count(255, 255, 255), 100000);
    EXPECT_GT(count(0x20, 0x40, 0x60), 100000); // the image
    EXPECT_GT(count(32, 32, 32), 100000);       // the plot's ground
    for (const int color : {base::Blue, base::Green}) {
        const base::Rgb& rgb = textPalette[static_cast<std::size_t>(color)];
        EXPECT_GT(count(rgb.red, rgb.green, rgb.blue), 500) << color;
    }
}
