// SPDX-License-Identifier: MIT
// The Profile: the intensities along the Segment, one curve per displayed wavelength, recomputed from the
// image by every drawProfile. One instance, owned by this module; its buffers live for the whole run. Read,
// never changed, by the plot, the readout and the saved profiles. Sample i stands i * length / sampleCount
// from the segment's start.
#pragma once

#include "profile/Walk.h"

#include <cstdint>

constexpr int maxChannels = 5;

struct Profile {
    int32_t channelCount;               // channels sampled, 0 to maxChannels
    int32_t sampleCount;                // samples in every channel; 0 = there is no profile
    float* channelSamples[maxChannels]; // sampleCount values each, from the segment's start to its end
    PixelPoint* samplePoints;           // image pixel of each sample; null when there is no profile
    int32_t channelWave[maxChannels];   // 0-based wavelength index of each channel
    float fwhmValue;                    // microns, of the last channel drawn; 0 = it had none
    float scaleMin, scaleMax;           // intensity range of the plot
};
extern Profile profile;

// Display colour index of each channel, as IWRtImgColor gives it.
extern int32_t channelColorIndex[maxChannels];

// What the user has chosen and what the image is like; read here and by the saved profiles, set by the shell.
struct ProfileSettings {
    int32_t showFwhm;  // flag
    int32_t scaleMode; // 0 "Autoscale", 1 "Constant Min/Max"
    float pixelSize;   // x pixel spacing, microns
};
extern ProfileSettings settings;

// Samples the Profile along the Segment from the displayed section. Returns true when the Profile has been
// renewed and its curves are to be drawn; false when the segment lies in one pixel (the Profile is then
// empty) or after the warning that the image could not be positioned (the Profile, its counts and its buffers
// are then those from before).
bool sampleProfile();
