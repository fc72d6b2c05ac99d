// What the canvas shows, and how it follows zoom, sections, wavelengths and panels.
// The test library comes before X, whose macros clash with it.
#include <gtest/gtest.h>

#include "tests/x/imagewindow/Viewer.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cmath>

using namespace viewertest;
using protocol::DisplayRecord;

TEST(View, AtZoomOneCanvasPixelsAreDataPixels)
{
    Viewer viewer({rgbImage()});
    const drive::Rect place = viewer.screen.geometry(viewer.canvas);
    EXPECT_EQ(place.width, 40);
    EXPECT_EQ(place.height, 30);
    const drive::Picture picture = viewer.screen.capture(viewer.canvas);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(picture.at(x, y), rgbPixel(x, y)) << x << "," << y;
}

TEST(View, MagnifiedPixelsAreSquares)
{
    Viewer viewer({"--zoom", "3", rgbImage()});
    const drive::Picture picture = viewer.screen.capture(viewer.canvas);
    ASSERT_EQ(picture.width, 120);
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 120; ++x)
            ASSERT_EQ(picture.at(x, y), rgbPixel(x / 3, y / 3)) << x << "," << y;
}

// The canvas may move in its window while the pointer stays where it is on the screen.
TEST(View, TheWheelKeepsThePointUnderThePointer)
{
    Viewer viewer({"--zoom", "8", "--geometry", "420x400+20+20", rgbImage()});
    drive::Rect place = viewer.screen.geometry(viewer.canvas);
    const int x = place.x + 111, y = place.y + 93;
    const auto point = protocol::dataFromWindow(viewer.record()->geometry, 111, 93);
    ASSERT_TRUE(point);
    for (const unsigned button : {4U, 4U, 5U}) {
        const double zoom = viewer.record()->geometry.zoom;
        viewer.screen.click(viewer.screen.root(), x, y, button);
        const DisplayRecord now =
            viewer.waitForRecord([&](const auto& r) { return r.geometry.zoom != zoom; });
        EXPECT_GT((now.geometry.zoom - zoom) * (button == 4 ? 1 : -1), 0);
        place = viewer.screen.geometry(viewer.canvas);
        const auto moved = protocol::dataFromWindow(now.geometry, x - place.x, y - place.y);
        ASSERT_TRUE(moved);
        EXPECT_LE(std::fabs(moved->x - point->x), 1 / 8.0);
        EXPECT_LE(std::fabs(moved->y - point->y), 1 / 8.0);
        EXPECT_TRUE(viewer.waitForPixel(x - place.x, y - place.y,
                                        rgbPixel(static_cast<int>(moved->x), static_cast<int>(moved->y))));
    }
}

TEST(View, KeysStepThroughSectionsAndZoom)
{
    Viewer viewer({stackImage()});
    viewer.focus();
    const struct {
        KeySym key;
        std::function<bool(const DisplayRecord&)> condition;
        const char* what;
    } rows[] = {
        {XK_Next,  [](const auto& r) { return r.z == 1; },               "next section"    },
        {XK_Next,  [](const auto& r) { return r.z == 2; },               "next section"    },
        {XK_Prior, [](const auto& r) { return r.z == 1; },               "previous section"},
        {XK_equal, [](const auto& r) { return r.geometry.zoom == 1.5; }, "zoom in"         },
        {XK_minus, [](const auto& r) { return r.geometry.zoom == 1.0; }, "zoom out"        },
        {XK_f,     [](const auto& r) { return r.geometry.zoom > 2; },    "fit"             },
        {XK_1,     [](const auto& r) { return r.geometry.zoom == 1.0; }, "one to one"      },
    };
    for (const auto& row : rows) {
        viewer.screen.key(row.key);
        EXPECT_TRUE(row.condition(viewer.waitForRecord(row.condition))) << row.what;
    }
}

TEST(View, TheWheelStepsSectionsWithShiftAndTimeWithControl)
{
    Viewer viewer({stackImage()});
    for (const auto& [key, field] : {
             std::pair{XK_Shift_L,   &DisplayRecord::z},
             {XK_Control_L, &DisplayRecord::t}
    }) {
        viewer.screen.keyDown(key);
        viewer.screen.click(viewer.canvas, 20, 20, 4);
        viewer.screen.keyUp(key);
        EXPECT_EQ(viewer.waitForRecord([&](const auto& r) { return r.*field == 1; }).*field, 1);
    }
    EXPECT_EQ(viewer.record()->geometry.zoom, 1);
}

TEST(View, PanelsOfEveryStyle)
{
    const struct {
        const char* option;
        int style, count;
    } rows[] = {
        {"z",          protocol::ZPanels,          4},
        {"wavelength", protocol::WavelengthPanels, 3},
        {"time",       protocol::TimePanels,       2},
        {"single",     protocol::SinglePanel,      1},
    };
    for (const auto& row : rows) {
        Viewer viewer({"--panels", row.option, stackImage()});
        const auto record = viewer.record();
        ASSERT_TRUE(record) << row.option;
        const protocol::Geometry& geometry = record->geometry;
        EXPECT_EQ(geometry.style, row.style);
        EXPECT_EQ(geometry.panelCount, row.count);
        const drive::Rect place = viewer.screen.geometry(viewer.canvas);
        EXPECT_EQ(place.width, geometry.columns * (geometry.panelWidth + geometry.gap) - geometry.gap);
        EXPECT_EQ(place.height, geometry.rows * (geometry.panelHeight + geometry.gap) - geometry.gap);
    }
}

// Bright-field colour is shown as it is, so each wavelength panel must hold just its own component.
TEST(View, WavelengthPanelsShowOneWavelengthEach)
{
    Viewer viewer({"--panels", "wavelength", rgbImage()});
    const protocol::Geometry geometry = viewer.record()->geometry;
    ASSERT_EQ(geometry.panelCount, 3);
    const drive::Picture picture = viewer.screen.capture(viewer.canvas);
    for (int panel = 0; panel < 3; ++panel) {
        const auto at = protocol::windowFromData(geometry, {35, 25, panel});
        const drive::Pixel all = rgbPixel(35, 25);
        const drive::Pixel expected{panel == 0 ? all.red : static_cast<unsigned char>(0),
                                    panel == 1 ? all.green : static_cast<unsigned char>(0),
                                    panel == 2 ? all.blue : static_cast<unsigned char>(0)};
        EXPECT_EQ(picture.at(static_cast<int>(at.x), static_cast<int>(at.y)), expected) << panel;
    }
}

TEST(View, RangesOfTheWavelengthsArePublished)
{
    Viewer viewer({stackImage()});
    const DisplayRecord record = viewer.waitForRecord([](const DisplayRecord& r) {
        return std::all_of(r.wavelengths.begin(), r.wavelengths.end(),
                           [](const auto& w) { return w.rangeKnown; }) &&
               r.wavelengths[0].rangeMax == 63 + 11 * 47 + 3 * 101 + 10007;
    });
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(record.wavelengths[static_cast<std::size_t>(c)].rangeMin, 1009 * c);
        EXPECT_EQ(record.wavelengths[static_cast<std::size_t>(c)].rangeMax,
                  63 + 11 * 47 + 3 * 101 + 10007 + 1009 * c);
    }
}

TEST(View, ResizingTheWindowKeepsTheCanvasInsideTheImage)
{
    Viewer viewer({"--zoom", "16", rgbImage()});
    const Window window = viewer.screen.findTitle("Image window");
    for (const auto& [width, height] : {
             std::pair{500, 400},
             {900, 800},
             {420, 330}
    }) {
        XResizeWindow(viewer.screen.x(), window, static_cast<unsigned>(width), static_cast<unsigned>(height));
        XFlush(viewer.screen.x());
        EXPECT_TRUE(drive::waitUntil([&] {
            const drive::Rect place = viewer.screen.geometry(viewer.canvas);
            const auto record = viewer.record();
            return record && record->geometry.panelWidth == place.width &&
                   place.width <= std::min(width, 640) && place.width >= std::min(width - 20, 640) &&
                   record->geometry.panelHeight == place.height;
        }));
        EXPECT_TRUE(viewer.waitForPixel(0, 0,
                                        rgbPixel(static_cast<int>(viewer.record()->geometry.originX),
                                                 static_cast<int>(viewer.record()->geometry.originY))));
    }
}
