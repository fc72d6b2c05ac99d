// SPDX-License-Identifier: MIT
/* Tick gauges: the axes beside a plot.
 *
 * A linear gauge (a Motif primitive widget) shows tick marks with numeric labels. What it shows is held by
 * child objects, created with the gauge as their parent: a linear scale (value range, direction, placement
 * inside the gauge) and a tick object (marks and labels that follow one scale). Create the objects with
 * XtCreateWidget or XtVaCreateWidget; they can't be managed. The gauge owns them: they go when it is
 * destroyed.
 *
 * Frame: gauge pixels, (0, 0) at the top left. A scale has no margins: a scale of L pixels has its minimum on
 * the edge of its first pixel and its maximum on the edge of its last one, so that an axis of the same length
 * as the plot beside it stands exact against it.
 *
 * Doubles travel through argument lists as the 64-bit pattern of the double: std::bit_cast<XtArgVal>(value)
 * to set one, the address of a double to read one; any double will do, infinities and NaN included.
 * Enumerations and the precision are of type int.
 *
 * Numbers, booleans, colours, fonts, enumerations and xrtGaScale may also be given as strings (resource file,
 * XtVaTypedArg): an enumeration by its name with or without the prefix (XRTGA_BORDER_ETCHED_IN, etched_in) or
 * by its number, a scale by its widget name among the scales that its gauge has so far. Lists, callbacks,
 * functions, pointers, xrtGaFrame and xrtGaImage are set by the program only.
 *
 * Size: a gauge that is given none is 60 x 24 pixels. Asked by XtQueryGeometry it wishes for the width (of a
 * vertical axis) or height (of a horizontal one) at which labels of six characters in its font have room. */
#ifndef GAUGE_XRTGAUGE_H
#define GAUGE_XRTGAUGE_H

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmXrtGaLinearGaugeWidgetClass; /* class name XmXrtGaLinearGauge */
extern WidgetClass xmXrtGaLinearScaleObjectClass; /* class name XmXrtGaLinearScale */
extern WidgetClass xmXrtGaTickObjectClass;        /* class name XmXrtGaTick */

/* Makes the text of a tick value in place of the gauge's own label rule. The text is made with XtMalloc
 * (XtNewString) and becomes the gauge's; NULL: no label on this tick. */
typedef char* (*XrtGaLabelFunc)(Widget tick, double value);

#ifdef __cplusplus
}
#endif

/* Resources of the linear gauge. Besides these it has XmNrenderTable and XmNfontList, the labels' font
 * (default: the label font of the surrounding Motif widgets). It takes no keyboard focus: traversalOn and
 * highlightThickness are off by default. Setting xrtGaMin or xrtGaMax on the gauge sets them on its first
 * scale. */

/* int, one of XRTGA_BORDER_*, default XRTGA_BORDER_NONE (3). */
#define XmNxrtGaBorder "xrtGaBorder"
/* Boolean, default False: write a line on standard error for each drawing of ticks. */
#define XmNxrtGaDebug "xrtGaDebug"
/* Boolean, default True: draw through a pixmap. Turns itself off when the server has no room for one. */
#define XmNxrtGaDoubleBuffer "xrtGaDoubleBuffer"
/* Boolean, default True: repaint after each change. False holds changes back until it is True again. */
#define XmNxrtGaRepaint "xrtGaRepaint"

/* Lists of child objects, WidgetList ending with NULL, NULL when empty. The first two are kept by the gauge
 * in order of creation and can only be read. The others are the application's: kept, not drawn. */
#define XmNxrtGaLinearScaleList "xrtGaLinearScaleList"
#define XmNxrtGaTickList "xrtGaTickList"
#define XmNxrtGaIndicatorList "xrtGaIndicatorList"
#define XmNxrtGaRangeList "xrtGaRangeList"
#define XmNxrtGaTextList "xrtGaTextList"
#define XmNxrtGaRenderList "xrtGaRenderList"
/* Boolean, default False; kept, without effect. */
#define XmNxrtGaUseRenderList "xrtGaUseRenderList"

/* Callback lists. Call data: XmAnyCallbackStruct with reason XmCR_EXPOSE, XmCR_RESIZE or XmCR_MAP. The gauge
 * does not react to the pointer, so that the interaction callbacks are never called. */
#define XmNxrtGaExposeCallback "xrtGaExposeCallback"
#define XmNxrtGaResizeCallback "xrtGaResizeCallback"
#define XmNxrtGaMapCallback "xrtGaMapCallback"
#define XmNxrtGaInteractionCallback "xrtGaInteractionCallback"

/* Decoration and user data; kept for the application, not drawn. */
#define XmNxrtGaFrame "xrtGaFrame"                             /* Widget, NULL */
#define XmNxrtGaImage "xrtGaImage"                             /* Pixmap, None */
#define XmNxrtGaImageLayout "xrtGaImageLayout"                 /* int, 0 */
#define XmNxrtGaUserInteractionData "xrtGaUserInteractionData" /* XtPointer, NULL */

/* Frame styles. A frame is drawn over the gauge's outermost shadowThickness pixels and moves nothing. */
enum {
    XRTGA_BORDER_SHADOW_IN = 0,
    XRTGA_BORDER_SHADOW_OUT = 1,
    XRTGA_BORDER_ETCHED_IN = 2,
    XRTGA_BORDER_NONE = 3,
    XRTGA_BORDER_ETCHED_OUT = 4
};

/* Resources of the linear scale. XmNx, XmNy, XmNwidth, XmNheight (16 bit, default 0) place it inside the
 * gauge; a width or height of 0 fills the gauge from x or y on. XmNxrtGaDebug (Boolean, default False) is
 * kept, without effect. */

/* double, default 0: value at the near end. */
#define XmNxrtGaMin "xrtGaMin"
/* double, default 1: value at the far end. A scale whose maximum is not above its minimum has no ticks. */
#define XmNxrtGaMax "xrtGaMax"
/* int, XRTGA_VERTICAL or XRTGA_HORIZONTAL (default). */
#define XmNxrtGaOrientation "xrtGaOrientation"
/* int, XRTGA_ASCENDING (default) or XRTGA_DESCENDING. */
#define XmNxrtGaDirection "xrtGaDirection"
/* Boolean, default True; kept, without effect. */
#define XmNxrtGaAllowTransform "xrtGaAllowTransform"
/* Callback list; never called. */
#define XmNxrtGaTransformCallback "xrtGaTransformCallback"

enum { XRTGA_VERTICAL = 1, XRTGA_HORIZONTAL = 2 }; /* the values of XmVERTICAL and XmHORIZONTAL */

enum {
    XRTGA_ASCENDING = 0, /* values grow to the right, or upwards */
    XRTGA_DESCENDING = 1 /* values grow to the left, or downwards */
};

/* Resources of the tick object.
 * XmNwidth (16 bit, default 1): line width of a mark in pixels.
 * XmNbackground (Pixel, default: the gauge's foreground): colour of marks and labels. They stand on the
 * gauge's own background; where this colour would hardly show on that, the gauge's foreground is taken, then
 * black or white. */

/* Widget, default NULL: a scale of the same gauge. */
#define XmNxrtGaScale "xrtGaScale"
/* Boolean, default True: increment, start and stop are computed from the scale's range, and the start value
 * is aligned down to a multiple of the increment. */
#define XmNxrtGaAutomatic "xrtGaAutomatic"
/* Doubles. They hold where XmNxrtGaAutomatic is off and all three are set; otherwise all three are computed,
 * and reading them gives the computed values (the largest finite double when there are none, as on an empty
 * scale). Setting the largest finite double unsets. */
#define XmNxrtGaIncrementValue "xrtGaIncrementValue"
#define XmNxrtGaStartValue "xrtGaStartValue"
#define XmNxrtGaStopValue "xrtGaStopValue"
/* Boolean, default False: a numeric label beside each mark. */
#define XmNxrtGaDrawLabels "xrtGaDrawLabels"
/* XrtGaLabelFunc, default NULL. */
#define XmNxrtGaLabelFunc "xrtGaLabelFunc"
/* int, -16 to 16, default -15: digits after the point, or minus the number of digits before it that read 0.
 */
#define XmNxrtGaPrecision "xrtGaPrecision"
/* int, one of XRTGA_PRECISION_*, default XRTGA_PRECISION_IF_DEFAULT (2). */
#define XmNxrtGaPrecisionUseDefault "xrtGaPrecisionUseDefault"
/* double, default 0: a tick labelled v stands where the scale has v + offset. */
#define XmNxrtGaOffset "xrtGaOffset"
/* Doubles, default 1. Positions across the scale as fractions of its thickness, from its top or left edge:
 * the two ends of a mark, and the middle of the labels. Labels give way to marks and to the gauge's edges. */
#define XmNxrtGaInnerExtent "xrtGaInnerExtent"
#define XmNxrtGaOuterExtent "xrtGaOuterExtent"
#define XmNxrtGaLabelExtent "xrtGaLabelExtent"
/* Boolean, default True. */
#define XmNxrtGaIsShowing "xrtGaIsShowing"
/* int, default 0: a line. Every type is drawn as a line. */
#define XmNxrtGaTickType "xrtGaTickType"

/* With the default precision labels get as many decimals as the increment needs, and change to exponents
 * (2e-7, 1.5e9) where they would be too long. Where values share more leading digits than a label has room
 * for, labels begin with a sign (+2, +4) and are to be added to a number that stands at the top or left end
 * of the scale (1e7). */
enum {
    XRTGA_PRECISION_AS_SET = 0,    /* xrtGaPrecision holds, whatever it is */
    XRTGA_PRECISION_BY_RANGE = 1,  /* xrtGaPrecision is ignored */
    XRTGA_PRECISION_IF_DEFAULT = 2 /* by range as long as xrtGaPrecision is at its default */
};

#endif
