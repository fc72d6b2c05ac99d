// SPDX-License-Identifier: MIT
// What a file has and its image lacks is told below the image, which loses no room to it.
#include "tests/unit/image/TestFiles.h"
#include "tests/x/imagewindow/Viewer.h"

#include <tiffio.h>

#include <algorithm>
#include <functional>
#include <string>

using namespace viewertest;

namespace {

constexpr int width = 400, height = 200;

// Pixels of a remark: its text alone is amber, with soft edges.
long remarkPixels(Viewer& viewer)
{
    const Window window = viewer.screen.findTitle("Image window");
    const drive::Rect whole = viewer.screen.geometry(window), canvas = viewer.screen.geometry(viewer.canvas);
    const int top = canvas.y + canvas.height;
    const drive::Picture picture =
        viewer.screen.capture({whole.x, top, whole.width, whole.y + whole.height - top});
    return std::count_if(picture.pixels.begin(), picture.pixels.end(),
                         [](const drive::Pixel& p) { return p.red - p.blue > 100; });
}

} // namespace

TEST(Remark, TellsWhatOfADamagedFileIsNotShown)
{
    using Damage = std::function<void(const std::string& path)>;
    constexpr int pages = 3;
    const auto changed = [](const std::string& path, const std::function<void(std::string&)>& change) {
        std::string bytes = readBytes(path);
        change(bytes);
        writeBytes(path, bytes);
    };
    const struct {
        const char* name;
        Damage damage;
        bool told;
    } rows[] = {
        {"whole", [](const std::string&) {}, false},
        {"bad pointer to the next page",
         [&](const std::string& path) {
             changed(path, [](std::string& bytes) {
                 overwriteNumber(bytes, nextPointerOf(bytes, pages - 1), 0x7fffffff);
             });
         },
         true},
        {"pages of another size",
         [](const std::string& path) {
             writeTiff(path, {.width = 30, .height = 20, .pages = 2, .append = true});
         },
         true},
        {"bad tag in a later page",
         [&](const std::string& path) {
             changed(path, [](std::string& bytes) {
                 EXPECT_TRUE(overwriteTag(bytes, TIFFTAG_BITSPERSAMPLE, 77, pages - 1));
             });
         },
         true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string path = scratchFolder() / "damaged.tif";
        writeTiff(path, {.width = width, .height = height, .pages = pages});
        row.damage(path);
        Viewer viewer({path});
        ASSERT_NE(viewer.canvas, Window{None}) << viewer.process.errors();
        EXPECT_TRUE(drive::waitUntil([&] { return (remarkPixels(viewer) > 100) == row.told; }));
        const drive::Rect canvas = viewer.screen.geometry(viewer.canvas);
        EXPECT_EQ(canvas.width, width);
        EXPECT_EQ(canvas.height, height);
        EXPECT_EQ(viewer.process.errors(), "");
    }
}
