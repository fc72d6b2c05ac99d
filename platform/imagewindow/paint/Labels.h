// SPDX-License-Identifier: MIT
// Captions of panels, scale bars, and frames around the panels that a tool plots, on any surface of cairo.
// Pure.
#pragma once

#include "platform/imagewindow/paint/Scene.h"

#include <cairo.h>

namespace viewer {

// The surface may be scaled: a unit is a canvas pixel.
void paintLabels(cairo_t* cairo, const Scene& scene);

} // namespace viewer
