// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/Damage.h"

namespace viewer {

void Damage::cutTo(Size canvas)
{
    const Box whole{0, 0, canvas.width, canvas.height};
    cairo_region_intersect_rectangle(region.get(), &whole);
}

std::vector<Box> Damage::boxes() const
{
    std::vector<Box> list(static_cast<std::size_t>(cairo_region_num_rectangles(region.get())));
    for (std::size_t i = 0; i < list.size(); ++i)
        cairo_region_get_rectangle(region.get(), static_cast<int>(i), &list[i]);
    return list;
}

void Damage::clip(cairo_t* cairo) const
{
    for (const Box& box : boxes())
        cairo_rectangle(cairo, box.x, box.y, box.width, box.height);
    cairo_clip(cairo);
}

} // namespace viewer
