// SPDX-License-Identifier: MIT
// The plot of a profile on any surface of cairo: curves between two axes, and their legend. The viewer's
// figures and batchprofile draw with it. No X here.
//
// Frame: points of the page, 1/72 inch, the origin at the top left.
#pragma once

#include "platform/base/DisplayColors.h"

#include <cairo.h>

#include <string>
#include <vector>

namespace plot {

struct Frame {
    double x, y, width, height;
};

struct Curve {
    std::string name;          // of the wavelength
    base::Rgb color;           // of the wavelength, bright enough on a dark ground
    std::vector<float> values; // one for each sample; what is no number leaves a gap
};

enum class Scaling { Linear, Logarithmic };

struct ProfilePlot {
    std::vector<Curve> curves;
    double length = 0;                 // of the distance axis
    double first = 0, step = 0;        // distance of the first sample, and from each to the next
    std::string unit;                  // of distances
    Scaling scaling = Scaling::Linear; // of the intensities; a logarithmic axis shows whole decades
    bool bridged = false;              // curves go straight over gaps
};

// Sizes that pages with plots are laid out by.
constexpr double textSize = 9, lineHeight = 13, axisWidth = 52;

// The font of all texts; for a new page.
void chooseFont(cairo_t* cairo);
double widthOf(cairo_t* cairo, const std::string& text);
// In black, from the base line's left end.
void drawText(cairo_t* cairo, double x, double y, const std::string& text);

// Curves into the frame; the axes take axisWidth on its left and two lines and some points below it.
void drawPlot(cairo_t* cairo, const Frame& frame, const ProfilePlot& plot);

// A line of each curve's colour on the plot's ground, and the name of its wavelength.
void drawLegend(cairo_t* cairo, double x, double y, const std::vector<Curve>& curves);

} // namespace plot
