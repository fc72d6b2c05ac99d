// SPDX-License-Identifier: MIT
// Captions of panels and scale bars on any surface of cairo. Pure.
#pragma once

#include "platform/imagewindow/paint/Scene.h"

#include <cairo.h>

namespace viewer {

// The surface may be scaled: a unit is a canvas pixel.
void paintLabels(cairo_t* cairo, const Scene& scene);

} // namespace viewer
