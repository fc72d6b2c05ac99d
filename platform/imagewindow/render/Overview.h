// SPDX-License-Identifier: MIT
// The whole of a section in a small picture, as a window's renderer shows a part of it. Reading it may take
// longer than drawing the part, so that the window does it when nothing else is to be done. No X.
#pragma once

#include "platform/imagewindow/render/Renderer.h"
#include "platform/imagewindow/view/View.h"

#include <cstdint>
#include <span>
#include <vector>

namespace viewer {

class Overview {
public:
    // The file must outlive this or be replaced by setFile().
    explicit Overview(image::ImageFile& file) : file(&file), renderer(file) {}
    void setFile(image::ImageFile& newFile);

    // Whether load() has to come before a picture shows that.
    bool lacks(const PanelContent& panel, Size size) const;
    // Reads the section. Of an image that is too large to be read for it nothing is shown.
    void load(const PanelContent& panel, Size size);

    struct Image {
        std::span<const std::uint32_t> pixels; // 0x00RRGGBB, until the next call; none: there is nothing
        Size size;
    };
    // What was loaded last, with contrast and gamma of the window, and its colours if that is the panel.
    Image draw(const PanelContent& panel, const Renderer& window);

private:
    protocol::Geometry geometry() const;
    bool isTooLarge(const PanelContent& panel, double scale) const;

    image::ImageFile* file;
    Renderer renderer;
    PanelContent content; // as loaded last
    Size extent;
    bool empty = true;
    std::vector<std::uint32_t> pixels;
};

} // namespace viewer
