// Shows the axes of the tool at many ranges in one window, beside a stand-in for the plot, and saves the
// picture. For the eye: run it after every change of layout or drawing.
#include "drive/Screen.h"
#include "tests/x/gauge/ToolAxes.h"

#include <Xm/BulletinB.h>
#include <Xm/DrawingA.h>
#include <Xm/Label.h>

#include <cstdio>
#include <iterator>

namespace {

struct Sample {
    double min, max;
    float length;      // of the segment in microns
    int width, height; // of the plot in pixels
};

const Sample samples[] = {{0, 0, 0, 180, 120},
                          {0, 255, 0.052f, 180, 120},
                          {100, 65535, 0.3f, 180, 120},
                          {0, 0.004, 0.75f, 180, 120},
                          {-250, 1200, 1.0f, 180, 120},
                          {-0.004, -0.001, 2.9f, 180, 120},
                          {0, 1e-6, 9.99f, 180, 120},
                          {0, 1e7, 10.0f, 180, 120},
                          {-1e7, 1e7, 37.25f, 180, 120},
                          {0, 3.3e9, 512.0f, 180, 120},
                          {-3e38, 3e38, 12345.0f, 180, 120},
                          {1234567.0, 1234569.0, 3.5f, 180, 120},
                          {180, 1043, 47.3f, 150, 90},
                          {0, 1, 300.0f, 60, 40},
                          {0, 4095, 5.5f, 24, 24}};

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

int run(int argc, char** argv)
{
    XtAppContext app;
    Widget shell = XtVaOpenApplication(&app, "Gallery", nullptr, 0, &argc, argv, nullptr,
                                       applicationShellWidgetClass, XmNtitle, "Gauge gallery", nullptr);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s FILE.png\n", argv[0]);
        return 2;
    }
    Widget board = XtVaCreateManagedWidget("board", xmBulletinBoardWidgetClass, shell, XmNmarginWidth, 0,
                                           XmNmarginHeight, 0, XmNwidth, 1570, XmNheight, 530, nullptr);
    for (int i = 0; i < static_cast<int>(std::size(samples)); ++i)
        addSample(board, 8 + i % 6 * 260, 4 + i / 6 * 175, samples[i]);
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
