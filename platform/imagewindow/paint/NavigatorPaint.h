// SPDX-License-Identifier: MIT
// The overview on any surface of cairo: the small picture and the mark around the part in sight. Pure.
#pragma once

#include "platform/imagewindow/render/Overview.h"
#include "platform/imagewindow/view/Navigator.h"

#include <cairo.h>

namespace viewer {

struct ShownNavigator {
    Navigator place;
    Overview::Image image; // any size; none: a dark ground
};

// A unit of the surface is a canvas pixel. screenScale: 1 at 96 dots per inch.
void paintNavigator(cairo_t* cairo, const ShownNavigator& navigator, double screenScale);

} // namespace viewer
