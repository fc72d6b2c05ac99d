// SPDX-License-Identifier: MIT
// Save, Clear and Write To File..., with the real chooser: the file's cells against values that come from
// another reader of the image, and the same cells in other spreadsheet programs.
#include "tests/x/programs/Sheet.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <sys/resource.h>
#include <vector>

using drive::Pair;

namespace programs {

struct Block {
    const char* ordinal;
    Point from, to;
    Section section;
};

class Export : public SheetTest {
protected:
    fs::path field()
    {
        return sample("cells.ome.tif", "--size 300x200 --z 2 --time 3 --channels 3 --no-predictor");
    }
    // Opens the chooser, and presses a key in it as it stands.
    void answerChooser(Pair& pair, KeySym key)
    {
        screen.clickCentre(pair.button(Pair::Write));
        ASSERT_NE(screen.findTitle("Save as SYLK Spreadsheet"), None);
        drive::waitUntilCalm(screen);
        screen.key(key);
        EXPECT_TRUE(chooserGone());
    }
    // Compares the block that begins in a row with what another reader finds; returns the row after it.
    int expectBlock(const Sheet& sheet, int row, const Block& block, const fs::path& image);
};

namespace {

// The stage's coordinates are single-precision microns far from zero.
constexpr double stageRounding = 0.002;

// Half-maximum width of the highest sample after the first, in samples; a plain reading of the definition. 0
// when the curve does not fall below half on both sides.
double widthOf(const std::vector<double>& v)
{
    const auto peak = std::max_element(v.begin() + 1, v.end());
    const double half = (*std::min_element(v.begin(), v.end()) + *peak) / 2;
    auto left = peak, right = peak;
    while (left != v.begin() && *left >= half)
        --left;
    while (right != v.end() - 1 && *right >= half)
        ++right;
    if (*left >= half || *right >= half)
        return 0;
    const double before = (half - *left) / (left[1] - *left), after = (half - *right) / (right[-1] - *right);
    return static_cast<double>(right - left) - before - after;
}

void expectHead(const Sheet& sheet, int row, const Block& block, const Reading& metadata)
{
    const std::vector<double>& facts = metadata.lines[0];
    const double spacing = facts[0], dx = block.to.x - block.from.x, dy = block.to.y - block.from.y;
    EXPECT_EQ(sheet.at(row + 3, 2), std::to_string(block.section.z + 1));
    EXPECT_EQ(sheet.at(row + 3, 3), std::to_string(block.section.t + 1));
    EXPECT_NEAR(sheet.number(row + 3, 4), facts[2], 1e-5) << "time";
    EXPECT_NEAR(sheet.number(row + 3, 5), std::atan2(dy, dx) * 180 / M_PI, 0.01) << "angle";
    EXPECT_NEAR(sheet.number(row + 3, 6), std::hypot(dx, dy) * spacing, stageRounding) << "length";
    EXPECT_NEAR(sheet.number(row + 3, 7), spacing, 1e-6);
    EXPECT_NEAR(sheet.number(row + 3, 8), facts[1], 1e-6) << "known bias";
    int column = 1;
    for (const double wavelength : metadata.lines[1])
        EXPECT_EQ(sheet.at(row + 5, column++), "Channel " + std::to_string(static_cast<int>(wavelength)));
}

void expectStage(const Sheet& sheet, int row, const std::vector<Point>& pixels, const Reading& metadata)
{
    const std::vector<double>& facts = metadata.lines[0];
    const int column = static_cast<int>(metadata.lines[1].size()) + 3;
    for (size_t j = 0; j < pixels.size(); ++j) {
        const int at = row + rowsBefore + static_cast<int>(j);
        ASSERT_NEAR(sheet.number(at, column), facts[3] + pixels[j].x * facts[0], stageRounding);
        ASSERT_NEAR(sheet.number(at, column + 1), facts[4] + pixels[j].y * facts[0], stageRounding);
    }
}

// Of the last channel, which is measured last.
void expectWidth(const Sheet& sheet, int row, const Block& block, const Reading& values, double spacing)
{
    std::vector<double> last;
    for (const auto& channels : values.lines)
        last.push_back(channels.back());
    const double pixels = std::hypot(block.to.x - block.from.x, block.to.y - block.from.y);
    EXPECT_EQ(sheet.at(row + 2, 9), "Peak FWHM");
    EXPECT_GT(widthOf(last), 0);
    EXPECT_NEAR(sheet.number(row + 3, 9), widthOf(last) * pixels * spacing / last.size(), 1e-4);
}

} // namespace

int Export::expectBlock(const Sheet& sheet, int row, const Block& block, const fs::path& image)
{
    SCOPED_TRACE(block.ordinal);
    const std::vector<Point> pixels = pixelsBetween(block.from, block.to);
    const Reading metadata = readMetadata(image, block.section);
    const Reading values = readValues(image, block.section, pixels);
    EXPECT_EQ(values.problem + metadata.problem, "");
    if (values.lines.empty() || metadata.lines.size() != 2)
        return row;
    EXPECT_EQ(sheet.at(row, 1), image.string());
    EXPECT_EQ(sheet.at(row + 3, 1), block.ordinal);
    expectHead(sheet, row, block, metadata);
    expectSamples(sheet, row, pixels, values.lines);
    expectStage(sheet, row, pixels, metadata);
    expectWidth(sheet, row, block, values, metadata.lines[0][0]);
    return row + rowsBefore + static_cast<int>(pixels.size()) + rowsAfter;
}

TEST_F(Export, EveryCellAgreesWithAnotherReaderOfTheImage)
{
    const fs::path image = field();
    if (readMetadata(image, {}).missing)
        GTEST_SKIP() << "tifffile is not installed";
    Pair pair = open({"--zoom", "1", image});
    screen.clickCentre(pair.setting(Pair::FwhmToggle));
    pair.dragSegment(30, 40, 270, 160);
    save(pair, "1");
    for (const KeySym key : {XK_Shift_L, XK_Control_L, XK_Control_L})
        support::turnWheelWith(screen, key, pair.canvas);
    ASSERT_TRUE(drive::waitUntil([&] { return pair.display().z == 1 && pair.display().t == 2; }));
    pair.dragSegment(200, 180, 120, 20);
    save(pair, "2");
    const Sheet sheet = write(pair, folder / "both.slk");
    EXPECT_EQ(pair.message(), ("File " + (folder / "both.slk").string() + " saved.").substr(0, 49));
    int row = expectBlock(sheet, 1, {"1", {30, 40}, {270, 160}, {0, 0}}, image);
    row = expectBlock(sheet, row, {"2", {200, 180}, {120, 20}, {1, 2}}, image);
    EXPECT_EQ(sheet.rows, row - 1);
    EXPECT_EQ(sheet.columns, 8);
    expectDone(pair);
}

TEST_F(Export, NothingIsLostBeforeItIsWritten)
{
    const fs::path path = folder / "mine.slk";
    writeBytes(path, "precious");
    Pair pair = open({ramp()});
    screen.clickCentre(pair.button(Pair::Save));
    EXPECT_EQ(pair.savedCount(), "0") << "there is no profile yet";
    drawSegment(pair, {20, 20}, {220, 120});
    save(pair, "1");
    save(pair, "2");
    answerChooser(pair, XK_Escape);
    EXPECT_EQ(pair.savedCount(), "2");
    // "No" is what Return means in the question.
    pair.writeToFile(path);
    EXPECT_TRUE(confirm("Question"));
    EXPECT_EQ(readBytes(path), "precious");
    EXPECT_EQ(pair.savedCount(), "2");
    pair.writeToFile(path);
    ASSERT_NE(screen.findTitle("Question"), None);
    drive::waitUntilCalm(screen);
    screen.key(XK_Left);
    screen.key(XK_space);
    EXPECT_TRUE(waitUntilWritten(path)) << readBytes(path);
    EXPECT_EQ(readSylk(path).problem, "");
    EXPECT_EQ(pair.savedCount(), "0");
    expectDone(pair);
}

// The user's limit on the size of a file is a full disk to the tool: it goes on.
TEST_F(Export, AFileSizeLimitDoesNotEndTheTool)
{
    constexpr rlim_t limit = 2048;
    const fs::path path = folder / "cut.slk";
    Pair pair = open({ramp()});
    drawSegment(pair, {20, 20}, {220, 120});
    save(pair, "1");
    const rlimit bytes{limit, limit};
    ASSERT_EQ(prlimit(pair.tool->pid(), RLIMIT_FSIZE, &bytes, nullptr), 0);
    pair.writeToFile(path);
    EXPECT_TRUE(chooserGone());
    EXPECT_TRUE(drive::waitUntil([&] { return pair.savedCount() == "0"; }));
    EXPECT_EQ(fs::file_size(path), limit);
    expectDone(pair);
}

TEST_F(Export, AnEmptyStoreStartsAnewAndTheLastFileIsProposed)
{
    Pair pair = open({ramp()});
    drawSegment(pair, {20, 20}, {220, 120});
    save(pair, "1");
    screen.clickCentre(pair.button(Pair::Clear));
    EXPECT_EQ(pair.savedCount(), "0");
    screen.clickCentre(pair.button(Pair::Write));
    drive::waitUntilCalm(screen);
    EXPECT_EQ(screen.findTitleNow("Save as"), None) << "the button is off";
    drawSegment(pair, {20, 20}, {100, 20});
    save(pair, "1");
    // The proposal alone: beside the image, after its name.
    answerChooser(pair, XK_Return);
    EXPECT_TRUE(waitUntilWritten(folder / "ramp_PRF.slk"));
    EXPECT_EQ(readSylk(folder / "ramp_PRF.slk").rows, rowsBefore + 81 + rowsAfter);
    fs::create_directory(folder / "results");
    save(pair, "1");
    write(pair, folder / "results/one.slk");
    save(pair, "1");
    answerChooser(pair, XK_Return);
    EXPECT_TRUE(confirm("Question")) << "the last file is not proposed again";
    expectDone(pair);
}

// Each of them must find the very cells that the file holds.
class ForeignReader : public Export {
protected:
    void writeSheet()
    {
        Pair pair = open({"--zoom", "1", field()});
        screen.clickCentre(pair.setting(Pair::FwhmToggle));
        for (const Point to : {Point{270, 120}, Point{60, 190}}) {
            pair.dragSegment(100, 30, to.x, to.y);
            screen.clickCentre(pair.button(Pair::Save));
        }
        write(pair, folder / "cells.slk");
        expectDone(pair);
    }
    // command turns cells.slk into cells.csv.
    void expectSameCells(const std::vector<std::string>& command)
    {
        if (!support::problemOf({"/bin/sh", "-c", "command -v " + command.front()}).empty())
            GTEST_SKIP() << command.front() << " is not installed";
        writeSheet();
        ASSERT_EQ(support::problemOf(command, environment), "");
        const Sheet own = readSylk(folder / "cells.slk"), foreign = readCsv(folder / "cells.csv");
        ASSERT_GT(own.cells.size(), 100U);
        EXPECT_EQ(own.cells.size(), foreign.cells.size());
        for (const auto& [place, text] : own.cells) {
            const auto& [row, column] = place;
            const std::string other = foreign.at(row, column);
            const bool equal = other == text || own.number(row, column) == foreign.number(row, column);
            ASSERT_TRUE(equal) << row << ", " << column << ": " << text << " is read as " << other;
        }
    }
};

TEST_F(ForeignReader, GnumericReadsTheSameCells)
{
    expectSameCells({"ssconvert", folder / "cells.slk", folder / "cells.csv"});
}

TEST_F(ForeignReader, LibreOfficeReadsTheSameCells)
{
    expectSameCells({"soffice", "-env:UserInstallation=file://" + (folder / "office").string(), "--headless",
                     "--convert-to", "csv", "--outdir", folder.path, folder / "cells.slk"});
}

} // namespace programs
