// SPDX-License-Identifier: MIT
#include "profile/Plot.h"

#include "gauge/XrtGauge.h"
#include "profile/Fwhm.h"
#include "profile/Mapping.h"
#include "profile/Profile.h"
#include "segment/Segment.h"

#include <IWL.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace {

// Plot colour of each display colour index; every other index is white.
const PlotColor curveColors[] = {colorWhite, colorRed,     colorGreen, colorYellow,
                                 colorBlue,  colorMagenta, colorCyan};

unsigned long curvePixel(int32_t colorIndex)
{
    auto index = static_cast<uint32_t>(colorIndex);
    return plot.plotColors[index < std::size(curveColors) ? curveColors[index] : colorWhite];
}

void fillBackground(Display* display)
{
    XSetForeground(display, plot.plotGC, plot.plotColors[colorBackground]);
    XFillRectangle(display, plot.plotPixmap, plot.plotGC, 0, 0, static_cast<unsigned>(plot.plotWidth),
                   static_cast<unsigned>(plot.plotHeight));
}

void drawCurve(Display* display, int c, const PlotMapping& mapping, XPoint* points)
{
    int32_t n = profile.sampleCount;
    XSetForeground(display, plot.plotGC, curvePixel(channelColorIndex[c]));
    XSetBackground(display, plot.plotGC, plot.plotColors[colorBackground]);
    for (int32_t i = 0; i < n; i++)
        points[i] = {plotColumn(mapping, i, n), plotRow(mapping, profile.channelSamples[c][i])};
    XSetLineAttributes(display, plot.plotGC, 1, LineSolid, CapButt, JoinMiter);
    XDrawLines(display, plot.plotPixmap, plot.plotGC, points, n, CoordModeOrigin);
}

} // namespace

void drawPlotText(Drawable drawable, int32_t x, int32_t baseline, const char* text)
{
    // A resize may come before the first expose, which loads the font and draws all of this again.
    if (!plot.plotGC || plot.plotFont == None)
        return;
    Display* display = XtDisplay(plot.plotArea);
    XSetFont(display, plot.plotGC, plot.plotFont);
    XDrawImageString(display, drawable, plot.plotGC, x, baseline, text, static_cast<int>(std::strlen(text)));
}

namespace {

float wavelengthOfChannel(int c)
{
    static float waves[IW_MAX_WAVES];
    int count = 0;
    IMRtWav(imageSlot, &count, waves);
    return waves[profile.channelWave[c]];
}

// Measures the channel's largest peak and writes its width into the plot. The GC still has the colour of the
// channel's curve, which was drawn just before.
void drawFwhm(int c)
{
    profile.fwhmValue = 0.0f;
    int32_t n = profile.sampleCount;
    if (!settings.showFwhm || n < fwhmMinSamples)
        return;
    float step =
        sampleStep(segment.start.x, segment.start.y, segment.end.x, segment.end.y, settings.pixelSize, n);
    float fwhm = peakFwhm(profile.channelSamples[c], n, step);
    if (!(fwhm > 0.0f))
        return;
    char text[fwhmTextSize];
    formatFwhm(wavelengthOfChannel(c), fwhm, text);
    drawPlotText(plot.plotPixmap, 5, plot.lineHeight * (c + 1), text);
    profile.fwhmValue = fwhm;
}

void drawCurves(Display* display)
{
    PlotMapping mapping;
    profile.fwhmValue = 0.0f; // also when nothing can be drawn
    if (profile.channelCount == 0 ||
        !makePlotMapping(profile.scaleMin, profile.scaleMax, plot.plotWidth, plot.plotHeight, &mapping))
        return;
    auto* points =
        static_cast<XPoint*>(std::malloc(static_cast<size_t>(profile.sampleCount) * sizeof(XPoint)));
    for (int c = 0; c < profile.channelCount; c++) {
        drawCurve(display, c, mapping, points);
        drawFwhm(c);
    }
    std::free(points);
}

void setIntensityGauge()
{
    XtVaSetValues(plot.intensityScale, XmNxrtGaMin, std::bit_cast<XtArgVal>(double{profile.scaleMin}),
                  XmNxrtGaMax, std::bit_cast<XtArgVal>(double{profile.scaleMax}), nullptr);
}

void copyPixmapToWindow(Display* display)
{
    XCopyArea(display, plot.plotPixmap, XtWindow(plot.plotArea), plot.plotGC, 0, 0,
              static_cast<unsigned>(plot.plotWidth), static_cast<unsigned>(plot.plotHeight), 0, 0);
}

} // namespace

int drawProfile(int copyToWindow)
{
    if (!plot.plotArea)
        return 0;
    // A display change or a drag may come before the first expose: there is no pixmap to draw into yet.
    const bool visible = plot.plotPixmap != None;
    Display* display = XtDisplay(plot.plotArea);
    if (visible)
        fillBackground(display);
    if (segmentDefined && sampleProfile() && visible)
        drawCurves(display);
    setIntensityGauge();
    if (copyToWindow && visible)
        copyPixmapToWindow(display);
    return 1;
}
