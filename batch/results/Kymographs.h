// SPDX-License-Identifier: MIT
// A line over time, or over z, as an image of floats: a sample in each column, a time point or section in
// each row.
#pragma once

#include "batch/results/Join.h"

#include <filesystem>
#include <vector>

namespace batch {

// One for each line, channel and position, and for each z or time point; a section that could not be measured
// is a row of NaN. Throws RunError.
void writeKymographs(const std::filesystem::path& folder, const std::vector<FinishedUnit>& units,
                     KymographAxis axis);

} // namespace batch
