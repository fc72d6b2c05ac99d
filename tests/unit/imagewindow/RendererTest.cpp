// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Renderer.h"

#include "platform/imagewindow/render/Enlarged.h"
#include "platform/imagewindow/render/LabelColors.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace viewer;
using viewertest::FakeImage;

namespace {

std::uint32_t grey(int value)
{
    return static_cast<std::uint32_t>(value) * 0x010101U;
}

// An image and the canvas that shows it as the window does. Every wavelength spans 0 to 255.
struct Scene {
    Scene(int width, int height, int sizeW = 1) : file(width, height, sizeW) {}

    void render(Size area)
    {
        for (int w = 0; w < file.description.sizeW; ++w)
            renderer.setLimits(w, {0, 255});
        const Arrangement arrangement = arrange(file.info(), view, area, 15);
        geometry = arrangement.geometry;
        canvas = arrangement.canvas;
        error = renderer.load(geometry, panelContents(file.info(), view));
        pixels.assign(static_cast<std::size_t>(canvas.width * canvas.height), 0xDEAD);
        renderer.draw(pixels, canvas.width, canvas.height);
    }
    std::uint32_t at(int x, int y) const { return pixels[static_cast<std::size_t>(y * canvas.width + x)]; }

    FakeImage file;
    Renderer renderer{file};
    View view = initialView(file.info());
    protocol::Geometry geometry;
    Size canvas;
    std::string error;
    std::vector<std::uint32_t> pixels;
};

} // namespace

// Magnified, every canvas pixel shows the data pixel that the shared conversion names.
TEST(Renderer, CanvasPixelsAgreeWithTheCoordinateConversion)
{
    const auto value = [](int x, int y) { return (3 * x + 7 * y) % 256; };
    for (double zoom : {1.0, 1.5, 2.0, 3.0, 6.0, 24.0})
        for (double origin : {0.0, 7.0, 20.3}) {
            Scene scene(60, 50);
            scene.file.value = [&](const auto&, int x, int y) { return static_cast<float>(value(x, y)); };
            scene.view.zoom = zoom;
            scene.view.originX = scene.view.originY = origin;
            scene.render({97, 81});
            for (int y = 0; y < scene.canvas.height; y += 3)
                for (int x = 0; x < scene.canvas.width; ++x) {
                    const auto data = protocol::dataFromWindow(scene.geometry, x, y);
                    ASSERT_TRUE(data);
                    const int expected = value(static_cast<int>(data->x), static_cast<int>(data->y));
                    ASSERT_EQ(scene.at(x, y), grey(expected)) << x << "," << y << " at " << zoom;
                }
        }
}

TEST(Renderer, GammaIsOfTheDisplayAlone)
{
    Scene scene(16, 16, 2);
    scene.file.value = [](const auto& section, int x, int) {
        return static_cast<float>(section.w == 0 ? 10 * x : 0);
    };
    scene.view.colors = {0, 0};
    scene.renderer.setGamma(0, 0.5F);
    scene.render({16, 16});
    EXPECT_EQ(scene.at(10, 3), grey(160)); // 255 * sqrt(100 / 255)
    EXPECT_EQ(scene.renderer.valueAt(0, 0, 10, 3), 100.0F);
    EXPECT_EQ(scene.renderer.sample(0)->values[10], 100.0F);
    scene.renderer.setGamma(0, 1);
    scene.render({16, 16});
    EXPECT_EQ(scene.at(10, 3), grey(100));
}

TEST(Renderer, ASampleFollowsTheSectionAndIsReadOnce)
{
    Scene scene(16, 16);
    scene.file.description.sizeZ = 2;
    scene.file.value = [](const auto& section, int, int) { return static_cast<float>(section.z); };
    scene.view.z = 0;
    scene.render({16, 16});
    EXPECT_EQ(scene.renderer.sample(0)->values.at(0), 0);
    const int reads = scene.file.reads;
    scene.renderer.setLimits(0, {0, 9});
    scene.render({16, 16});
    scene.renderer.sample(0);
    EXPECT_EQ(scene.file.reads, reads);
    scene.view.z = 1;
    scene.render({16, 16});
    EXPECT_EQ(scene.renderer.sample(0)->values.at(0), 1);
}

// Each pixel of the canvas is the label of a pixel that it covers, at all zooms and from the image itself.
TEST(Renderer, LabelsAreNeverMixed)
{
    const auto labelAt = [](int x, int y) { return 1 + (x / 3 + 5 * (y / 3)) % 40; };
    for (const double zoom : {0.2, 1.0 / 3, 0.5, 2.0 / 3, 1.0, 1.5, 4.0}) {
        Scene scene(90, 60);
        scene.file.levels = 3;
        scene.file.value = [&](const auto&, int x, int y) { return static_cast<float>(labelAt(x, y)); };
        scene.view.labels = true;
        scene.view.zoom = zoom;
        scene.view.originX = 7;
        scene.render({40, 30});
        for (int y = 0; y < scene.canvas.height; ++y)
            for (int x = 0; x < scene.canvas.width; ++x) {
                const auto data = protocol::dataFromWindow(scene.geometry, x, y);
                const double reach = zoom < 1 ? 0.5 / zoom : 0;
                const auto pixel = [&](double at, int side) {
                    return std::min(static_cast<int>(at + reach), side - 1);
                };
                const base::Rgb color = labelColor(labelAt(pixel(data->x, 90), pixel(data->y, 60)));
                ASSERT_EQ(scene.at(x, y),
                          static_cast<std::uint32_t>(color.red << 16 | color.green << 8 | color.blue))
                    << zoom << ": " << x << ", " << y;
            }
    }
}

TEST(Renderer, LabelsComeAndGoWithTheView)
{
    Scene scene(8, 8, 2);
    scene.file.value = [](const auto& section, int, int) { return section.w == 0 ? 7.0F : 0.0F; };
    scene.view.colors = {0, 0};
    scene.render({8, 8});
    EXPECT_EQ(scene.at(2, 2), grey(7));
    scene.view.labels = true; // of a composite they mean nothing
    scene.render({8, 8});
    EXPECT_EQ(scene.at(2, 2), grey(7));
    scene.view.displayed = {true, false};
    scene.render({8, 8});
    EXPECT_NE(scene.at(2, 2), grey(7));
    EXPECT_EQ(scene.renderer.valueAt(0, 0, 2, 2), 7.0F);
    scene.view.labels = false;
    scene.render({8, 8});
    EXPECT_EQ(scene.at(2, 2), grey(7));
}

TEST(Renderer, ZoomedOutPixelsAreMeans)
{
    Scene scene(16, 16);
    scene.file.value = [](const auto&, int x, int y) { return static_cast<float>(x + 10 * y); };
    scene.view.zoom = 0.25;
    scene.render({100, 100});
    ASSERT_EQ(scene.canvas, (Size{4, 4}));
    EXPECT_EQ(scene.at(0, 0), grey(17)); // 1.5 + 15 = 16.5
    EXPECT_EQ(scene.at(1, 0), grey(21));
    EXPECT_EQ(scene.at(0, 3), grey(137));
    EXPECT_EQ(scene.renderer.valueAt(0, 0, 15, 15), 165.0F); // the pixel's own value, not the mean
}

TEST(Renderer, ZoomedOutViewsReadAReducedCopy)
{
    FakeImage file(4096, 4096);
    file.levels = 5;
    std::size_t values = 0;
    file.value = [&](const image::SectionIndex&, int x, int) {
        ++values;
        return static_cast<float>(x / 16 % 256);
    };
    View view = initialView(file.info());
    view.zoom = 1.0 / 16;
    std::string error;
    const Arrangement arrangement = arrange(file.info(), view, {512, 512}, 15);
    const auto tile = readTile(file, {}, tileFrame(arrangement.geometry), error);
    ASSERT_TRUE(tile);
    EXPECT_EQ(values, 256U * 256U);
    EXPECT_EQ((*tile)[5], 5.0F);
}

TEST(Renderer, PanelsShowTheirOwnSections)
{
    Scene scene(20, 10);
    scene.file.description.sizeZ = 3;
    scene.file.value = [](const auto& section, int, int) { return 50.0F + 10.0F * section.z; };
    scene.view.style = protocol::ZPanels;
    scene.render({44, 24});
    ASSERT_EQ(scene.geometry.columns, 2);
    EXPECT_EQ(scene.at(0, 0), grey(50));
    EXPECT_EQ(scene.at(24, 0), grey(60));
    EXPECT_EQ(scene.at(0, 14), grey(70));
    EXPECT_EQ(scene.at(20, 0), surroundPixel);  // the gap
    EXPECT_EQ(scene.at(30, 20), surroundPixel); // the place without a panel
    EXPECT_EQ(scene.renderer.valueAt(2, 0, 3, 3), 70.0F);
}

TEST(Renderer, ReadsOnlyWhatIsNew)
{
    Scene scene(40, 40, 2);
    scene.file.description.wavelengths[1].colorIndex = 1;
    scene.render({40, 40});
    const int reads = scene.file.reads;
    showWavelength(scene.view, 1, false);
    scene.render({40, 40});
    EXPECT_EQ(scene.file.reads, reads);
}

TEST(Renderer, SaysWhyASectionIsBlack)
{
    Scene scene(10, 10);
    scene.file.broken = true;
    scene.render({40, 40});
    EXPECT_EQ(scene.error, "it is broken");
    EXPECT_EQ(scene.at(5, 5), 0U);
    EXPECT_FALSE(scene.renderer.valueAt(0, 0, 5, 5));
    scene.file.broken = false;
    scene.render({40, 40});
    EXPECT_EQ(scene.error, "");
    EXPECT_EQ(scene.at(5, 0), grey(5));
}

TEST(Renderer, OneContrastForAllSections)
{
    FakeImage file(40, 40);
    file.description.sizeZ = 2;
    file.value = [](const image::SectionIndex& section, int x, int) {
        return static_cast<float>(100 * section.z + x);
    };
    Renderer renderer(file);
    View view = initialView(file.info());
    const auto show = [&](int z) {
        view.z = z;
        renderer.load(arrange(file.info(), view, {40, 40}, 15).geometry, panelContents(file.info(), view));
        return renderer.limits(0);
    };
    const ContrastLimits first = show(0);
    EXPECT_GT(first.high, 30);
    EXPECT_EQ(show(1).high, first.high);
    renderer.setAutomatic();
    EXPECT_GT(renderer.limits(0).low, first.high);
    EXPECT_GT(show(0).low, first.high);
}

TEST(Renderer, PanelsAreFittedToAllTheirSections)
{
    FakeImage file(40, 40);
    file.description.sizeZ = 3;
    file.value = [](const image::SectionIndex& section, int x, int) {
        return static_cast<float>(1000 * section.z + x);
    };
    Renderer renderer(file);
    View view = initialView(file.info());
    const auto show = [&](int style) {
        view.z = 0;
        view.style = style;
        renderer.load(arrange(file.info(), view, {140, 140}, 15).geometry, panelContents(file.info(), view));
        return renderer.limits(0).high;
    };
    EXPECT_LT(show(protocol::SinglePanel), 50);
    EXPECT_GT(show(protocol::ZPanels), 2000);
    renderer.setLimits(0, {0, 77});
    show(protocol::SinglePanel);
    EXPECT_EQ(show(protocol::ZPanels), 77); // the user's own choice stays
}

// A wavelength of bright field is dimmed where others lie under it, and nowhere else.
TEST(Renderer, BrightFieldHidesNothing)
{
    FakeImage file(40, 40, 2);
    file.value = [](const image::SectionIndex& section, int x, int y) {
        const int grain = (x * 31 + y * 17) % 23;
        return static_cast<float>(section.w == 0 ? 5000 + grain : (x + y) % 9 == 0 ? 900 + grain : grain);
    };
    Renderer renderer(file);
    View view = initialView(file.info());
    const auto limitsWith = [&](bool other) {
        view.displayed = {true, other};
        renderer.load(arrange(file.info(), view, {40, 40}, 15).geometry, panelContents(file.info(), view));
        renderer.setAutomatic();
        return renderer.limits(0);
    };
    EXPECT_GT(brightness(5011, limitsWith(false)), 100);
    EXPECT_LE(brightness(5011, limitsWith(true)), 65);
    EXPECT_GT(brightness(915, renderer.limits(1)), 200);
}

// Half the data pixels show at zoom 1/2, all of them at double resolution; the last ones are repeated where
// the image has an odd number of them.
TEST(Renderer, EnlargedShowsWhatTheImageHas)
{
    const auto value = [](int x, int y) { return (3 * x + 7 * y) % 256; };
    for (const double zoom : {0.5, 1.0, 2.0}) {
        Scene scene(61, 47);
        scene.file.value = [&](const auto&, int x, int y) { return static_cast<float>(value(x, y)); };
        scene.view.zoom = zoom;
        scene.render({200, 200});
        const std::vector<std::uint32_t> enlarged =
            renderEnlarged(scene.renderer, scene.geometry, panelContents(scene.file.info(), scene.view), 2);
        const int width = 2 * scene.canvas.width, height = 2 * scene.canvas.height;
        ASSERT_EQ(enlarged.size(), static_cast<std::size_t>(width * height));
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const int column = std::min(static_cast<int>(x / (2 * zoom)), 60),
                          row = std::min(static_cast<int>(y / (2 * zoom)), 46);
                ASSERT_EQ(enlarged[static_cast<std::size_t>(y * width + x)], grey(value(column, row)))
                    << x << ", " << y << " at " << zoom;
            }
        EXPECT_EQ(
            renderEnlarged(scene.renderer, scene.geometry, panelContents(scene.file.info(), scene.view), 1)
                .size(),
            scene.pixels.size());
    }
}
