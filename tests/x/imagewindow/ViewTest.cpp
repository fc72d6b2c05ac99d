// SPDX-License-Identifier: MIT
// What the canvas shows, and how it follows zoom, sections, wavelengths and panels.
#include "tests/x/imagewindow/Viewer.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

using namespace viewertest;
using protocol::DisplayRecord;

TEST(View, CanvasPixelsAreSquaresOfDataPixels)
{
    for (const int zoom : {1, 3}) {
        Viewer viewer({"--zoom", std::to_string(zoom), rgbImage()});
        const drive::Picture picture = viewer.screen.capture(viewer.canvas);
        ASSERT_EQ(picture.width, 40 * zoom);
        ASSERT_EQ(picture.height, 30 * zoom);
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x)
                ASSERT_EQ(picture.at(x, y), rgbPixel(x / zoom, y / zoom)) << x << "," << y;
    }
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
        {XK_Next, [](const auto& r) { return r.z == 2; }, "next section"},
        {XK_Next, [](const auto& r) { return r.z == 3; }, "next section"},
        {XK_Prior, [](const auto& r) { return r.z == 2; }, "previous section"},
        {XK_equal, [](const auto& r) { return r.geometry.zoom == 1.5; }, "zoom in"},
        {XK_minus, [](const auto& r) { return r.geometry.zoom == 1.0; }, "zoom out"},
        {XK_f, [](const auto& r) { return r.geometry.zoom > 2; }, "fit"},
        {XK_1, [](const auto& r) { return r.geometry.zoom == 1.0; }, "one to one"},
    };
    for (const auto& row : rows) {
        viewer.screen.key(row.key);
        EXPECT_TRUE(row.condition(viewer.waitForRecord(row.condition))) << row.what;
    }
}

// Bright-field colour is shown as it is, so each wavelength panel must hold just its own component.
TEST(View, WavelengthPanelsShowOneWavelengthEach)
{
    Viewer viewer({"--panels", "wavelength", rgbImage()});
    const protocol::Geometry geometry = viewer.record()->geometry;
    ASSERT_EQ(geometry.panelCount, 3);
    const drive::Picture picture = viewer.screen.capture(viewer.canvas);
    const drive::Pixel all = rgbPixel(35, 25);
    const drive::Pixel components[] = {{all.red, 0, 0}, {0, all.green, 0}, {0, 0, all.blue}};
    for (int panel = 0; panel < 3; ++panel) {
        const auto at = protocol::windowFromData(geometry, {35, 25, panel});
        EXPECT_EQ(picture.at(static_cast<int>(at.x), static_cast<int>(at.y)), components[panel]) << panel;
    }
}

TEST(View, ResizingTheWindowKeepsTheCanvasInsideTheImage)
{
    Viewer viewer({"--zoom", "16", rgbImage()});
    const Window window = viewer.screen.findTitle("Image window");
    for (const auto& [width, height] : {std::pair{500, 400}, std::pair{900, 800}, std::pair{420, 330}}) {
        XResizeWindow(viewer.screen.x(), window, static_cast<unsigned>(width), static_cast<unsigned>(height));
        XFlush(viewer.screen.x());
        const auto& geometry =
            viewer
                .waitForRecord([&](const DisplayRecord& r) {
                    const drive::Rect place = viewer.screen.geometry(viewer.canvas);
                    return r.geometry.panelWidth == place.width && r.geometry.panelHeight == place.height &&
                           place.width <= std::min(width, 640) && place.width >= std::min(width - 20, 640);
                })
                .geometry;
        EXPECT_GE(geometry.panelWidth, std::min(width - 20, 640));
        EXPECT_TRUE(viewer.waitForPixel(
            0, 0, rgbPixel(static_cast<int>(geometry.originX), static_cast<int>(geometry.originY))));
    }
}
