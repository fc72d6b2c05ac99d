#include "saved/sylk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <random>
#include <string>
#include <vector>

// A record over arrays that live as long as it does.
struct Record {
    std::vector<std::vector<float>> channels;
    std::vector<float*> pointers;
    std::vector<FloatPair> pixels, microns;
    SavedProfile saved = {};

    Record(const char* imageName, int channelCount, int sampleCount)
        : pixels(sampleCount), microns(sampleCount)
    {
        for (int c = 0; c < channelCount; c++)
            channels.emplace_back(sampleCount, 0.0f);
        for (auto& channel : channels)
            pointers.push_back(channel.data());
        saved.imageName = const_cast<char*>(imageName);
        saved.channelCount = channelCount;
        saved.sampleCount = sampleCount;
        saved.channelSamples = pointers.data();
        saved.pixelPoints = pixels.data();
        saved.micronPoints = microns.data();
    }
};

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
    Record record("/data/cells \"a\";1.tif", 2, 3);
    record.channels = {
        {1.5f, 2,      3e6f },
        {0,    -0.25f, 1e-7f}
    };
    record.pointers = {record.channels[0].data(), record.channels[1].data()};
    record.pixels = {
        {10, 20},
        {11, 20},
        {12, 21}
    };
    record.microns = {
        {1.25f,  2.5f  },
        {1.375f, 2.5f  },
        {1.5f,   2.625f}
    };
    std::snprintf(record.saved.savedAt, sizeof record.saved.savedAt, "Fri Jun  7 10:11:12 2024");
    record.saved.channelSamples = record.pointers.data();
    record.saved.pixelPoints = record.pixels.data();
    record.saved.micronPoints = record.microns.data();
    record.saved.angle = -179.99985f;
    record.saved.segmentLength = 0.279508f;
    record.saved.knownBias = 100;
    record.saved.channelWaves[0] = 488;
    record.saved.channelWaves[1] = 561;
    record.saved.zSection = 4;
    record.saved.timePoint = 2;
    record.saved.timeSeconds = 12.5f;
    record.saved.pixelSize = 0.125f;
    record.saved.peakFwhm = 0.75f;
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
    EXPECT_EQ(sylk({&record.saved}, 0), expectedFile);
}

TEST(Sylk, BoundsTakeTheLargestChannelCountAndNoFwhmColumn)
{
    const struct {
        std::vector<std::pair<int, int>> channelsAndSamples;
        const char* expected;
    } cases[] = {
        {{{1, 2}},                  "B;Y9;X8\n" },
        {{{5, 2}},                  "B;Y9;X9\n" },
        {{{0, 3}},                  "B;Y10;X8\n"},
        {{{1, 2}, {5, 10}, {2, 4}}, "B;Y37;X9\n"},
    };
    for (const auto& c : cases) {
        std::vector<Record> records;
        for (auto [channels, samples] : c.channelsAndSamples)
            records.emplace_back("a", channels, samples);
        std::vector<SavedProfile*> profiles;
        for (Record& record : records)
            profiles.push_back(&record.saved);
        for (int showFwhm : {0, 1})
            EXPECT_NE(sylk(profiles, showFwhm).find(c.expected), std::string::npos) << c.expected;
    }
}

TEST(Sylk, BlocksFollowOneAnother)
{
    Record first = workedExample(), second("", 0, 2);
    second.saved.imageName = nullptr;
    std::string text = sylk({&first.saved, &second.saved}, 1);
    const char* lines[] = {
        "C;X9;Y3;K\"Peak FWHM\"\n",  "C;X9;Y4;K\"0.750000\"\n",     "C;X1;Y12;K\"\"\n",
        "C;X9;Y13;K\"Peak FWHM\"\n", "C;X1;Y14;K\"2\"\n",           "C;X9;Y14;K\"0.000000\"\n",
        "C;X1;Y16;K\"X (pixel)\"\n", "C;X4;Y16;K\"Y (microns)\"\n", "C;X4;Y18;K\"0.000000\"\nE\n",
    };
    for (const char* line : lines)
        EXPECT_NE(text.find(line), std::string::npos) << line;
    EXPECT_EQ(text.find(";Y11;"), std::string::npos); // a record without a name has an empty first row
}

TEST(Sylk, FloatsReadAsPrintfWritesThem)
{
    Record record("a", 1, 4000);
    std::mt19937 random(7);
    std::uniform_int_distribution<uint32_t> bits; // every exponent, infinities and not-a-numbers among them
    for (float& sample : record.channels[0])
        sample = std::bit_cast<float>(bits(random));
    const float edges[] = {0.0f,    -0.0f,    0.5f,      1.5f, 2.5f, 5e-7f,
                           1.5e-6f, INFINITY, -INFINITY, NAN,  -NAN, FLT_MAX};
    std::ranges::copy(edges, record.channels[0].begin());
    for (size_t j = 0; j < record.pixels.size(); j++)
        record.pixels[j].x = record.channels[0][j];
    std::string text = sylk({&record.saved}, 0);
    for (size_t j = 0; j < record.pixels.size(); j++) {
        char expected[256];
        double value = record.channels[0][j];
        std::snprintf(expected, sizeof expected, "C;X1;Y%zu;K\"%.6f\"\nC;X2;Y%zu;K\"%.0f\"\n", j + 7, value,
                      j + 7, value);
        ASSERT_NE(text.find(expected), std::string::npos) << expected;
    }
}
