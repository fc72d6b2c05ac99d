// SPDX-License-Identifier: MIT
// A whole run: reads the lines, measures, and makes the results.
#pragma once

#include "batch/run/Settings.h"

namespace batch {

// Measures, or joins the shards of a run. Returns the exit status of the program. Throws UsageError,
// LineFileError or RunError.
int runBatch(const Options& options);

} // namespace batch
