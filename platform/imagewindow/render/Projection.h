// SPDX-License-Identifier: MIT
// One image from all sections of a stack: for each pixel the largest value over z, the mean or the sum. No X.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/view/View.h"

#include <compare>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace viewer {

// Which stack, and how.
struct ProjectionKey {
    Projection kind = Projection::Maximum; // not Section
    int w = 0, t = 0, p = 0;
    friend auto operator<=>(const ProjectionKey&, const ProjectionKey&) = default;
};

// The values of one rectangle as section after section is added. Sums are kept in double precision. A value
// that is not a number never is the largest, and spoils a mean or a sum.
class SectionFold {
public:
    SectionFold(Projection kind, std::size_t count);
    // Of the next section, from value number first on.
    void add(std::size_t first, std::span<const float> values);
    // Over that many sections.
    std::vector<float> result(int sections) const;

private:
    Projection kind;
    std::vector<double> values;
};

// Called between blocks with the share that is done, 0 to 1; false ends the work.
using Proceed = std::function<bool(double share)>;

// The values of the whole image row by row; sections that the file does not hold are passed over. Empty when
// told to end, or when a section cannot be read: then error says why.
std::vector<float> project(image::ImageFile& file, const ProjectionKey& key, const Proceed& proceed,
                           std::string& error);

// Values in memory as an image of one section, so that they are drawn, sampled and told as any other.
std::unique_ptr<image::ImageFile> asImage(std::vector<float> values, int width, int height);

} // namespace viewer
