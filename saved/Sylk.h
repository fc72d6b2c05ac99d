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

// The same file from profiles that come one by one. rows: the sum of sylkRows of all of them; channels: the
// largest number of channels of any, -1 when there is none.
int sylkRows(int32_t sampleCount);
void beginSylk(FILE* file, int rows, int channels);
// ordinal: of the block, from 1 on. row: the block's first; the next one's is sylkRows further.
void writeSylkBlock(FILE* file, const SavedProfile& saved, int ordinal, int row, int showFwhm);
void endSylk(FILE* file);
