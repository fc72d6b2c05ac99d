// SPDX-License-Identifier: MIT
#include "saved/Sylk.h"

#include <gmock/gmock.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using ::testing::HasSubstr;

namespace {

// A record and what it points to.
struct Record {
    std::string name;
    std::vector<std::vector<float>> channels;
    std::vector<FloatPair> pixels, microns;
    std::vector<float*> pointers = {};
    SavedProfile saved = {};

    SavedProfile* linked()
    {
        pointers.clear();
        for (auto& channel : channels)
            pointers.push_back(channel.data());
        saved.imageName = name.data();
        saved.channelCount = static_cast<int>(channels.size());
        saved.sampleCount = static_cast<int>(pixels.size());
        saved.channelSamples = pointers.data();
        saved.pixelPoints = pixels.data();
        saved.micronPoints = microns.data();
        return &saved;
    }
};

Record blank(size_t channels, size_t samples)
{
    const std::vector<FloatPair> points(samples);
    return {"a", std::vector(channels, std::vector<float>(samples)), points, points};
}

std::string sylk(const std::vector<SavedProfile*>& profiles, int showFwhm)
{
    char* text = nullptr;
    size_t size = 0;
    FILE* file = open_memstream(&text, &size);
    writeSylk(file, profiles.data(), static_cast<int>(profiles.size()), showFwhm);
    std::fclose(file);
    std::string written(text, size);
    std::free(text);
    return written;
}

Record workedExample()
{
    Record record = {"/data/cells \"a\";1.tif",
                     {{1.5f, 2, 3e6f}, {0, -0.25f, 1e-7f}},
                     {{10, 20}, {11, 20}, {12, 21}},
                     {{1.25f, 2.5f}, {1.375f, 2.5f}, {1.5f, 2.625f}}};
    SavedProfile& saved = record.saved;
    std::snprintf(saved.savedAt, sizeof saved.savedAt, "Fri Jun  7 10:11:12 2024");
    saved.angle = -179.99985f;
    saved.segmentLength = 0.279508f;
    saved.knownBias = 100;
    saved.channelWaves[0] = 488;
    saved.channelWaves[1] = 561;
    saved.zSection = 4;
    saved.timePoint = 2;
    saved.timeSeconds = 12.5f;
    saved.pixelSize = 0.125f;
    saved.peakFwhm = 0.75f;
    return record;
}

using Rows = std::vector<std::vector<std::string>>; // texts of the cells from column 1 on

const Rows workedRows = {
    {"/data/cells \"a\";1.tif"},
    {"Fri Jun  7 10:11:12 2024"},
    {"Segment", "Z Section", "Time Point", "Time (seconds)", "Angle", "Segment Length (microns)",
     "Pixel Size (microns)", "Known Bias"},
    {"1", "4", "2", "12.500000", "-179.999847", "0.279508", "0.125000", "100.000000"},
    {},
    {"Channel 488", "Channel 561", "X (pixel)", "Y (pixel)", "X (microns)", "Y (microns)"},
    {"1.500000", "0.000000", "10", "20", "1.250000", "2.500000"},
    {"2.000000", "-0.250000", "11", "20", "1.375000", "2.500000"},
    {"3000000.000000", "0.000000", "12", "21", "1.500000", "2.625000"},
};

// The file's bytes.
std::string fileOf(const std::string& bounds, const Rows& rows)
{
    std::ostringstream text;
    text << "ID;PKelvora Line Profile\n" << bounds << "\n";
    for (size_t y = 0; y < rows.size(); y++)
        for (size_t x = 0; x < rows[y].size(); x++)
            text << "C;X" << x + 1 << ";Y" << y + 1 << ";K\"" << rows[y][x] << "\"\n";
    text << "E\n";
    return text.str();
}

} // namespace

TEST(Sylk, WritesTheWorkedExample)
{
    Record record = workedExample();
    EXPECT_EQ(sylk({record.linked()}, 0), fileOf("B;Y10;X8", workedRows));
}

// The second has neither a name nor channels.
TEST(Sylk, BlocksFollowOneAnother)
{
    Record first = workedExample(), second = blank(0, 1);
    std::vector<SavedProfile*> profiles{first.linked(), second.linked()};
    second.saved.imageName = nullptr;
    Rows rows = workedRows;
    rows[2].push_back("Peak FWHM");
    rows[3].push_back("0.750000");
    rows.insert(rows.end(),
                {{},
                 {},
                 {""},
                 rows[2],
                 {"2", "0", "0", "0.000000", "0.000000", "0.000000", "0.000000", "0.000000", "0.000000"},
                 {},
                 {"X (pixel)", "Y (pixel)", "X (microns)", "Y (microns)"},
                 {"0", "0", "0.000000", "0.000000"}});
    EXPECT_EQ(sylk(profiles, 1), fileOf("B;Y18;X8", rows));
}

TEST(Sylk, BoundsTakeTheLargestChannelCountAndNoFwhmColumn)
{
    const struct {
        std::vector<std::pair<int, int>> channelsAndSamples;
        const char* expected;
    } cases[] = {
        {{{1, 2}}, "B;Y9;X8\n"},
        {{{5, 2}}, "B;Y9;X9\n"},
        {{{0, 3}}, "B;Y10;X8\n"},
        {{{1, 2}, {5, 10}, {2, 4}}, "B;Y37;X9\n"},
    };
    for (const auto& c : cases) {
        std::list<Record> records;
        std::vector<SavedProfile*> profiles;
        for (auto [channels, samples] : c.channelsAndSamples)
            profiles.push_back(records.emplace_back(blank(channels, samples)).linked());
        for (int showFwhm : {0, 1})
            EXPECT_THAT(sylk(profiles, showFwhm), HasSubstr(c.expected));
    }
}

TEST(Sylk, FloatsReadAsPrintfWritesThem)
{
    std::vector<float> values{0.0f,    -0.0f,    0.5f,      1.5f, 2.5f, 5e-7f,
                              1.5e-6f, INFINITY, -INFINITY, NAN,  -NAN, FLT_MAX};
    std::mt19937 random(7);
    std::uniform_int_distribution<uint32_t> bits; // every exponent, infinities and not-a-numbers among them
    while (values.size() < 4000)
        values.push_back(std::bit_cast<float>(bits(random)));
    Record record = blank(1, values.size());
    record.channels[0] = values;
    for (size_t j = 0; j < values.size(); j++)
        record.pixels[j].x = values[j];
    std::string text = sylk({record.linked()}, 0);
    for (size_t j = 0; j < values.size(); j++) {
        char expected[256];
        double value = values[j];
        std::snprintf(expected, sizeof expected, "C;X1;Y%zu;K\"%.6f\"\nC;X2;Y%zu;K\"%.0f\"\n", j + 7, value,
                      j + 7, value);
        ASSERT_NE(text.find(expected), std::string::npos) << expected;
    }
}
