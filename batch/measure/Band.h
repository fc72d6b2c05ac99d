// SPDX-License-Identifier: MIT
// The pixels of a band and the bins along it. Nothing is interpolated: a pixel of the section whose centre is
// in the band counts whole, in exactly one bin.
//
// With s the distance along a piece of the line from its start to the point nearest to the pixel's centre,
// and d the distance of the centre from it, positive to the right of the line's direction as the image is
// seen, the band of a piece of length L holds what has 0 <= s < L and -W/2 < d <= W/2. So pieces that
// continue each other and bands beside each other share no pixel, and turning image and line by 90 degrees
// changes nothing. At a bend the pixels between the two pieces' bands count for the vertex, as far as they
// are within W/2 of it; a pixel in the bands of several pieces counts for the nearest, of equally near ones
// for the earliest. Bin i holds the distances from i to i + 1 along the whole line, in pixels.
#pragma once

#include "batch/measure/Path.h"
#include "batch/measure/Profile.h"
#include "batch/measure/SectionPixels.h"

#include <cstdint>
#include <vector>

namespace batch {

enum class Reduce { Mean, Median, Max, Sum };

// Keeps its buffers from line to line.
class BandCollector {
public:
    // Fills values, exact, counts and pixelCount. Throws MeasureError when a block cannot be read, or for a
    // line without a length.
    void collect(SectionPixels& section, const Path& path, Reduce reduce, Profile& profile);

private:
    struct Entry { // a pixel in a bin
        std::int32_t bin;
        float value;
    };
    struct Candidate {      // a pixel in the band of one piece
        std::int64_t pixel; // y * width + x
        double distance;    // squared, from the line
        std::int32_t order; // in which they were found
        std::int32_t bin;
    };

    void collectPolyline(SectionPixels& section, const Path& path);
    void addPiece(SectionPixels& section, const Path& path, std::size_t piece, double along);
    void addWedge(SectionPixels& section, const Path& path, std::size_t vertex, double along);
    void spend(std::int64_t pixels);
    void reduceEntries(Reduce reduce, Profile& profile);

    std::size_t bins = 0;
    std::int64_t work = 0; // pixels looked at
    std::vector<Entry> entries;
    std::vector<Candidate> candidates;
    std::vector<double> sums;
    std::vector<std::int32_t> firsts;
    std::vector<float> sorted;
};

} // namespace batch
