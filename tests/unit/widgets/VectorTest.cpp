// SPDX-License-Identifier: MIT
// Drawings become vectors with text in them, not images of themselves.
#include "tests/unit/widgets/PictureTest.h"

#include "drive/Process.h"
#include "tests/unit/image/TempFolder.h"
#include "widgets/picture/VectorFile.h"

#include <filesystem>
#include <string>
#include <vector>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

void drawLabelledLine(cairo_t* cairo)
{
    cairo_move_to(cairo, 10, 10);
    cairo_line_to(cairo, 90, 40);
    cairo_stroke(cairo);
    cairo_select_font_face(cairo, "Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_move_to(cairo, 10, 45);
    cairo_show_text(cairo, "intensity");
}

std::string outputOf(const std::vector<std::string>& command)
{
    drive::Process process(command);
    EXPECT_EQ(process.wait(), 0) << process.errors();
    return process.output();
}

TEST(Vector, filesHoldPathsAndText)
{
    const TempFolder folder;
    const struct {
        const char* name;
        testing::Matcher<std::string> content;
    } rows[] = {
        {"a.svg", AllOf(HasSubstr("<svg"), HasSubstr("<path"), Not(HasSubstr("<image")))},
        {"a.eps",
         AllOf(StartsWith("%!PS-Adobe-3.0 EPSF-3.0"), HasSubstr("%%BoundingBox: "), HasSubstr("%%EOF"))},
        {"a.pdf", StartsWith("%PDF-")},
    };
    for (const auto& row : rows) {
        picture::writeVector(folder / row.name, {100, 50}, drawLabelledLine);
        EXPECT_THAT(readBytes(folder / row.name), row.content) << row.name;
    }
    EXPECT_THAT(outputOf({"pdftotext", folder / "a.pdf", "-"}), StartsWith("intensity"));
    EXPECT_THAT(outputOf({"pdfinfo", folder / "a.pdf"}), HasSubstr("100 x 50 pts"));
    EXPECT_THAT(outputOf({"pdfimages", "-list", folder / "a.pdf"}), Not(HasSubstr("image ")));
}

TEST(Vector, pictureKeepsItsPixelsAtEverySize)
{
    const picture::Picture drawn = picture::rasterize(
        {20, 20}, 2, [](cairo_t* cairo) { picture::drawPicture(cairo, fourFields(2, 2), 0, 0, 20, 20); });
    ASSERT_EQ(drawn.width, 40);
    const picture::Picture expected = fourFields(40, 40);
    for (auto [x, y] : {std::pair{0, 0}, {19, 19}, {20, 19}, {19, 20}, {39, 0}, {0, 39}})
        EXPECT_TRUE(std::equal(drawn.at(x, y), drawn.at(x, y) + 4, expected.at(x, y))) << x << "," << y;
    EXPECT_NEAR(drawn.at(30, 30)[0], 255, 2);
    EXPECT_EQ(drawn.at(30, 30)[3], 100);
}

TEST(Vector, failureOfTheDrawingIsASentenceAndNoFile)
{
    const TempFolder folder;
    const auto fail = [](cairo_t* cairo) { cairo_restore(cairo); };
    EXPECT_THROW(picture::writeVector(folder / "a.pdf", {10, 10}, fail), picture::PictureError);
    EXPECT_THROW(picture::writeVector(folder / "a.png", {10, 10}, drawLabelledLine), picture::PictureError);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path));
}

} // namespace
