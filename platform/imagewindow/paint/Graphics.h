// SPDX-License-Identifier: MIT
// The tools' graphics on any surface of cairo: lines and crosses with a dark halo, cut to their panels. Pure.
#pragma once

#include "platform/imagewindow/paint/Damage.h"
#include "platform/imagewindow/paint/Scene.h"

#include <cairo.h>

#include <vector>

namespace viewer {

// Crisp: whole pixels in the graphic's own colour, for the screen, where a line tells which pixels it meets.
// Smooth: for surfaces with more pixels than the canvas, or none.
enum class Edges { Crisp, Smooth };

// The surface may be scaled: a unit is a canvas pixel.
void paintGraphics(cairo_t* cairo, const Scene& scene, Edges edges);

// Crisp, on a picture that shows these graphics already but where there is damage.
void repairGraphics(cairo_t* cairo, const Scene& scene, const Damage& damage);

// Where these graphics show, as small boxes along lines.
Damage damageOf(const Scene& scene, const std::vector<Graphic>& graphics);

} // namespace viewer
