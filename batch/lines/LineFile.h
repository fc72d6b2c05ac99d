// SPDX-License-Identifier: MIT
// The entrance for files of lines: a table of formats, each known by a file's first bytes; names do not
// count. Every byte is untrusted.
#pragma once

#include "batch/lines/Line.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace batch {

// Adds the lines of a file to the list. What is wrong with single lines goes to the list's problems; throws
// LineFileError when the file cannot be read or is none of the formats.
void readLineFile(const std::filesystem::path& path, LineList& list);

// A file's bytes. Throws LineFileError, also for a file beyond maxLineFileBytes.
std::string readWhole(const std::filesystem::path& path);
constexpr std::uint64_t maxLineFileBytes = std::uint64_t{8} << 30;

// The formats. `source` is the name for messages and for lines that have none of their own; throw
// std::runtime_error with a clause without a subject ("has no column x0_px").
void readCsvLines(std::string_view text, const std::string& source, LineList& list);
void readRoiLines(std::string_view text, const std::string& source, LineList& list);
void readRoiSet(std::string_view text, const std::string& source, LineList& list);
void readSheetLines(std::string_view text, const std::string& source, LineList& list);
void readGeoJsonLines(std::string_view text, const std::string& source, LineList& list);

} // namespace batch
