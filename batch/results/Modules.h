// SPDX-License-Identifier: MIT
// Parts of the program that need large libraries. Each is a file of its own that is loaded when it is asked
// for, so that the program starts fast and runs where these libraries, and those of X that one of them
// brings, are not there.
#pragma once

#include "batch/results/Join.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace batch {

// One plot: the records of a line in one section, a curve each.
struct PlotOrder {
    std::vector<Record> channels;
    std::filesystem::path path; // its ending is the format
    bool logAxis = false;
};

// What the modules give. Both return an empty text, or a sentence why the file could not be written.
using WritePlot = std::string (*)(const PlotOrder& order);
using WriteSamples = std::string (*)(const std::filesystem::path& path,
                                     const std::vector<FinishedUnit>& units);

// Throw RunError with a sentence that names the module when it cannot be loaded.
WritePlot plotModule();
WriteSamples hdf5Module();

} // namespace batch
