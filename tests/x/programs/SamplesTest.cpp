// SPDX-License-Identifier: MIT
// Real microscope images: what the tool writes about a line in each of them, against another reader. They run
// where SAMPLES_DIR names the folder that holds them.
#include "tests/x/programs/Sheet.h"

#include <cstdlib>
#include <set>
#include <vector>

using drive::Pair;

namespace programs {

class Samples : public SheetTest {
protected:
    void SetUp() override
    {
        const char* const named = std::getenv("SAMPLES_DIR");
        if (!named || !*named)
            GTEST_SKIP() << "SAMPLES_DIR names no folder of real images";
        samples = named;
    }
    // Drags the line and gives what "Write To File..." makes of it.
    Sheet sheetOf(const fs::path& image, Point from, Point to)
    {
        Pair pair = open({"--zoom", "1", image});
        section = {pair.display().z, pair.display().t};
        pair.dragSegment(from.x, from.y, to.x, to.y);
        drive::waitUntilCalm(screen);
        EXPECT_FALSE(blank(screen.capture(pair.plot)));
        save(pair, "1");
        fs::remove(folder / "line.slk");
        const Sheet sheet = write(pair, folder / "line.slk");
        expectDone(pair);
        return sheet;
    }

    fs::path samples;
    Section section; // displayed
};

TEST_F(Samples, EverySampleOfALineIsThatOfAnotherReader)
{
    const struct {
        const char* image;
        Point from, to;
    } rows[] = {
        {"neuron-4Ch.tiff", {150, 420}, {340, 420}},
        {"neuron-4Ch.tiff", {400, 90}, {77, 511}},
        {"xyc_16bit__cell_dna_mts_actin.tif", {30, 215}, {340, 215}},
        {"xyzct-mitosis.tif", {12, 20}, {150, 170}},
        {"181003_multi_pos_time_course_1_MMStack.ome.tif", {240, 10}, {3, 77}},
        {"tubhiswt-2D/tubhiswt_C1.ome.tif", {100, 400}, {300, 60}},
        {"multifile-companion/multifile-Z1.ome.tiff", {2, 21}, {16, 3}},
        {"multi-channel-z-series.ome.tiff", {10, 10}, {420, 150}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.image);
        const Sheet sheet = sheetOf(samples / row.image, row.from, row.to);
        const std::vector<Point> pixels = pixelsBetween(row.from, row.to);
        const Reading reading = readValues(samples / row.image, section, pixels);
        if (reading.missing)
            GTEST_SKIP() << reading.problem;
        ASSERT_EQ(reading.problem, "");
        expectSamples(sheet, 1, pixels, reading.lines);
    }
}

// The other reader has no decoder for these.
TEST_F(Samples, AColourImageGivesThreeCurves)
{
    const std::vector<Point> pixels = pixelsBetween({40, 60}, {500, 300});
    const Sheet sheet = sheetOf(samples / "HE_example.tif", pixels.front(), pixels.back());
    EXPECT_EQ(sheet.at(rowsBefore, 4), "X (pixel)");
    for (int c = 1; c <= 3; ++c) {
        std::set<double> values;
        for (size_t j = 0; j < pixels.size(); ++j)
            values.insert(sheet.number(1 + rowsBefore + static_cast<int>(j), c));
        EXPECT_GE(*values.begin(), 0);
        EXPECT_LT(*values.begin(), 150);
        EXPECT_GT(*values.rbegin(), 200);
        EXPECT_LE(*values.rbegin(), 255);
    }
}

} // namespace programs
