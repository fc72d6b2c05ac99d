// SPDX-License-Identifier: MIT
// Shows the axes of the tool at many ranges in one window, beside a stand-in for the plot, and saves the
// picture. For the eye: run it after every change of layout or drawing. Large fonts need a large screen.
#include "platform/text/Fonts.h"
#include "platform/text/Locale.h"
#include "tests/x/gauge/ToolAxes.h"
#include "tests/x/support/ShellPicture.h"

#include <X11/IntrinsicP.h>
#include <Xm/BulletinB.h>
#include <Xm/DrawingA.h>
#include <Xm/Label.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <vector>

namespace {

struct Sample {
    double min, max;
    float length; // of the segment in microns
};

constexpr int columns = 10, plotWidth = 110, plotHeight = 200;

const Sample samples[] = {
    {0, 0, 0},
    {0, 255, 0.052f},
    {100, 65535, 0.3f},
    {0, 0.004, 0.75f},
    {-250, 1200, 1.0f},
    {-0.004, -0.001, 2.9f},
    {0, 1e-6, 9.99f},
    {0, 1e7, 10.0f},
    {-1e7, 1e7, 37.25f},
    {0, 3.3e9, 512.0f},
    {-3e38, 3e38, 12345.0f},
    {180, 1043, 47.3f},
    {1000000, 1000100, 3.5f},
    {-1234567, -1234000, 3.5f},
    {1e7, 1e7 + 8, 3.5f},
    {12345.01, 12345.09, 3.5f},
    {999999, 1000001, 3.5f},
    {1234567, 1234569, 3.5f},
    {16777216, 16777218, 3.5f},
    {65000, 65000.5, 3.5f},
    {123400, 123600, 3.5f},
    {1230000, 1250000, 3.5f},
    {99999995, 100000005, 3.5f},
    {0.99999, 1.00001, 3.5f},
    {1.00001e-5, 1.00002e-5, 3.5f},
    {1.23456782e30, 1.23456789e30, 3.5f},
    {-1.23456793e-30, -1.23456783e-30, 3.5f},
    {-3e-38, -2e-38, 3.5f},
    {1.4e-45, 4.2e-45, 3.5f},
    {8000, 10000, 3.5f},
};

// As the tool does it: at least 60 x 24, more where the labels need it.
int thickness(Widget gauge, bool vertical)
{
    XtWidgetGeometry wish;
    XtQueryGeometry(gauge, nullptr, &wish);
    return vertical ? std::max<int>(wish.width, 60) : std::max<int>(wish.height, 24);
}

// Gives back the right and lower edge.
XPoint addSample(Widget board, int x, int y, const Sample& sample)
{
    char title[100];
    std::snprintf(title, sizeof title, "%.9g ..\n%.9g\n%g um", sample.min, sample.max, sample.length);
    const Widget label = XtVaCreateManagedWidget(title, xmLabelWidgetClass, board, XmNx, x, XmNy, y, nullptr);
    const int top = y + label->core.height;
    const axes::Axis intensity = axes::createIntensityAxis(board, x, top, plotHeight);
    const int left = x + thickness(intensity.gauge, true);
    XtVaSetValues(intensity.gauge, XmNwidth, left - x, nullptr);
    XtVaCreateManagedWidget("plot", xmDrawingAreaWidgetClass, board, XmNx, left, XmNy, top, XmNwidth,
                            plotWidth, XmNheight, plotHeight, XmNbackground,
                            BlackPixelOfScreen(XtScreen(board)), nullptr);
    const axes::Axis distance = axes::createDistanceAxis(board, left, top + plotHeight, plotWidth);
    const int bottom = top + plotHeight + thickness(distance.gauge, false);
    XtVaSetValues(distance.gauge, XmNheight, bottom - top - plotHeight, nullptr);
    axes::setRange(intensity, sample.min, sample.max);
    axes::setSegmentLength(distance, sample.length, plotWidth);
    return {static_cast<short>(std::max<int>(left + plotWidth, x + label->core.width)),
            static_cast<short>(bottom)};
}

void addSamples(Widget board)
{
    constexpr int distance = 8;
    XPoint end{};
    int top = distance;
    for (int i = 0; i < static_cast<int>(std::size(samples)); ++i) {
        const int left = i % columns == 0 ? distance : end.x + distance;
        top = i % columns == 0 && i > 0 ? end.y + distance : top;
        end = addSample(board, left, top, samples[i]);
    }
}

int run(int argc, char** argv)
{
    text::adoptLocale();
    XtToolkitInitialize();
    XtAppContext app = XtCreateApplicationContext();
    Display* display = XtOpenDisplay(app, nullptr, "gallery", "Gallery", nullptr, 0, &argc, argv);
    if (argc != 2 || !display) {
        std::fprintf(stderr, "Usage: %s FILE.png, on a display\n", argv[0]);
        return 2;
    }
    std::vector<const char*> fonts;
    text::appendFontResources(display, fonts);
    for (const char* line : fonts) {
        XrmDatabase database = XtDatabase(display);
        XrmPutLineResource(&database, line);
    }
    Widget shell = XtVaAppCreateShell("gallery", "Gallery", applicationShellWidgetClass, display, XmNtitle,
                                      "Gauge gallery", nullptr);
    Widget board = XtVaCreateManagedWidget("board", xmBulletinBoardWidgetClass, shell, XmNmarginWidth, 8,
                                           XmNmarginHeight, 8, nullptr);
    addSamples(board);
    XtRealizeWidget(shell);
    return savePicture(shell, argv[1]) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
