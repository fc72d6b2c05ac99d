/* Tick gauges: the axes beside a plot.
 *
 * A linear gauge (a Motif primitive widget) shows tick marks with numeric labels. What it shows is held by child
 * objects, created with the gauge as their parent: a linear scale (value range, direction, placement inside the
 * gauge) and a tick object (marks and labels that follow one scale). Create the objects with XtCreateWidget or
 * XtVaCreateWidget; they can't be managed. The gauge owns them: they go when it is destroyed.
 *
 * Frame: gauge pixels, (0, 0) at the top left. A scale has no margins: a scale of L pixels has its minimum on the
 * edge of its first pixel and its maximum on the edge of its last one, so that an axis of the same length as the
 * plot beside it stands exact against it.
 *
 * Doubles travel through argument lists as the 64-bit pattern of the double: std::bit_cast<XtArgVal>(value) to set
 * one, the address of a double to read one. Enumerations and the precision are of type int. Each resource may also
 * be given as a string (resource file, XtVaTypedArg): the classes register a converter from String to "Double". */
#ifndef GAUGE_XRTGAUGE_H
#define GAUGE_XRTGAUGE_H

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

extern WidgetClass xmXrtGaLinearGaugeWidgetClass;  /* class name XmXrtGaLinearGauge */
extern WidgetClass xmXrtGaLinearScaleObjectClass;  /* class name XmXrtGaLinearScale */
extern WidgetClass xmXrtGaTickObjectClass;         /* class name XmXrtGaTick */

/* Makes the text of a tick value in place of the gauge's own label rule. The text is made with XtMalloc (XtNewString)
 * and becomes the gauge's; NULL: no label on this tick. */
typedef char* (*XrtGaLabelFunc)(Widget tick, double value);

#ifdef __cplusplus
}
#endif

/* --- Linear gauge ---------------------------------------------------------------------------------------------
 * Besides the resources below it has XmNrenderTable and XmNfontList (the labels' font; default: the label font of
 * the surrounding Motif widgets). It takes no keyboard focus: traversalOn and highlightThickness default to off.
 * Setting xrtGaMin or xrtGaMax on the gauge sets them on its first scale. */

#define XmNxrtGaBorder "xrtGaBorder"             /* int, one of XRTGA_BORDER_*; default XRTGA_BORDER_NONE (3) */
#define XmNxrtGaDebug "xrtGaDebug"               /* Boolean, False: tell each layout on standard error */
#define XmNxrtGaDoubleBuffer "xrtGaDoubleBuffer" /* Boolean, True: draw through a pixmap; turns itself off when
                                                    the server has no room for one */
#define XmNxrtGaRepaint "xrtGaRepaint"           /* Boolean, True: repaint after each change; False holds changes
                                                    back until it is True again */

/* Lists of child objects, WidgetList ending with NULL, NULL when empty. The first two are kept by the gauge in order
 * of creation and can only be read. The others are the application's: kept, not drawn. */
#define XmNxrtGaLinearScaleList "xrtGaLinearScaleList"
#define XmNxrtGaTickList "xrtGaTickList"
#define XmNxrtGaIndicatorList "xrtGaIndicatorList"
#define XmNxrtGaRangeList "xrtGaRangeList"
#define XmNxrtGaTextList "xrtGaTextList"
#define XmNxrtGaRenderList "xrtGaRenderList"
#define XmNxrtGaUseRenderList "xrtGaUseRenderList" /* Boolean, False; kept, without effect */

/* Callback lists. Call data: XmAnyCallbackStruct with reason XmCR_EXPOSE, XmCR_RESIZE or XmCR_MAP. The gauge does
 * not react to the pointer, so that the interaction callbacks are never called. */
#define XmNxrtGaExposeCallback "xrtGaExposeCallback"
#define XmNxrtGaResizeCallback "xrtGaResizeCallback"
#define XmNxrtGaMapCallback "xrtGaMapCallback"
#define XmNxrtGaInteractionCallback "xrtGaInteractionCallback"

/* Decoration and user data; kept for the application, not drawn. */
#define XmNxrtGaFrame "xrtGaFrame"             /* Widget, NULL */
#define XmNxrtGaImage "xrtGaImage"             /* Pixmap, None */
#define XmNxrtGaImageLayout "xrtGaImageLayout" /* int, 0 */
#define XmNxrtGaUserInteractionData "xrtGaUserInteractionData" /* XtPointer, NULL */

/* Frame styles. A frame is drawn over the gauge's outermost shadowThickness pixels and moves nothing. */
enum {
    XRTGA_BORDER_SHADOW_IN  = 0,
    XRTGA_BORDER_SHADOW_OUT = 1,
    XRTGA_BORDER_ETCHED_IN  = 2,
    XRTGA_BORDER_NONE       = 3,
    XRTGA_BORDER_ETCHED_OUT = 4
};

/* --- Linear scale ---------------------------------------------------------------------------------------------
 * XmNx, XmNy, XmNwidth, XmNheight (16 bit, default 0): placement inside the gauge; a width or height of 0 fills the
 * gauge from x or y on. */

#define XmNxrtGaMin "xrtGaMin"                 /* double, 0: value at the near end */
#define XmNxrtGaMax "xrtGaMax"                 /* double, 1: value at the far end; not above min: an empty scale */
#define XmNxrtGaOrientation "xrtGaOrientation" /* int, XRTGA_HORIZONTAL (2) */
#define XmNxrtGaDirection "xrtGaDirection"     /* int, XRTGA_ASCENDING (0) */
#define XmNxrtGaAllowTransform "xrtGaAllowTransform"       /* Boolean, True; kept, without effect */
#define XmNxrtGaTransformCallback "xrtGaTransformCallback" /* never called */
/* and XmNxrtGaDebug, Boolean, False; kept, without effect */

enum { XRTGA_VERTICAL = 1, XRTGA_HORIZONTAL = 2 };  /* the values of XmVERTICAL and XmHORIZONTAL */

enum {
    XRTGA_ASCENDING  = 0, /* values grow to the right, or upwards */
    XRTGA_DESCENDING = 1  /* values grow to the left, or downwards */
};

/* --- Tick -----------------------------------------------------------------------------------------------------
 * XmNwidth (16 bit, default 1): line width of a mark in pixels.
 * XmNbackground (Pixel, default: the gauge's foreground): colour of marks and labels. They stand on the gauge's own
 * background; where this colour would hardly show on that, the gauge's foreground is taken, then black or white. */

#define XmNxrtGaScale "xrtGaScale"                   /* Widget, NULL: a scale of the same gauge */
#define XmNxrtGaAutomatic "xrtGaAutomatic"           /* Boolean, True: align the start value down to a multiple of the
                                                        increment */
/* Doubles. What is not set is computed from the scale's range, and reading it gives the computed value (the largest
 * finite double when there is none, as on an empty scale). Setting that largest double unsets. */
#define XmNxrtGaIncrementValue "xrtGaIncrementValue"
#define XmNxrtGaStartValue "xrtGaStartValue"
#define XmNxrtGaStopValue "xrtGaStopValue"
#define XmNxrtGaDrawLabels "xrtGaDrawLabels"         /* Boolean, False */
#define XmNxrtGaLabelFunc "xrtGaLabelFunc"           /* XrtGaLabelFunc, NULL */
#define XmNxrtGaPrecision "xrtGaPrecision"           /* int, -15: digits after the point, or minus the number of
                                                        digits before it that read 0; -16 to 16 */
#define XmNxrtGaPrecisionUseDefault "xrtGaPrecisionUseDefault" /* int, one of XRTGA_PRECISION_* */
#define XmNxrtGaOffset "xrtGaOffset"                 /* double, 0: a tick labelled v stands where the scale has
                                                        v + offset */
/* Positions across the scale as fractions of its thickness, from its top or left edge; doubles, default 1: the two
 * ends of a mark, and the middle of the labels. Labels give way to marks and to the gauge's edges. */
#define XmNxrtGaInnerExtent "xrtGaInnerExtent"
#define XmNxrtGaOuterExtent "xrtGaOuterExtent"
#define XmNxrtGaLabelExtent "xrtGaLabelExtent"
#define XmNxrtGaIsShowing "xrtGaIsShowing"           /* Boolean, True */
#define XmNxrtGaTickType "xrtGaTickType"             /* int, 0: a line; every type is drawn as a line */

/* With the default precision labels get as many decimals as the increment needs, and change to exponents (2e-7,
 * 1.5e9) where they would be too long. */
enum {
    XRTGA_PRECISION_AS_SET     = 0, /* xrtGaPrecision holds, whatever it is */
    XRTGA_PRECISION_BY_RANGE   = 1, /* xrtGaPrecision is not looked at */
    XRTGA_PRECISION_IF_DEFAULT = 2  /* by range as long as xrtGaPrecision is at its default */
};

#endif
