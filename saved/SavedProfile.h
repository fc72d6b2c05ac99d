// SPDX-License-Identifier: MIT
// A kept copy of a Profile with everything that the spreadsheet needs to tell where it came from. The record
// owns what its pointers point to; nothing in it points into the current Profile.
#pragma once

#include "profile/Profile.h"
#include "segment/Segment.h"

#include <cstdint>

struct FloatPair {
    float x, y;
};

struct SavedProfile {
    char* imageName;                   // path of the image file, "unknown" when the window gives none
    char savedAt[32];                  // local time in the form of ctime, without the line feed
    SegmentPoint segmentCopy[2];       // start and end; x, y, z are stage positions, microns
    int32_t sampleCount;               // samples per channel
    float** channelSamples;            // channelCount arrays of sampleCount values
    FloatPair* pixelPoints;            // sampleCount image pixels
    FloatPair* micronPoints;           // their stage positions, microns
    float angle;                       // of the segment on the stage, degrees
    float segmentLength;               // in the stage's xy plane, microns
    float knownBias;                   // of the detector; 0 when the file has none
    int32_t channelCount;              // 0 to maxChannels
    int32_t channelWaves[maxChannels]; // wavelengths of the displayed channels, nanometres, truncated
    int32_t zSection;                  // 1-based
    int32_t timePoint;                 // 1-based
    float timeSeconds;                 // time stamp; 0 with fewer than two time points or when not known
    float pixelSize;                   // x spacing, microns
    float peakFwhm;                    // microns, of the last channel drawn; 0 when the FWHM option was off
};
