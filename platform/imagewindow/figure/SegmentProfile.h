// SPDX-License-Identifier: MIT
// The values along a segment, as the line profile tool samples them: one whole pixel each, on the digital
// line between the pixels of the two ends. Pure but for reading the image.
#pragma once

#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/view/View.h"
#include "platform/plot/ProfilePlot.h"
#include "profile/Walk.h"

#include <string>
#include <vector>

namespace viewer {

struct SegmentEnds {
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0; // data coordinates
};

using ProfileCurve = plot::Curve;

struct SegmentProfile {
    std::vector<PixelPoint> pixels; // from the start to the end
    std::vector<ProfileCurve> curves;
    bool calibrated = false;
    float length = 0, angle = 0; // microns, pixels where it is not calibrated; degrees from +x toward +y
    float step = 0;              // the length divided by the number of samples

    // From the start to a sample, in the unit of the length.
    double distanceOf(std::size_t sample) const { return static_cast<double>(sample) * step; }
    const char* unit() const { return calibrated ? "\u00b5m" : "pixels"; }
};

// Ends outside the image are cut off. Throws std::runtime_error with a sentence when the segment is a point
// or misses the image, or a section cannot be read.
SegmentProfile readProfile(image::ImageFile& file, const PanelContent& panel, const SegmentEnds& ends,
                           const Scale& scale);

// A table (CSV): a line of names, then a line for each sample with its pixel, its distance and the value of
// each wavelength. Lines end with CR LF, fields are set in quotes where needed.
std::string profileTable(const SegmentProfile& profile);

} // namespace viewer
