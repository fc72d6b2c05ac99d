// SPDX-License-Identifier: MIT
// The dialogue for length, corner and colour of the scale bar; what is chosen shows at once. Owned by its
// image window; the widgets go with the object. Not shown at first.
#pragma once

#include "platform/imagewindow/files/BarStyle.h"

#include <X11/Intrinsic.h>

#include <string>

namespace viewer {

struct Desk;

class ScaleBarDialogue {
public:
    ScaleBarDialogue(Widget parent, Desk& desk);
    ~ScaleBarDialogue();
    ScaleBarDialogue(const ScaleBarDialogue&) = delete;
    ScaleBarDialogue& operator=(const ScaleBarDialogue&) = delete;

    void show();

private:
    void makeRows(Widget column);
    Widget makeChoice(Widget row, const char* name, const std::string& items);
    void makeClose(Widget column);
    void fill();
    void typed();
    void chosen();
    void take(const BarStyle& style);
    void say(const std::string& sentence);

    Desk& desk;
    Widget dialogue = nullptr, length = nullptr, corner = nullptr, color = nullptr, message = nullptr;
    std::string filled; // in the field of the length
};

} // namespace viewer
