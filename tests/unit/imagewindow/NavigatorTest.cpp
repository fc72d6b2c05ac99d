// SPDX-License-Identifier: MIT
// Where the overview stands, and that a place in it is that place of the image.
#include "platform/imagewindow/view/Navigator.h"

#include "platform/imagewindow/paint/NavigatorPaint.h"
#include "platform/imagewindow/paint/Pixels.h"
#include "platform/imagewindow/view/View.h"
#include "tests/Rows.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <vector>

using namespace viewer;

namespace {

protocol::Geometry panelOf(Size image, double zoom, Size area)
{
    const viewertest::FakeImage file(image.width, image.height);
    View view = initialView(file.info());
    view.zoom = zoom;
    view.originX = view.originY = 1e9; // the lower right end
    return arrange(file.info(), view, area, 0).geometry;
}

struct Case {
    const char* name;
    Size image;
    double zoom;
    Size area;
    double screenScale;
    Size expected; // of the picture of the whole; none: 0
};

class NavigatorPlace : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(NavigatorPlace, IsInTheCornerWithTheMarkAtItsEnd)
{
    const Case& row = GetParam();
    const protocol::Geometry g = panelOf(row.image, row.zoom, row.area);
    for (const bool low : {false, true}) {
        const auto place = navigatorOf(g, low, row.screenScale);
        ASSERT_EQ(place.has_value(), row.expected.width > 0);
        if (!place)
            return;
        EXPECT_EQ((Size{place->width, place->height}), row.expected);
        const int edge = static_cast<int>(10 * row.screenScale);
        EXPECT_EQ(place->x + place->width, g.panelWidth - edge);
        EXPECT_EQ(low ? g.panelHeight - place->y - place->height : place->y, edge);
        const Navigator::Part& mark = place->visible;
        EXPECT_NEAR(mark.x + mark.width, place->x + place->width, 1);
        EXPECT_NEAR(mark.y + mark.height, place->y + place->height, 1);
        EXPECT_NEAR(place->dataX(mark.x), g.originX, 1e-6);
        EXPECT_NEAR(place->dataY(mark.y + mark.height), row.image.height, 1 / place->scale);
        EXPECT_TRUE(place->holds(place->x, place->y));
        EXPECT_FALSE(place->holds(place->x - 1, place->y));
        EXPECT_FALSE(place->holds(place->x, place->y + place->height));
    }
}

INSTANTIATE_TEST_SUITE_P(Navigator, NavigatorPlace,
                         testing::Values(Case{"AllInSight", {500, 400}, 1, {500, 400}, 1, {}},
                                         Case{"AllInSightAndRoom", {500, 400}, 1, {900, 900}, 1, {}},
                                         Case{"ALittleOutOfSight", {540, 400}, 1, {500, 500}, 1, {}},
                                         Case{"ATenthOutOfSight", {560, 400}, 1, {500, 500}, 1, {120, 86}},
                                         Case{"Large", {4000, 2000}, 1, {800, 600}, 1, {150, 75}},
                                         Case{"FineScreen", {4000, 2000}, 1, {1600, 1200}, 2, {300, 150}},
                                         Case{"HighAndNarrow", {100, 4000}, 4, {400, 600}, 1, {3, 120}},
                                         Case{"SmallPanel", {4000, 4000}, 1, {150, 400}, 1, {}}),
                         RowName{});

TEST(Navigator, IsPaintedInItsPlaceAlone)
{
    constexpr std::uint32_t ground = 0x305070, object = 0x00FF00, white = 0xFFFFFF, rgb = 0xFFFFFF;
    const protocol::Geometry g = panelOf({2000, 2000}, 1, {400, 400});
    const Navigator place = *navigatorOf(g, false, 1);
    const std::vector<std::uint32_t> image(4, object); // smaller than its place
    std::vector<std::uint32_t> pixels(400 * 400, ground);
    paintOn(pixels, {400, 400}, [&](cairo_t* cairo) { paintNavigator(cairo, {place, {image, {2, 2}}}, 1); });
    const auto at = [&](int x, int y) { return pixels[static_cast<std::size_t>(y * 400 + x)] & rgb; };
    EXPECT_EQ(at(place.x + 5, place.y + 5), object);
    EXPECT_EQ(at(place.x - 4, place.y + 5), ground);
    EXPECT_EQ(at(place.x + 5, place.y + place.height + 4), ground);
    EXPECT_EQ(at(place.x + place.width - 1, place.y + place.height - 5), white); // the mark
}
