#include "platform/imagewindow/Renderer.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

using namespace viewer;
using viewertest::FakeImage;

namespace {

// Renders the canvas of an image as the window does. Every wavelength spans 0 to 255.
struct Rendered {
    std::vector<std::uint32_t> pixels;
    protocol::Geometry geometry;
    Size size;
    std::string error;
    std::uint32_t at(int x, int y) const { return pixels[static_cast<std::size_t>(y * size.width + x)]; }
};

Rendered render(Renderer& renderer, FakeImage& file, View view, Size area)
{
    for (int w = 0; w < file.description.sizeW; ++w)
        renderer.setLimits(w, {0, 255});
    const Arrangement arrangement = arrange(file.info(), view, area, 15);
    Rendered result{{}, arrangement.geometry, arrangement.canvas, ""};
    result.error = renderer.load(arrangement.geometry, panelContents(file.info(), view));
    result.pixels.assign(static_cast<std::size_t>(result.size.width * result.size.height), 0xDEAD);
    renderer.draw(result.pixels, result.size.width, result.size.height);
    return result;
}

std::uint32_t grey(int value)
{
    return static_cast<std::uint32_t>(value) * 0x010101U;
}

} // namespace

// Magnified, every canvas pixel shows the data pixel that the shared conversion names.
TEST(Renderer, CanvasPixelsAgreeWithTheCoordinateConversion)
{
    FakeImage file(60, 50);
    file.value = [](const image::SectionIndex&, int x, int y) {
        return static_cast<float>((3 * x + 7 * y) % 256);
    };
    for (double zoom : {1.0, 1.5, 2.0, 3.0, 6.0, 24.0})
        for (double origin : {0.0, 7.0, 20.3}) {
            Renderer renderer(file);
            View view = initialView(file.info());
            view.zoom = zoom;
            view.originX = view.originY = origin;
            const Rendered picture = render(renderer, file, view, {97, 81});
            for (int y = 0; y < picture.size.height; y += 3)
                for (int x = 0; x < picture.size.width; ++x) {
                    const auto data = protocol::dataFromWindow(picture.geometry, x, y);
                    ASSERT_TRUE(data);
                    const int expected =
                        (3 * static_cast<int>(data->x) + 7 * static_cast<int>(data->y)) % 256;
                    ASSERT_EQ(picture.at(x, y), grey(expected)) << x << "," << y << " at " << zoom;
                }
        }
}

TEST(Renderer, ZoomedOutPixelsAreMeans)
{
    FakeImage file(16, 16);
    file.value = [](const image::SectionIndex&, int x, int y) { return static_cast<float>(x + 10 * y); };
    Renderer renderer(file);
    View view = initialView(file.info());
    view.zoom = 0.25;
    const Rendered picture = render(renderer, file, view, {100, 100});
    ASSERT_EQ(picture.size, (Size{4, 4}));
    EXPECT_EQ(picture.at(0, 0), grey(17)); // 1.5 + 15 = 16.5
    EXPECT_EQ(picture.at(1, 0), grey(21));
    EXPECT_EQ(picture.at(0, 3), grey(137));
    EXPECT_EQ(renderer.valueAt(0, 0, 15, 15), 165.0F); // the pixel's own value, not the mean
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
    FakeImage file(20, 10);
    file.description.sizeZ = 3;
    file.value = [](const image::SectionIndex& section, int, int) {
        return 50.0F + 10.0F * static_cast<float>(section.z);
    };
    Renderer renderer(file);
    View view = initialView(file.info());
    view.z = 0;
    view.style = protocol::ZPanels;
    const Rendered picture = render(renderer, file, view, {44, 24});
    ASSERT_EQ(picture.geometry.columns, 2);
    EXPECT_EQ(picture.at(0, 0), grey(50));
    EXPECT_EQ(picture.at(24, 0), grey(60));
    EXPECT_EQ(picture.at(0, 14), grey(70));
    EXPECT_EQ(picture.at(20, 0), surroundPixel);  // the gap
    EXPECT_EQ(picture.at(30, 20), surroundPixel); // the place without a panel
    EXPECT_EQ(renderer.valueAt(2, 0, 3, 3), 70.0F);
}

TEST(Renderer, ReadsOnlyWhatIsNew)
{
    FakeImage file(40, 40, 2);
    file.description.wavelengths[1].colorIndex = 1;
    Renderer renderer(file);
    View view = initialView(file.info());
    render(renderer, file, view, {40, 40});
    const int reads = file.reads;
    showWavelength(view, 1, false);
    render(renderer, file, view, {40, 40});
    EXPECT_EQ(file.reads, reads);
}

TEST(Renderer, SaysWhyASectionIsBlack)
{
    FakeImage file(10, 10);
    Renderer renderer(file);
    file.broken = true;
    const Rendered picture = render(renderer, file, initialView(file.info()), {40, 40});
    EXPECT_EQ(picture.error, "it is broken");
    EXPECT_EQ(picture.at(5, 5), 0U);
    EXPECT_FALSE(renderer.valueAt(0, 0, 5, 5));
    file.broken = false;
    const Rendered again = render(renderer, file, initialView(file.info()), {40, 40});
    EXPECT_EQ(again.error, "");
    EXPECT_EQ(again.at(5, 0), grey(5));
}
