// SPDX-License-Identifier: MIT
// The process: the connection to the X server, the open image windows and the event loop. Ends when the last
// window has closed. Everything runs on the one thread of the loop.
#pragma once

#include "platform/imagewindow/Options.h"
#include "platform/imagewindow/controls/Desk.h"

#include <X11/Intrinsic.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace viewer {

class ImageWindow;

class Application {
public:
    // Throws std::runtime_error with a sentence when there is no display. displayName: empty for $DISPLAY.
    explicit Application(const std::string& displayName);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // Opens a file in a new window. Throws image::ImageError with a sentence.
    void open(const std::string& path, const Options& options);
    // Runs until the last window has closed.
    void run();
    // What the controls of a window may ask of the program. Windows close once the present event has been
    // dealt with.
    Program servicesFor(ImageWindow& window);

    XtAppContext context() const { return app; }
    Display* display() const { return connection; }

private:
    static Boolean dispatchDestroy(XEvent* event);
    void removeClosed();

    XtAppContext app;
    Display* connection = nullptr;
    std::vector<std::unique_ptr<ImageWindow>> windows;
};

} // namespace viewer
