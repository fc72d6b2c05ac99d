// SPDX-License-Identifier: MIT
#include "batch/lines/LineFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <system_error>

namespace batch {

namespace {

using Reader = void (*)(std::string_view text, const std::string& source, LineList& list);

// The last row takes what the others leave.
constexpr struct {
    std::string_view beginning;
    Reader read;
} formats[] = {
    {"PK\3\4", readRoiSet},   //
    {"Iout", readRoiLines},   //
    {"ID;P", readSheetLines}, //
    {"{", readGeoJsonLines},  //
    {"", readCsvLines},       //
};

} // namespace

std::string readWhole(const std::filesystem::path& path)
{
    const auto refuse = [&](const std::string& reason) {
        throw LineFileError("The lines of \"" + path.string() + "\" cannot be read: " + reason + ".");
    };
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        refuse(error ? error.message() : "it is no regular file");
    const std::uint64_t size = std::filesystem::file_size(path, error);
    if (size > maxLineFileBytes)
        refuse("it is larger than any list of lines");
    std::ifstream file(path, std::ios::binary);
    std::string text(size, '\0');
    file.read(text.data(), static_cast<std::streamsize>(size));
    if (!file && file.gcount() == 0 && size > 0)
        refuse(std::strerror(errno));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

void readLineFile(const std::filesystem::path& path, LineList& list)
{
    const std::string text = readWhole(path);
    const std::size_t start = std::min(text.find_first_not_of(" \t\r\n\xef\xbb\xbf"), text.size());
    const auto format = std::ranges::find_if(formats, [&](const auto& row) {
        return std::string_view(text).substr(start).starts_with(row.beginning);
    });
    try {
        format->read(text, path.filename().string(), list);
    } catch (const LineFileError&) {
        throw;
    } catch (const std::exception& error) {
        throw LineFileError("The file of lines \"" + path.string() + "\" " + error.what() + ".");
    }
}

} // namespace batch
