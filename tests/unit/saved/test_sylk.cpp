#include "saved/sylk.h"

#include <gmock/gmock.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <list>
#include <random>
#include <string>
#include <vector>

using ::testing::HasSubstr;
using ::testing::Not;

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

static Record blank(size_t channels, size_t samples)
{
    const std::vector<FloatPair> points(samples);
    return {"a", std::vector(channels, std::vector<float>(samples)), points, points};
}

static std::string sylk(const std::vector<SavedProfile*>& profiles, int showFwhm)
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

static Record workedExample()
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

static const char* const expectedFile = R"sylk(ID;PKelvora Line Profile
B;Y10;X8
C;X1;Y1;K"/data/cells "a";1.tif"
C;X1;Y2;K"Fri Jun  7 10:11:12 2024"
C;X1;Y3;K"Segment"
C;X2;Y3;K"Z Section"
C;X3;Y3;K"Time Point"
C;X4;Y3;K"Time (seconds)"
C;X5;Y3;K"Angle"
C;X6;Y3;K"Segment Length (microns)"
C;X7;Y3;K"Pixel Size (microns)"
C;X8;Y3;K"Known Bias"
C;X1;Y4;K"1"
C;X2;Y4;K"4"
C;X3;Y4;K"2"
C;X4;Y4;K"12.500000"
C;X5;Y4;K"-179.999847"
C;X6;Y4;K"0.279508"
C;X7;Y4;K"0.125000"
C;X8;Y4;K"100.000000"
C;X1;Y6;K"Channel 488"
C;X2;Y6;K"Channel 561"
C;X3;Y6;K"X (pixel)"
C;X4;Y6;K"Y (pixel)"
C;X5;Y6;K"X (microns)"
C;X6;Y6;K"Y (microns)"
C;X1;Y7;K"1.500000"
C;X2;Y7;K"0.000000"
C;X3;Y7;K"10"
C;X4;Y7;K"20"
C;X5;Y7;K"1.250000"
C;X6;Y7;K"2.500000"
C;X1;Y8;K"2.000000"
C;X2;Y8;K"-0.250000"
C;X3;Y8;K"11"
C;X4;Y8;K"20"
C;X5;Y8;K"1.375000"
C;X6;Y8;K"2.500000"
C;X1;Y9;K"3000000.000000"
C;X2;Y9;K"0.000000"
C;X3;Y9;K"12"
C;X4;Y9;K"21"
C;X5;Y9;K"1.500000"
C;X6;Y9;K"2.625000"
E
)sylk";

TEST(Sylk, WritesTheWorkedExample)
{
    Record record = workedExample();
    EXPECT_EQ(sylk({record.linked()}, 0), expectedFile);
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

TEST(Sylk, BlocksFollowOneAnother)
{
    Record first = workedExample(), second = blank(0, 2);
    std::vector<SavedProfile*> profiles{first.linked(), second.linked()};
    second.saved.imageName = nullptr;
    std::string text = sylk(profiles, 1);
    const char* lines[] = {
        "C;X9;Y3;K\"Peak FWHM\"\n",  "C;X9;Y4;K\"0.750000\"\n",     "C;X1;Y12;K\"\"\n",
        "C;X9;Y13;K\"Peak FWHM\"\n", "C;X1;Y14;K\"2\"\n",           "C;X9;Y14;K\"0.000000\"\n",
        "C;X1;Y16;K\"X (pixel)\"\n", "C;X4;Y16;K\"Y (microns)\"\n", "C;X4;Y18;K\"0.000000\"\nE\n",
    };
    for (const char* line : lines)
        EXPECT_THAT(text, HasSubstr(line));
    EXPECT_THAT(text, Not(HasSubstr(";Y11;"))); // a record without a name has an empty first row
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
