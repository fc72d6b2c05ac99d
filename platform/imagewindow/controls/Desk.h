// SPDX-License-Identifier: MIT
// What the controls of one window work with: what is shown, what the user can do to it, and the rest of the
// window and of the program. Each menu entry, row and dialogue gets this and no more. Owned by the window.
#pragma once

#include "platform/imagewindow/canvas/OverlayStore.h"
#include "platform/imagewindow/state/Actions.h"
#include "platform/imagewindow/state/Shown.h"
#include "platform/imagewindow/view/View.h"

#include <X11/Intrinsic.h>

#include <functional>
#include <string>

namespace viewer {

class Dialogues;
class Tools;

// What the window does when something happens on its canvas or in the area around it; canvas pixels.
class CanvasListener {
public:
    virtual void pointerAt(int x, int y) = 0;
    virtual void pointerLeft() = 0;
    // serial: of the notification.
    virtual void overlayArrived(unsigned long serial) = 0;
    virtual void toolsChanged() = 0;
    // region: valid during the call.
    virtual void exposed(Region region) = 0;
    virtual void areaResized(Size size) = 0;

protected:
    ~CanvasListener() = default;
};

struct Program {
    std::function<void()> closeWindow, quit;
    // Opens a file in a new window. Throws image::ImageError with a sentence.
    std::function<void(const std::string& path)> open;
};

struct Desk {
    const Shown& shown;
    Actions& actions;
    const OverlayStore& overlays;
    Dialogues& dialogues;
    Tools& tools;
    CanvasListener& listener;
    Program program;
    Widget shell = nullptr, canvas = nullptr; // once the controls are made
};

} // namespace viewer
