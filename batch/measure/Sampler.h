// SPDX-License-Identifier: MIT
// Samples along a path, in one of two ways. Each job has a sampler of its own, which keeps its buffers.
#pragma once

#include "batch/measure/Band.h"
#include "batch/measure/Path.h"
#include "batch/measure/Profile.h"
#include "batch/measure/SectionPixels.h"

#include <string>
#include <vector>

namespace batch {

enum class Method {
    Digital, // the tool's own walk: whole pixels of the digital line between the pixels of the points
    Band     // every pixel whose centre is near enough to the line, in bins along it
};

class Sampler {
public:
    // Throws MeasureError for a line that has no samples in the section.
    const Profile& digital(SectionPixels& section, const Path& path);
    const Profile& band(SectionPixels& section, const Path& path, Reduce reduce);

private:
    void walk(const Path& path, const SectionPixels& section);

    Profile profile;
    std::vector<PixelPoint> points;
    BandCollector collector;
};

} // namespace batch
