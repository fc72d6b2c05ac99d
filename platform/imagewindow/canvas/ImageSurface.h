// SPDX-License-Identifier: MIT
// The kinds of canvas that need nothing but an X server: shared memory, and images sent through the
// connection.
#pragma once

#include "platform/imagewindow/canvas/CanvasSurface.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>

#include <span>
#include <vector>

namespace viewer {

// Whether the server can read this process's memory.
bool hasSharedMemory(Display* display);

class ImageSurface final : public CanvasSurface {
public:
    // For a window of the screen's default visual. shared: with memory that the server reads, as long as
    // there is some to be had.
    ImageSurface(Display* display, Window window, bool shared);
    ~ImageSurface() override;

    void resize(Size size) override;
    std::span<std::uint32_t> pixels() override;
    void show(const std::vector<Box>& boxes) override;
    void expose(const Box& box) override;

private:
    void release();
    void settle();
    void copyKept(const Box& box);
    void makeSharedImage();
    void makePlainImage();
    void convert(const Box& box);
    void send(const Box& box);

    Display* display;
    Window window;
    Visual* visual;
    int depth;
    bool wantShared;
    GC gc = nullptr;
    Size extent;
    XImage* ximage = nullptr;
    XShmSegmentInfo segment{};
    bool shared = false, packed = false;  // packed: the server's pixels are 0x00RRGGBB
    bool unread = false;                  // the server may not have read the shared memory yet
    std::vector<std::uint32_t> ownPixels; // where they are not those of the segment
    std::vector<char> converted;          // where the server's pixels are others
    Pixmap kept = None;                   // on the server, so that an exposure sends nothing
};

} // namespace viewer
