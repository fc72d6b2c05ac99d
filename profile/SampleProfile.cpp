// SPDX-License-Identifier: MIT
#include "profile/Profile.h"

#include "profile/Patch.h"
#include "profile/Truncation.h"
#include "segment/Segment.h"

#include <IWL.h>
#include <WMEnh.h>

#include <algorithm>
#include <cfloat>
#include <cstdlib>
#include <utility>

// Module state: the published Profile, and the buffers that a pass fills. A complete pass swaps its buffers
// with the published ones, so that a pass that fails leaves a Profile whose buffers match its counts. Both
// sets are kept and reallocated by each pass.
Profile profile;
int32_t channelColorIndex[maxChannels];
ProfileSettings settings;

namespace {

float* passSamples[maxChannels];
PixelPoint* passPoints;

struct Section {
    int z, t, p;
};

struct Range {
    float min, max;
};

// What one pass has taken so far. patch is temporary.
struct Pass {
    int32_t points;
    int64_t pixels; // of the bounding rectangle
    float* patch;
    int32_t channels;
    int32_t wave[maxChannels];
    int32_t color[maxChannels];
    Range range;
};

Range emptyRange()
{
    return {FLT_MAX, -FLT_MAX};
}

void widen(Range* range, float min, float max)
{
    if (min < range->min)
        range->min = min;
    if (max > range->max)
        range->max = max;
}

int readImageTable(int* colors)
{
    int nz = 0, nw = 0, nt = 0, np = 0, total = 0;
    IMAlCon(imageSlot, 1);
    IMRtZWTP(imageSlot, &nz, &nw, &nt, &np, &total);
    IWRtImgColor(imageSlot, colors);
    return std::min(nw, IW_MAX_WAVES);
}

void walkSegment(Pass* pass)
{
    PixelPoint from = {truncateToInt(segment.start.x), truncateToInt(segment.start.y)};
    PixelPoint to = {truncateToInt(segment.end.x), truncateToInt(segment.end.y)};
    WalkRect rect = boundingRect(from, to);
    size_t room = static_cast<size_t>(rect.width()) + static_cast<size_t>(rect.height());
    passPoints = static_cast<PixelPoint*>(std::realloc(passPoints, room * sizeof(PixelPoint)));
    pass->points = walkLine(from, to, passPoints);
    pass->pixels = rect.pixels();
}

void emptyProfile()
{
    profile.sampleCount = 0;
    profile.channelCount = 0;
    std::free(passPoints);
    passPoints = nullptr;
    std::free(profile.samplePoints);
    profile.samplePoints = nullptr;
}

// In a display of z panels the section is that of the panel in which the segment lies.
Section displayedSection()
{
    Section section = {};
    int w = 0, columns = 1, rows = 1;
    IWRtDisSec_ZWTP(imageSlot, &section.z, &w, &section.t, &section.p);
    IWRtMulDis(imageSlot, &columns, &rows);
    if ((columns > 1 || rows > 1) && IWRtMulDisStyle(imageSlot) == 1)
        section.z = truncateToInt(segment.start.z);
    return section;
}

// The constant range is the file's, over all wavelengths, displayed or not.
Range startRange(int nw)
{
    Range range = emptyRange();
    for (int w = 0; settings.scaleMode == 1 && w < nw; w++) {
        float min = 0.0f, max = 0.0f;
        if (IMRtWavMM(imageSlot, w, &min, &max) == 0)
            widen(&range, min, max);
    }
    return range;
}

bool hasArrived(int w, int z)
{
    if (IWRtScratchSize(imageSlot) <= 0)
        return true;
    int top = IWRtTopImgLoc(imageSlot, w);
    return top > 0 && top > z;
}

// Reads the samples of one wavelength from the positioned section, patch by patch. False when a read fails.
bool readSamples(const Pass& pass, float* samples)
{
    for (int32_t first = 0; first < pass.points;) {
        Patch patch = patchAt(passPoints, pass.points, first, pass.pixels);
        const WalkRect& rect = patch.rect;
        if (IMRdPas(imageSlot, pass.patch, rect.width(), rect.height(), rect.xFirst, rect.xLast, rect.yFirst,
                    rect.yLast) != 0)
            return false;
        pickSamples(patch, passPoints, pass.patch, samples);
        first = patch.end;
    }
    return true;
}

void takeChannel(Pass* pass, int w, int color)
{
    int c = pass->channels;
    // Room for the whole patch; beyond the samples it is never touched, so costs no memory.
    int64_t room = pass->pixels <= wholePatchPixels ? pass->pixels : pass->points;
    passSamples[c] =
        static_cast<float*>(std::realloc(passSamples[c], static_cast<size_t>(room) * sizeof(float)));
    if (!readSamples(*pass, passSamples[c]))
        return;
    for (int32_t i = 0; settings.scaleMode == 0 && i < pass->points; i++)
        widen(&pass->range, passSamples[c][i], passSamples[c][i]);
    pass->wave[c] = w;
    pass->color[c] = color;
    pass->channels++;
}

// False after a positioning failure.
bool takeChannels(Pass* pass, int nw, const int* colors, const Section& section)
{
    for (int w = 0; w < nw && pass->channels < maxChannels; w++) {
        if (!IWIsWaveMap(imageSlot, w))
            continue;
        if (IMPosnZWTP(imageSlot, section.z, w, section.t, section.p) != 0) {
            WMShowWarning("Error positioning to read image");
            return false;
        }
        if (hasArrived(w, section.z))
            takeChannel(pass, w, colors[w]);
    }
    return true;
}

void publish(const Pass& pass)
{
    profile.sampleCount = pass.channels > 0 ? pass.points : 0;
    profile.channelCount = pass.channels;
    std::swap(profile.samplePoints, passPoints);
    for (int c = 0; c < maxChannels; c++)
        std::swap(profile.channelSamples[c], passSamples[c]);
    std::copy_n(pass.wave, maxChannels, profile.channelWave);
    std::copy_n(pass.color, maxChannels, channelColorIndex);
    profile.scaleMin = pass.range.min;
    profile.scaleMax = pass.range.max;
}

} // namespace

bool sampleProfile()
{
    static int colors[IW_MAX_WAVES];
    Pass pass = {};
    int nw = readImageTable(colors);
    walkSegment(&pass);
    if (pass.points < 2) {
        emptyProfile();
        return false;
    }
    pass.patch =
        static_cast<float*>(std::malloc(static_cast<size_t>(patchRoom(pass.pixels)) * sizeof(float)));
    Section section = displayedSection();
    pass.range = startRange(nw);
    const bool complete = takeChannels(&pass, nw, colors, section);
    if (complete)
        publish(pass);
    std::free(pass.patch);
    return complete;
}
