// SPDX-License-Identifier: MIT
// What the controls of one window work with: what is shown, what the user can do to it, and the rest of the
// window and of the program. Each menu entry, row and dialogue gets this and no more. Owned by the window.
#pragma once

#include "platform/imagewindow/paint/Damage.h"
#include "platform/imagewindow/paint/OverlayStore.h"
#include "platform/imagewindow/state/Actions.h"
#include "platform/imagewindow/state/Shown.h"
#include "platform/imagewindow/view/View.h"

#include <X11/Intrinsic.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace viewer {

class Dialogues;
class Intake;
class Tools;

// What the window does when something happens on its canvas or in the area around it; canvas pixels.
class CanvasListener {
public:
    virtual void pointerAt(int x, int y) = 0;
    virtual void pointerLeft() = 0;
    // serial: of the notification.
    virtual void overlayArrived(unsigned long serial) = 0;
    virtual void toolsChanged() = 0;
    // A part of the canvas has to be shown again.
    virtual void exposed(const Box& box) = 0;
    virtual void areaResized(Size size) = 0;

protected:
    ~CanvasListener() = default;
};

struct Program {
    std::function<void()> closeWindow, quit;
    // Opens a file in a new window. Throws image::ImageError with a sentence.
    std::function<void(const std::string& path)> open;
    // Puts a PNG on the clipboard; false when it could not be had.
    std::function<bool(std::vector<std::byte> png)> copy;
    // Shows the next image of the folder (step 1) or the previous one (-1): in place of this one, or in a new
    // window where tools are attached to this one.
    std::function<void(int step)> showNeighbour;
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
    Intake* intake = nullptr;                 // once the window is shown
};

} // namespace viewer
