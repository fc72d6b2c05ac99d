#include "tests/x/programs/Sheet.h"

#include "tests/x/programs/Programs.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

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

Sheet readSylk(const std::filesystem::path& path)
{
    Sheet sheet;
    const std::string text = readText(path);
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

Sheet readCsv(const std::filesystem::path& path)
{
    Sheet sheet;
    std::string field;
    int row = 1, column = 1;
    bool quoted = false;
    const auto endField = [&] {
        if (!field.empty())
            sheet.cells[{row, column}] = field;
        field.clear();
        ++column;
    };
    for (const char character : readText(path)) {
        if (character == '"') {
            quoted = !quoted;
        } else if (!quoted && (character == ',' || character == '\n')) {
            endField();
            if (character == '\n') {
                ++row;
                column = 1;
            }
        } else {
            field += character;
        }
    }
    return sheet;
}

Reading readImage(const std::filesystem::path& image, const std::vector<std::string>& what)
{
    constexpr int notInstalled = 77;
    std::vector<std::string> command{"/usr/bin/python3", READ_PIXELS, image};
    command.insert(command.end(), what.begin(), what.end());
    drive::Process reader(command);
    const std::optional<int> status = reader.wait();
    Reading reading;
    reading.missing = status == notInstalled;
    if (status != 0) {
        reading.problem = reading.missing ? "tifffile is not installed" : reader.errors();
        return reading;
    }
    std::istringstream lines(reader.output());
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::vector<double> values;
        for (double value = 0; words >> value;)
            values.push_back(value);
        reading.lines.push_back(std::move(values));
    }
    return reading;
}

} // namespace programs
