// SPDX-License-Identifier: MIT
// Views as files, read back by other programs and by our own readers.
#include "platform/imagewindow/paint/SavedView.h"

#include "drive/Process.h"
#include "platform/image/ImageFile.h"
#include "tests/unit/image/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using namespace viewer;
using testing::AllOf;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

constexpr Size canvas{240, 180};
constexpr std::uint32_t ground = 0x305070;

// A canvas with a caption, a scale bar and a tool's line across its middle.
struct Stage {
    Stage()
    {
        geometry.imageWidth = geometry.panelWidth = canvas.width;
        geometry.imageHeight = geometry.panelHeight = canvas.height;
        panels[0].wavelengths = {0};
        panels[0].caption = "DAPI 461 nm";
        protocol::OverlayCommand line{.kind = protocol::OverlayKind::AddLine, .client = 1, .id = 1};
        line.x0 = 20, line.y0 = 90, line.x1 = 220, line.y1 = 90;
        store.apply(line);
    }
    SavedView view(int resolution = 1) const
    {
        const auto count = static_cast<std::size_t>(canvas.width * resolution) *
                           static_cast<std::size_t>(canvas.height * resolution);
        return {{geometry, panels, store, ScaleBar{50, "5 µm"}, 1},
                canvas,
                resolution,
                std::vector<std::uint32_t>(count, ground),
                0.1};
    }

    protocol::Geometry geometry;
    std::vector<PanelContent> panels{1};
    OverlayStore store;
};

std::uint32_t at(const picture::Picture& picture, int x, int y)
{
    const std::uint8_t* pixel = picture.at(x, y);
    return static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
}

std::string outputOf(const std::vector<std::string>& command)
{
    drive::Process process(command);
    EXPECT_EQ(process.wait(), 0) << process.errors();
    return process.output();
}

} // namespace

TEST(SavedView, PixelsAreThoseOfTheScreenOrTwiceAsMany)
{
    const TempFolder folder;
    for (const int resolution : {1, 2}) {
        const fs::path path = folder / "view.png";
        saveView(Stage().view(resolution), path);
        const picture::Picture read = picture::read(path);
        ASSERT_EQ(read.width, canvas.width * resolution);
        ASSERT_EQ(read.height, canvas.height * resolution);
        EXPECT_EQ(at(read, 5, read.height / 4), ground);
        EXPECT_EQ(at(read, 100 * resolution, 90 * resolution), 0xFFB81CU);
        EXPECT_EQ(at(read, (canvas.width - 14) * resolution, (canvas.height - 14) * resolution), 0xFFFFFFU);
    }
}

TEST(SavedView, EachEndingGivesItsFormat)
{
    const TempFolder folder;
    const struct {
        const char *name, *start;
    } rows[] = {
        {"a.PNG", "\x89PNG"},   {"a.tif", "II*"},  {"a.tiff", "II*"},   {"a.jpg", "\xff\xd8"},
        {"a.jpeg", "\xff\xd8"}, {"a.gif", "GIF8"}, {"a.xpm", "/* XPM"}, {"a.pdf", "%PDF"},
        {"a.svg", "<?xml"},     {"a.ps", "%!PS"},  {"a.eps", "%!PS"},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(hasSavedEnding(row.name));
        saveView(Stage().view(), folder / row.name);
        EXPECT_THAT(readBytes(folder / row.name), testing::StartsWith(row.start)) << row.name;
    }
    saveView(Stage().view(), folder / "a.xwd");
    EXPECT_EQ(at(picture::read(folder / "a.xwd"), 100, 90), 0xFFB81CU);
}

TEST(SavedView, ATiffTellsItsScale)
{
    const TempFolder folder;
    for (const int resolution : {1, 2}) {
        saveView(Stage().view(resolution), folder / "view.tif");
        const auto image = image::ImageFile::open(folder / "view.tif");
        const image::ImageInfo& info = image->info();
        EXPECT_EQ(info.width, canvas.width * resolution);
        EXPECT_EQ(info.sizeW, 3);
        EXPECT_NEAR(info.spacing[0], 0.1 / resolution, 1e-6);
        std::vector<float> red(1);
        ASSERT_TRUE(image->read({}, {2, 2, 2, 2}, red));
        EXPECT_EQ(red[0], 0x30);
    }
}

TEST(SavedView, DocumentsHoldTextAndLinesOverTheImage)
{
    const TempFolder folder;
    saveView(Stage().view(2), folder / "view.pdf");
    const std::string text = outputOf({"pdftotext", folder / "view.pdf", "-"});
    EXPECT_THAT(text, AllOf(HasSubstr("DAPI 461 nm"), HasSubstr("5 µm")));
    EXPECT_THAT(outputOf({"pdfinfo", folder / "view.pdf"}), HasSubstr("180 x 135 pts"));
    EXPECT_THAT(outputOf({"pdfimages", "-list", folder / "view.pdf"}), HasSubstr("480   360"));
    saveView(Stage().view(), folder / "view.svg");
    EXPECT_THAT(readBytes(folder / "view.svg"), AllOf(HasSubstr("<image"), HasSubstr("<path")));
}

TEST(SavedView, WhatCannotBeWrittenIsOneSentenceAndNoFile)
{
    const TempFolder folder;
    const struct {
        fs::path path;
        const char* sentence;
    } rows[] = {
        {folder / "view.bmp", "its name should end with png, tif"},
        {folder / "view", "its name should end with png, tif"},
        {folder / "missing" / "view.png", "No such file"},
        {folder / "missing" / "view.tif", "No such file"},
        {folder / "missing" / "view.pdf", "No such file"},
        {"/dev/full/view.png", "Not a directory"},
    };
    for (const auto& row : rows) {
        try {
            saveView(Stage().view(), row.path);
            ADD_FAILURE() << row.path;
        } catch (const picture::PictureError& error) {
            EXPECT_THAT(error.what(), HasSubstr(row.sentence));
        }
        EXPECT_FALSE(fs::exists(row.path));
    }
    EXPECT_TRUE(fs::is_empty(folder.path));
}
