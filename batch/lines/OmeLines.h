// SPDX-License-Identifier: MIT
// The lines that an image's own OME metadata hold as regions of interest.
#pragma once

#include "batch/lines/Line.h"

#include <filesystem>

namespace batch {

// Adds the lines and polylines of the image's regions. A region that only some positions refer to is measured
// in these; one without references in all. Throws std::runtime_error with a sentence when the metadata cannot
// be read; an image without OME metadata has no lines.
void readOmeLines(const std::filesystem::path& image, LineList& list);

} // namespace batch
