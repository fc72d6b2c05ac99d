// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/OverlayStore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

using namespace viewer;
using protocol::OverlayCommand;
using protocol::OverlayKind;
using Outcome = OverlayStore::Outcome;

namespace {

OverlayCommand line(std::uint32_t client, std::int32_t id)
{
    return {.kind = OverlayKind::AddLine, .client = client, .id = id, .x1 = 9, .y1 = 9};
}

OverlayCommand removal(std::uint32_t client, std::int32_t id)
{
    return {.kind = OverlayKind::Remove, .client = client, .id = id};
}

} // namespace

TEST(OverlayStore, IdsBelongToTheirClient)
{
    constexpr std::uint32_t last = 0xFFFFFFFFU;
    OverlayStore store;
    for (const std::uint32_t client : {1U, 2U, 3U, last})
        EXPECT_EQ(store.apply(line(client, 5)), Outcome::Changed);
    EXPECT_EQ(store.size(), 4U);
    EXPECT_EQ(store.apply(removal(1, 5)), Outcome::Changed);
    EXPECT_EQ(store.apply(removal(1, 5)), Outcome::Ignored); // gone already
    EXPECT_EQ(store.apply(removal(4, 5)), Outcome::Ignored);
    EXPECT_EQ(store.apply({.kind = OverlayKind::RemoveAll, .client = 2}), Outcome::Changed);
    EXPECT_EQ(store.apply({.kind = OverlayKind::RemoveAll, .client = 2}), Outcome::Ignored);
    EXPECT_EQ(store.size(), 2U);
    EXPECT_TRUE(store.dropClient(last)); // it has died
    EXPECT_FALSE(store.dropClient(last));
    EXPECT_EQ(store.size(), 1U);
    EXPECT_EQ(store.apply({.kind = OverlayKind::Redraw, .client = 1}), Outcome::RedrawAsked);
}

TEST(OverlayStore, AnIdInUseIsReplaced)
{
    OverlayStore store;
    store.apply(line(1, 5));
    store.takeTouched();
    OverlayCommand other = line(1, 5);
    other.x1 = 50;
    EXPECT_EQ(store.apply(other), Outcome::Changed);
    EXPECT_EQ(store.size(), 1U);
    const auto touched = store.takeTouched();
    ASSERT_TRUE(touched);
    ASSERT_EQ(touched->size(), 2U); // where it was and where it is
    EXPECT_EQ((*touched)[0].command.x1, 9);
    EXPECT_EQ((*touched)[1].command.x1, 50);
}

TEST(OverlayStore, AFloodIsBounded)
{
    OverlayStore store;
    std::size_t accepted = 0;
    for (std::int32_t id = 1; id <= 12000; ++id)
        accepted += store.apply(line(1, id)) == Outcome::Changed;
    EXPECT_EQ(accepted, maxGraphicsPerClient);
    EXPECT_EQ(store.apply(line(2, 1)), Outcome::Changed); // another client still has room
    EXPECT_EQ(store.apply(line(1, 7)), Outcome::Changed); // replacing needs none
    EXPECT_FALSE(store.takeTouched());                    // too many to list
    EXPECT_EQ(store.apply(removal(1, 7)), Outcome::Changed);
    EXPECT_EQ(store.apply(line(1, 99999)), Outcome::Changed);
    OverlayCommand bad = line(2, 2);
    bad.x0 = std::numeric_limits<float>::infinity();
    EXPECT_EQ(store.apply(bad), Outcome::Refused);
}

TEST(OverlayStore, BindingToTimePanelAndSection)
{
    const auto point = OverlayKind::AddPoint, segment = OverlayKind::AddLine;
    const struct {
        const char* what;
        OverlayCommand command;
        int panel, z, t;
        bool shows;
    } rows[] = {
        {"everywhere", {.kind = segment}, 3, 7, 2, true},
        {"time point", {.kind = segment, .timePoint = 2}, 0, 0, 2, true},
        {"another time point", {.kind = segment, .timePoint = 2}, 0, 0, 1, false},
        {"panel", {.kind = point, .panel = 3}, 3, 0, 0, true},
        {"another panel", {.kind = point, .panel = 3}, 2, 0, 0, false},
        {"section of a point", {.kind = point, .z0 = 4.9F}, 0, 4, 0, true},
        {"next section of a point", {.kind = point, .z0 = 4.9F}, 0, 5, 0, false},
        {"section of a line", {.kind = segment, .z0 = 4, .z1 = 4}, 0, 4, 0, true},
        {"another section", {.kind = segment, .z0 = 4, .z1 = 4}, 0, 3, 0, false},
        {"between its two ends", {.kind = segment, .z0 = 6, .z1 = 4}, 0, 5, 0, true},
        {"beyond its two ends", {.kind = segment, .z0 = 6, .z1 = 4}, 0, 7, 0, false},
        {"one end bound", {.kind = segment, .z1 = 4}, 0, 4, 0, true},
        {"one end bound elsewhere", {.kind = segment, .z1 = 4}, 0, 0, 0, false},
    };
    for (const auto& row : rows) {
        const PanelContent content{.z = row.z, .t = row.t, .wavelengths = {0}, .caption = ""};
        EXPECT_EQ(showsIn({row.command, {}}, protocol::SinglePanel, row.panel, content), row.shows)
            << row.what;
    }
}

// Wavelength 1 was in the second panel (index 1) when the graphic came.
TEST(OverlayStore, APanelOfTheDisplayThatItWasDrawnIn)
{
    const struct {
        const char* what;
        int drawnIn, style, panel, wavelength;
        bool shows;
    } rows[] = {
        {"its wavelength", protocol::WavelengthPanels, protocol::WavelengthPanels, 1, 1, true},
        {"its wavelength elsewhere", protocol::WavelengthPanels, protocol::WavelengthPanels, 0, 1, true},
        {"another wavelength there", protocol::WavelengthPanels, protocol::WavelengthPanels, 1, 2, false},
        {"a single panel later", protocol::WavelengthPanels, protocol::SinglePanel, 0, 0, true},
        {"time panels later", protocol::WavelengthPanels, protocol::TimePanels, 3, 0, true},
        {"its place", protocol::TimePanels, protocol::TimePanels, 1, 0, true},
        {"another place", protocol::TimePanels, protocol::TimePanels, 2, 0, false},
    };
    for (const auto& row : rows) {
        const Graphic graphic{{.kind = OverlayKind::AddPoint, .client = 1, .id = 1, .panel = 1},
                              {row.drawnIn, 1}};
        const PanelContent content{.wavelengths = {row.wavelength}, .caption = ""};
        EXPECT_EQ(showsIn(graphic, row.style, row.panel, content), row.shows) << row.what;
    }
}

TEST(OverlayStore, TheMergeIsAPanelOfItsOwn)
{
    const PanelContent one{.wavelengths = {1}, .caption = ""}, merge{.wavelengths = {0, 1}, .caption = ""};
    const OverlayCommand point{.kind = OverlayKind::AddPoint, .client = 1, .id = 1, .panel = 2};
    const Graphic onMerge{point, {protocol::WavelengthPanels, boundWavelength(merge)}};
    const Graphic onOne{point, {protocol::WavelengthPanels, boundWavelength(one)}};
    EXPECT_TRUE(showsIn(onMerge, protocol::WavelengthPanels, 1, merge));
    EXPECT_FALSE(showsIn(onMerge, protocol::WavelengthPanels, 2, one));
    EXPECT_TRUE(showsIn(onOne, protocol::WavelengthPanels, 0, one));
    EXPECT_FALSE(showsIn(onOne, protocol::WavelengthPanels, 2, merge));
}

TEST(OverlayStore, SegmentsAreCutToTheRectangle)
{
    const struct {
        LinePart segment;
        std::optional<LinePart> expected;
    } rows[] = {
        {{2, 3, 8, 5}, LinePart{2, 3, 8, 5}},       // inside
        {{-10, 5, 30, 5}, LinePart{0, 5, 20, 5}},   // through
        {{1e9, 1e9, 1e9, 1e9}, std::nullopt},       // a point far away
        {{-5, -5, 25, 25}, LinePart{0, 0, 10, 10}}, // out at the lower edge
        {{-5, 0, 0, -5}, std::nullopt},             // past a corner
        {{-1, -1, -1, 9}, std::nullopt},
        {{20, 10, 20, 10}, LinePart{20, 10, 20, 10}}, // a point on the corner
        {{-1e9, 5, 1e9, 5}, LinePart{0, 5, 20, 5}},
    };
    const auto near = [](double a, double b) { return std::fabs(a - b) < 1e-6; };
    for (const auto& [whole, expected] : rows) {
        const auto part = clipped(whole, 0, 0, 20, 10);
        ASSERT_EQ(part.has_value(), expected.has_value()) << whole.x0 << ", " << whole.y0;
        EXPECT_TRUE(!part || (near(part->x0, expected->x0) && near(part->y0, expected->y0) &&
                              near(part->x1, expected->x1) && near(part->y1, expected->y1)))
            << whole.x0 << ", " << whole.y0 << " to " << whole.x1 << ", " << whole.y1;
    }
}
