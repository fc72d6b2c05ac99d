// SPDX-License-Identifier: MIT
#include "platform/protocol/XProtocol.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace protocol {
namespace {

std::string programName = "program"; // named in messages
ErrorTrap* innermost = nullptr;      // Xlib has one error handler per process

int reportError(Display* display, XErrorEvent* event)
{
    if (event->error_code == BadWindow || event->error_code == BadDrawable)
        return 0;
    char text[128] = "";
    XGetErrorText(display, event->error_code, text, sizeof text);
    std::fprintf(stderr, "%s: X error: %s (request %d.%d, resource 0x%lx)\n", programName.c_str(), text,
                 event->request_code, event->minor_code, event->resourceid);
    return 0;
}

// Xlib ends the process when this returns; exit handlers would talk to the dead connection.
int serverGone(Display* display)
{
    std::fprintf(stderr, "%s: the X server %s is gone\n", programName.c_str(), DisplayString(display));
    _exit(1);
}

} // namespace

void installErrorHandler(const char* program)
{
    programName = program;
    XSetErrorHandler(reportError);
    XSetIOErrorHandler(serverGone);
}

ErrorTrap::ErrorTrap(Display* connection)
    : display(connection), firstRequest(NextRequest(connection)), previousHandler(XSetErrorHandler(handle)),
      outer(innermost)
{
    innermost = this;
}

ErrorTrap::~ErrorTrap()
{
    error();
    XSetErrorHandler(previousHandler);
    innermost = outer;
}

int ErrorTrap::error()
{
    if (LastKnownRequestProcessed(display) + 1 < NextRequest(display))
        XSync(display, False);
    return firstError;
}

int ErrorTrap::handle(Display* display, XErrorEvent* event)
{
    XErrorHandler outside = nullptr;
    for (ErrorTrap* trap = innermost; trap; trap = trap->outer) {
        outside = trap->previousHandler;
        if (trap->display != display || event->serial < trap->firstRequest)
            continue;
        if (trap->firstError == 0)
            trap->firstError = event->error_code;
        return 0;
    }
    return outside ? outside(display, event) : 0;
}

} // namespace protocol
