// SPDX-License-Identifier: MIT
#include "platform/base/Limits.h"
#include "platform/protocol/DisplayRecord.h"
#include "platform/protocol/OverlayRecord.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <span>
#include <vector>

using namespace protocol;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

DisplayRecord sample()
{
    return {.windowNumber = 3,
            .path = "/data/K\xC3\xB6rner/cells 1.ome.tif",
            .z = 4,
            .w = 1,
            .t = 2,
            .p = 5,
            .scratchSize = 12,
            .fileVersion = 7,
            .spacing = Spacing{0.5F, 0.25F, 3},
            .geometry = {640, 480, 1.0 / 3, -2.5, 17.25, TimePanels, 3, 2, 5, 213, 160, 2},
            .wavelengths = {{true, 5, true, -12.5F, 65535.0F, 4}, {}, {true, 0, true, 3.0F, 3.0F, 9}}};
}

// No field has its default value.
OverlayCommand line()
{
    return {OverlayKind::AddLine, 0x2A00001, 77, 3, 1, 2, 1, 6, 0.5F, -3, 2, 1e6F, 9, 2};
}

} // namespace

TEST(DisplayRecord, RoundTrip)
{
    const DisplayRecord record = sample();
    EXPECT_EQ(decodeDisplay(encodeDisplay(record)), record);
    DisplayRecord asTheFileSays = record;
    asTheFileSays.spacing.reset();
    EXPECT_EQ(decodeDisplay(encodeDisplay(asTheFileSays)), asTheFileSays);
    DisplayRecord largest = record;
    largest.path.resize(4096, 'x');
    largest.wavelengths.resize(base::maxWavelengths, record.wavelengths[0]);
    EXPECT_EQ(decodeDisplay(encodeDisplay(largest)), largest);
}

TEST(DisplayRecord, OutOfRangeIsRefused)
{
    const struct {
        const char* what;
        std::function<void(DisplayRecord&)> spoil;
    } rows[] = {
        {"window number 0", [](auto& r) { r.windowNumber = 0; }},
        {"window number too high", [](auto& r) { r.windowNumber = 10000; }},
        {"negative section", [](auto& r) { r.z = -1; }},
        {"no such wavelength", [](auto& r) { r.w = 3; }},
        {"negative scratch size", [](auto& r) { r.scratchSize = -1; }},
        {"negative file version", [](auto& r) { r.fileVersion = -1; }},
        {"no path", [](auto& r) { r.path.clear(); }},
        {"relative path", [](auto& r) { r.path = "cells.tif"; }},
        {"path too long", [](auto& r) { r.path.resize(4097, 'x'); }},
        {"NUL in the path", [](auto& r) { r.path[4] = '\0'; }},
        {"no wavelength", [](auto& r) { r.wavelengths.clear(); }},
        {"too many wavelengths", [](auto& r) { r.wavelengths.resize(1025); }},
        {"colour index", [](auto& r) { r.wavelengths[1].colorIndex = 7; }},
        {"negative top image", [](auto& r) { r.wavelengths[0].topImage = -1; }},
        {"spacing 0",
         [](auto& r) {
             r.spacing = Spacing{0, 1, 1};
         }},
        {"negative spacing",
         [](auto& r) {
             r.spacing = Spacing{1, 1, -1};
         }},
        {"spacing is no number",
         [](auto& r) {
             r.spacing = Spacing{1, static_cast<float>(notANumber), 1};
         }},
        {"endless spacing",
         [](auto& r) {
             r.spacing = Spacing{1, infinite, 1};
         }},
        {"no image", [](auto& r) { r.geometry.imageHeight = 0; }},
        {"zoom 0", [](auto& r) { r.geometry.zoom = 0; }},
        {"zoom is no number", [](auto& r) { r.geometry.zoom = notANumber; }},
        {"endless zoom", [](auto& r) { r.geometry.zoom = infinite; }},
        {"origin is no number", [](auto& r) { r.geometry.originY = notANumber; }},
        {"unknown panel style", [](auto& r) { r.geometry.style = 4; }},
        {"panels when single", [](auto& r) { r.geometry.style = SinglePanel; }},
        {"no columns", [](auto& r) { r.geometry.columns = 0; }},
        {"panel product overflow", [](auto& r) { r.geometry.rows = 1 << 30; }},
        {"too many panels", [](auto& r) { r.geometry.rows = 5000; }},
        {"panels beyond the grid", [](auto& r) { r.geometry.panelCount = 7; }},
        {"negative panel width", [](auto& r) { r.geometry.panelWidth = -1; }},
        {"negative gap", [](auto& r) { r.geometry.gap = -1; }},
    };
    for (const auto& row : rows) {
        DisplayRecord record = sample();
        row.spoil(record);
        EXPECT_FALSE(decodeDisplay(encodeDisplay(record))) << row.what;
    }
}

TEST(DisplayRecord, ARangeThatSaysNothingTravelsAsUnknown)
{
    const std::pair<float, float> ranges[] = {
        {5, 4}, {-infinite, 1}, {0, infinite}, {static_cast<float>(notANumber), 1}};
    for (const auto& [min, max] : ranges) {
        DisplayRecord record = sample();
        record.wavelengths[0].rangeMin = min;
        record.wavelengths[0].rangeMax = max;
        const auto read = decodeDisplay(encodeDisplay(record));
        ASSERT_TRUE(read);
        EXPECT_FALSE(read->wavelengths[0].rangeKnown);
    }
}

TEST(DisplayRecord, EveryTruncationAndExtensionIsRefused)
{
    auto bytes = encodeDisplay(sample());
    for (std::size_t length = 0; length < bytes.size(); ++length)
        ASSERT_FALSE(decodeDisplay(std::span(bytes).first(length))) << length;
    bytes.push_back({});
    EXPECT_FALSE(decodeDisplay(bytes));
}

// Whatever a flipped bit makes of a record, it is refused or is a record that reads back as itself.
TEST(DisplayRecord, FlippedBitsNeverYieldAnInvalidRecord)
{
    const auto good = encodeDisplay(sample());
    int refused = 0;
    for (std::size_t i = 0; i < good.size(); ++i)
        for (int bit = 0; bit < 8; ++bit) {
            auto bytes = good;
            bytes[i] ^= std::byte(1 << bit);
            const auto record = decodeDisplay(bytes);
            refused += !record;
            if (record) {
                ASSERT_EQ(decodeDisplay(encodeDisplay(*record)), record) << "byte " << i << " bit " << bit;
            }
        }
    EXPECT_GT(refused, 32 * 8) << "the version, the lengths and the counts at least";
}

TEST(OverlayRecord, RoundTripInOrder)
{
    const std::vector<OverlayCommand> commands{line(),
                                               {.kind = OverlayKind::AddPoint, .client = 9, .id = 5},
                                               {.kind = OverlayKind::Remove, .client = 9, .id = 5},
                                               {.kind = OverlayKind::RemoveAll, .client = 9},
                                               {.kind = OverlayKind::Redraw, .client = 9}};
    std::vector<std::byte> bytes;
    for (const auto& command : commands) {
        const auto record = encodeOverlay(command);
        ASSERT_EQ(record.size(), overlayRecordSize);
        bytes.insert(bytes.end(), record.begin(), record.end());
    }
    int bad = -1;
    EXPECT_EQ(decodeOverlays(bytes, bad), commands);
    EXPECT_EQ(bad, 0);
}

TEST(OverlayRecord, BadCommandsAreSkippedAndCounted)
{
    const std::function<void(OverlayCommand&)> spoils[] = {
        [](auto& c) { c.kind = static_cast<OverlayKind>(6); },
        [](auto& c) { c.kind = static_cast<OverlayKind>(0); },
        [](auto& c) { c.client = 0; },
        [](auto& c) { c.id = 0; },
        [](auto& c) { c.timePoint = -2; },
        [](auto& c) { c.panel = -2; },
        [](auto& c) { c.width = 256; },
        [](auto& c) { c.dash = -1; },
        [](auto& c) { c.color = 8; },
        [](auto& c) { c.x0 = infinite; },
        [](auto& c) { c.z1 = static_cast<float>(notANumber); },
    };
    for (const auto& spoil : spoils) {
        OverlayCommand spoiled = line();
        spoil(spoiled);
        auto bytes = encodeOverlay(spoiled);
        const auto good = encodeOverlay(line());
        bytes.insert(bytes.end(), good.begin(), good.end());
        int bad = 0;
        EXPECT_EQ(decodeOverlays(bytes, bad), std::vector{line()}) << &spoil - spoils;
        EXPECT_EQ(bad, 1) << &spoil - spoils;
    }
}

TEST(OverlayRecord, TruncatedAndForeignBytes)
{
    const auto whole = encodeOverlay(line());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        int bad = -1;
        EXPECT_TRUE(decodeOverlays(std::span(whole).first(length), bad).empty());
        EXPECT_EQ(bad, length > 0) << length;
    }
    int bad = 0;
    EXPECT_TRUE(decodeOverlays(std::vector<std::byte>(1000, std::byte{0xFF}), bad).empty());
    EXPECT_EQ(bad, 16);
}
