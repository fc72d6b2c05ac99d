// SPDX-License-Identifier: MIT
// The part of a canvas that has to be drawn again, as rectangles of whole canvas pixels. Pure.
#pragma once

#include "platform/imagewindow/view/View.h"

#include <cairo.h>

#include <array>
#include <memory>
#include <span>
#include <vector>

namespace viewer {

using Box = cairo_rectangle_int_t; // x, y, width, height

class Damage {
public:
    // They may overlap. Add all at once: one box more costs as much as all.
    explicit Damage(std::span<const Box> boxes)
        : region(cairo_region_create_rectangles(boxes.data(), static_cast<int>(boxes.size())))
    {
    }
    explicit Damage(Size whole) : Damage(std::array{Box{0, 0, whole.width, whole.height}}) {}

    // Forgets what lies outside the canvas.
    void cutTo(Size canvas);
    bool empty() const { return cairo_region_is_empty(region.get()); }
    bool touches(const Box& box) const
    {
        return cairo_region_contains_rectangle(region.get(), &box) != CAIRO_REGION_OVERLAP_OUT;
    }
    // Without overlaps, row by row.
    std::vector<Box> boxes() const;
    // Only the damage is drawn from now on; in canvas pixels.
    void clip(cairo_t* cairo) const;

private:
    struct End {
        void operator()(cairo_region_t* ended) const { cairo_region_destroy(ended); }
    };
    std::unique_ptr<cairo_region_t, End> region;
};

} // namespace viewer
