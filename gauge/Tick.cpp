#include "gauge/LinearScaleP.h"
#include "gauge/TickP.h"

#include <cstring>

namespace {

const double nought = 0.0;
const double one = 1.0;
const double unset = gauge::unsetValue;

TickRec* asTick(Widget widget)
{
    return reinterpret_cast<TickRec*>(widget);
}

// Marks are drawn in the gauge's foreground unless the application says otherwise.
void foregroundOfGauge(Widget widget, int, XrmValue* value)
{
    static Pixel pixel;
    Widget parent = XtParent(widget);
    pixel = XtIsSubclass(parent, xmPrimitiveWidgetClass)
                ? reinterpret_cast<LinearGaugeRec*>(parent)->primitive.foreground
                : BlackPixelOfScreen(XtScreenOfObject(widget));
    value->size = sizeof pixel;
    value->addr = reinterpret_cast<XPointer>(&pixel);
}

#define TICK_FIELD(name) XtOffsetOf(TickRec, tick.name)

XtResource resources[] = {
    {XmNxrtGaScale,               "XrtGaScale",               XmRWidget,      sizeof(Widget),         TICK_FIELD(scale),       XmRImmediate,   nullptr                                                },
    {XmNxrtGaAutomatic,           "XrtGaAutomatic",           XmRBoolean,     sizeof(Boolean),        TICK_FIELD(automatic),   XmRImmediate,
     reinterpret_cast<XtPointer>(True)                                                                                                                                                                },
    {XmNxrtGaIncrementValue,      "XrtGaIncrementValue",      XmRXrtGaDouble, sizeof(double),         TICK_FIELD(increment),
     XmRXrtGaDouble,                                                                                                                           const_cast<double*>(&unset)                            },
    {XmNxrtGaStartValue,          "XrtGaStartValue",          XmRXrtGaDouble, sizeof(double),         TICK_FIELD(start),       XmRXrtGaDouble,
     const_cast<double*>(&unset)                                                                                                                                                                      },
    {XmNxrtGaStopValue,           "XrtGaStopValue",           XmRXrtGaDouble, sizeof(double),         TICK_FIELD(stop),        XmRXrtGaDouble,
     const_cast<double*>(&unset)                                                                                                                                                                      },
    {XmNxrtGaDrawLabels,          "XrtGaDrawLabels",          XmRBoolean,     sizeof(Boolean),        TICK_FIELD(drawLabels),  XmRImmediate,
     nullptr                                                                                                                                                                                          },
    {XmNxrtGaLabelFunc,           "XrtGaLabelFunc",           XmRFunction,    sizeof(XrtGaLabelFunc), TICK_FIELD(labelFunc),
     XmRImmediate,                                                                                                                             nullptr                                                },
    {XmNxrtGaPrecision,           "XrtGaPrecision",           XmRInt,         sizeof(int),            TICK_FIELD(precision),   XmRImmediate,
     reinterpret_cast<XtPointer>(gauge::defaultPrecision)                                                                                                                                             },
    {XmNxrtGaPrecisionUseDefault, "XrtGaPrecisionUseDefault", XmRInt,         sizeof(int),
     TICK_FIELD(precisionUseDefault),                                                                                          XmRImmediate,   reinterpret_cast<XtPointer>(XRTGA_PRECISION_IF_DEFAULT)},
    {XmNxrtGaOffset,              "XrtGaOffset",              XmRXrtGaDouble, sizeof(double),         TICK_FIELD(offset),      XmRXrtGaDouble,
     const_cast<double*>(&nought)                                                                                                                                                                     },
    {XmNxrtGaInnerExtent,         "XrtGaInnerExtent",         XmRXrtGaDouble, sizeof(double),         TICK_FIELD(innerExtent),
     XmRXrtGaDouble,                                                                                                                           const_cast<double*>(&one)                              },
    {XmNxrtGaOuterExtent,         "XrtGaOuterExtent",         XmRXrtGaDouble, sizeof(double),         TICK_FIELD(outerExtent),
     XmRXrtGaDouble,                                                                                                                           const_cast<double*>(&one)                              },
    {XmNxrtGaLabelExtent,         "XrtGaLabelExtent",         XmRXrtGaDouble, sizeof(double),         TICK_FIELD(labelExtent),
     XmRXrtGaDouble,                                                                                                                           const_cast<double*>(&one)                              },
    {XmNxrtGaIsShowing,           "XrtGaIsShowing",           XmRBoolean,     sizeof(Boolean),        TICK_FIELD(isShowing),   XmRImmediate,
     reinterpret_cast<XtPointer>(True)                                                                                                                                                                },
    {XmNxrtGaTickType,            "XrtGaTickType",            XmRInt,         sizeof(int),            TICK_FIELD(tickType),    XmRImmediate,   nullptr                                                },
    {XmNwidth,                    XmCWidth,                   XmRDimension,   sizeof(Dimension),      TICK_FIELD(width),       XmRImmediate,
     reinterpret_cast<XtPointer>(1)                                                                                                                                                                   },
    {XmNbackground,               XmCBackground,              XmRPixel,       sizeof(Pixel),          TICK_FIELD(background),  XmRCallProc,
     reinterpret_cast<XtPointer>(foregroundOfGauge)                                                                                                                                                   },
};

void classInitialize()
{
    registerDoubleConverter();
}

// A tick follows scales of its own gauge only: that gauge tells it when a scale goes.
void checkScale(Widget widget)
{
    Widget& scale = asTick(widget)->tick.scale;
    if (!scale || (XtIsSubclass(scale, xmXrtGaLinearScaleObjectClass) && XtParent(scale) == XtParent(widget)))
        return;
    scale = nullptr;
    XtAppWarningMsg(XtWidgetToApplicationContext(widget), "scale", "tick", "XmXrtGaError",
                    "xrtGaScale takes a linear scale of the same gauge; the tick object has none now.",
                    nullptr, nullptr);
}

void initialize(Widget, Widget created, ArgList, Cardinal*)
{
    checkScale(created);
    asTick(created)->tick.colourKnown = False;
    gaugeAdopt(created);
}

// The bits are compared, padding included: the old record is a copy of this one.
Boolean setValues(Widget old, Widget, Widget widget, ArgList, Cardinal*)
{
    checkScale(widget);
    if (std::memcmp(&asTick(old)->tick, &asTick(widget)->tick, sizeof(TickPart)) == 0)
        return False;
    asTick(widget)->tick.colourKnown = False;
    gaugeChanged(widget);
    return False;
}

void getValuesHook(Widget widget, ArgList args, Cardinal* count)
{
    for (Cardinal i = 0; i < *count; ++i) {
        double gauge::TickSeries::*member = nullptr;
        if (std::strcmp(args[i].name, XmNxrtGaIncrementValue) == 0)
            member = &gauge::TickSeries::increment;
        else if (std::strcmp(args[i].name, XmNxrtGaStartValue) == 0)
            member = &gauge::TickSeries::start;
        else if (std::strcmp(args[i].name, XmNxrtGaStopValue) == 0)
            member = &gauge::TickSeries::stop;
        if (member)
            *reinterpret_cast<double*>(args[i].value) = computedSeries(asTick(widget)).*member;
    }
}

} // namespace

TickClassRec tickClassRec = {
    .object_class = {.superclass = reinterpret_cast<WidgetClass>(&objectClassRec),
                     .class_name = "XmXrtGaTick",
                     .widget_size = sizeof(TickRec),
                     .class_initialize = classInitialize,
                     .class_part_initialize = nullptr,
                     .class_inited = False,
                     .initialize = initialize,
                     .initialize_hook = nullptr,
                     .obj1 = nullptr,
                     .obj2 = nullptr,
                     .obj3 = 0,
                     .resources = resources,
                     .num_resources = XtNumber(resources),
                     .xrm_class = NULLQUARK,
                     .obj4 = False,
                     .obj5 = 0,
                     .obj6 = False,
                     .obj7 = False,
                     .destroy = gaugeRelease,
                     .obj8 = nullptr,
                     .obj9 = nullptr,
                     .set_values = setValues,
                     .set_values_hook = nullptr,
                     .obj10 = nullptr,
                     .get_values_hook = getValuesHook,
                     .obj11 = nullptr,
                     .version = XtVersion,
                     .callback_private = nullptr,
                     .obj12 = nullptr,
                     .obj13 = nullptr,
                     .obj14 = nullptr,
                     .extension = nullptr},
    .tick_class = {.extension = nullptr                              },
};

WidgetClass xmXrtGaTickObjectClass = reinterpret_cast<WidgetClass>(&tickClassRec);
