// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/Graphics.h"
#include "platform/imagewindow/paint/Labels.h"
#include "platform/imagewindow/paint/Pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

using namespace viewer;
using protocol::OverlayCommand;
using protocol::OverlayKind;

namespace {

constexpr std::uint32_t amber = 0xFFB81C, grey = 0x606060, rgb = 0xFFFFFF;
constexpr Size canvas{300, 200};

class Canvas {
public:
    explicit Canvas(Size size = canvas)
        : size(size),
          pixels(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), grey)
    {
    }
    template<typename Draw> void paint(Draw draw) { paintOn(pixels, size, draw); }
    std::uint32_t at(int x, int y) const
    {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) +
                      static_cast<std::size_t>(x)] &
               rgb;
    }
    // The smallest box around all that is not the ground.
    Box drawn() const
    {
        int left = size.width, top = size.height, right = -1, bottom = -1;
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x)
                if (at(x, y) != grey) {
                    left = std::min(left, x), right = std::max(right, x);
                    top = std::min(top, y), bottom = std::max(bottom, y);
                }
        return {left, top, right - left + 1, bottom - top + 1};
    }

    Size size;
    std::vector<std::uint32_t> pixels;
};

struct Stage {
    explicit Stage(int count = 1)
    {
        geometry.imageWidth = geometry.panelWidth = (canvas.width - (count - 1) * 4) / count;
        geometry.imageHeight = geometry.panelHeight = canvas.height;
        geometry.columns = geometry.panelCount = count;
        geometry.gap = 4;
        panels.resize(static_cast<std::size_t>(count));
        for (PanelContent& panel : panels)
            panel.wavelengths = {0};
    }
    void add(int id, OverlayKind kind, std::array<float, 4> at, int width = 1, int panel = -1)
    {
        OverlayCommand command{.kind = kind, .client = 1, .id = id, .panel = panel, .width = width};
        command.x0 = at[0], command.y0 = at[1], command.x1 = at[2], command.y1 = at[3];
        store.apply(command);
    }
    Scene scene(double scale = 1) const { return {geometry, panels, store, bar, scale}; }

    protocol::Geometry geometry;
    std::vector<PanelContent> panels;
    OverlayStore store;
    std::optional<ScaleBar> bar;
};

} // namespace

TEST(Paint, ALineIsCrispInItsColourWithADarkHalo)
{
    Stage stage;
    stage.add(1, OverlayKind::AddLine, {20, 50, 200, 50});
    Canvas picture;
    picture.paint([&](cairo_t* cairo) { paintGraphics(cairo, stage.scene(), Edges::Crisp); });
    for (const int x : {20, 100, 200})
        EXPECT_EQ(picture.at(x, 50), amber) << x;
    for (const int y : {49, 51})
        EXPECT_EQ(picture.at(100, y), 0U) << y;
    for (const int y : {48, 52})
        EXPECT_EQ(picture.at(100, y), grey) << y;
}

TEST(Paint, APointLeavesItsPixelFreeAndGrowsWithTheScreen)
{
    const struct {
        double scale;
        int reach;
    } rows[] = {{1, 7}, {2, 14}};
    for (const auto& row : rows) {
        Stage stage;
        stage.add(1, OverlayKind::AddPoint, {100, 80, 0, 0});
        Canvas picture;
        picture.paint([&](cairo_t* cairo) { paintGraphics(cairo, stage.scene(row.scale), Edges::Crisp); });
        EXPECT_EQ(picture.at(100, 80), grey);
        EXPECT_EQ(picture.at(100 + row.reach - 1, 80), amber) << row.scale;
        EXPECT_EQ(picture.at(100 + row.reach + 2, 80), grey) << row.scale;
    }
}

TEST(Paint, GraphicsStayInTheirPanels)
{
    Stage stage(2);
    stage.geometry.style = protocol::ZPanels;
    OverlayCommand line{.kind = OverlayKind::AddLine, .client = 1, .id = 1, .panel = 1};
    line.x0 = -50, line.y0 = 50, line.x1 = 500, line.y1 = 50;
    stage.store.apply(line, {.style = protocol::ZPanels});
    Canvas picture;
    picture.paint([&](cairo_t* cairo) { paintGraphics(cairo, stage.scene(), Edges::Crisp); });
    EXPECT_EQ(picture.drawn().x, stage.geometry.panelWidth + stage.geometry.gap);
    EXPECT_EQ(picture.drawn().width, stage.geometry.panelWidth);
}

// What is repaired after each change is what is drawn from the beginning.
TEST(Paint, RepairsLeaveNoTrace)
{
    for (const int most : {3, 12}) {
        Stage stage(2);
        std::mt19937 random(7);
        const auto any = [&](int limit) {
            return static_cast<float>(random() % static_cast<unsigned>(limit));
        };
        Canvas kept;
        for (int step = 0; step < 60; ++step) {
            const int id = 1 + static_cast<int>(any(most));
            if (step % 4 == 3)
                stage.store.apply({.kind = OverlayKind::Remove, .client = 1, .id = id});
            else
                stage.add(id, step % 3 ? OverlayKind::AddLine : OverlayKind::AddPoint,
                          {any(300), any(200), any(300), any(200)}, 1 + static_cast<int>(any(5)));
            const Damage damage = damageOf(stage.scene(), *stage.store.takeTouched());
            for (const Box& box : damage.boxes())
                for (int y = box.y; y < box.y + box.height; ++y)
                    std::fill_n(kept.pixels.begin() + y * canvas.width + box.x, box.width, grey);
            kept.paint([&](cairo_t* cairo) { repairGraphics(cairo, stage.scene(), damage); });
            Canvas fresh;
            fresh.paint([&](cairo_t* cairo) { paintGraphics(cairo, stage.scene(), Edges::Crisp); });
            for (int y = 0; y < canvas.height; ++y)
                for (int x = 0; x < canvas.width; ++x)
                    ASSERT_EQ(kept.at(x, y), fresh.at(x, y)) << step << ": " << x << ", " << y;
        }
    }
}

TEST(Paint, ALongLineDamagesLittle)
{
    Stage stage;
    stage.add(1, OverlayKind::AddLine, {0, 0, 299, 199});
    long pixels = 0;
    for (const Box& box : damageOf(stage.scene(), *stage.store.takeTouched()).boxes())
        pixels += static_cast<long>(box.width) * box.height;
    EXPECT_GT(pixels, 300);
    EXPECT_LT(pixels, canvas.width * canvas.height / 4);
}

TEST(Paint, TextsAreSmoothAndGrowWithTheScreen)
{
    Stage stage;
    stage.panels[0].caption = "z 3, 2.5 µm";
    Canvas small, large;
    small.paint([&](cairo_t* cairo) { paintLabels(cairo, stage.scene()); });
    large.paint([&](cairo_t* cairo) { paintLabels(cairo, stage.scene(2)); });
    const std::set<std::uint32_t> levels(small.pixels.begin(), small.pixels.end());
    EXPECT_GT(levels.size(), 10U);
    const Box one = small.drawn(), two = large.drawn();
    EXPECT_GT(one.width, 40);
    EXPECT_NEAR(two.width, 2 * one.width, 6);
    EXPECT_NEAR(two.height, 2 * one.height, 3);
    EXPECT_LT(two.x + two.width, canvas.width);
}

TEST(Paint, TheScaleBarHasItsLengthAndStandsInTheCorner)
{
    Stage stage;
    stage.bar = ScaleBar{60, "20 µm"};
    Canvas picture;
    picture.paint([&](cairo_t* cairo) { paintLabels(cairo, stage.scene()); });
    const int row = canvas.height - 12 - 2;
    int white = 0;
    for (int x = 0; x < canvas.width; ++x)
        white += picture.at(x, row) == rgb;
    EXPECT_EQ(white, 60);
    EXPECT_EQ(picture.at(canvas.width - 13, row), rgb);
    EXPECT_EQ(picture.at(canvas.width - 12, row), 0U);
}

TEST(Paint, TheScaleBarStandsInItsCornerInItsColour)
{
    const struct {
        const char* name;
        BarCorner corner;
        const char* caption;
        int x, y; // a pixel of the bar
    } rows[] = {
        {"lower right", BarCorner::LowerRight, "", canvas.width - 20, canvas.height - 14},
        {"lower left", BarCorner::LowerLeft, "", 20, canvas.height - 14},
        {"upper right", BarCorner::UpperRight, "", canvas.width - 20, 30},
        {"upper left", BarCorner::UpperLeft, "", 20, 30},
        {"under the caption", BarCorner::UpperLeft, "z 3", 20, 48},
    };
    for (const auto& row : rows) {
        Stage stage;
        stage.panels[0].caption = row.caption;
        stage.bar = ScaleBar{60, "20 µm", row.corner, {255, 0, 255}};
        Canvas picture;
        picture.paint([&](cairo_t* cairo) { paintLabels(cairo, stage.scene()); });
        int count = 0;
        for (int x = 0; x < canvas.width; ++x)
            count += picture.at(x, row.y) == 0xFF00FF;
        EXPECT_EQ(picture.at(row.x, row.y), 0xFF00FFU) << row.name;
        EXPECT_EQ(count, 60) << row.name;
    }
}

TEST(Paint, APlottedPanelHasAFrameInsideItsEdge)
{
    for (const int scale : {1, 2}) {
        Stage stage(2);
        Scene scene = stage.scene(scale);
        scene.plotted = {1};
        Canvas picture;
        picture.paint([&](cairo_t* cairo) { paintLabels(cairo, scene); });
        const int left = stage.geometry.panelWidth + stage.geometry.gap;
        EXPECT_EQ(picture.drawn().x, left);
        EXPECT_EQ(picture.drawn().width, stage.geometry.panelWidth);
        EXPECT_EQ(picture.drawn().height, canvas.height);
        EXPECT_EQ(picture.at(left + scale - 1, 90), amber);
        EXPECT_EQ(picture.at(left + scale, 90), grey);
    }
}
