// SPDX-License-Identifier: MIT
// Writes a set of files through libtiff. Every file is written under a temporary name beside its place, and
// all take their names at the end, so that a failure leaves nothing behind.
#pragma once

#include "samples/FileSet.h"
#include "samples/Pattern.h"

#include <stdexcept>

namespace sample {

// A file that could not be written: one sentence for the user.
struct WriteError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Throws WriteError.
void writeFiles(const Options& options, const FileSet& set, Pattern& pattern);

} // namespace sample
