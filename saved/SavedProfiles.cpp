// SPDX-License-Identifier: MIT
#include "saved/SavedProfiles.h"

#include "profile/Truncation.h"
#include "segment/Geometry.h"

#include <IWL.h>
#include <WMEnh.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <malloc.h>

// Module state: the store and the controls that show it.
SavedProfile** savedProfiles = nullptr;
int32_t savedCount = 0;
SavedControls savedControls;

namespace {

// Values of a section's extended header.
constexpr int timeStampField = 1, knownBiasField = 14;

// The displayed section, 0-based, and the image's number of time points.
struct DisplayedSection {
    int z, w, t, p;
    int timePoints;
};

template<typename T> T* allocate(int32_t count)
{
    return static_cast<T*>(std::calloc(static_cast<size_t>(count), sizeof(T)));
}

SavedProfile* appendRecord()
{
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers
    size_t size = (static_cast<size_t>(savedCount) + 1) * sizeof *savedProfiles;
    savedProfiles = static_cast<SavedProfile**>(std::realloc(savedProfiles, size));
    savedProfiles[savedCount] = allocate<SavedProfile>(1);
    return savedProfiles[savedCount];
}

void keepNameAndTime(SavedProfile* record)
{
    char name[IW_FILENAME_SIZE] = "";
    record->imageName = strdup(IWRtFilename(imageSlot, 0, name) == 1 ? name : "unknown");
    time_t now = std::time(nullptr);
    std::snprintf(record->savedAt, sizeof record->savedAt, "%s", std::ctime(&now));
    size_t length = std::strlen(record->savedAt);
    if (length > 0 && record->savedAt[length - 1] == '\n')
        record->savedAt[length - 1] = '\0';
}

void toStage(SegmentPoint* point)
{
    float stage[3] = {};
    IWDataToTSPos(point->x, point->y, point->z, imageSlot, stage);
    point->x = stage[0];
    point->y = stage[1];
    point->z = stage[2];
}

void keepGeometry(SavedProfile* record)
{
    static_assert(offsetof(Segment, end) == sizeof(SegmentPoint));
    std::memcpy(record->segmentCopy, &segment.start, sizeof record->segmentCopy);
    toStage(&record->segmentCopy[0]);
    toStage(&record->segmentCopy[1]);
    float dx = record->segmentCopy[1].x - record->segmentCopy[0].x;
    float dy = record->segmentCopy[1].y - record->segmentCopy[0].y;
    record->segmentLength = stageLength(dx, dy);
    record->angle = stageAngle(dx, dy);
}

float headerValue(const DisplayedSection& at, int field)
{
    double value = 0.0;
    int status = IMRtExHdrValueZWTP(imageSlot, at.z, at.w, at.t, at.p, field, &value);
    return status == 0 ? static_cast<float>(value) : 0.0f;
}

DisplayedSection keepSection(SavedProfile* record)
{
    DisplayedSection at = {};
    int nz = 0, nw = 0, np = 0, total = 0;
    IMRtZWTP(imageSlot, &nz, &nw, &at.timePoints, &np, &total);
    IWRtDisSec_ZWTP(imageSlot, &at.z, &at.w, &at.t, &at.p);
    record->zSection = at.z + 1;
    record->timePoint = at.t + 1;
    record->timeSeconds = at.timePoints >= 2 ? headerValue(at, timeStampField) : 0.0f;
    record->knownBias = headerValue(at, knownBiasField);
    return at;
}

void keepSpacing(SavedProfile* record)
{
    float spacing[3] = {};
    IMRtDel(imageSlot, spacing);
    record->pixelSize = spacing[0];
}

void keepWavelengths(SavedProfile* record)
{
    static float waves[IW_MAX_WAVES];
    int count = 0;
    IMRtWav(imageSlot, &count, waves);
    record->channelCount = 0;
    for (int i = 0; i < std::min(count, IW_MAX_WAVES) && record->channelCount < maxChannels; i++)
        if (IWIsWaveMap(imageSlot, i))
            record->channelWaves[record->channelCount++] = truncateToInt(waves[i]);
}

// Channel i of the record is the Profile's channel i. The window may display more wavelengths than the
// Profile could read: the channels that are left stay zero.
void keepSamples(SavedProfile* record)
{
    record->sampleCount = profile.sampleCount;
    record->channelSamples = allocate<float*>(record->channelCount);
    for (int i = 0; i < record->channelCount; i++) {
        record->channelSamples[i] = allocate<float>(record->sampleCount);
        if (i < profile.channelCount)
            std::copy_n(profile.channelSamples[i], record->sampleCount, record->channelSamples[i]);
    }
}

void keepPoints(SavedProfile* record, int z)
{
    record->pixelPoints = allocate<FloatPair>(record->sampleCount);
    record->micronPoints = allocate<FloatPair>(record->sampleCount);
    for (int j = 0; j < record->sampleCount; j++) {
        float x = static_cast<float>(profile.samplePoints[j].x),
              y = static_cast<float>(profile.samplePoints[j].y);
        float stage[3] = {};
        IWDataToTSPos(x, y, static_cast<float>(z), imageSlot, stage);
        record->pixelPoints[j] = {x, y};
        record->micronPoints[j] = {stage[0], stage[1]};
    }
}

} // namespace

void saveCurrentProfile(Widget, XtPointer, XtPointer)
{
    if (profile.sampleCount <= 1)
        return;
    SavedProfile* record = appendRecord();
    keepNameAndTime(record);
    keepGeometry(record);
    DisplayedSection at = keepSection(record);
    keepSpacing(record);
    keepWavelengths(record);
    keepSamples(record);
    keepPoints(record, at.z);
    if (settings.showFwhm)
        record->peakFwhm = profile.fwhmValue;
    savedCount++;
    WMEnableField(savedControls.clearButton);
    WMEnableField(savedControls.writeButton);
    WMUpdateField(savedControls.savedCountField);
}

namespace {

void freeRecord(SavedProfile* record)
{
    std::free(record->imageName);
    for (int i = 0; record->channelSamples && i < record->channelCount; i++)
        std::free(record->channelSamples[i]);
    std::free(record->channelSamples);
    std::free(record->pixelPoints);
    std::free(record->micronPoints);
    std::free(record);
}

} // namespace

void clearSavedProfiles(Widget, XtPointer, XtPointer)
{
    for (int i = 0; i < savedCount; i++)
        freeRecord(savedProfiles[i]);
    std::free(savedProfiles);
    savedProfiles = nullptr;
    savedCount = 0;
    malloc_trim(0); // thousands of records lie below later blocks: give their pages back to the system
    WMDisableField(savedControls.clearButton);
    WMDisableField(savedControls.writeButton);
    WMUpdateField(savedControls.savedCountField);
}
