// SPDX-License-Identifier: MIT
// Lays out rows of controls on one XmForm, top to bottom and left to right, by attachments alone, so that a
// program can still change the attachments of what it added. A row's controls are centred on its tallest one;
// the next row hangs below that. Widgets belong to their parent; a RowLayout only refers to them.
#pragma once

#include <X11/Intrinsic.h>

#include <vector>

namespace wmenh {

class RowLayout {
public:
    // Controls are spaced out and centred. Canvases (drawing areas, widgets of a program's own class) touch
    // their left neighbour when that is one too, so that axes and plot share their edges.
    enum class Kind { Control, Canvas };

    explicit RowLayout(Widget form) : form(form) {}

    Widget parent() const { return form; }
    // Attaches and manages an unmanaged child of the form.
    void add(Widget control, Kind kind = Kind::Control);
    // Extra room around the controls that follow.
    void setOffset(int left, int right, int top, int bottom);
    void attachRightSide();
    // Ends the current row; nothing happens while it is empty.
    void newRow();
    // The control added last, null when there is none.
    Widget last() const { return lastControl; }
    // Width that the widest row needs with each canvas narrowed to canvasWidth.
    int neededWidth(int canvasWidth) const;
    // Height of the tallest canvas, 0 without one.
    int canvasHeight() const;

private:
    struct Item {
        Widget widget;
        Kind kind;
        int left, top, bottom; // offsets
        int width, height;     // what it asks for, before the form stretches it; known when its row ends
    };
    Widget form;
    Widget lastControl = nullptr;
    Widget above = nullptr; // tallest control of the row above
    int gapAbove = 0;
    int offsetLeft = 0, offsetRight = 0, offsetTop = 0, offsetBottom = 0;
    std::vector<Item> row;
    std::vector<std::vector<Item>> rows;

    void attachTop(const Item& item, int extra) const;
};

} // namespace wmenh
