// SPDX-License-Identifier: MIT
#include "tests/x/programs/Sheet.h"

#include "tests/Folders.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace programs {

std::string Sheet::at(int row, int column) const
{
    const auto found = cells.find({row, column});
    return found == cells.end() ? "" : found->second;
}

double Sheet::number(int row, int column) const
{
    const std::string text = at(row, column);
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    return text.empty() || *end ? std::nan("") : value;
}

namespace {

// C;X2;Y1;K"text"
bool takeCell(const std::string& line, Sheet& sheet)
{
    int column = 0, row = 0, length = 0;
    if (std::sscanf(line.c_str(), "C;X%d;Y%d;K\"%n", &column, &row, &length) != 2 || length == 0)
        return false;
    const size_t first = static_cast<size_t>(length);
    if (line.size() <= first || line.back() != '"')
        return false;
    return sheet.cells.emplace(std::pair{row, column}, line.substr(first, line.size() - first - 1)).second;
}

} // namespace

Sheet readSylk(const fs::path& path)
{
    Sheet sheet;
    const std::string text = readBytes(path);
    std::istringstream lines(text);
    std::string line;
    if (!std::getline(lines, line) || line != "ID;PKelvora Line Profile")
        sheet.problem = "ID record: " + line;
    else if (!std::getline(lines, line) ||
             std::sscanf(line.c_str(), "B;Y%d;X%d", &sheet.rows, &sheet.columns) != 2)
        sheet.problem = "bounds record: " + line;
    while (sheet.problem.empty() && std::getline(lines, line) && line != "E")
        if (!takeCell(line, sheet))
            sheet.problem = "cell record: " + line;
    if (sheet.problem.empty() && (line != "E" || !text.ends_with("\nE\n") || lines.peek() != EOF))
        sheet.problem = "the file does not end with its end record";
    return sheet;
}

Sheet readCsv(const fs::path& path)
{
    Sheet sheet;
    std::istringstream lines(readBytes(path));
    int row = 1;
    for (std::string line; std::getline(lines, line); ++row) {
        std::istringstream fields(line);
        int column = 1;
        for (std::string field; std::getline(fields, field, ','); ++column) {
            std::erase(field, '"');
            if (!field.empty())
                sheet.cells[{row, column}] = field;
        }
    }
    return sheet;
}

namespace {

Reading readImage(const fs::path& image, const std::string& what, Section section,
                  const std::vector<Point>& pixels)
{
    constexpr int notInstalled = 77;
    std::vector<std::string> command{
        "/usr/bin/python3", READ_PIXELS, image, what, std::to_string(section.z), std::to_string(section.t)};
    for (const Point& pixel : pixels)
        command.insert(command.end(), {std::to_string(pixel.x), std::to_string(pixel.y)});
    drive::Process reader(command);
    const std::optional<int> status = reader.wait();
    Reading reading;
    reading.missing = status == notInstalled;
    if (status != 0)
        reading.problem = reading.missing ? "tifffile is not installed" : "tifffile: " + reader.errors();
    std::istringstream lines(reader.output());
    for (std::string line; status == 0 && std::getline(lines, line);) {
        std::istringstream words(line);
        reading.lines.emplace_back(std::istream_iterator<double>(words), std::istream_iterator<double>());
    }
    return reading;
}

} // namespace

Reading readValues(const fs::path& image, Section section, const std::vector<Point>& pixels)
{
    return readImage(image, "values", section, pixels);
}

Reading readMetadata(const fs::path& image, Section section)
{
    return readImage(image, "metadata", section, {});
}

void SheetTest::save(drive::Pair& pair, const std::string& count)
{
    screen.clickCentre(pair.button(drive::Pair::Save));
    EXPECT_TRUE(drive::waitUntil([&] { return pair.savedCount() == count; })) << pair.savedCount();
}

bool SheetTest::waitUntilWritten(const fs::path& path)
{
    return drive::waitUntil([&] { return readBytes(path).ends_with("\nE\n"); });
}

bool SheetTest::chooserGone()
{
    return drive::waitUntil([&] { return screen.findTitleNow("Save as SYLK Spreadsheet") == None; });
}

Sheet SheetTest::write(drive::Pair& pair, const fs::path& path)
{
    pair.writeToFile(path);
    EXPECT_TRUE(waitUntilWritten(path));
    EXPECT_TRUE(chooserGone());
    EXPECT_EQ(pair.savedCount(), "0");
    const Sheet sheet = readSylk(path);
    EXPECT_EQ(sheet.problem, "");
    return sheet;
}

void SheetTest::expectSamples(const Sheet& sheet, int row, const std::vector<Point>& pixels,
                              std::span<const std::vector<double>> values)
{
    ASSERT_EQ(pixels.size(), values.size());
    for (size_t j = 0; j < pixels.size(); ++j) {
        const int at = row + rowsBefore + static_cast<int>(j);
        int column = 1;
        for (const double value : values[j])
            ASSERT_EQ(sheet.number(at, column++), value) << "sample " << j << ", column " << column - 1;
        ASSERT_EQ(sheet.at(at, column), std::to_string(pixels[j].x)) << "sample " << j;
        ASSERT_EQ(sheet.at(at, column + 1), std::to_string(pixels[j].y)) << "sample " << j;
    }
}

} // namespace programs
