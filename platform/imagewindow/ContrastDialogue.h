// The dialogue in which the user sets which values of each displayed wavelength are black and full
// brightness. Owned by its image window; the widgets go with the object.
#pragma once

#include "platform/imagewindow/Composite.h"

#include <X11/Intrinsic.h>

#include <vector>

namespace viewer {

class ImageWindow;

class ContrastDialogue {
public:
    ContrastDialogue(Widget parent, ImageWindow& window);
    ~ContrastDialogue();
    ContrastDialogue(const ContrastDialogue&) = delete;
    ContrastDialogue& operator=(const ContrastDialogue&) = delete;

    // Follows limits that have changed elsewhere.
    void refresh();

private:
    struct Row {
        int wavelength = 0;
        Widget black = nullptr, white = nullptr, values = nullptr;
        ContrastLimits span;
    };
    void addRow(Widget column, int wavelength);
    void showRow(const Row& row);
    void scaleMoved(Widget scale, int position);

    ImageWindow& window;
    Widget dialogue = nullptr;
    std::vector<Row> rows;
};

} // namespace viewer
