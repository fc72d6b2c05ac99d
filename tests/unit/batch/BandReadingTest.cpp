// SPDX-License-Identifier: MIT
// Bands as the program measures them against a reading of the same image in another language.
#include "tests/Rows.h"
#include "tests/unit/batch/BatchRun.h"

#include <cstdio>
#include <random>
#include <string>

namespace {

using namespace batchtest;

struct Case {
    const char* name;
    const char* reduce;
    int width;
    int points;
};

class BandReading : public BatchTest, public testing::WithParamInterface<Case> {
protected:
    // Points in hundredths of a pixel, in and around the image; some on whole and half pixels.
    void makeLines(int points)
    {
        std::mt19937 random(17);
        std::string lines = "name,points\n", features;
        for (int i = 0; i < 24; ++i) {
            std::string pairs, coordinates;
            for (int k = 0; k < points; ++k) {
                const int grid = i % 3 == 0 ? 50 : 1;
                const double x = static_cast<int>(random() % 14000) / grid * grid / 100.0 - 10;
                const double y = static_cast<int>(random() % 11000) / grid * grid / 100.0 - 10;
                char text[64];
                std::snprintf(text, sizeof text, "%.2f,%.2f", x, y);
                pairs += (k ? " " : "") + std::string(text);
                coordinates += (k ? ",[" : "[") + std::string(text) + "]";
            }
            lines += std::to_string(i) + ",\"" + pairs + "\"\n";
            features += (i ? ",{" : "{") + std::string(R"("type":"Feature","properties":{"name":")") +
                        std::to_string(i) + R"("},"geometry":{"type":"LineString","coordinates":[)" +
                        coordinates + "]}}";
        }
        write("lines.csv", lines);
        write("lines.json", R"({"type":"FeatureCollection","features":[)" + features + "]}");
    }
};

TEST_P(BandReading, agrees)
{
    sample("--size 120x90 --channels 1 --z 1 --time 1 a.ome.tif");
    makeLines(GetParam().points);
    const std::string width = std::to_string(GetParam().width);
    const Outcome run = batch("--lines lines.json --line band --width " + width + " --reduce " +
                              GetParam().reduce + " --samples csv --out r a.ome.tif");
    ASSERT_EQ(run.status, 0) << run.output;
    const Outcome other = shell("/usr/bin/python3 " BAND_READER " a.ome.tif lines.csv " + width + " " +
                                GetParam().reduce + " r.samples.csv");
    if (other.status == 77)
        GTEST_SKIP() << "tifffile is not installed";
    EXPECT_EQ(other.status, 0) << other.output;
    EXPECT_EQ(other.output, "24 lines compared\n");
}

INSTANTIATE_TEST_SUITE_P(Bands, BandReading,
                         testing::Values(Case{"thinMean", "mean", 1, 2}, Case{"mean", "mean", 5, 2},
                                         Case{"wideMedian", "median", 24, 2}, Case{"sum", "sum", 8, 2},
                                         Case{"max", "max", 3, 2}, Case{"polylineMean", "mean", 6, 4},
                                         Case{"polylineMedian", "median", 11, 5}),
                         RowName());

} // namespace
