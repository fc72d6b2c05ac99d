// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Overview.h"

#include <algorithm>

namespace viewer {

namespace {

constexpr double mostPixels = 1 << 26; // that are read for one picture, of all its wavelengths

// The section, also where a projection of the stack is shown: that is made once, for the window.
PanelContent sectionOf(PanelContent panel)
{
    panel.projection = Projection::Section;
    return panel;
}

// What decides which pixels are read.
PanelContent withoutLook(PanelContent panel)
{
    panel.caption.clear();
    panel.colors.clear();
    return sectionOf(panel);
}

} // namespace

void Overview::setFile(image::ImageFile& newFile)
{
    file = &newFile;
    renderer.setFile(newFile);
    extent = {};
    empty = true;
}

bool Overview::lacks(const PanelContent& panel, Size size) const
{
    return size != extent || withoutLook(panel) != withoutLook(content);
}

void Overview::load(const PanelContent& panel, Size size)
{
    content = sectionOf(panel);
    extent = size;
    empty = isTooLarge(panel, geometry().zoom);
    if (!empty)
        renderer.load(geometry(), {panel});
}

Overview::Image Overview::draw(const PanelContent& panel, const Renderer& window)
{
    if (empty)
        return {};
    if (!lacks(panel, extent))
        content = sectionOf(panel);
    for (const int w : content.wavelengths) {
        renderer.setLimits(w, window.limits(w, Projection::Section));
        renderer.setGamma(w, window.gamma(w));
    }
    renderer.load(geometry(), {content}); // reads nothing
    pixels.resize(static_cast<std::size_t>(extent.width) * static_cast<std::size_t>(extent.height));
    renderer.draw(pixels, extent.width, extent.height);
    return {pixels, extent};
}

protocol::Geometry Overview::geometry() const
{
    protocol::Geometry whole;
    whole.imageWidth = file->info().width;
    whole.imageHeight = file->info().height;
    whole.panelWidth = extent.width;
    whole.panelHeight = extent.height;
    whole.zoom = std::min(static_cast<double>(extent.width) / whole.imageWidth,
                          static_cast<double>(extent.height) / whole.imageHeight);
    return whole;
}

bool Overview::isTooLarge(const PanelContent& panel, double scale) const
{
    const int level = levelFor(*file, scale);
    return static_cast<double>(file->levelWidth(level)) * file->levelHeight(level) *
               static_cast<double>(panel.wavelengths.size()) >
           mostPixels;
}

} // namespace viewer
