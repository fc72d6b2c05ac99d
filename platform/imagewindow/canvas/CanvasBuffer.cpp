// SPDX-License-Identifier: MIT
#include "platform/imagewindow/canvas/CanvasBuffer.h"

#include "platform/protocol/XProtocol.h"

#include <bit>
#include <sys/ipc.h>
#include <sys/shm.h>

namespace viewer {

namespace {

// Puts the upper bits of an 8-bit component under a mask of the visual.
unsigned long component(std::uint32_t value8, unsigned long mask)
{
    const int width = std::popcount(mask);
    const unsigned long scaled =
        width >= 8 ? static_cast<unsigned long>(value8) << (width - 8) : value8 >> (8 - width);
    return scaled << std::countr_zero(mask);
}

// Null when it fails, which shmat() tells by an address of -1.
void* attach(int segment)
{
    void* address = segment < 0 ? nullptr : shmat(segment, nullptr, 0);
    return reinterpret_cast<std::intptr_t>(address) == -1 ? nullptr : address;
}

} // namespace

CanvasBuffer::CanvasBuffer(Display* display, int screen, Size size)
    : display(display), visual(DefaultVisual(display, screen)),
      depth(static_cast<unsigned>(DefaultDepth(display, screen))), extent(size)
{
    makeSharedImage();
    if (!ximage)
        makePlainImage();
    const Window root = RootWindow(display, screen);
    const auto width = static_cast<unsigned>(size.width), height = static_cast<unsigned>(size.height);
    imagePixmap = XCreatePixmap(display, root, width, height, depth);
    framePixmap = XCreatePixmap(display, root, width, height, depth);
    XGCValues values{};
    values.graphics_exposures = False;
    gc = XCreateGC(display, imagePixmap, GCGraphicsExposures, &values);
}

CanvasBuffer::~CanvasBuffer()
{
    XFreeGC(display, gc);
    XFreePixmap(display, framePixmap);
    XFreePixmap(display, imagePixmap);
    if (shared)
        XShmDetach(display, &segment);
    ximage->data = nullptr; // owned by the segment or by a vector
    XDestroyImage(ximage);
    if (shared)
        shmdt(segment.shmaddr);
}

// Leaves ximage null when the server is on another machine or has no shared memory to give.
void CanvasBuffer::makeSharedImage()
{
    if (!XShmQueryExtension(display))
        return;
    XImage* made = XShmCreateImage(display, visual, depth, ZPixmap, nullptr, &segment,
                                   static_cast<unsigned>(extent.width), static_cast<unsigned>(extent.height));
    if (!made)
        return;
    const auto bytes =
        static_cast<std::size_t>(made->bytes_per_line) * static_cast<std::size_t>(made->height);
    segment.shmid = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    void* address = attach(segment.shmid);
    if (address) {
        segment.shmaddr = made->data = static_cast<char*>(address);
        protocol::ErrorTrap trap(display);
        shared = XShmAttach(display, &segment) && trap.error() == 0;
    }
    // Marked for removal now, the segment lives until both sides have detached, even if one is killed.
    if (segment.shmid >= 0)
        shmctl(segment.shmid, IPC_RMID, nullptr);
    if (!shared) {
        if (address)
            shmdt(address);
        made->data = nullptr;
        XDestroyImage(made);
        return;
    }
    ximage = made;
    packed = made->bits_per_pixel == 32 && made->red_mask == 0xFF0000 && made->green_mask == 0xFF00 &&
             made->blue_mask == 0xFF && made->bytes_per_line == 4 * extent.width &&
             (made->byte_order == LSBFirst) == (std::endian::native == std::endian::little);
}

void CanvasBuffer::makePlainImage()
{
    ximage = XCreateImage(display, visual, depth, ZPixmap, 0, nullptr, static_cast<unsigned>(extent.width),
                          static_cast<unsigned>(extent.height), 32, 0);
    converted.resize(static_cast<std::size_t>(ximage->bytes_per_line) *
                     static_cast<std::size_t>(ximage->height));
    ximage->data = converted.data();
}

std::span<std::uint32_t> CanvasBuffer::pixels()
{
    const std::size_t count =
        static_cast<std::size_t>(extent.width) * static_cast<std::size_t>(extent.height);
    if (shared && packed)
        return {reinterpret_cast<std::uint32_t*>(segment.shmaddr), count};
    ownPixels.resize(count);
    return ownPixels;
}

void CanvasBuffer::convertPixels()
{
    auto pixel = ownPixels.begin();
    for (int y = 0; y < extent.height; ++y)
        for (int x = 0; x < extent.width; ++x, ++pixel)
            XPutPixel(ximage, x, y,
                      component(*pixel >> 16 & 255, visual->red_mask) |
                          component(*pixel >> 8 & 255, visual->green_mask) |
                          component(*pixel & 255, visual->blue_mask));
}

void CanvasBuffer::upload()
{
    const auto width = static_cast<unsigned>(extent.width), height = static_cast<unsigned>(extent.height);
    if (!(shared && packed))
        convertPixels();
    if (shared)
        XShmPutImage(display, imagePixmap, gc, ximage, 0, 0, 0, 0, width, height, False);
    else
        XPutImage(display, imagePixmap, gc, ximage, 0, 0, 0, 0, width, height);
    XSync(display, False);
}

} // namespace viewer
