// SPDX-License-Identifier: MIT
// The gauge's lists of scales and ticks.
#include "gauge/LinearGaugeP.h"
#include "gauge/TickP.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace {

void append(WidgetList& list, Widget item)
{
    const std::size_t count = itemsOf(list).size();
    list = reinterpret_cast<WidgetList>(
        XtRealloc(reinterpret_cast<char*>(list), static_cast<Cardinal>((count + 2) * sizeof(Widget))));
    list[count] = item;
    list[count + 1] = nullptr;
}

void remove(WidgetList& list, Widget item)
{
    const std::span<Widget> items = itemsOf(list);
    Widget* kept = std::remove(list, list + items.size(), item);
    if (kept == list + items.size())
        return;
    *kept = nullptr;
    if (kept != list)
        return;
    XtFree(reinterpret_cast<char*>(list));
    list = nullptr;
}

WidgetList& listFor(LinearGaugeRec* gauge, Widget object)
{
    return XtIsSubclass(object, xmXrtGaTickObjectClass) ? gauge->gauge.ticks : gauge->gauge.scales;
}

void keepList(Widget widget, WidgetList& changed, WidgetList old, const char* name)
{
    if (changed == old)
        return;
    changed = old;
    XtAppWarningMsg(XtWidgetToApplicationContext(widget), "readOnly", "setValues", "XmXrtGaError",
                    (std::string("The list ") + name + " is kept by the gauge and can't be set.").c_str(),
                    nullptr, nullptr);
}

} // namespace

LinearGaugeRec* gaugeOf(Widget object)
{
    Widget parent = XtParent(object);
    return parent && XtIsSubclass(parent, xmXrtGaLinearGaugeWidgetClass)
               ? reinterpret_cast<LinearGaugeRec*>(parent)
               : nullptr;
}

void gaugeAdopt(Widget object)
{
    if (LinearGaugeRec* gauge = gaugeOf(object)) {
        append(listFor(gauge, object), object);
        gaugeChanged(object);
        return;
    }
    XtAppWarningMsg(XtWidgetToApplicationContext(object), "parent", "initialize", "XmXrtGaError",
                    "A scale or tick object needs a linear gauge as its parent; it will not be shown.",
                    nullptr, nullptr);
}

void gaugeRelease(Widget object)
{
    LinearGaugeRec* gauge = gaugeOf(object);
    if (!gauge)
        return;
    remove(listFor(gauge, object), object);
    for (Widget tick : itemsOf(gauge->gauge.ticks)) {
        TickPart& part = reinterpret_cast<TickRec*>(tick)->tick;
        if (part.scale == object)
            part.scale = nullptr;
    }
    gaugeRepaint(gauge);
}

void gaugeChanged(Widget object)
{
    if (LinearGaugeRec* gauge = gaugeOf(object))
        gaugeRepaint(gauge);
}

void gaugeKeepLists(LinearGaugeRec* gauge, const LinearGaugeRec* old)
{
    const Widget widget = reinterpret_cast<Widget>(gauge);
    keepList(widget, gauge->gauge.scales, old->gauge.scales, XmNxrtGaLinearScaleList);
    keepList(widget, gauge->gauge.ticks, old->gauge.ticks, XmNxrtGaTickList);
}

void gaugeDestroyChildren(LinearGaugeRec* gauge)
{
    const std::span<Widget> ticks = itemsOf(gauge->gauge.ticks), scales = itemsOf(gauge->gauge.scales);
    std::vector<Widget> children(ticks.begin(), ticks.end());
    children.insert(children.end(), scales.begin(), scales.end());
    for (Widget child : children)
        XtDestroyWidget(child);
}
