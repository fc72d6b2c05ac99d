// SPDX-License-Identifier: MIT
#include "batch/results/Sheet.h"

#include "batch/results/Record.h"
#include "profile/Truncation.h"
#include "saved/Sylk.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace batch {

namespace {

std::string timeText(std::int64_t seconds)
{
    const auto when = static_cast<std::time_t>(seconds);
    std::tm parts{};
    char text[sizeof SavedProfile::savedAt];
    gmtime_r(&when, &parts);
    std::strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y", &parts);
    return text;
}

// The record that the tool would have kept of these channels. It points into the records and into `pixels`
// and `microns`.
struct Block {
    std::vector<float*> samples;
    std::vector<FloatPair> pixels, microns;
    SavedProfile saved{};

    explicit Block(std::span<const Record* const> channels)
    {
        const Record& first = *channels.front();
        const auto count = first.values.size();
        for (std::size_t i = 0; i < count; ++i) {
            pixels.push_back({first.xPixels[i], first.yPixels[i]});
            microns.push_back({first.xStage[i], first.yStage[i]});
        }
        saved.sampleCount = static_cast<std::int32_t>(count);
        for (const Record* channel : channels) {
            samples.push_back(const_cast<float*>(channel->values.data())); // the writer only reads
            saved.channelWaves[saved.channelCount++] = truncateToInt(channel->facts.wavelength);
        }
        saved.channelSamples = samples.data();
        saved.pixelPoints = pixels.data();
        saved.micronPoints = microns.data();
        saved.imageName = const_cast<char*>(first.image.c_str());
        takeFacts(first.facts, channels.back()->facts);
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

private:
    void takeFacts(const Record::Facts& facts, const Record::Facts& last)
    {
        std::snprintf(saved.savedAt, sizeof saved.savedAt, "%s", timeText(facts.imageSeconds).c_str());
        saved.angle = facts.angle;
        saved.segmentLength = facts.length;
        saved.knownBias = facts.bias;
        saved.zSection = facts.z + 1;
        saved.timePoint = facts.t + 1;
        saved.timeSeconds = facts.timePoints >= 2 ? facts.timeSeconds : 0;
        saved.pixelSize = facts.pixelSize;
        saved.peakFwhm = last.fwhm;
    }
};

// Calls take(channels) for each block of the sheet.
template<class Take> void forEachBlock(const std::vector<FinishedUnit>& units, Take take)
{
    forEachLine(units, [&](std::uint32_t, const LineRecords& records) {
        for (std::size_t first = 0; first < records.size(); first += maxChannels)
            take(std::span(records).subspan(first,
                                            std::min<std::size_t>(maxChannels, records.size() - first)));
    });
}

} // namespace

void writeSheet(const std::filesystem::path& path, const std::vector<FinishedUnit>& units)
{
    std::int64_t rows = 0;
    int channels = -1;
    forEachBlock(units, [&](std::span<const Record* const> block) {
        rows += sylkRows(static_cast<std::int32_t>(block.front()->values.size()));
        channels = std::max(channels, static_cast<int>(block.size()));
    });
    if (rows > std::numeric_limits<int>::max())
        throw RunError("The samples have more rows than a spreadsheet: choose --samples csv or hdf5.");
    StagedFile file(path);
    beginSylk(file.stream(), static_cast<int>(rows), channels);
    int ordinal = 0, row = 1;
    forEachBlock(units, [&](std::span<const Record* const> records) {
        const Block block(records);
        writeSylkBlock(file.stream(), block.saved, ++ordinal, row, 1);
        row += sylkRows(block.saved.sampleCount);
    });
    endSylk(file.stream());
    file.commit();
}

} // namespace batch
