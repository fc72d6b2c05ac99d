// SPDX-License-Identifier: MIT
// Spreadsheet files as the tests read them, our SYLK file by its own records and other programs' CSV, and the
// values of an image as another reader (tifffile) finds them.
#pragma once

#include "tests/x/programs/Programs.h"

#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace programs {

struct Sheet {
    std::string problem;                              // why the file is no such sheet, empty when it is
    int rows = 0, columns = 0;                        // as the bounds record tells
    std::map<std::pair<int, int>, std::string> cells; // by row and column from 1
    std::string at(int row, int column) const;
    double number(int row, int column) const; // NaN when it is none
};

// Every line must be a record of the kinds that we write, in their order.
Sheet readSylk(const fs::path& path);
// Fields between commas, perhaps in quotes; no field of ours has either. Empty fields are no cells.
Sheet readCsv(const fs::path& path);

// problem says why there is nothing; missing: the reader is not installed.
struct Reading {
    std::string problem;
    bool missing = false;
    std::vector<std::vector<double>> lines;
};
// A line per pixel: the value of every channel.
Reading readValues(const fs::path& image, Section section, const std::vector<Point>& pixels);
// Two lines: spacing, offset, time, stage x and y; the emission wavelengths.
Reading readMetadata(const fs::path& image, Section section);

// Rows of a block of the sheet before and after its samples.
constexpr int rowsBefore = 6, rowsAfter = 1;

class SheetTest : public ProgramsTest {
protected:
    // Presses "Save" and waits for the number of saved profiles.
    void save(drive::Pair& pair, const std::string& count);
    bool waitUntilWritten(const fs::path& path); // the end record included
    bool chooserGone();
    // "Write To File..." into a file that is not there yet; the store is empty then.
    Sheet write(drive::Pair& pair, const fs::path& path);
    // Compares every sample of the block that begins in a row, and the coordinates of its pixels.
    void expectSamples(const Sheet& sheet, int row, const std::vector<Point>& pixels,
                       std::span<const std::vector<double>> values);
};

} // namespace programs
