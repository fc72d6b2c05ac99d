// Spreadsheet files as the tests read them: our SYLK file by its own records, other programs' CSV.
#pragma once

#include <filesystem>
#include <map>
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
Sheet readSylk(const std::filesystem::path& path);

// Fields between commas, with quotes where needed. Empty fields are no cells.
Sheet readCsv(const std::filesystem::path& path);

// What another reader (tifffile) finds in an image. what: "values" or "metadata", then z, t and pixels.
// problem says why there is nothing; missing: the reader is not installed.
struct Reading {
    std::string problem;
    bool missing = false;
    std::vector<std::vector<double>> lines;
};
Reading readImage(const std::filesystem::path& image, const std::vector<std::string>& what);

} // namespace programs
