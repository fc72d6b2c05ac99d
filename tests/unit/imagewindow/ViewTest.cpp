// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/View.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using namespace viewer;
using viewertest::FakeImage;

namespace {

image::ImageInfo imageOf(int width, int height, int sizeZ = 1, int sizeW = 1, int sizeT = 1)
{
    FakeImage file(width, height, sizeW);
    file.description.sizeZ = sizeZ;
    file.description.sizeT = sizeT;
    return file.description;
}

} // namespace

TEST(View, ShowsAtMostFiveWavelengthsAndAtLeastOne)
{
    View view = initialView(imageOf(10, 10, 1, 7));
    EXPECT_EQ(displayedWavelengths(view), (std::vector{0, 1, 2, 3, 4}));
    EXPECT_FALSE(showWavelength(view, 6, true));
    EXPECT_TRUE(showWavelength(view, 2, false));
    EXPECT_TRUE(showWavelength(view, 6, true));
    EXPECT_EQ(displayedWavelengths(view), (std::vector{0, 1, 3, 4, 6}));
    EXPECT_FALSE(showWavelength(view, 7, true));
    for (int w : {0, 1, 3, 4})
        EXPECT_TRUE(showWavelength(view, w, false));
    EXPECT_FALSE(showWavelength(view, 6, false));
}

TEST(View, LabelImagesAreKnownByAWordOfTheirNames)
{
    const struct {
        const char *file, *wavelength;
        bool labels;
        image::PixelType type = image::PixelType::UInt16;
        int wavelengths = 1;
    } rows[] = {
        {"cells_labels.tif", "", true},
        {"Label image 3.tif", "", true},
        {"img_cp_masks.png", "", true},
        {"a.ome.tif", "Segmentation", true},
        {"cells.tif", "", false},
        {"labelled cells.tif", "", false},
        {"unlabeled.tif", "GFP", false},
        {"segment.tif", "masked", false},
        {"labels.tif", "", false, image::PixelType::Float32},
        {"labels.tif", "", false, image::PixelType::UInt8, 3},
    };
    for (const auto& row : rows) {
        image::ImageInfo info = imageOf(10, 10, 1, row.wavelengths);
        info.path = std::string("/data/labels/") + row.file; // the folder says nothing
        info.wavelengths[0].name = row.wavelength;
        info.pixelType = row.type;
        EXPECT_EQ(saysLabels(info), row.labels) << row.file << ' ' << row.wavelength;
    }
}

TEST(View, ScrollingReachesTheEndBesideTheBars)
{
    const image::ImageInfo info = imageOf(500, 400);
    for (const double zoom : {0.75, 1.0, 3.0}) {
        View view = initialView(info);
        view.zoom = zoom;
        view.originX = view.originY = 1e6;
        const Arrangement shown = arrange(info, view, {200, 150}, 15);
        EXPECT_TRUE(shown.horizontalBar && shown.verticalBar);
        EXPECT_DOUBLE_EQ(view.originX * zoom + shown.geometry.panelWidth, 500 * zoom);
        EXPECT_DOUBLE_EQ(view.originY * zoom + shown.geometry.panelHeight, 400 * zoom);
    }
}

TEST(View, CanvasNeverExceedsTheImage)
{
    const struct {
        Size image;
        double zoom;
        Size area, canvas;
        bool horizontal = false, vertical = false;
    } rows[] = {
        {{100, 80}, 1.0, {400, 300}, {100, 80}},
        {{100, 80}, 1.0, {100, 80}, {100, 80}},
        {{100, 80}, 2.0, {400, 300}, {200, 160}},
        {{100, 80}, 1.0 / 3, {400, 300}, {34, 27}},
        {{100, 80}, 8.0, {400, 300}, {385, 285}, true, true},
        {{100, 80}, 1.0, {200, 79}, {100, 79}, false, true},
        {{100, 80}, 1.0, {105, 79}, {90, 64}, true, true}, // one bar makes the other necessary
        {{3, 2}, 1.0 / 16, {400, 300}, {1, 1}},
        {{30000, 100}, 32.0, {400, 300}, {385, 285}, true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.image.width) + " at " + std::to_string(row.zoom));
        const image::ImageInfo info = imageOf(row.image.width, row.image.height);
        View view = initialView(info);
        view.zoom = row.zoom;
        const Arrangement arrangement = arrange(info, view, row.area, 15);
        EXPECT_EQ(arrangement.canvas, row.canvas);
        EXPECT_EQ(arrangement.horizontalBar, row.horizontal);
        EXPECT_EQ(arrangement.verticalBar, row.vertical);
        EXPECT_TRUE(
            protocol::dataFromWindow(arrangement.geometry, row.canvas.width - 1, row.canvas.height - 1))
            << "the last canvas pixel is off the image";
    }
}

TEST(View, AtZoomOneCanvasPixelsAreDataPixelsWhateverTheScroll)
{
    const image::ImageInfo info = imageOf(1000, 900);
    View view = initialView(info);
    view.originX = 123.4;
    view.originY = 5000;
    const protocol::Geometry geometry = layOut(info, view, {300, 200});
    EXPECT_EQ(geometry.originX, 123);
    EXPECT_EQ(geometry.originY, 700); // the end of the image
    const auto data = protocol::dataFromWindow(geometry, 7, 9);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->x, 130);
    EXPECT_EQ(data->y, 709);
}

TEST(View, FitShowsTheWholeImageInEveryPanel)
{
    for (const int count : {1, 2, 3, 5, 12}) {
        const image::ImageInfo info = imageOf(512, 256, count);
        View view = initialView(info);
        view.style = protocol::ZPanels;
        view.fit = true;
        const Arrangement arrangement = arrange(info, view, {801, 603}, 15);
        const protocol::Geometry& geometry = arrangement.geometry;
        EXPECT_EQ(geometry.panelCount, count);
        EXPECT_GE(geometry.columns * geometry.rows, count);
        EXPECT_LE(arrangement.canvas.width, 801);
        EXPECT_LE(arrangement.canvas.height, 603);
        EXPECT_NEAR(geometry.panelWidth, 512 * geometry.zoom, 1);
        EXPECT_NEAR(geometry.panelHeight, 256 * geometry.zoom, 1);
        EXPECT_FALSE(arrangement.horizontalBar || arrangement.verticalBar);
    }
}

namespace {

// The data point at a place of the visible area, wherever the canvas stands in it.
protocol::DataPosition pointAt(const Arrangement& arrangement, int x, int y)
{
    const auto point =
        protocol::dataFromWindow(arrangement.geometry, x - arrangement.left, y - arrangement.top);
    EXPECT_TRUE(point) << x << "," << y;
    return point.value_or(protocol::DataPosition{});
}

} // namespace

TEST(View, ZoomKeepsThePointUnderThePointer)
{
    constexpr Size area{1000, 800};
    constexpr int single = protocol::SinglePanel, panels = protocol::ZPanels;
    const struct {
        int style, width, x, y;
        double zoom;
        int steps;
    } rows[] = {
        {single, 4000, 400, 150, 2, 1},  {single, 4000, 401, 150, 2, 3}, {single, 4000, 637, 151, 2, -1},
        {single, 4000, 500, 400, 2, -2}, {panels, 4000, 637, 150, 2, 2}, {panels, 300, 640, 560, 1, 3},
        {single, 100, 401, 333, 8, 1}, // from a centred canvas to one that fills the area
        {single, 100, 590, 350, 8, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.x) + " by " + std::to_string(row.steps));
        const image::ImageInfo info = imageOf(row.width, row.width, 4);
        View view = initialView(info);
        view.style = row.style;
        view.zoom = row.zoom;
        view.originX = view.originY = row.width / 4.0;
        const Arrangement before = arrange(info, view, area, 15);
        const auto point = pointAt(before, row.x, row.y);
        zoomAround(info, view, before, area, 15, steppedZoom(view.zoom, row.steps), row.x, row.y);
        const Arrangement after = arrange(info, view, area, 15);
        const auto moved = pointAt(after, row.x, row.y);
        EXPECT_EQ(moved.panel, point.panel);
        EXPECT_LE(std::fabs(moved.x - point.x) * after.geometry.zoom, 0.5 + 1e-6);
        EXPECT_LE(std::fabs(moved.y - point.y) * after.geometry.zoom, 0.5 + 1e-6);
    }
}

TEST(View, ZoomSteps)
{
    constexpr double fitted = 0.559, fittedBelowTheList = 0.01, justAboveAThird = 0.33333334;
    const struct {
        double zoom;
        int steps;
        double expected;
    } rows[] = {
        {1, 1, 1.5},
        {1, 3, 3},
        {1, -1, 2.0 / 3},
        {32, 1, 32},
        {1.0 / 16, -1, 1.0 / 16},
        {fitted, 1, 2.0 / 3},
        {fitted, -1, 0.5},
        {fittedBelowTheList, -1, fittedBelowTheList},
        {fittedBelowTheList, 1, 1.0 / 16},
        {justAboveAThird, -1, 0.25},
    };
    for (const auto& row : rows)
        EXPECT_NEAR(steppedZoom(row.zoom, row.steps), row.expected, 1e-9) << row.zoom << " by " << row.steps;
}

TEST(View, SmallImagesOpenLarger)
{
    const struct {
        int width, height, style;
        double expected;
    } rows[] = {
        {4000, 3000, protocol::SinglePanel, 1}, {512, 512, protocol::SinglePanel, 1},
        {256, 256, protocol::SinglePanel, 2},   {64, 48, protocol::SinglePanel, 8},
        {500, 10, protocol::SinglePanel, 1},    {1, 1, protocol::SinglePanel, 32},
        {256, 256, protocol::ZPanels, 1},       {64, 48, protocol::ZPanels, 4},
    };
    for (const auto& row : rows) {
        viewertest::FakeImage image(row.width, row.height);
        image.description.sizeZ = 4;
        View view = initialView(image.info());
        view.style = row.style;
        EXPECT_EQ(usefulZoom(image.info(), view), row.expected) << row.width << " x " << row.height;
    }
}

TEST(View, PanelsShowConsecutiveSectionsOrWavelengths)
{
    image::ImageInfo info = imageOf(10, 10, 5, 3, 30);
    info.wavelengths[2].name = "DAPI";
    View view = initialView(info);
    view.z = 3;
    view.style = protocol::ZPanels;
    clampSection(info, view);
    auto panels = panelContents(info, view);
    ASSERT_EQ(panels.size(), 5U);
    EXPECT_EQ(panels[4].z, 4); // the first panel moved back to 0
    EXPECT_EQ(panels[4].caption, "z 5");
    view.style = protocol::TimePanels;
    view.t = 29;
    clampSection(info, view);
    panels = panelContents(info, view);
    ASSERT_EQ(panels.size(), static_cast<std::size_t>(maxPanels));
    EXPECT_EQ(panels.front().t, 30 - maxPanels);
    EXPECT_EQ(panels.back().caption, "t 30");
    view.style = protocol::WavelengthPanels;
    showWavelength(view, 0, false);
    panels = panelContents(info, view);
    ASSERT_EQ(panels.size(), 2U);
    EXPECT_EQ(panels[0].wavelengths, std::vector{1});
    EXPECT_EQ(panels[0].caption, "w 2");
    EXPECT_EQ(panels[1].caption, "DAPI");
}

TEST(View, AMontageHasTheChosenGrid)
{
    const struct {
        const char* name;
        int style;
        PanelGrid grid;
        int columns, rows, panels;
    } rows[] = {
        {"all sections", protocol::ZPanels, {3, 3}, 3, 3, 9},
        {"a run of sections", protocol::ZPanels, {2, 3}, 2, 3, 6},
        {"a row that stays empty", protocol::ZPanels, {4, 5}, 4, 3, 9},
        {"columns that stay empty", protocol::ZPanels, {30, 1}, 9, 1, 9},
        {"more than panels without a grid", protocol::TimePanels, {8, 5}, 8, 5, 40},
        {"wavelengths", protocol::WavelengthPanels, {1, 3}, 1, 3, 3},
        {"a single panel", protocol::SinglePanel, {3, 3}, 1, 1, 1},
    };
    const image::ImageInfo info = imageOf(100, 80, 9, 3, 40);
    for (const auto& row : rows) {
        View view = initialView(info);
        view.style = row.style;
        view.grid = row.grid;
        view.fit = true;
        const protocol::Geometry g = arrange(info, view, {700, 500}, 15).geometry;
        EXPECT_EQ(g.columns, row.columns) << row.name;
        EXPECT_EQ(g.rows, row.rows) << row.name;
        EXPECT_EQ(g.panelCount, row.panels) << row.name;
        EXPECT_EQ(panelContents(info, view).size(), static_cast<std::size_t>(row.panels)) << row.name;
        EXPECT_LE(g.columns * (g.panelWidth + g.gap), 700 + g.gap) << row.name;
        EXPECT_LE(g.rows * (g.panelHeight + g.gap), 500 + g.gap) << row.name;
    }
}

TEST(View, ImpossibleGridsGetASentence)
{
    const struct {
        int style;
        PanelGrid grid;
        const char* problem; // a part of it, empty: none
    } rows[] = {
        {protocol::ZPanels, {3, 3}, ""},
        {protocol::ZPanels, {10, 10}, ""},
        {protocol::ZPanels, {0, 3}, "whole numbers"},
        {protocol::ZPanels, {3, -1}, "whole numbers"},
        {protocol::ZPanels, {11, 10}, "At most 100"},
        {protocol::ZPanels, {999999, 999999}, "At most 100"},
        {protocol::ZPanels, {60, 1}, "no room"},
        {protocol::WavelengthPanels, {2, 1}, "3 panels do not fit into 2 x 1"},
        {protocol::WavelengthPanels, {2, 2}, ""},
    };
    const image::ImageInfo info = imageOf(100, 80, 9, 3);
    for (const auto& row : rows) {
        View view = initialView(info);
        view.style = row.style;
        const std::string problem = gridProblem(info, view, row.grid, {600, 500});
        EXPECT_EQ(problem.empty(), *row.problem == '\0') << problem;
        EXPECT_NE(problem.find(row.problem), std::string::npos) << problem;
        const PanelGrid square = squareGrid(info, view);
        EXPECT_EQ(gridProblem(info, view, square, {600, 500}), "");
        EXPECT_GE(square.columns * square.rows, row.style == protocol::ZPanels ? 9 : 3);
    }
}

TEST(View, TheMergeIsOneMoreOfTheWavelengthPanels)
{
    const image::ImageInfo info = imageOf(10, 10, 2, 3);
    View view = initialView(info);
    view.merge = true;
    EXPECT_EQ(panelContents(info, view).size(), 1U); // none in a single panel
    view.style = protocol::WavelengthPanels;
    const auto panels = panelContents(info, view);
    ASSERT_EQ(panels.size(), 4U);
    EXPECT_EQ(panels[2].wavelengths, std::vector{2});
    EXPECT_EQ(panels[3].wavelengths, (std::vector{0, 1, 2}));
    EXPECT_EQ(panels[3].colors, view.colors);
    EXPECT_EQ(panels[3].caption, "merge");
    showWavelength(view, 0, false);
    showWavelength(view, 1, false);
    EXPECT_EQ(panelContents(info, view).size(), 1U); // it would be the same once more
}

TEST(View, ProjectionsAreNamedWhereTheyAreShown)
{
    const image::ImageInfo info = imageOf(10, 10, 4, 2, 3);
    View view = initialView(info);
    view.projection = Projection::Maximum;
    EXPECT_EQ(panelContents(info, view).front().caption, "maximum over z");
    view.style = protocol::TimePanels;
    EXPECT_EQ(panelContents(info, view).back().caption, "t 3, maximum over z");
    view.style = protocol::ZPanels;
    clampSection(info, view);
    EXPECT_EQ(panelContents(info, view).back().caption, "z 4"); // sections side by side
}
