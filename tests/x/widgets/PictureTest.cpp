// SPDX-License-Identifier: MIT
// Combo boxes and the converter of pictures.
#include "tests/x/widgets/GalleryTest.h"

namespace {

constexpr drive::Pixel blue{0, 0, 255}, white{255, 255, 255}, ground{0xdc, 0xdc, 0xd9};

// JPEG's blue is not exactly blue.
bool near(const drive::Pixel& a, const drive::Pixel& b)
{
    const auto differ = [](int x, int y) { return std::abs(x - y) > 6; };
    return !differ(a.red, b.red) && !differ(a.green, b.green) && !differ(a.blue, b.blue);
}

TEST_F(GalleryTest, stringsNamePicturesOfEveryFormatOverTheBackground)
{
    open("pictures");
    const struct {
        const char* format;
        drive::Pixel corner; // of the picture, where nothing is drawn
    } labels[] = {{"png", ground}, {"gif", ground}, {"xpm", ground}, {"jpeg", white}, {"xwd", white}};
    ASSERT_TRUE(drive::waitUntil([&] { return screen.leaves(window).size() == 7; }));
    for (std::size_t i = 0; i < std::size(labels); ++i) {
        const Window label = screen.leaves(window).at(i + 1);
        const drive::Rect area = screen.geometry(label);
        const auto shows = [&](int x, int y, const drive::Pixel& color) {
            return drive::waitUntil([&] { return near(screen.capture(label).at(x, y), color); });
        };
        EXPECT_TRUE(shows(area.width / 2, area.height / 2, blue)) << labels[i].format;
        EXPECT_TRUE(shows(area.width / 2 - 11, area.height / 2 - 11, labels[i].corner)) << labels[i].format;
    }
}

TEST_F(GalleryTest, comboTakesPointerAndKeys)
{
    open("combo");
    ASSERT_TRUE(drive::waitUntil([&] { return screen.leaves(window).size() >= 5; }));
    const Window field = screen.leaves(window).at(1);
    screen.click(field, screen.geometry(field).width + 12, 8); // the arrow beside it
    const Window list = popup();
    ASSERT_NE(list, Window{});
    const drive::Rect area = screen.geometry(list);
    screen.click(list, area.width / 3, area.height / 2); // the second of three
    ASSERT_TRUE(told("chosen 1"));
    screen.key(XK_Down);
    EXPECT_TRUE(told("chosen 2"));
}

} // namespace
