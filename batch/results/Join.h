// SPDX-License-Identifier: MIT
// Makes the results of a run from what it, or its shards, have finished.
#pragma once

#include "batch/results/Record.h"
#include "batch/results/Store.h"
#include "batch/run/Settings.h"

#include <array>
#include <filesystem>
#include <functional>
#include <span>
#include <vector>

namespace batch {

// A section of which all is measured, and the open files with its bytes.
struct FinishedUnit {
    UnitKey key;
    std::array<ByteRange, partCount> ranges;
    const std::array<int, partCount>* files = nullptr; // descriptors
};

// Calls take for each line of some sections, in the order of the lines, with the records of the line in those
// sections that have one, in their order.
using LineRecords = std::vector<const Record*>;
void forEachLineOf(std::span<const FinishedUnit> sections,
                   const std::function<void(const LineRecords&)>& take);

// The same for each image, position, time and z, of which the channels are taken together. `units` are in
// order.
void forEachLine(std::span<const FinishedUnit> units,
                 const std::function<void(std::uint32_t image, const LineRecords&)>& take);

// Joins what the stores of these paths hold to the results of `out`, in the order of the images and sections.
// consume: the stores are not needed any more when nothing in them has problems. Throws RunError; results
// that were there before are then unchanged.
struct JoinOutcome {
    std::int64_t profiles = 0, problems = 0;
};
JoinOutcome joinResults(const std::filesystem::path& out, const std::vector<StorePaths>& stores,
                        const Settings& settings, bool consume);

// Makes a folder for results. Throws RunError.
void makeFolder(const std::filesystem::path& folder);

// The names of the results that a run of these settings makes as files.
std::vector<std::filesystem::path> resultFiles(const std::filesystem::path& out, const Settings& settings);

} // namespace batch
