// SPDX-License-Identifier: MIT
// The central promise: what is drawn and saved along a segment are the pixels of the image file, whatever
// their type and layout, in every direction. The values come from another reader of the file.
#include "tests/Rows.h"
#include "tests/x/programs/Sheet.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

using drive::Pair;

namespace programs {

namespace {

const Point centre{200, 150};

// Clockwise from +x; at slopes of a half every other step lies exactly between two pixels.
const std::vector<Point> everyDirection{
    {150, 0},  {150, 75},   {120, 120}, {50, 130},   {0, 140},  {-60, 120}, {-110, 110}, {-190, 77},
    {-180, 0}, {-170, -60}, {-90, -90}, {-60, -120}, {0, -149}, {40, -130}, {100, -100}, {198, -99},
};
// Into each quarter, over many strips and tiles. The direction does not depend on how the file is laid out.
const std::vector<Point> eachQuarter{{150, 75}, {-60, 120}, {-170, -60}, {40, -130}};

struct Kind {
    const char* name;
    const char* options; // of makesample
    const std::vector<Point>& directions = eachQuarter;
    friend void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.options; }
};
const Kind kinds[] = {
    {"Uint8Strips", "--pixel-type uint8 --rows-per-strip 7 --compression none"},
    {"Uint8Tiles", "--pixel-type uint8 --tile 64 --compression deflate"},
    {"Int16Strips", "--pixel-type int16 --rows-per-strip 16 --compression none --big-endian"},
    {"Uint16Strips", "--pixel-type uint16 --rows-per-strip 16 --compression deflate", everyDirection},
    {"Uint16Tiles", "--pixel-type uint16 --tile 48 --compression none"},
    {"Uint32Strips", "--pixel-type uint32 --rows-per-strip 1 --compression none"},
    {"Int32Tiles", "--pixel-type int32 --tile 64 --compression deflate --big-endian"},
    {"FloatStrips", "--pixel-type float --rows-per-strip 32 --compression deflate"},
    {"FloatTiles", "--pixel-type float --tile 32 --compression none --big-endian"},
};

struct Line {
    std::vector<Point> pixels;
    std::vector<std::vector<double>> values; // by pixel and channel
};

std::vector<Curve> curvesOf(const Line& line)
{
    std::vector<Curve> curves(line.values.front().size());
    for (size_t c = 0; c < curves.size(); ++c) {
        curves[c].color = curveColor(static_cast<int>(c));
        for (const auto& channels : line.values)
            curves[c].samples.push_back(static_cast<float>(channels[c]));
    }
    return curves;
}

} // namespace

class Octants : public SheetTest, public testing::WithParamInterface<Kind> {
protected:
    // The lines in the directions of the row as the other reader finds them, in one reading; none when it is
    // missing.
    std::vector<Line> linesOf(const fs::path& image)
    {
        std::vector<Line> lines;
        std::vector<Point> all;
        for (const Point& by : GetParam().directions) {
            lines.push_back({pixelsBetween(centre, {centre.x + by.x, centre.y + by.y}), {}});
            std::ranges::copy(lines.back().pixels, std::back_inserter(all));
        }
        const Reading reading = readValues(image, {}, all);
        EXPECT_TRUE(reading.missing || reading.lines.size() == all.size()) << reading.problem;
        if (reading.lines.size() != all.size())
            return {};
        auto next = reading.lines.begin();
        for (Line& line : lines) {
            line.values.assign(next, next + static_cast<long>(line.pixels.size()));
            next += static_cast<long>(line.pixels.size());
        }
        return lines;
    }
};

TEST_P(Octants, EverySampleIsThatOfAnotherReader)
{
    const std::string common = "--pattern ramp --size 400x300 --z 1 --time 1 --channels 3 --no-predictor ";
    const fs::path image = sample("kind.ome.tif", common + GetParam().options);
    const std::vector<Line> lines = linesOf(image);
    if (lines.empty() && !HasFailure())
        GTEST_SKIP() << "tifffile is not installed";
    Pair pair = open({image});
    for (const Line& line : lines) {
        const Point to = line.pixels.back();
        SCOPED_TRACE(std::to_string(to.x) + ", " + std::to_string(to.y));
        pair.dragSegment(centre.x, centre.y, to.x, to.y);
        expectPlot(pair, curvesOf(line));
        screen.clickCentre(pair.button(Pair::Save));
    }
    const Sheet sheet = write(pair, folder / "lines.slk");
    int row = 1;
    for (const Line& line : lines) {
        expectSamples(sheet, row, line.pixels, line.values);
        row += rowsBefore + static_cast<int>(line.pixels.size()) + rowsAfter;
    }
    EXPECT_EQ(sheet.rows, row - 1);
    expectDone(pair);
}

INSTANTIATE_TEST_SUITE_P(, Octants, testing::ValuesIn(kinds), RowName());

} // namespace programs
