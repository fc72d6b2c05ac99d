// The two axes of the tool in a window of their own. The test framework comes before Xlib, whose macros
// (None, True) it does not survive.
#ifndef TESTS_X_GAUGE_GAUGETEST_H
#define TESTS_X_GAUGE_GAUGETEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/x/gauge/ServerCalls.h"
#include "tests/x/gauge/ToolAxes.h"

#include <X11/IntrinsicP.h>
#include <Xm/BulletinB.h>

#include <chrono>
#include <string>
#include <vector>

constexpr int gaugeWidth = 300;
constexpr int gaugeHeight = 200;

struct Toolkit {
    XtAppContext app;
    Display* display;

    Toolkit()
    {
        XtToolkitInitialize();
        app = XtCreateApplicationContext();
        static std::string name = "gauge_test";
        static char* argv[] = {name.data(), nullptr};
        int argc = 1;
        display = XtOpenDisplay(app, nullptr, nullptr, "GaugeTest", nullptr, 0, &argc, argv);
    }
};

inline Toolkit& toolkit()
{
    static Toolkit only;
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
    XSync(XtDisplay(widget), False);
    Image image{widget->core.width, widget->core.height, {}};
    XImage* source = XGetImage(XtDisplay(widget), XtWindow(widget), 0, 0, widget->core.width,
                               widget->core.height, AllPlanes, ZPixmap);
    for (int i = 0; source && i < image.width * image.height; ++i)
        image.pixels.push_back(XGetPixel(source, i % image.width, i / image.width));
    if (source)
        XDestroyImage(source);
    return image;
}

// Rows (on a vertical line) or columns (on a horizontal one) that differ from the background.
inline std::vector<int> marksDown(const Image& image, int x, unsigned long ground)
{
    std::vector<int> rows;
    for (int y = 0; y < image.height; ++y) {
        if (image.at(x, y) != ground)
            rows.push_back(y);
    }
    return rows;
}

inline std::vector<int> marksRight(const Image& image, int y, unsigned long ground)
{
    std::vector<int> columns;
    for (int x = 0; x < image.width; ++x) {
        if (image.at(x, y) != ground)
            columns.push_back(x);
    }
    return columns;
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

    void dispatchUntil(const bool& done)
    {
        auto end = std::chrono::steady_clock::now() + std::chrono::seconds(15);
        while (!done && std::chrono::steady_clock::now() < end)
            XtAppProcessEvent(toolkit().app, XtIMAll);
    }

    static void noteCall(Widget, XtPointer flag, XtPointer) { *static_cast<bool*>(flag) = true; }

    // Shows the shell and waits until the gauges have drawn themselves.
    void show()
    {
        bool drawn = false;
        XtAddCallback(distance.gauge, XmNxrtGaExposeCallback, noteCall, &drawn);
        XtRealizeWidget(shell);
        XtAppAddTimeOut(
            toolkit().app, 15000, [](XtPointer flag, XtIntervalId*) { *static_cast<bool*>(flag) = true; },
            &drawn);
        dispatchUntil(drawn);
        XtRemoveCallback(distance.gauge, XmNxrtGaExposeCallback, noteCall, &drawn);
        dispatchPending();
    }

    Pixel ground(const axes::Axis& axis) { return valueOf<Pixel>(axis.gauge, XmNbackground); }

    Widget shell = nullptr;
    Widget board = nullptr;
    axes::Axis intensity;
    axes::Axis distance;
};

#endif
