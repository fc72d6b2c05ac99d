// SPDX-License-Identifier: MIT
#include "platform/imagewindow/canvas/ImageSurface.h"

#include "platform/protocol/XProtocol.h"

#include <bit>
#include <span>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <vector>

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

bool isPacked(const XImage& image)
{
    return image.bits_per_pixel == 32 && image.red_mask == 0xFF0000 && image.green_mask == 0xFF00 &&
           image.blue_mask == 0xFF && image.bytes_per_line == 4 * image.width &&
           (image.byte_order == LSBFirst) == (std::endian::native == std::endian::little);
}

std::size_t bytesOf(const XImage& image)
{
    return static_cast<std::size_t>(image.bytes_per_line) * static_cast<std::size_t>(image.height);
}

} // namespace

bool hasSharedMemory(Display* display)
{
    if (!XShmQueryExtension(display))
        return false;
    XShmSegmentInfo trial{};
    trial.shmid = shmget(IPC_PRIVATE, 1, IPC_CREAT | 0600);
    void* address = attach(trial.shmid);
    bool attached = false;
    if (address) {
        trial.shmaddr = static_cast<char*>(address);
        protocol::ErrorTrap trap(display);
        attached = XShmAttach(display, &trial) && trap.error() == 0;
        if (attached)
            XShmDetach(display, &trial);
        shmdt(address);
    }
    if (trial.shmid >= 0)
        shmctl(trial.shmid, IPC_RMID, nullptr);
    return attached;
}

ImageSurface::ImageSurface(Display* display, Window window, bool shared)
    : display(display), window(window), visual(DefaultVisual(display, DefaultScreen(display))),
      depth(DefaultDepth(display, DefaultScreen(display))), wantShared(shared)
{
    XGCValues values{};
    values.graphics_exposures = False;
    gc = XCreateGC(display, window, GCGraphicsExposures, &values);
}

ImageSurface::~ImageSurface()
{
    release();
    XFreeGC(display, gc);
}

void ImageSurface::release()
{
    if (!ximage)
        return;
    if (kept != None)
        XFreePixmap(display, kept);
    if (shared)
        XShmDetach(display, &segment);
    ximage->data = nullptr; // owned by the segment or by a vector
    XDestroyImage(ximage);
    if (shared)
        shmdt(segment.shmaddr);
    ximage = nullptr;
    kept = None;
    shared = unread = false;
}

void ImageSurface::resize(Size size)
{
    release(); // two large ones at a time would be one too many
    extent = size;
    if (wantShared)
        makeSharedImage();
    if (!shared)
        makePlainImage();
    packed = isPacked(*ximage);
    const bool own = !(shared && packed);
    ownPixels.assign(own ? static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) : 0,
                     0);
    ownPixels.shrink_to_fit();
    converted.assign(shared || packed ? 0 : bytesOf(*ximage), 0);
    if (!shared)
        ximage->data = packed ? reinterpret_cast<char*>(ownPixels.data()) : converted.data();
}

// Leaves shared false when there is no memory to give.
void ImageSurface::makeSharedImage()
{
    XImage* made = XShmCreateImage(display, visual, static_cast<unsigned>(depth), ZPixmap, nullptr, &segment,
                                   static_cast<unsigned>(extent.width), static_cast<unsigned>(extent.height));
    if (!made)
        return;
    segment.shmid = shmget(IPC_PRIVATE, bytesOf(*made), IPC_CREAT | 0600);
    void* address = attach(segment.shmid);
    if (address) {
        segment.shmaddr = made->data = static_cast<char*>(address);
        protocol::ErrorTrap trap(display);
        shared = XShmAttach(display, &segment) && trap.error() == 0;
    }
    // Marked for removal now, the segment lives until both sides have detached, even if one is killed.
    if (segment.shmid >= 0)
        shmctl(segment.shmid, IPC_RMID, nullptr);
    if (shared) {
        ximage = made;
        return;
    }
    if (address)
        shmdt(address);
    made->data = nullptr;
    XDestroyImage(made);
}

void ImageSurface::makePlainImage()
{
    ximage = XCreateImage(display, visual, static_cast<unsigned>(depth), ZPixmap, 0, nullptr,
                          static_cast<unsigned>(extent.width), static_cast<unsigned>(extent.height), 32, 0);
    kept = XCreatePixmap(display, window, static_cast<unsigned>(extent.width),
                         static_cast<unsigned>(extent.height), static_cast<unsigned>(depth));
}

// Without this the window could show what is half drawn.
void ImageSurface::settle()
{
    if (unread)
        XSync(display, False);
    unread = false;
}

std::span<std::uint32_t> ImageSurface::pixels()
{
    if (!(shared && packed))
        return ownPixels;
    settle();
    return {reinterpret_cast<std::uint32_t*>(segment.shmaddr),
            static_cast<std::size_t>(extent.width) * static_cast<std::size_t>(extent.height)};
}

void ImageSurface::convert(const Box& box)
{
    for (int y = box.y; y < box.y + box.height; ++y)
        for (int x = box.x; x < box.x + box.width; ++x) {
            const std::uint32_t pixel =
                ownPixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(extent.width) +
                          static_cast<std::size_t>(x)];
            XPutPixel(ximage, x, y,
                      component(pixel >> 16 & 255, visual->red_mask) |
                          component(pixel >> 8 & 255, visual->green_mask) |
                          component(pixel & 255, visual->blue_mask));
        }
}

void ImageSurface::send(const Box& box)
{
    const auto width = static_cast<unsigned>(box.width), height = static_cast<unsigned>(box.height);
    if (shared) {
        XShmPutImage(display, window, gc, ximage, box.x, box.y, box.x, box.y, width, height, False);
        unread = true;
        return;
    }
    XPutImage(display, kept, gc, ximage, box.x, box.y, box.x, box.y, width, height);
    copyKept(box);
}

void ImageSurface::copyKept(const Box& box)
{
    XCopyArea(display, kept, window, gc, box.x, box.y, static_cast<unsigned>(box.width),
              static_cast<unsigned>(box.height), box.x, box.y);
}

void ImageSurface::show(const std::vector<Box>& boxes)
{
    if (!packed) {
        settle();
        for (const Box& box : boxes)
            convert(box);
    }
    for (const Box& box : boxes)
        send(box);
}

void ImageSurface::expose(const Box& box)
{
    if (kept != None)
        copyKept(box);
    else
        send(box);
}

} // namespace viewer
