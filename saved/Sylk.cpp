// SPDX-License-Identifier: MIT
#include "saved/Sylk.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace {

// Rows of a block beside its samples.
constexpr int blockRows = 7;
// Columns of sample coordinates, and of a block's values.
constexpr int coordinateColumns = 4, valueColumns = 8;

void textCell(FILE* file, int column, int row, const char* text)
{
    std::fprintf(file, "C;X%d;Y%d;K\"%s\"\n", column, row, text);
}

void integerCell(FILE* file, int column, int row, int value)
{
    std::fprintf(file, "C;X%d;Y%d;K\"%d\"\n", column, row, value);
}

char* append(char* at, std::string_view text)
{
    return std::copy(text.begin(), text.end(), at);
}

// The bytes of fprintf with "C;X%d;Y%d;K\"%.<decimals>f\"\n". A file has millions of these cells, and
// to_chars makes the same digits in a fraction of the time.
void floatCell(FILE* file, int column, int row, float value, int decimals)
{
    char record[128];                       // the longest float has 39 digits before the point
    char* end = record + sizeof record - 8; // leaves room for what stands around the numbers
    char* at = append(record, "C;X");
    at = std::to_chars(at, end, column).ptr;
    at = std::to_chars(append(at, ";Y"), end, row).ptr;
    at = std::to_chars(append(at, ";K\""), end, double{value}, std::chars_format::fixed, decimals).ptr;
    at = append(at, "\"\n");
    std::fwrite(record, 1, static_cast<size_t>(at - record), file);
}

// Cells of a row from column on; returns the column after them.
int textCells(FILE* file, int column, int row, std::initializer_list<const char*> texts)
{
    for (const char* text : texts)
        textCell(file, column++, row, text);
    return column;
}

int floatCells(FILE* file, int column, int row, std::initializer_list<float> values, int decimals)
{
    for (float value : values)
        floatCell(file, column++, row, value, decimals);
    return column;
}

void writeContext(FILE* file, const SavedProfile& saved, int ordinal, int row, int showFwhm)
{
    if (saved.imageName)
        textCell(file, 1, row, saved.imageName);
    textCell(file, 1, row + 1, saved.savedAt);
    int column = textCells(file, 1, row + 2,
                           {"Segment", "Z Section", "Time Point", "Time (seconds)", "Angle",
                            "Segment Length (microns)", "Pixel Size (microns)", "Known Bias"});
    if (showFwhm)
        textCell(file, column, row + 2, "Peak FWHM");
    integerCell(file, 1, row + 3, ordinal);
    integerCell(file, 2, row + 3, saved.zSection);
    integerCell(file, 3, row + 3, saved.timePoint);
    column = floatCells(
        file, 4, row + 3,
        {saved.timeSeconds, saved.angle, saved.segmentLength, saved.pixelSize, saved.knownBias}, 6);
    if (showFwhm)
        floatCell(file, column, row + 3, saved.peakFwhm, 6);
}

void writeChannelHeaders(FILE* file, const SavedProfile& saved, int row)
{
    for (int c = 0; c < saved.channelCount; c++) {
        char header[32];
        std::snprintf(header, sizeof header, "Channel %d", saved.channelWaves[c]);
        textCell(file, c + 1, row, header);
    }
    textCells(file, saved.channelCount + 1, row, {"X (pixel)", "Y (pixel)", "X (microns)", "Y (microns)"});
}

void writeSample(FILE* file, const SavedProfile& saved, int j, int row)
{
    for (int c = 0; c < saved.channelCount; c++)
        floatCell(file, c + 1, row, saved.channelSamples[c][j], 6);
    const FloatPair &pixel = saved.pixelPoints[j], &micron = saved.micronPoints[j];
    int column = floatCells(file, saved.channelCount + 1, row, {pixel.x, pixel.y}, 0);
    floatCells(file, column, row, {micron.x, micron.y}, 6);
}

} // namespace

int sylkRows(int32_t sampleCount)
{
    return sampleCount + blockRows;
}

void beginSylk(FILE* file, int rows, int channels)
{
    std::fprintf(file, "ID;PKelvora Line Profile\n");
    std::fprintf(file, "B;Y%d;X%d\n", rows, std::max(channels + coordinateColumns, valueColumns));
}

void writeSylkBlock(FILE* file, const SavedProfile& saved, int ordinal, int row, int showFwhm)
{
    writeContext(file, saved, ordinal, row, showFwhm);
    writeChannelHeaders(file, saved, row + 5);
    for (int j = 0; j < saved.sampleCount; j++)
        writeSample(file, saved, j, row + 6 + j);
}

void endSylk(FILE* file)
{
    std::fprintf(file, "E\n");
}

void writeSylk(FILE* file, SavedProfile* const* profiles, int count, int showFwhm)
{
    int rows = 0, channels = -1;
    for (int i = 0; i < count; i++) {
        rows += sylkRows(profiles[i]->sampleCount);
        channels = std::max(channels, profiles[i]->channelCount);
    }
    beginSylk(file, rows, channels);
    int row = 1;
    for (int k = 0; k < count; k++) {
        writeSylkBlock(file, *profiles[k], k + 1, row, showFwhm);
        row += sylkRows(profiles[k]->sampleCount);
    }
    endSylk(file);
}
