// SPDX-License-Identifier: MIT
// Profiles as the spreadsheet file (SYLK) that the tool writes.
#pragma once

#include "batch/results/Join.h"

#include <filesystem>
#include <vector>

namespace batch {

// A block for each line in each section, with the section's channels side by side, up to five. In place of
// the time of saving stands the time (UTC) at which the image file was last changed, so that the same run
// makes the same file. Throws RunError.
void writeSheet(const std::filesystem::path& path, const std::vector<FinishedUnit>& units);

} // namespace batch
