// SPDX-License-Identifier: MIT
// The window of a program that was started without a file: it says how images get in, takes drops and pasted
// paths, and lists the images that were opened last. Goes when the first image is shown.
#pragma once

#include "platform/imagewindow/controls/Intake.h"

#include <X11/Intrinsic.h>

#include <functional>
#include <optional>
#include <string>

namespace viewer {

class EmptyWindow {
public:
    struct Services {
        OpenFile open;
        std::function<void()> close;
    };
    // Shows the window. geometry: X geometry or empty.
    EmptyWindow(Display* display, const std::string& geometry, Services services);
    ~EmptyWindow();
    EmptyWindow(const EmptyWindow&) = delete;
    EmptyWindow& operator=(const EmptyWindow&) = delete;

private:
    using Action = void (*)(EmptyWindow&);
    void makeMenu(Widget form);
    void addEntry(Widget menu, const char* name, const char* label, const char* keys, const char* accelerator,
                  Action action);
    void makePage(Widget form);
    void addRecent(Widget page);
    void choose();

    Services services;
    Widget shell = nullptr, bar = nullptr;
    std::optional<Intake> intake; // goes before the widgets do
};

} // namespace viewer
