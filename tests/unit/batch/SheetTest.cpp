// SPDX-License-Identifier: MIT
// A thousand generated segments: the sheet of batchprofile against the sheet that the tool's own library
// makes of the image, cell by cell, and against itself when its sheet is measured again.
#include "platform/image/ImageFile.h"
#include "profile/Fwhm.h"
#include "profile/Truncation.h"
#include "profile/Walk.h"
#include "saved/Sylk.h"
#include "segment/Geometry.h"
#include "tests/unit/batch/BatchRun.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace batchtest;

constexpr int segments = 1000, width = 300, height = 200, channels = 3;

struct Ends {
    float x0, y0, x1, y1;
};

// What the tool keeps of a segment in one section, by the functions that it calls.
class Kept {
public:
    Kept(image::ImageFile& file, const std::vector<std::vector<float>>& planes, const Ends& ends)
    {
        const image::ImageInfo& info = file.info();
        const PixelPoint from{truncateToInt(ends.x0), truncateToInt(ends.y0)};
        const PixelPoint to{truncateToInt(ends.x1), truncateToInt(ends.y1)};
        std::vector<PixelPoint> walk(width + height);
        walk.resize(static_cast<std::size_t>(walkLine(from, to, walk.data())));
        for (std::size_t c = 0; c < planes.size(); ++c) {
            for (const PixelPoint& at : walk)
                samples[c].push_back(planes[c][static_cast<std::size_t>(at.y * width + at.x)]);
            rows[c] = samples[c].data();
            record.channelWaves[c] = truncateToInt(info.wavelengths[c].nanometres);
        }
        const double x = *file.extendedHeader({}, image::StageXMicrons),
                     y = *file.extendedHeader({}, image::StageYMicrons);
        const auto stageX = [&](float pixel) {
            return static_cast<float>(x + double{pixel} * info.spacing[0]);
        };
        const auto stageY = [&](float pixel) {
            return static_cast<float>(y + double{pixel} * info.spacing[1]);
        };
        for (const PixelPoint& at : walk) {
            pixels.push_back({static_cast<float>(at.x), static_cast<float>(at.y)});
            microns.push_back({stageX(pixels.back().x), stageY(pixels.back().y)});
        }
        record.sampleCount = static_cast<int32_t>(walk.size());
        record.segmentLength =
            stageLength(stageX(ends.x1) - stageX(ends.x0), stageY(ends.y1) - stageY(ends.y0));
        record.angle = stageAngle(stageX(ends.x1) - stageX(ends.x0), stageY(ends.y1) - stageY(ends.y0));
        record.knownBias = static_cast<float>(*file.extendedHeader({}, image::KnownBias));
        record.pixelSize = info.spacing[0];
        if (record.sampleCount >= fwhmMinSamples)
            record.peakFwhm =
                peakFwhm(samples[channels - 1].data(), record.sampleCount,
                         sampleStep(ends.x0, ends.y0, ends.x1, ends.y1, info.spacing[0], record.sampleCount));
        record.zSection = record.timePoint = 1;
        record.channelCount = channels;
        record.imageName = name;
        record.channelSamples = rows;
        record.pixelPoints = pixels.data();
        record.micronPoints = microns.data();
    }
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;
    SavedProfile record{};

private:
    char name[10] = "a.ome.tif";
    std::vector<float> samples[channels];
    float* rows[channels];
    std::vector<FloatPair> pixels, microns;
};

class ThousandSegments : public BatchTest {
protected:
    void SetUp() override
    {
        sample("--size 300x200 --channels 3 --z 1 --time 1 a.ome.tif");
        std::mt19937 random(23);
        std::string lines = lineHead;
        for (int i = 0; i < segments; ++i) {
            // Whole pixels, as the pointer gives them at zoom 1, and parts of them; a point in each
            // direction.
            const auto at = [&](int size) {
                const auto whole = static_cast<float>(random() % static_cast<unsigned>(size - 1));
                return i % 2 ? whole : whole + static_cast<float>(random() % 64) / 64;
            };
            const Ends segment{at(width), at(height), at(width), at(height)};
            ends.push_back(segment);
            char row[128];
            std::snprintf(row, sizeof row, "%d,%.9g,%.9g,%.9g,%.9g\n", i, double{segment.x0},
                          double{segment.y0}, double{segment.x1}, double{segment.y1});
            lines += row;
        }
        write("lines.csv", lines);
    }
    std::string toolsSheet()
    {
        const auto file = image::ImageFile::open(folder / "a.ome.tif");
        std::vector<std::vector<float>> planes(channels, std::vector<float>(width * height));
        for (int c = 0; c < channels; ++c)
            EXPECT_TRUE(
                file->read({0, c, 0, 0}, {0, 0, width - 1, height - 1}, planes[static_cast<std::size_t>(c)]));
        std::vector<std::unique_ptr<Kept>> kept;
        std::vector<SavedProfile*> records;
        for (const Ends& segment : ends)
            records.push_back(&kept.emplace_back(std::make_unique<Kept>(*file, planes, segment))->record);
        char* text = nullptr;
        std::size_t size = 0;
        FILE* stream = open_memstream(&text, &size);
        writeSylk(stream, records.data(), segments, 1);
        std::fclose(stream);
        std::string sheet(text, size);
        std::free(text);
        return sheet;
    }
    std::vector<Ends> ends;
};

// The second row of each block, which tells a time, is left out.
std::string withoutTimes(const std::string& sheet)
{
    std::string result;
    std::istringstream lines(sheet);
    std::string line, last;
    while (std::getline(lines, line)) {
        const bool isName = last.find("K\"a.ome.tif\"") != std::string::npos;
        if (!isName)
            result += line + "\n";
        last = line;
    }
    return result;
}

TEST_F(ThousandSegments, haveTheCellsOfTheTool)
{
    ASSERT_EQ(batch("--lines lines.csv --samples slk --out r a.ome.tif").status, 0);
    const std::string own = withoutTimes(toolsSheet()), batch = withoutTimes(read("r.samples.slk"));
    EXPECT_GT(own.size(), std::size_t{10} << 20);
    EXPECT_TRUE(own == batch);
}

TEST_F(ThousandSegments, comeOutEqualWhenTheirSheetIsMeasuredAgain)
{
    ASSERT_EQ(batch("--lines lines.csv --samples slk --out r a.ome.tif").status, 0);
    const Outcome again = batch("--lines r.samples.slk --samples slk --out s");
    ASSERT_EQ(again.status, 0) << again.output;
    // Length, angle and width are those of the pixels' segment; all samples must be the same.
    const auto samples = [](const std::string& sheet) {
        std::string result;
        std::istringstream lines(sheet);
        int row = 0, column = 0;
        for (std::string line; std::getline(lines, line);)
            if (std::sscanf(line.c_str(), "C;X%d;Y%d", &column, &row) == 2 &&
                line.find('.') != std::string::npos && line.find("K\"a.ome") == std::string::npos &&
                column != 5 && column != 6 && column != 9)
                result += line + "\n";
        return result;
    };
    EXPECT_TRUE(samples(read("r.samples.slk")) == samples(read("s.samples.slk")));
}

TEST_F(ThousandSegments, haveTheFiguresOfTheirSamples)
{
    ASSERT_EQ(batch("--lines lines.csv --samples csv --channels 2 --out r a.ome.tif").status, 0);
    std::map<std::string, std::vector<double>> values;
    for (auto& row : table("r.samples.csv"))
        values[row["line"]].push_back(std::stod(row["value"]));
    for (auto& row : table("r.summary.csv")) {
        const std::vector<double>& line = values[row["line"]];
        ASSERT_EQ(std::stoul(row["samples"]), line.size());
        const auto [low, high] = std::minmax_element(line.begin(), line.end());
        const double sum = std::accumulate(line.begin(), line.end(), 0.0);
        EXPECT_EQ(std::stod(row["minimum"]), *low);
        EXPECT_EQ(std::stod(row["maximum"]), *high);
        EXPECT_NEAR(std::stod(row["mean"]), sum / static_cast<double>(line.size()), 1e-9 * sum);
        EXPECT_EQ(std::stod(row["peak"]), line[std::stoul(row["peak_sample"])]);
        EXPECT_NEAR(std::stod(row["length_um"]),
                    std::stod(row["length_px"]) * std::stod(row["pixel_width_um"]), 2e-3);
        EXPECT_NEAR(std::stod(row["integral_um"]),
                    sum * std::stod(row["length_px"]) * std::stod(row["pixel_width_um"]) /
                        static_cast<double>(line.size()),
                    1e-4 * sum);
    }
}

} // namespace
