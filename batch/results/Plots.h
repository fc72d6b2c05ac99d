// SPDX-License-Identifier: MIT
// A picture for each line in each section.
#pragma once

#include "batch/results/Join.h"

#include <filesystem>
#include <string>
#include <vector>

namespace batch {

// Into the folder, several at a time. Throws RunError.
void writePlots(const std::filesystem::path& folder, const std::vector<FinishedUnit>& units,
                const Settings& settings);

// "12-cells.ome.tif_3-axon": a name for the results of a line in an image, by their numbers and names.
std::string resultName(std::uint32_t image, const Record& record);

} // namespace batch
