// Save, Clear and Write To File..., with the real chooser: the file's cells against values that come from
// another reader of the image, and the same cells in other spreadsheet programs.
#include "tests/x/programs/Programs.h"
#include "tests/x/programs/Sheet.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <fstream>

using drive::Pair;

namespace programs {

class Export : public ProgramsTest {
protected:
    fs::path field()
    {
        return sample("cells.ome.tif", {"--size", "300x200", "--z", "2", "--time", "2", "--channels", "3",
                                        "--compression", "deflate", "--no-predictor"});
    }
    void save(Pair& pair, const std::string& count)
    {
        screen.clickCentre(pair.button(Pair::Save));
        EXPECT_TRUE(drive::waitUntil([&] { return pair.savedCount() == count; })) << pair.savedCount();
    }
    bool chooserGone()
    {
        return drive::waitUntil([&] { return screen.findTitleNow("Save as SYLK Spreadsheet") == None; });
    }
    // Writes and waits for the end record, and for the store to be empty.
    Sheet write(Pair& pair, const fs::path& path)
    {
        pair.writeToFile(path);
        EXPECT_TRUE(drive::waitUntil([&] { return readText(path).ends_with("\nE\n"); }));
        EXPECT_TRUE(chooserGone());
        EXPECT_EQ(pair.savedCount(), "0");
        return readSylk(path);
    }
};

namespace {

constexpr int headerRows = 6; // of a block, before its samples

struct Block {
    Point from, to;
    Section section;
};

// The stage's coordinates are single-precision microns far from zero.
constexpr double stageRounding = 0.002;

std::vector<std::string> request(const Block& block, const char* what)
{
    std::vector<std::string> words{what, std::to_string(block.section.z), std::to_string(block.section.t)};
    if (std::string(what) == "values")
        for (const Point& pixel : pixelsBetween(block.from, block.to)) {
            words.push_back(std::to_string(pixel.x));
            words.push_back(std::to_string(pixel.y));
        }
    return words;
}

// Half-maximum width of the highest sample after the first, in samples, where the curve falls below half on
// both sides; a plain reading of the definition. 0 when there is none.
double widthOf(const std::vector<double>& v)
{
    const double lowest = *std::min_element(v.begin(), v.end());
    size_t peak = 0;
    double runningLow = v[0], highest = -1e30;
    for (size_t i = 1; i < v.size(); ++i) {
        if (v[i] >= runningLow && v[i] > highest) {
            highest = v[i];
            peak = i;
        }
        runningLow = std::min(runningLow, v[i]);
    }
    const double half = (lowest + highest) / 2;
    size_t left = peak, right = peak;
    while (left > 0 && v[left] >= half)
        --left;
    while (right + 1 < v.size() && v[right] >= half)
        ++right;
    if (v[left] >= half || v[right] >= half)
        return 0;
    const double start = left + (half - v[left]) / (v[left + 1] - v[left]);
    const double end = right - 1 + (half - v[right - 1]) / (v[right] - v[right - 1]);
    return end - start;
}

void expectHead(const Sheet& sheet, int row, const Block& block, const std::vector<double>& metadata)
{
    const double spacing = metadata[0], dx = block.to.x - block.from.x, dy = block.to.y - block.from.y;
    EXPECT_EQ(sheet.at(row + 3, 2), std::to_string(block.section.z + 1));
    EXPECT_EQ(sheet.at(row + 3, 3), std::to_string(block.section.t + 1));
    EXPECT_NEAR(sheet.number(row + 3, 4), metadata[2], 1e-5) << "time";
    EXPECT_NEAR(sheet.number(row + 3, 5), std::atan2(dy, dx) * 180 / M_PI, 0.01) << "angle";
    EXPECT_NEAR(sheet.number(row + 3, 6), std::hypot(dx, dy) * spacing, stageRounding) << "length";
    EXPECT_NEAR(sheet.number(row + 3, 7), spacing, 1e-6);
    EXPECT_NEAR(sheet.number(row + 3, 8), metadata[1], 1e-6) << "known bias";
}

// Every sample and coordinate of a block whose first row is row, channels 0 to n-1 displayed.
void expectSamples(const Sheet& sheet, int row, const Block& block, const Reading& values,
                   const std::vector<double>& metadata)
{
    const std::vector<Point> pixels = pixelsBetween(block.from, block.to);
    const int n = static_cast<int>(values.lines.front().size());
    for (size_t j = 0; j < pixels.size(); ++j) {
        const int at = row + headerRows + static_cast<int>(j);
        for (int c = 0; c < n; ++c)
            ASSERT_EQ(sheet.number(at, c + 1), values.lines[j][static_cast<size_t>(c)]) << j << ", " << c;
        ASSERT_EQ(sheet.at(at, n + 1), std::to_string(pixels[j].x));
        ASSERT_EQ(sheet.at(at, n + 2), std::to_string(pixels[j].y));
        ASSERT_NEAR(sheet.number(at, n + 3), metadata[3] + pixels[j].x * metadata[0], stageRounding);
        ASSERT_NEAR(sheet.number(at, n + 4), metadata[4] + pixels[j].y * metadata[0], stageRounding);
    }
}

} // namespace

TEST_F(Export, EveryCellAgreesWithAnotherReaderOfTheImage)
{
    const fs::path image = field();
    // Slopes of a half, up and down: every other step lies exactly between two pixels.
    const std::vector<Block> blocks{
        {{30, 40},   {270, 160}, {0, 0}},
        {{200, 180}, {120, 20},  {1, 1}}
    };
    Pair pair = open({image});
    screen.clickCentre(pair.setting(Pair::FwhmToggle));
    for (size_t i = 0; i < blocks.size(); ++i) {
        if (i == 1)
            for (const KeySym key : {XK_Shift_L, XK_Control_L}) {
                screen.keyDown(key);
                screen.click(pair.canvas, 10, 10, 4);
                screen.keyUp(key);
            }
        ASSERT_TRUE(drive::waitUntil([&] {
            return pair.display().z == blocks[i].section.z && pair.display().t == blocks[i].section.t;
        }));
        pair.dragSegment(blocks[i].from.x, blocks[i].from.y, blocks[i].to.x, blocks[i].to.y);
        save(pair, std::to_string(i + 1));
    }
    const Sheet sheet = write(pair, folder / "both.slk");
    ASSERT_EQ(sheet.problem, "");
    EXPECT_EQ(pair.message(), ("File " + (folder / "both.slk").string() + " saved.").substr(0, 49));

    int row = 1;
    for (size_t i = 0; i < blocks.size(); ++i) {
        SCOPED_TRACE(i);
        const Reading metadata = readImage(image, request(blocks[i], "metadata"));
        if (metadata.missing)
            GTEST_SKIP() << metadata.problem;
        const Reading values = readImage(image, request(blocks[i], "values"));
        ASSERT_EQ(values.problem + metadata.problem, "");
        EXPECT_EQ(sheet.at(row, 1), image.string());
        EXPECT_EQ(sheet.at(row + 3, 1), std::to_string(i + 1));
        EXPECT_EQ(sheet.at(row + 2, 9), "Peak FWHM");
        expectHead(sheet, row, blocks[i], metadata.lines[0]);
        for (size_t c = 0; c < metadata.lines[1].size(); ++c)
            EXPECT_EQ(sheet.at(row + 5, static_cast<int>(c) + 1),
                      "Channel " + std::to_string(static_cast<int>(metadata.lines[1][c])));
        expectSamples(sheet, row, blocks[i], values, metadata.lines[0]);

        std::vector<double> last;
        for (const auto& line : values.lines)
            last.push_back(line.back());
        const double pixels =
            std::hypot(blocks[i].to.x - blocks[i].from.x, blocks[i].to.y - blocks[i].from.y);
        const double step = pixels * metadata.lines[0][0] / static_cast<double>(last.size());
        EXPECT_GT(widthOf(last), 0);
        EXPECT_NEAR(sheet.number(row + 3, 9), widthOf(last) * step, 1e-4);
        row += static_cast<int>(values.lines.size()) + headerRows + 1;
    }
    EXPECT_EQ(sheet.rows, row - 1);
    EXPECT_EQ(sheet.columns, 8);
    expectDone(pair);
}

TEST_F(Export, SaveClearAndTheButtonsThatFollow)
{
    Pair pair = open({ramp()});
    screen.clickCentre(pair.button(Pair::Save));
    EXPECT_EQ(pair.savedCount(), "0") << "there is no profile yet";
    pair.dragSegment(20, 20, 220, 120);
    save(pair, "1");
    save(pair, "2");
    screen.clickCentre(pair.button(Pair::Clear));
    EXPECT_EQ(pair.savedCount(), "0");
    screen.clickCentre(pair.button(Pair::Write));
    drive::waitUntilCalm(screen);
    EXPECT_EQ(screen.findTitleNow("Save as"), None) << "the button is off";
    expectDone(pair);
}

TEST_F(Export, CancelAndRefusedOverwritingKeepEverything)
{
    const fs::path path = folder / "mine.slk";
    std::ofstream(path) << "precious";
    Pair pair = open({ramp()});
    pair.dragSegment(20, 20, 220, 120);
    save(pair, "1");
    screen.clickCentre(pair.button(Pair::Write));
    ASSERT_NE(screen.findTitle("Save as SYLK Spreadsheet"), None);
    drive::waitUntilCalm(screen);
    screen.key(XK_Escape);
    EXPECT_TRUE(chooserGone());
    EXPECT_EQ(pair.savedCount(), "1");
    // "No" is what Return means in the question.
    pair.writeToFile(path);
    EXPECT_TRUE(confirm("Question"));
    EXPECT_EQ(readText(path), "precious");
    EXPECT_EQ(pair.savedCount(), "1");
    pair.writeToFile(path);
    ASSERT_NE(screen.findTitle("Question"), None);
    drive::waitUntilCalm(screen);
    screen.key(XK_Left);
    screen.key(XK_space);
    EXPECT_TRUE(drive::waitUntil([&] { return readText(path).ends_with("\nE\n"); })) << readText(path);
    EXPECT_EQ(readSylk(path).problem, "");
    EXPECT_EQ(pair.savedCount(), "0");
    expectDone(pair);
}

TEST_F(Export, TheSecondFileStartsAnewAndIsProposedBesideTheFirst)
{
    Pair pair = open({ramp()});
    pair.dragSegment(20, 20, 220, 120);
    save(pair, "1");
    // The proposal alone: beside the image, after its name.
    screen.clickCentre(pair.button(Pair::Write));
    ASSERT_NE(screen.findTitle("Save as SYLK Spreadsheet"), None);
    drive::waitUntilCalm(screen);
    screen.key(XK_Return);
    EXPECT_TRUE(drive::waitUntil([&] { return readText(folder / "ramp_PRF.slk").ends_with("\nE\n"); }));
    EXPECT_TRUE(chooserGone());
    fs::create_directory(folder / "results");
    for (const auto& [x, name] : {
             std::pair{100, "one.slk"},
             {200, "two.slk"}
    }) {
        pair.dragSegment(20, 20, x, 20);
        save(pair, "1");
        const Sheet sheet = write(pair, folder / "results" / name);
        EXPECT_EQ(sheet.problem, "");
        EXPECT_EQ(sheet.at(4, 1), "1");
        EXPECT_EQ(sheet.rows, x - 20 + 1 + 7);
    }
    pair.dragSegment(20, 20, 50, 20);
    save(pair, "1");
    screen.clickCentre(pair.button(Pair::Write));
    ASSERT_NE(screen.findTitle("Save as SYLK Spreadsheet"), None);
    drive::waitUntilCalm(screen);
    screen.key(XK_Return);
    EXPECT_TRUE(confirm("Question")) << "the last file is not proposed again";
    expectDone(pair);
}

// Each of them must find the very cells that the file holds.
class ForeignReader : public Export {
protected:
    Sheet ownSheet(const fs::path& path)
    {
        Pair pair = open({field()});
        screen.clickCentre(pair.setting(Pair::FwhmToggle));
        for (const Point to : {
                 Point{270, 120},
                 {60,  190}
        }) {
            pair.dragSegment(100, 30, to.x, to.y);
            screen.clickCentre(pair.button(Pair::Save));
        }
        Sheet sheet = write(pair, path);
        expectDone(pair);
        return sheet;
    }
    void expectSameCells(const Sheet& own, const Sheet& foreign)
    {
        ASSERT_GT(own.cells.size(), 100U);
        EXPECT_EQ(own.cells.size(), foreign.cells.size());
        for (const auto& [place, text] : own.cells) {
            const auto& [row, column] = place;
            const std::string other = foreign.at(row, column);
            const bool equal = other == text || own.number(row, column) == foreign.number(row, column);
            ASSERT_TRUE(equal) << row << ", " << column << ": " << text << " is read as " << other;
        }
    }
    static bool installed(const std::string& program)
    {
        return problemOf({"/bin/sh", "-c", "command -v " + program}).empty();
    }
};

TEST_F(ForeignReader, GnumericReadsTheSameCells)
{
    if (!installed("ssconvert"))
        GTEST_SKIP() << "ssconvert (gnumeric) is not installed";
    const Sheet own = ownSheet(folder / "cells.slk");
    ASSERT_EQ(problemOf({"ssconvert", folder / "cells.slk", folder / "cells.csv"}, environment), "");
    expectSameCells(own, readCsv(folder / "cells.csv"));
}

TEST_F(ForeignReader, LibreOfficeReadsTheSameCells)
{
    if (!installed("soffice"))
        GTEST_SKIP() << "soffice (libreoffice-calc) is not installed";
    const Sheet own = ownSheet(folder / "cells.slk");
    ASSERT_EQ(problemOf({"soffice", "-env:UserInstallation=file://" + (folder / "office").string(),
                         "--headless", "--convert-to", "csv", "--outdir", folder, folder / "cells.slk"},
                        environment),
              "");
    expectSameCells(own, readCsv(folder / "cells.csv"));
}

} // namespace programs
