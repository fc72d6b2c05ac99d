// SPDX-License-Identifier: MIT
#include "platform/imagewindow/Application.h"

#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/controls/Appearance.h"
#include "platform/protocol/XProtocol.h"
#include "platform/text/Locale.h"

#include <X11/StringDefs.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string_view>

namespace viewer {

namespace {

// The error handler and the event dispatcher are per process in Xt.
Application* theApplication = nullptr;
XtEventDispatchProc nextDestroyDispatcher = nullptr;

// In a UTF-8 locale the server's bitmap fonts never have every character set; that is no news.
void toolkitWarning(String message)
{
    if (!std::string_view(message).starts_with("Missing charsets"))
        std::fprintf(stderr, "imagewindow: %s\n", message);
}

Display* openDisplay(const std::string& name)
{
    const char* asked = name.empty() ? nullptr : name.c_str();
    Display* display = XOpenDisplay(asked);
    if (display)
        return display;
    const std::string server = XDisplayName(asked);
    throw std::runtime_error(server.empty() ? "there is no X display: DISPLAY is not set"
                                            : "cannot connect to the X display \"" + server + "\"");
}

} // namespace

Application::Application(const std::string& displayName) : connection(openDisplay(displayName))
{
    text::adoptLocale();
    XtToolkitInitialize();
    app = XtCreateApplicationContext();
    XtAppSetWarningHandler(app, toolkitWarning);
    XtAppSetFallbackResources(app, fallbackResources(connection));
    int argc = 1;
    char name[] = "imagewindow";
    char* argv[] = {name, nullptr};
    XtDisplayInitialize(app, connection, name, "ImageWindow", nullptr, 0, &argc, argv);
    protocol::installErrorHandler("imagewindow");
    theApplication = this;
    nextDestroyDispatcher = XtSetEventDispatcher(connection, DestroyNotify, dispatchDestroy);
}

Application::~Application()
{
    windows.clear();
    theApplication = nullptr;
    // The connection ends with the process: Xt's own way to close one that it did not open frees the resource
    // database twice.
    XSync(connection, False);
}

void Application::open(const std::string& path, const Options& options)
{
    windows.push_back(
        std::make_unique<ImageWindow>(*this, options.scratch ? openGrowing(path) : openImage(path), options));
}

// Windows of other clients are no widgets: Xt would drop the news of their end.
Boolean Application::dispatchDestroy(XEvent* event)
{
    if (theApplication && event->xdestroywindow.event == event->xdestroywindow.window)
        for (const auto& window : theApplication->windows)
            window->clientGone(event->xdestroywindow.window);
    return nextDestroyDispatcher(event);
}

void Application::run()
{
    while (!windows.empty()) {
        // Changes gather while events wait, so that a slow picture is drawn once for many of them.
        if (!(XtAppPending(app) & XtIMXEvent))
            for (const auto& window : windows)
                window->update();
        removeClosed();
        if (!windows.empty())
            XtAppProcessEvent(app, XtIMAll);
        removeClosed();
    }
}

void Application::removeClosed()
{
    std::erase_if(windows, [](const auto& window) { return window->closing(); });
}

Program Application::servicesFor(ImageWindow& window)
{
    return {.closeWindow = [&window] { window.markClosing(); },
            .quit =
                [this] {
                    for (const auto& each : windows)
                        each->markClosing();
                },
            .open = [this](const std::string& path) { open(path, Options{}); }};
}

} // namespace viewer
