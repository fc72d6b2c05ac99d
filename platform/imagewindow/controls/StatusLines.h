// SPDX-License-Identifier: MIT
// The lines under the image: what is to be said about the file, the pixel under the pointer or what went
// wrong, and, beside each other where there is room, the stage position and the state of the window. Owned by
// the window's controls; the widgets go with their parent.
//
// The lines that the widest texts need are always there, so that the image stays in its place when the
// pointer moves.
#pragma once

#include "platform/imagewindow/view/Status.h"
#include "platform/imagewindow/view/TextFlow.h"

#include <X11/Intrinsic.h>

#include <string>
#include <vector>

namespace viewer {

class StatusLines {
public:
    explicit StatusLines(Widget parent);
    Widget widget() const { return area; }

    // True when the texts need more or fewer lines than there are: call layOut() and make room.
    bool show(const StatusTexts& texts);
    // What the present view may come to show.
    void setWidest(const StatusTexts& texts) { widest = texts; }
    // Puts the labels in their places in an area of that width, screen pixels; returns its height.
    int layOut(int width);

private:
    struct Rows {
        std::size_t remark = 0, pixel = 1, stage = 1, state = 1;
        bool beside = true; // stage and state share their rows
        friend bool operator==(const Rows&, const Rows&) = default;
    };
    struct Lines {
        std::vector<std::string> remark, pixel, stage, state;
    };
    Widget makeLabel(const char* name, unsigned char alignment);
    Lines linesOf(const StatusTexts& texts) const;
    bool besideEachOther(const StatusTexts& texts) const;
    Rows rowsNeeded() const;
    int place(Widget label, int left, int top, int labelWidth, std::size_t rowCount) const;
    void write();

    int marginWidth, marginHeight; // of a label, screen pixels
    int gap;                       // between stage and state beside each other, screen pixels
    Widget area = nullptr, remark = nullptr, pixel = nullptr, stage = nullptr, state = nullptr;
    Measure measure;
    int lineHeight = 0, width = 0; // screen pixels; width 0: not laid out yet
    int lowest = 0;                // where the rows of stage and state begin
    StatusTexts shown, widest;
    Rows rows;
};

} // namespace viewer
