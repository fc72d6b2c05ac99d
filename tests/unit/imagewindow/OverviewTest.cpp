// SPDX-License-Identifier: MIT
// The small picture of a whole section: what is read for it and when.
#include "platform/imagewindow/render/Overview.h"

#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

using namespace viewer;
using viewertest::FakeImage;

namespace {

constexpr Size small{32, 16};

struct Window {
    Window(int width, int height) : file(width, height) { file.description.sizeZ = 2; }
    PanelContent panel(int z) const
    {
        View view = initialView(file.info());
        view.z = z;
        return panelContents(file.info(), view).front();
    }

    FakeImage file;
    Renderer renderer{file};
    Overview overview{file};
};

} // namespace

TEST(Overview, ShowsTheWholeSectionInTheContrastOfTheWindow)
{
    Window window(320, 160);
    window.file.value = [](const auto& section, int x, int) {
        return static_cast<float>(section.z == 0 ? (x < 160 ? 10 : 20) : 40);
    };
    window.renderer.setLimits(0, {0, 255});
    EXPECT_TRUE(window.overview.draw(window.panel(0), window.renderer).pixels.empty());
    EXPECT_TRUE(window.overview.lacks(window.panel(0), small));
    window.overview.load(window.panel(0), small);
    EXPECT_FALSE(window.overview.lacks(window.panel(0), small));
    const int reads = window.file.reads;
    const auto leftAndRight = [&](int z) {
        const Overview::Image image = window.overview.draw(window.panel(z), window.renderer);
        EXPECT_EQ(image.size, small);
        return std::vector{image.pixels[3] & 255, image.pixels[30] & 255};
    };
    EXPECT_EQ(leftAndRight(0), (std::vector<std::uint32_t>{10, 20}));
    window.renderer.setLimits(0, {0, 25.5F});
    EXPECT_EQ(leftAndRight(0), (std::vector<std::uint32_t>{100, 200}));
    EXPECT_TRUE(window.overview.lacks(window.panel(1), small));
    EXPECT_EQ(leftAndRight(1), (std::vector<std::uint32_t>{100, 200})); // the one before stays
    EXPECT_EQ(window.file.reads, reads);
    window.overview.load(window.panel(1), small);
    EXPECT_EQ(leftAndRight(1), (std::vector<std::uint32_t>{255, 255}));
}

TEST(Overview, AColourIsNoReasonToReadAgain)
{
    Window window(320, 160);
    window.overview.load(window.panel(0), small);
    PanelContent blue = window.panel(0);
    blue.colors = {4};
    EXPECT_FALSE(window.overview.lacks(blue, small));
    const int reads = window.file.reads;
    window.overview.draw(blue, window.renderer);
    EXPECT_EQ(window.file.reads, reads);
    EXPECT_TRUE(window.overview.lacks(blue, {16, 8}));
}

TEST(Overview, AnImageThatIsTooLargeIsNotRead)
{
    for (const int levels : {1, 6}) {
        Window window(32768, 16384);
        window.file.levels = levels;
        window.overview.load(window.panel(0), small);
        EXPECT_EQ(window.file.reads > 0, levels > 1);
        EXPECT_EQ(window.overview.draw(window.panel(0), window.renderer).pixels.empty(), levels == 1);
        EXPECT_FALSE(window.overview.lacks(window.panel(0), small)); // nothing more to be had
    }
}
