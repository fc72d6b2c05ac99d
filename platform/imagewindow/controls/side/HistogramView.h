// SPDX-License-Identifier: MIT
// The picture of a histogram with the two limits of the contrast over it, which the pointer drags, and the
// curve of the gamma between them. Owned by its card; the widget goes with its parent.
#pragma once

#include "platform/imagewindow/render/Histogram.h"
#include "platform/imagewindow/view/Palette.h"

#include <X11/Intrinsic.h>

#include <functional>
#include <string>

namespace widgets {
class Painter;
}

namespace viewer {

class HistogramView {
public:
    struct Content {
        SampleStore::Sample sample; // null: not known yet
        ContrastLimits limits, span;
        float gamma = 1;
        bool logarithmic = false, integers = true;
        Rgb color;
        friend bool operator==(const Content&, const Content&) = default;
    };
    // Told while the pointer drags a limit to a value.
    using Moved = std::function<void(bool low, float value)>;

    HistogramView(Widget parent, Moved moved);
    HistogramView(const HistogramView&) = delete;
    HistogramView& operator=(const HistogramView&) = delete;

    Widget widget() const { return area; }
    void show(const Content& content);

private:
    static void pointer(Widget, XtPointer client, XEvent* event, Boolean*);
    void handle(const XEvent& event);
    void draw();
    void drawBars(widgets::Painter& painter, double bottom) const;
    void drawCurve(widgets::Painter& painter, double low, double high, double bottom) const;
    void count();
    double xOf(float value) const;
    float valueAt(int x) const;

    Widget area = nullptr;
    Moved moved;
    Content shown;
    Histogram histogram;
    int binsFor = 0; // the width that it was counted for, pixels
    enum class Held { Nothing, Low, High } held = Held::Nothing;
};

} // namespace viewer
