// Real microscope images: what the tool writes about a line in each of them, against another reader. They run
// where SAMPLES_DIR names the folder that holds them.
#include "tests/x/programs/Programs.h"
#include "tests/x/programs/Sheet.h"

#include <algorithm>
#include <cstdlib>

using drive::Pair;

namespace programs {

class Samples : public ProgramsTest {
protected:
    void SetUp() override
    {
        const char* const named = std::getenv("SAMPLES_DIR");
        if (!named || !*named)
            GTEST_SKIP() << "SAMPLES_DIR names no folder of real images";
        samples = named;
    }
    // Drags the line and gives what "Write To File..." makes of it.
    Sheet sheetOf(const std::string& image, Point from, Point to)
    {
        Pair pair = open({"--zoom", "1", samples / image});
        section = {pair.display().z, pair.display().t};
        pair.dragSegment(from.x, from.y, to.x, to.y);
        drive::waitUntilCalm(screen);
        EXPECT_FALSE(blank(screen.capture(pair.plot)));
        screen.clickCentre(pair.button(Pair::Save));
        const fs::path path = folder / "line.slk";
        fs::remove(path);
        pair.writeToFile(path);
        EXPECT_TRUE(drive::waitUntil([&] { return readText(path).ends_with("\nE\n"); }));
        expectDone(pair);
        return readSylk(path);
    }
    Reading readingOf(const std::string& image, Point from, Point to)
    {
        std::vector<std::string> words{"values", std::to_string(section.z), std::to_string(section.t)};
        for (const Point& pixel : pixelsBetween(from, to))
            words.insert(words.end(), {std::to_string(pixel.x), std::to_string(pixel.y)});
        return readImage(samples / image, words);
    }

    fs::path samples;
    Section section;
};

namespace {

constexpr int firstSampleRow = 7;

std::vector<double> channel(const Sheet& sheet, int c)
{
    std::vector<double> values;
    for (int row = firstSampleRow; !sheet.at(row, c + 1).empty(); ++row)
        values.push_back(sheet.number(row, c + 1));
    return values;
}

} // namespace

TEST_F(Samples, EverySampleOfALineIsThatOfAnotherReader)
{
    const struct {
        const char* image;
        Point from, to;
    } rows[] = {
        {"neuron-4Ch.tiff",                                {150, 420}, {340, 420}},
        {"neuron-4Ch.tiff",                                {400, 90},  {77, 511} },
        {"xyc_16bit__cell_dna_mts_actin.tif",              {30, 215},  {340, 215}},
        {"xyzct-mitosis.tif",                              {12, 20},   {150, 170}},
        {"181003_multi_pos_time_course_1_MMStack.ome.tif", {240, 10},  {3, 77}   },
        {"tubhiswt-2D/tubhiswt_C1.ome.tif",                {100, 400}, {300, 60} },
        {"multifile-companion/multifile-Z1.ome.tiff",      {2, 21},    {16, 3}   },
        {"multi-channel-z-series.ome.tiff",                {10, 10},   {420, 150}}
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.image);
        const Sheet sheet = sheetOf(row.image, row.from, row.to);
        ASSERT_EQ(sheet.problem, "");
        const Reading reading = readingOf(row.image, row.from, row.to);
        if (reading.missing)
            GTEST_SKIP() << reading.problem;
        ASSERT_EQ(reading.problem, "");
        for (size_t c = 0; c < reading.lines.front().size(); ++c) {
            const std::vector<double> values = channel(sheet, static_cast<int>(c));
            ASSERT_EQ(values.size(), reading.lines.size());
            for (size_t j = 0; j < values.size(); ++j)
                ASSERT_EQ(values[j], reading.lines[j][c]) << j << ", channel " << c;
        }
    }
}

// Where the structures are that a person sees in these images.
TEST_F(Samples, PeaksLieWhereTheStructuresAre)
{
    const struct {
        const char* image;
        Point from, to;
        int channel;
        double height;
        int sample;
    } rows[] = {
        {"neuron-4Ch.tiff",                   {150, 420}, {340, 420}, 0, 2899, 71 },
        {"neuron-4Ch.tiff",                   {150, 420}, {340, 420}, 1, 5078, 36 },
        {"neuron-4Ch.tiff",                   {150, 420}, {340, 420}, 2, 3910, 61 },
        {"neuron-4Ch.tiff",                   {150, 420}, {340, 420}, 3, 1987, 114},
        {"xyc_16bit__cell_dna_mts_actin.tif", {30, 215},  {340, 215}, 2, 3505, 275}
    };
    std::string open;
    Sheet sheet;
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.image) + " channel " + std::to_string(row.channel));
        if (open != row.image)
            sheet = sheetOf(row.image, row.from, row.to);
        open = row.image;
        const std::vector<double> values = channel(sheet, row.channel);
        ASSERT_EQ(values.size(), static_cast<size_t>(row.to.x - row.from.x + 1));
        const auto peak = std::max_element(values.begin(), values.end());
        EXPECT_EQ(*peak, row.height);
        EXPECT_EQ(peak - values.begin(), row.sample);
    }
}

TEST_F(Samples, AColourImageGivesThreeCurves)
{
    const Sheet sheet = sheetOf("HE_example.tif", {40, 60}, {500, 300});
    ASSERT_EQ(sheet.problem, "");
    for (int c = 0; c < 3; ++c) {
        const std::vector<double> values = channel(sheet, c);
        ASSERT_EQ(values.size(), 461U);
        EXPECT_TRUE(std::all_of(values.begin(), values.end(), [](double v) { return v >= 0 && v <= 255; }));
        EXPECT_LT(*std::min_element(values.begin(), values.end()), 150);
        EXPECT_GT(*std::max_element(values.begin(), values.end()), 200);
    }
    EXPECT_EQ(sheet.at(6, 4), "X (pixel)");
}

} // namespace programs
