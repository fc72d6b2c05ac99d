// SPDX-License-Identifier: MIT
#include "profile/Mapping.h"
#include "profile/Plot.h"
#include "profile/Profile.h"

#include <Xm/DrawingA.h>

namespace {

bool insidePlot(int x, int y, Dimension width, Dimension height)
{
    return x >= 0 && x < width && y >= 0 && y < height;
}

// Draws the readout for row y straight onto the window: the next redraw of the plot wipes it.
void drawReadout(Widget area, int x, int y, Dimension width, Dimension height, const char* text)
{
    Display* display = XtDisplay(area);
    XSetForeground(display, plot.plotGC, plot.plotColors[colorYellow]);
    XSetLineAttributes(display, plot.plotGC, 1, LineOnOffDash, CapButt, JoinMiter);
    XDrawLine(display, XtWindow(area), plot.plotGC, 0, y, width - 1, y);
    TextPosition at = placeReadout(x, y, width, height, plot.lineHeight);
    drawPlotText(XtWindow(area), at.x, at.y, text);
}

void readOutAt(Widget area, int x, int y)
{
    Dimension width = 0, height = 0;
    XtVaGetValues(area, XmNwidth, &width, XmNheight, &height, nullptr);
    float range = profile.scaleMax - profile.scaleMin;
    if (!insidePlot(x, y, width, height) || profile.sampleCount <= 0 || !(range > 0.0f))
        return;
    char text[64];
    formatReadout(valueAtRow(profile.scaleMin, profile.scaleMax, height, y), range, text, sizeof text);
    drawProfile(1);
    drawReadout(area, x, y, width, height, text);
}

} // namespace

void plotInput(Widget widget, XtPointer, XtPointer callData)
{
    // Button, motion and key events, the only ones that come here, have the pointer position in the same
    // place.
    const XEvent* event = static_cast<XmDrawingAreaCallbackStruct*>(callData)->event;
    readOutAt(widget, event->xbutton.x, event->xbutton.y);
}
