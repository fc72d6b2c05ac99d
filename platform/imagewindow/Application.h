// SPDX-License-Identifier: MIT
// The process: the connection to the X server, the open image windows and the event loop. Ends when the last
// window has closed. Everything runs on the one thread of the loop.
#pragma once

#include "platform/imagewindow/Options.h"
#include "platform/imagewindow/controls/Clipboard.h"
#include "platform/imagewindow/controls/Desk.h"

#include <X11/Intrinsic.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace viewer {

class EmptyWindow;
class ImageWindow;

class Application {
public:
    // Throws std::runtime_error with a sentence when there is no display. displayName: empty for $DISPLAY.
    // canvas: how to show pixels; nothing: as the display can. What it cannot is told on standard error.
    Application(const std::string& displayName, std::optional<CanvasKind> canvas);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // Opens a file in a new window. Throws image::ImageError with a sentence.
    void open(const std::string& path, const Options& options);
    // Shows a window that takes files, which are opened with these options.
    void openEmpty(const Options& options);
    // Runs until the last window has closed.
    void run();
    // What the controls of a window may ask of the program. Windows close once the present event has been
    // dealt with.
    Program servicesFor(ImageWindow& window);

    XtAppContext context() const { return app; }
    Display* display() const { return connection; }
    CanvasKind canvasKind() const { return canvas; }

private:
    static Boolean dispatchDestroy(XEvent* event);
    void removeClosed();
    bool copy(std::vector<std::byte> png);
    void showNeighbour(ImageWindow& window, int step);
    void replace();
    void updateAll();

    XtAppContext app;
    Display* connection = nullptr;
    CanvasKind canvas = CanvasKind::Plain;
    std::optional<Clipboard> clipboard; // once something was copied
    std::vector<std::unique_ptr<ImageWindow>> windows;
    std::unique_ptr<EmptyWindow> empty; // until an image is shown
    bool emptyDone = false;
    // An image that takes the place of a window's once the present event has been dealt with.
    struct Replacement {
        ImageWindow* window;
        ImageSource source;
        std::string remark; // for the user
    };
    std::optional<Replacement> replacement;
};

} // namespace viewer
