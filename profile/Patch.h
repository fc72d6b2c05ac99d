// SPDX-License-Identifier: MIT
// Sampling of rectangles: which rectangle of a section is read for which samples of a walk, and which of its
// pixels are these samples. Pure arithmetic on image pixels.
#pragma once

#include "profile/Walk.h"

#include <cstdint>

// Up to this many pixels a segment's whole bounding rectangle is read at once. Above, the samples are read in
// consecutive rectangles of at most patchPixels along the walk, so that a long diagonal does not need
// gigabytes.
constexpr int64_t wholePatchPixels = int64_t{16} << 20;
constexpr int64_t patchPixels = int64_t{1} << 20;

// A rectangle to read, and the samples points[first .. end - 1] of the walk that lie in it.
struct Patch {
    WalkRect rect;
    int32_t first, end;
};

// How many floats hold any patch of a walk whose bounding rectangle has that many pixels.
int64_t patchRoom(int64_t boundingPixels);

// The patch of a walk of count points that begins at its point `first`.
Patch patchAt(const PixelPoint* points, int32_t count, int32_t first, int64_t boundingPixels);

// Takes the patch's samples from its pixels, which stand row by row from (xFirst, yFirst), into samples[first
// .. end - 1].
void pickSamples(const Patch& patch, const PixelPoint* points, const float* pixels, float* samples);
