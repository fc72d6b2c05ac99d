// SPDX-License-Identifier: MIT
#include "profile/Fwhm.h"

#include "segment/Geometry.h"

#include <cfloat>
#include <cmath>
#include <cstdio>

float sampleStep(float x0, float y0, float x1, float y1, float pixelSize, int32_t sampleCount)
{
    float dx = x1 - x0, dy = y1 - y0;
    float length = std::sqrt(dx * dx + dy * dy);
    return length * pixelSize / static_cast<float>(sampleCount);
}

ProfilePeak findPeak(const float* samples, int32_t n)
{
    ProfilePeak peak = {FLT_MAX, -FLT_MAX, 0};
    for (int32_t i = 0; i < n; i++) {
        if (peak.lowest > samples[i]) {
            peak.lowest = samples[i];
        } else if (samples[i] > peak.highest) {
            peak.highest = samples[i];
            peak.index = i;
        }
    }
    return peak;
}

namespace {

// Where the straight line between the samples i and i + 1 has the value level.
float crossing(const float* samples, int32_t i, float level, float step)
{
    float here = static_cast<float>(i) * step, next = static_cast<float>(i + 1) * step;
    return here + (level - samples[i]) * (next - here) / (samples[i + 1] - samples[i]);
}

} // namespace

float peakFwhm(const float* samples, int32_t n, float step)
{
    ProfilePeak peak = findPeak(samples, n);
    float height = peak.highest - peak.lowest;
    float half = static_cast<float>(peak.lowest + height * 0.5);
    int32_t left = peak.index - 1;
    while (left >= 0 && !(half > samples[left]))
        left--;
    int32_t right = peak.index + 1;
    while (right < n && !(half > samples[right]))
        right++;
    if (left < 0 || right >= n)
        return 0.0f;
    float fwhm = std::fabs(crossing(samples, right - 1, half, step) - crossing(samples, left, half, step));
    return fwhm > 0.0f ? fwhm : 0.0f;
}

void formatFwhm(float wavelength, float fwhm, char* text)
{
    std::snprintf(text, fwhmTextSize, "FWHM [%.0f]: %.4f %cm", double{wavelength}, double{fwhm}, microSign);
}
