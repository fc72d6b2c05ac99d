// SPDX-License-Identifier: MIT
#include "tests/x/gauge/ServerCalls.h"

#include <X11/Xlibint.h>

#include <dlfcn.h>

bool servercalls::refusePixmaps = false;
int servercalls::answersAwaited = 0;

// To be refused, it asks the server for a depth that no screen has.
extern "C" Pixmap XCreatePixmap(Display* display, Drawable drawable, unsigned width, unsigned height,
                                unsigned depth)
{
    using Create = Pixmap (*)(Display*, Drawable, unsigned, unsigned, unsigned);
    static const auto real = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "XCreatePixmap"));
    return real(display, drawable, width, height, servercalls::refusePixmaps ? 77 : depth);
}

// Every call of the library that waits for an answer goes through here.
extern "C" Status _XReply(Display* display, xReply* reply, int extra, Bool discard)
{
    using Wait = Status (*)(Display*, xReply*, int, Bool);
    static const auto real = reinterpret_cast<Wait>(dlsym(RTLD_NEXT, "_XReply"));
    ++servercalls::answersAwaited;
    return real(display, reply, extra, discard);
}
