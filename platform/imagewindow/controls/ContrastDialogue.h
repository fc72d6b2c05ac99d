// SPDX-License-Identifier: MIT
// The dialogue in which the user sets the colour of each displayed wavelength and which of its values are
// black and full brightness. Owned by its image window; the widgets go with the object. Not shown at first.
#pragma once

#include "platform/imagewindow/render/Composite.h"
#include "platform/imagewindow/view/View.h"

#include <X11/Intrinsic.h>

#include <vector>

namespace viewer {

struct Desk;

class ContrastDialogue {
public:
    ContrastDialogue(Widget parent, Desk& desk);
    ~ContrastDialogue();
    ContrastDialogue(const ContrastDialogue&) = delete;
    ContrastDialogue& operator=(const ContrastDialogue&) = delete;

    // Beside the image window when there is room, and whole on the screen.
    void show();
    // Follows wavelengths, colours and limits that have changed elsewhere.
    void refresh();

private:
    struct Row {
        int wavelength = 0;
        Widget swatch = nullptr, color = nullptr, colors = nullptr; // the option menu and the menu of it
        Widget black = nullptr, white = nullptr, values = nullptr;
        ContrastLimits span;
    };
    void makeRows();
    void addRow(int wavelength);
    void addColorMenu(Row& row, Widget line);
    void showRow(Row& row);
    void placeOnScreen();
    void keepOnScreen();
    Size screenSize() const;
    void colorChosen(Widget button);
    void scaleMoved(Widget scale, int position);

    Desk& desk;
    Widget dialogue = nullptr, column = nullptr, lines = nullptr;
    int scaleWidth = 0; // screen pixels
    bool placed = false;
    Size keptSize; // when it was last seen to be on the screen
    std::vector<Row> rows;
};

} // namespace viewer
