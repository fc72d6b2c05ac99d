// SPDX-License-Identifier: MIT
// The pictures behind the canvas: client-side pixels that the renderer fills (shared memory when the server
// can), the image as a pixmap, and a second pixmap in which the overlay graphics are drawn over a copy of it
// before the changed part goes to the window. Owns all of them.
#pragma once

#include "platform/imagewindow/view/View.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>

#include <cstdint>
#include <span>
#include <vector>

namespace viewer {

class CanvasBuffer {
public:
    // For a window of the screen's default visual.
    CanvasBuffer(Display* display, int screen, Size size);
    ~CanvasBuffer();
    CanvasBuffer(const CanvasBuffer&) = delete;
    CanvasBuffer& operator=(const CanvasBuffer&) = delete;

    Size size() const { return extent; }

    // size().width * size().height pixels 0x00RRGGBB, row by row.
    std::span<std::uint32_t> pixels();
    // Copies the pixels to image(); returns when the server has taken them.
    void upload();

    Pixmap image() const { return imagePixmap; }
    Pixmap frame() const { return framePixmap; }

private:
    void makeSharedImage();
    void makePlainImage();
    void convertPixels();

    Display* display;
    Visual* visual;
    unsigned depth;
    Size extent;
    XShmSegmentInfo segment{};
    bool shared = false, packed = false; // packed: the server's pixels are 0x00RRGGBB
    XImage* ximage = nullptr;
    std::vector<std::uint32_t> ownPixels; // where the server's pixels differ or are not shared
    std::vector<char> converted;
    Pixmap imagePixmap = None, framePixmap = None;
    GC gc = nullptr;
};

} // namespace viewer
