// SPDX-License-Identifier: MIT
// Between sample values and rows of the plot, samples and columns, and back. Pure arithmetic in single
// precision. The plot has no margins: scaleMin maps to row `height`, just below the last visible one,
// scaleMax to about row 0.
#pragma once

#include <cstdint>

struct PlotMapping {
    float yScale;  // rows per intensity unit
    int64_t yBase; // rows from intensity 0 to scaleMin
    int32_t width, height;
};

// True when the range scaleMin..scaleMax can be drawn, and then *mapping is filled for a plot of width x
// height.
bool makePlotMapping(float scaleMin, float scaleMax, int32_t width, int32_t height, PlotMapping* mapping);

// Column of sample i of n; row of a value. X coordinates are 16-bit: what lies beyond wraps.
int16_t plotColumn(const PlotMapping& mapping, int32_t i, int32_t n);
int16_t plotRow(const PlotMapping& mapping, float value);

// The inverse of plotRow: the value that row y of a plot of `height` rows stands for. The range must not be
// empty.
float valueAtRow(float scaleMin, float scaleMax, int32_t height, int32_t y);

// Formats a readout value: whole numbers when the range is 50 or more or not a number, else two decimals.
void formatReadout(float value, float range, char* text, int size);

// Baseline start of the readout text for a pointer at (x, y) in a plot of width x height: one line height to
// the right and half a line below, kept 40 pixels from the right edge and a line height from top and bottom.
struct TextPosition {
    int32_t x, y;
};
TextPosition placeReadout(int32_t x, int32_t y, int32_t width, int32_t height, int32_t lineHeight);
