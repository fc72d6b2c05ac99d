// SPDX-License-Identifier: MIT
// Full width at half maximum of a curve's largest peak. Pure arithmetic in single precision.
#pragma once

#include <cstdint>

// Fewer samples than this have no measurable peak.
constexpr int32_t fwhmMinSamples = 11;

// Distance in microns between neighbouring samples of a segment with the end points (x0, y0) and (x1, y1) in
// pixels. It is the length divided by the number of samples, not of gaps, as everywhere in the profile.
float sampleStep(float x0, float y0, float x1, float y1, float pixelSize, int32_t sampleCount);

// The largest peak of a curve and the level from which its height counts. A sample that is a new minimum when
// it is met from the left is never the peak; the first one always is.
struct ProfilePeak {
    float lowest, highest;
    int32_t index; // of the highest sample; 0 when there is none
};
ProfilePeak findPeak(const float* samples, int32_t n);

// Width in microns of the largest peak of n samples that stand `step` microns apart, or 0 when there is none.
// The half level lies halfway between the lowest and the highest sample; where the curve passes through it is
// interpolated linearly.
float peakFwhm(const float* samples, int32_t n, float step);

// Size of a FWHM text with its end; what is longer is cut.
constexpr int fwhmTextSize = 30;

// Writes the text of one channel: its wavelength in nanometres and its width in microns. text has
// fwhmTextSize bytes and is ISO 8859-1.
void formatFwhm(float wavelength, float fwhm, char* text);
