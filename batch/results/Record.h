// SPDX-License-Identifier: MIT
// Profiles as a run keeps them for results that are made when all is measured: plain records one after the
// other, in the order of the machine's bytes. Only the run itself and the joining of its shards read them.
#pragma once

#include "batch/results/Store.h"
#include "batch/results/Tables.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace batch {

// All that a result may tell of one profile.
struct Record {
    struct Facts {
        std::int32_t z = 0, t = 0, p = 0, w = 0; // from 0 on
        std::int32_t timePoints = 1;             // of the image
        float wavelength = 0;                    // nanometres
        std::int32_t colorIndex = 0;             // of the channel, in base::displayColors
        std::int32_t calibrated = 0;             // flag
        float length = 0, angle = 0, fwhm = 0;   // microns, degrees
        float timeSeconds = 0, zSpacing = 1, bias = 0, pixelSize = 1;
        double pixelLength = 0;
        std::int64_t imageSeconds = 0; // when the image file was last changed, since 1970
        std::uint32_t line = 0;        // its number in the run
        std::int32_t band = 0;         // flag
    } facts;
    std::string image, line, channel; // names
    std::vector<float> values;
    std::vector<double> exact;        // of a band: the values in double precision
    std::vector<std::int32_t> counts; // of a band
    std::vector<float> xPixels, yPixels, xStage, yStage;
};

void appendRecord(std::string& bytes, const Measured& measured, std::uint32_t line);

// Goes through the records of one section with a buffer of its own.
class RecordCursor {
public:
    RecordCursor(int descriptor, ByteRange range) : descriptor(descriptor), range(range) {}

    // The next record; nothing at the end. Valid until the next call. Throws RunError when it is damaged.
    const Record* next();
    const Record* present() const { return there ? &record : nullptr; }

private:
    void take(void* to, std::size_t bytes);
    template<class Value> void takeAll(Value& values);

    int descriptor;
    ByteRange range;
    std::string buffer;
    std::size_t used = 0;
    Record record;
    bool there = false;
};

} // namespace batch
