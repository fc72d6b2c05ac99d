// SPDX-License-Identifier: MIT
// The two axes of the tool in a window of their own. The test framework comes before Xlib, whose macros
// (None, True) it does not survive.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/x/gauge/ServerCalls.h"
#include "tests/x/gauge/ToolAxes.h"

#include <X11/IntrinsicP.h>
#include <Xm/BulletinB.h>

#include <string>
#include <vector>

constexpr int gaugeWidth = 300;
constexpr int gaugeHeight = 200;

struct Toolkit {
    XtAppContext app;
    Display* display;
};

inline const Toolkit& toolkit()
{
    static const Toolkit only = [] {
        XtToolkitInitialize();
        XtAppContext app = XtCreateApplicationContext();
        int argc = 0;
        return Toolkit{app,
                       XtOpenDisplay(app, nullptr, "gauge_test", "GaugeTest", nullptr, 0, &argc, nullptr)};
    }();
    return only;
}

template<class T> T valueOf(Widget object, const char* name)
{
    T value{};
    XtVaGetValues(object, name, &value, nullptr);
    return value;
}

inline std::vector<Widget> listOf(Widget gauge, const char* name)
{
    std::vector<Widget> items;
    for (WidgetList item = valueOf<WidgetList>(gauge, name); item && *item; ++item)
        items.push_back(*item);
    return items;
}

// What the window of a widget shows.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<unsigned long> pixels;

    unsigned long at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    friend bool operator==(const Image&, const Image&) = default;
};

inline Image imageOf(Widget widget)
{
    Image image{widget->core.width, widget->core.height, {}};
    XImage* source = XGetImage(XtDisplay(widget), XtWindow(widget), 0, 0, widget->core.width,
                               widget->core.height, AllPlanes, ZPixmap);
    for (int i = 0; source && i < image.width * image.height; ++i)
        image.pixels.push_back(XGetPixel(source, i % image.width, i / image.width));
    if (source)
        XDestroyImage(source);
    return image;
}

class GaugeTest : public testing::Test {
protected:
    GaugeTest()
    {
        shell = XtVaAppCreateShell("gauge_test", "GaugeTest", applicationShellWidgetClass, toolkit().display,
                                   nullptr);
        board = XtVaCreateManagedWidget("board", xmBulletinBoardWidgetClass, shell, XmNmarginWidth, 0,
                                        XmNmarginHeight, 0, XmNwidth, 800, XmNheight, 300, nullptr);
        intensity = axes::createIntensityAxis(board, 0, 0, gaugeHeight);
        distance = axes::createDistanceAxis(board, 60, gaugeHeight, gaugeWidth);
    }

    ~GaugeTest() override
    {
        servercalls::refusePixmaps = false;
        if (shell)
            XtDestroyWidget(shell);
        dispatchPending();
    }

    void dispatchPending()
    {
        XSync(toolkit().display, False);
        while (XtAppPending(toolkit().app))
            XtAppProcessEvent(toolkit().app, XtIMAll);
    }

    static void noteCall(Widget, XtPointer flag, XtPointer) { *static_cast<bool*>(flag) = true; }

    // Shows the shell and waits until the gauges have drawn themselves.
    void show()
    {
        bool drawn = false;
        XtAddCallback(distance.gauge, XmNxrtGaExposeCallback, noteCall, &drawn);
        XtRealizeWidget(shell);
        while (!drawn)
            XtAppProcessEvent(toolkit().app, XtIMAll);
        XtRemoveCallback(distance.gauge, XmNxrtGaExposeCallback, noteCall, &drawn);
        dispatchPending();
    }

    void resizeDistance(int width)
    {
        XtResizeWidget(distance.gauge, static_cast<Dimension>(width), 24, 0);
        dispatchPending();
    }

    // Rows of the intensity axis where a column, that of the marks unless told, differs from the ground.
    std::vector<int> rowsMarked(int column = 55)
    {
        const Image image = imageOf(intensity.gauge);
        std::vector<int> rows;
        for (int y = 0; y < image.height; ++y)
            if (image.at(column, y) != valueOf<Pixel>(intensity.gauge, XmNbackground))
                rows.push_back(y);
        return rows;
    }
    // Columns of the distance axis where the row of the marks differs from the ground.
    std::vector<int> columnsMarked()
    {
        const Image image = imageOf(distance.gauge);
        std::vector<int> columns;
        for (int x = 0; x < image.width; ++x)
            if (image.at(x, 2) != valueOf<Pixel>(distance.gauge, XmNbackground))
                columns.push_back(x);
        return columns;
    }

    Widget shell = nullptr;
    Widget board = nullptr;
    axes::Axis intensity;
    axes::Axis distance;
};
