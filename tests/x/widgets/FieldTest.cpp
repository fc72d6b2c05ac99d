// SPDX-License-Identifier: MIT
// Progress bars, tips and the aligner.
#include "tests/x/widgets/GalleryTest.h"

namespace {

class FieldTest : public GalleryTest {
protected:
    // Share of a bar's pixels, along its upper part, that show the colour of what is done.
    double doneShare(Window bar)
    {
        const drive::Picture picture = screen.capture(bar);
        constexpr drive::Pixel done{0x2f, 0x74, 0xd0};
        int count = 0;
        for (int x = 0; x < picture.width; ++x)
            count += picture.at(x, 5) == done;
        return static_cast<double>(count) / picture.width;
    }
    Window leaf(std::size_t index) { return screen.leaves(window).at(index); }
};

TEST_F(FieldTest, barIsAsLongAsItsShare)
{
    open("progress");
    const struct {
        std::size_t leaf;
        double share;
    } bars[] = {{1, 0}, {2, 0.42}, {3, 1}};
    for (const auto& bar : bars)
        EXPECT_TRUE(drive::waitUntil([&] { return std::abs(doneShare(leaf(bar.leaf)) - bar.share) < 0.06; }))
            << bar.leaf << ": " << doneShare(leaf(bar.leaf));
}

TEST_F(FieldTest, busyBarRuns)
{
    open("progress");
    const Window bar = leaf(7);
    const drive::Picture first = screen.capture(bar);
    EXPECT_TRUE(drive::waitUntil([&] { return screen.capture(bar).pixels != first.pixels; }));
}

TEST_F(FieldTest, crossAndKeyCancel)
{
    open("progress");
    const Window bar = leaf(5);
    const drive::Rect area = screen.geometry(bar);
    screen.click(bar, area.width / 2, area.height / 2); // beside the cross
    screen.click(bar, area.width - area.height / 2, area.height / 2);
    ASSERT_TRUE(told("cancel"));
    screen.key(XK_Escape);
    EXPECT_TRUE(told("cancel", 2));
    const Window insensitive = leaf(9);
    screen.click(insensitive, area.width - area.height / 2, area.height / 2);
    screen.key(XK_Escape);
    EXPECT_TRUE(told("cancel", 3));
    EXPECT_EQ(count("cancel"), 3);
}

TEST_F(FieldTest, tipsShowOnEveryKindOfWidget)
{
    open("tips");
    for (const std::size_t kind : {1u, 2u, 3u}) { // button, drawing area, child of a manager
        const Window widget = leaf(kind);
        screen.moveTo(widget, 10, 10);
        const Window tip = popup();
        ASSERT_NE(tip, Window{}) << kind;
        // Its own ground, not that of the program.
        EXPECT_TRUE(drive::waitUntil([&] {
            return screen.capture(tip).at(2, 2) == drive::Pixel{255, 255, 225};
        }));
        EXPECT_GT(screen.geometry(tip).y, screen.geometry(widget).y + 10);
        if (kind < 3) {
            screen.press();
            screen.release();
        } else {
            screen.moveTo(screen.root(), 0, 0);
        }
        EXPECT_TRUE(drive::waitUntil([&] { return popupNow() == 0; })) << kind;
    }
}

TEST_F(FieldTest, tipStaysOnTheScreen)
{
    open("tips");
    const drive::Rect all = screen.geometry(screen.root());
    const drive::Rect frame = screen.frameGeometry(window);
    XMoveWindow(screen.x(), window, all.width - frame.width, all.height - frame.height);
    ASSERT_TRUE(drive::waitUntil([&] { return screen.frameGeometry(window).x > frame.x + 100; }));
    const Window area = leaf(3);
    screen.moveTo(area, screen.geometry(area).width - 2, screen.geometry(area).height - 2);
    const Window tip = popup();
    ASSERT_NE(tip, Window{});
    const drive::Rect place = screen.geometry(tip);
    EXPECT_LE(place.x + place.width, all.width);
    EXPECT_LE(place.y + place.height, all.height);
}

TEST_F(FieldTest, alignedFieldsFollowTheWidth)
{
    open("aligner");
    // Label, field, label, field, ... row by row
    const int before = screen.geometry(leaf(1)).width, narrow = screen.geometry(leaf(3)).width;
    ASSERT_TRUE(widen(600));
    EXPECT_TRUE(drive::waitUntil([&] { return screen.geometry(leaf(1)).width > before + 100; }));
    EXPECT_EQ(screen.geometry(leaf(3)).width, narrow);
    EXPECT_EQ(screen.geometry(leaf(1)).x, screen.geometry(leaf(3)).x);
    const drive::Rect label = screen.geometry(leaf(0)), below = screen.geometry(leaf(2));
    EXPECT_EQ(label.x + label.width, below.x + below.width);
}

} // namespace
