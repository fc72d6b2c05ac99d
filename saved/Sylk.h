// SPDX-License-Identifier: MIT
// Writer of saved profiles as one SYLK (Symbolic Link) spreadsheet: plain 8-bit text, one record per line,
// every cell a string constant. Knows nothing of the user interface.
#pragma once

#include "saved/SavedProfile.h"

#include <cstdio>

// Writes count profiles, in order, as blocks one under another: image name, time, a row of headers, a row of
// values, an empty row, the channels' and coordinates' headers, a row per sample, an empty row. showFwhm adds
// the column "Peak FWHM", which the bounds record leaves out. Names are written as they are, without escapes.
// Write errors are not reported.
void writeSylk(FILE* file, SavedProfile* const* profiles, int count, int showFwhm);
