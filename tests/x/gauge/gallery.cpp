// Shows the axes of the tool at many ranges in one window, beside a stand-in for the plot, and saves the
// picture. For the eye: run it after every change of layout or drawing.
#include "drive/Screen.h"
#include "tests/x/gauge/ToolAxes.h"

#include <Xm/BulletinB.h>
#include <Xm/DrawingA.h>
#include <Xm/Label.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

struct Sample {
    double min, max;
    float length;      // of the segment in microns
    int width, height; // of the plot in pixels
};

const Sample samples[] = {
    {0, 0, 0, 180, 120},           {0, 255, 0.004f, 180, 120},        {100, 65535, 0.3f, 180, 120},
    {0, 0.004, 0.75f, 180, 120},   {-250, 1200, 1.0f, 180, 120},      {-0.004, -0.001, 2.9f, 180, 120},
    {0, 1e-6, 9.99f, 180, 120},    {0, 1e7, 10.0f, 180, 120},         {-1e7, 1e7, 37.25f, 180, 120},
    {0, 3.3e9, 512.0f, 180, 120},  {-3e38, 3e38, 12345.0f, 180, 120}, {1234567.0, 1234569.0, 3.5f, 180, 120},
    {0, 1, 300.0f, 60, 40},        {0, 4095, 5.5f, 24, 24},           {180, 1043, 47.3f, 500, 200},
    {112, 3871, 0.052f, 500, 200},
};

void addSample(Widget board, int x, int y, const Sample& sample)
{
    char title[100];
    std::snprintf(title, sizeof title, "%g .. %g, %g um", sample.min, sample.max, sample.length);
    XtVaCreateManagedWidget(title, xmLabelWidgetClass, board, XmNx, x + 60, XmNy, y, nullptr);
    XtVaCreateManagedWidget("plot", xmDrawingAreaWidgetClass, board, XmNx, x + 60, XmNy, y + 20, XmNwidth,
                            sample.width, XmNheight, sample.height, XmNbackground,
                            BlackPixelOfScreen(XtScreen(board)), nullptr);
    axes::setRange(axes::createIntensityAxis(board, x, y + 20, sample.height), sample.min, sample.max);
    axes::setSegmentLength(axes::createDistanceAxis(board, x + 60, y + 20 + sample.height, sample.width),
                           sample.length, sample.width);
}

void addSamples(Widget board)
{
    int x = 8, y = 4, rowHeight = 0;
    for (const Sample& sample : samples) {
        if (x + sample.width + 70 > 1560) {
            x = 8;
            y += std::exchange(rowHeight, 0);
        }
        addSample(board, x, y, sample);
        x += std::max(sample.width, 180) + 72;
        rowHeight = std::max(rowHeight, sample.height + 52);
    }
}

} // namespace

int main(int argc, char** argv)
{
    XtAppContext app;
    Widget shell = XtVaOpenApplication(&app, "Gallery", nullptr, 0, &argc, argv, nullptr,
                                       applicationShellWidgetClass, XmNtitle, "Gauge gallery", nullptr);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s FILE.png\n", argv[0]);
        return 2;
    }
    Widget board = XtVaCreateManagedWidget("board", xmBulletinBoardWidgetClass, shell, XmNmarginWidth, 0,
                                           XmNmarginHeight, 0, XmNwidth, 1570, XmNheight, 860, nullptr);
    addSamples(board);
    XtRealizeWidget(shell);
    drive::Screen screen;
    drive::waitUntil([&] {
        XSync(XtDisplay(shell), False);
        const bool calm = XtAppPending(app) == 0;
        while (XtAppPending(app))
            XtAppProcessEvent(app, XtIMAll);
        return calm && screen.viewable(XtWindow(shell));
    });
    return screen.capture(XtWindow(shell)).save(argv[1]) ? 0 : 1;
}
