// SPDX-License-Identifier: MIT
// Automatic contrast: the limits between which a wavelength's values are shown, from a sample of its section.
// Pure but for reading the sample from the image file; called by Renderer.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/render/Composite.h"

#include <optional>
#include <vector>

namespace viewer {

constexpr double darkFraction = 0.001, brightFraction = 0.998; // of the values: black below, saturated above

// Limits at the two fractions of values, widened to a positive span when all are equal; 0 to 1 when there are
// no finite values. Reorders values.
ContrastLimits automaticLimits(std::vector<float>& values);

// The same for a wavelength that lies over others. Fluorescence stays as it is: most of it is dark. What is
// bright nearly everywhere (transmitted light) or in whole areas of one value (labels) would hide the others
// and gets limits under which its usual bright value shows at a quarter of full brightness. values: row by
// row, as sampleSection() gives them.
ContrastLimits underlayLimits(const std::vector<float>& values, const ContrastLimits& limits);

// Whether neighbours among the values above low are mostly equal: areas of one value, which no camera gives.
// values: row by row, as sampleSection() gives them.
bool hasFlatAreas(const std::vector<float>& values, float low);

// Limits that hold whatever the values are: the range that the file asks for, and the full range of
// bright-field colour and of bilevel images. Nothing for all others.
std::optional<ContrastLimits> fixedLimits(const image::ImageInfo& info, int wavelength);

// The values that a control of the limits runs over: enough beyond the present limits to move either way,
// within the wavelength's range where that is known (low < high).
ContrastLimits contrastSpan(const ContrastLimits& limits, const ContrastLimits& range);

// The limits with another low (high) one; the other makes way so that they stay at least step apart.
ContrastLimits withLow(ContrastLimits limits, float low, float step);
ContrastLimits withHigh(ContrastLimits limits, float high, float step);

// About limit values of a section, spread evenly over it (whole rows; of a reduced copy when the file has
// one). Empty when the section is missing or cannot be read.
std::vector<float> sampleSection(image::ImageFile& file, const image::SectionIndex& section, long limit);

} // namespace viewer
