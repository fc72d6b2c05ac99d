// SPDX-License-Identifier: MIT
#include "widgets/KvToolBarP.h"

#include "platform/text/MotifText.h"
#include "widgets/ClassRecord.h"
#include "widgets/Layout.h"

#include <Xm/ArrowB.h>
#include <Xm/DrawP.h>
#include <Xm/LabelP.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

using widgets::configure;
using widgets::preferredSizeOf;
using widgets::Size;

constexpr int usualMargin = 2, usualSpacing = 2, groupGapInSpacings = 4;

KvToolBarRec* asBar(Widget widget)
{
    return reinterpret_cast<KvToolBarRec*>(widget);
}

KvToolBarConstraintPart& constraintsOf(Widget child)
{
    return reinterpret_cast<KvToolBarConstraintRec*>(child->core.constraints)->kv;
}

#define BAR_FIELD(name) XtOffsetOf(KvToolBarRec, kv.name)
#define CHILD_FIELD(name) XtOffsetOf(KvToolBarConstraintRec, kv.name)

XtResource resources[] = {
    computedRow(XmNmarginWidth, XmCMarginWidth, XmRHorizontalDimension, sizeof(Dimension),
                BAR_FIELD(marginWidth), widgets::scaledDimension<usualMargin>),
    computedRow(XmNmarginHeight, XmCMarginHeight, XmRVerticalDimension, sizeof(Dimension),
                BAR_FIELD(marginHeight), widgets::scaledDimension<usualMargin>),
    computedRow(XmNspacing, XmCSpacing, XmRHorizontalDimension, sizeof(Dimension), BAR_FIELD(spacing),
                widgets::scaledDimension<usualSpacing>),
    intRow(XmNkvHiddenCount, "KvHiddenCount", BAR_FIELD(hiddenCount), 0),
    dimensionRow(XmNshadowThickness, XmCShadowThickness, XmRHorizontalDimension,
                 XtOffsetOf(KvToolBarRec, manager.shadow_thickness), 0),
};

XtResource constraints[] = {
    intRow(XmNkvGroup, "KvGroup", CHILD_FIELD(group), 0),
    widgets::textRow(XmNkvMenuText, "KvMenuText", CHILD_FIELD(menuText)),
};

std::vector<Widget> rowOf(const KvToolBarRec* bar)
{
    std::vector<Widget> children =
        widgets::managedChildren(reinterpret_cast<Widget>(const_cast<KvToolBarRec*>(bar)));
    std::erase(children, bar->kv.arrow);
    return children;
}

struct Place {
    Widget child;
    int x; // of its left edge
    Size size;
};

int gapBetween(const KvToolBarRec* bar, Widget left, Widget right)
{
    const bool parted = constraintsOf(left).group != constraintsOf(right).group;
    return bar->kv.spacing * (parted ? groupGapInSpacings : 1);
}

// The whole row, as if there were room for all.
std::vector<Place> placesOf(const KvToolBarRec* bar)
{
    std::vector<Place> places;
    int x = bar->kv.marginWidth;
    for (const Widget child : rowOf(bar)) {
        if (!places.empty())
            x += gapBetween(bar, places.back().child, child);
        places.push_back({child, x, preferredSizeOf(child)});
        x += places.back().size.width;
    }
    return places;
}

Size preferredSize(Widget widget, Widget)
{
    const KvToolBarRec* bar = asBar(widget);
    const std::vector<Place> places = placesOf(bar);
    Size size{2 * bar->kv.marginWidth, 0};
    for (const Place& place : places)
        size.height = std::max(size.height, place.size.height);
    if (!places.empty())
        size.width = places.back().x + places.back().size.width + bar->kv.marginWidth;
    return {std::max(size.width, 1), size.height + 2 * bar->kv.marginHeight};
}

void setHidden(Widget child, bool hidden)
{
    if (constraintsOf(child).hidden == hidden)
        return;
    constraintsOf(child).hidden = static_cast<Boolean>(hidden);
    XtSetMappedWhenManaged(child, hidden ? False : True);
}

// Buttons fill the height of the row; other controls keep theirs and stand in the middle.
void put(const KvToolBarRec* bar, const Place& place, Widget asking)
{
    const int room = std::max(1, bar->core.height - 2 * bar->kv.marginHeight);
    const bool fills = XmIsLabel(place.child);
    const int height = fills ? room : std::min(room, place.size.height);
    configure(place.child, place.x, bar->kv.marginHeight + (room - height) / 2, {place.size.width, height},
              asking);
}

void putArrow(KvToolBarRec* bar, int width)
{
    const int height = std::max(1, bar->core.height - 2 * bar->kv.marginHeight);
    configure(bar->kv.arrow, std::max(0, bar->core.width - bar->kv.marginWidth - width), bar->kv.marginHeight,
              {width, height}, nullptr);
    XtSetMappedWhenManaged(bar->kv.arrow, bar->kv.hiddenCount > 0 ? True : False);
}

void layOut(Widget widget, Widget asking)
{
    KvToolBarRec* bar = asBar(widget);
    const std::vector<Place> places = placesOf(bar);
    const int arrowWidth = widgets::scaled(widget, 20);
    int end = bar->core.width - bar->kv.marginWidth;
    if (!places.empty() && places.back().x + places.back().size.width > end)
        end -= arrowWidth + bar->kv.spacing;
    bar->kv.hiddenCount = 0;
    for (const Place& place : places) {
        // Once one does not fit, none behind it is shown, so that the order stays.
        const bool hidden = bar->kv.hiddenCount > 0 || place.x + place.size.width > end;
        bar->kv.hiddenCount += hidden;
        setHidden(place.child, hidden);
        put(bar, place, asking);
    }
    putArrow(bar, arrowWidth);
    if (XtIsRealized(widget))
        XClearArea(XtDisplay(widget), XtWindow(widget), 0, 0, 0, 0, True);
}

using Arrangement = widgets::Arrangement<preferredSize, layOut>;

void drawPartingLine(KvToolBarRec* bar, Widget left, Widget right)
{
    const int middle = (left->core.x + left->core.width + right->core.x) / 2;
    const int thickness = widgets::scaled(reinterpret_cast<Widget>(bar), 1);
    const int inset = bar->kv.marginHeight + widgets::scaled(reinterpret_cast<Widget>(bar), 3);
    const int height = std::max(1, bar->core.height - 2 * inset);
    Display* display = bar->core.screen->display;
    XFillRectangle(display, bar->core.window, bar->manager.bottom_shadow_GC, middle - thickness, inset,
                   static_cast<unsigned>(thickness), static_cast<unsigned>(height));
    XFillRectangle(display, bar->core.window, bar->manager.top_shadow_GC, middle, inset,
                   static_cast<unsigned>(thickness), static_cast<unsigned>(height));
}

void expose(Widget widget, XEvent*, Region)
{
    KvToolBarRec* bar = asBar(widget);
    const std::vector<Widget> children = rowOf(bar);
    for (std::size_t i = 1; i < children.size() && !constraintsOf(children[i]).hidden; ++i)
        if (constraintsOf(children[i - 1]).group != constraintsOf(children[i]).group)
            drawPartingLine(bar, children[i - 1], children[i]);
}

// The item does what the child would do: actions and callbacks are the child's own.
void activateChild(Widget, XtPointer data, XtPointer callData)
{
    const auto child = static_cast<Widget>(data);
    XEvent* event = static_cast<XmAnyCallbackStruct*>(callData)->event;
    XtCallActionProc(child, "ArmAndActivate", event, nullptr, 0);
}

text::MotifString menuTextOf(Widget child)
{
    if (const char* text = constraintsOf(child).menuText)
        return text::MotifString(text);
    XmString label = nullptr;
    XtVaGetValues(child, XmNlabelString, &label, nullptr);
    return text::MotifString(label);
}

void addItem(Widget menu, Widget child)
{
    const bool toggle = XtIsSubclass(child, xmToggleButtonWidgetClass);
    const text::MotifString text = menuTextOf(child);
    const Widget item = XtVaCreateManagedWidget(
        XtName(child), toggle ? xmToggleButtonWidgetClass : xmPushButtonWidgetClass, menu, XmNlabelString,
        text.get(), XmNsensitive, XtIsSensitive(child), nullptr);
    if (toggle)
        XtVaSetValues(item, XmNset, XmToggleButtonGetState(child), XmNvisibleWhenOff, True, nullptr);
    XtAddCallback(item, toggle ? XmNvalueChangedCallback : XmNactivateCallback, activateChild, child);
}

void fillMenu(const KvToolBarRec* bar)
{
    const Widget menu = bar->kv.menu;
    const Widget* last = nullptr;
    const std::vector<Widget> children = rowOf(bar);
    for (const Widget& child : children) {
        const bool possible =
            XtIsSubclass(child, xmPushButtonWidgetClass) || XtIsSubclass(child, xmToggleButtonWidgetClass);
        if (!constraintsOf(child).hidden || !possible)
            continue;
        if (last && constraintsOf(*last).group != constraintsOf(child).group)
            XtVaCreateManagedWidget("line", xmSeparatorWidgetClass, menu, nullptr);
        addItem(menu, child);
        last = &child;
    }
}

void openMenu(Widget arrow, XtPointer, XtPointer)
{
    KvToolBarRec* bar = asBar(XtParent(arrow));
    if (bar->kv.menu)
        XtDestroyWidget(bar->kv.menu);
    Arg args[] = {{const_cast<char*>(XmNpopupEnabled), XmPOPUP_DISABLED}};
    bar->kv.menu = XmCreatePopupMenu(XtParent(arrow), const_cast<char*>("kvMenu"), args, XtNumber(args));
    fillMenu(bar);
    XButtonPressedEvent place{};
    Window child = None;
    XTranslateCoordinates(XtDisplay(arrow), XtWindow(arrow), RootWindowOfScreen(XtScreen(arrow)), 0,
                          arrow->core.height, &place.x_root, &place.y_root, &child);
    XmMenuPosition(bar->kv.menu, &place);
    XtManageChild(bar->kv.menu);
}

void initialize(Widget, Widget created, ArgList, Cardinal*)
{
    KvToolBarRec* bar = asBar(created);
    bar->kv.hiddenCount = 0;
    bar->kv.menu = nullptr;
    bar->kv.arrow = nullptr;
    bar->kv.arrow =
        XtVaCreateWidget("kvMore", xmArrowButtonWidgetClass, created, XmNarrowDirection, XmARROW_DOWN,
                         XmNshadowThickness, 0, XmNmappedWhenManaged, False, nullptr);
    XtAddCallback(bar->kv.arrow, XmNactivateCallback, openMenu, nullptr);
    XtManageChild(bar->kv.arrow);
}

bool sameMeasures(const KvToolBarPart& a, const KvToolBarPart& b)
{
    return a.marginWidth == b.marginWidth && a.marginHeight == b.marginHeight && a.spacing == b.spacing;
}

Boolean setValues(Widget oldWidget, Widget, Widget widget, ArgList, Cardinal*)
{
    asBar(widget)->kv.hiddenCount = asBar(oldWidget)->kv.hiddenCount;
    if (sameMeasures(asBar(widget)->kv, asBar(oldWidget)->kv))
        return False;
    layOut(widget, nullptr);
    return True;
}

void initializeChild(Widget, Widget child, ArgList, Cardinal*)
{
    constraintsOf(child).hidden = False;
    widgets::keepCopy(constraintsOf(child).menuText);
}

void destroyChild(Widget child)
{
    XtFree(constraintsOf(child).menuText);
}

Boolean setChildValues(Widget oldChild, Widget, Widget child, ArgList, Cardinal*)
{
    widgets::takeText(constraintsOf(child).menuText, constraintsOf(oldChild).menuText);
    if (constraintsOf(child).group != constraintsOf(oldChild).group && XtIsManaged(child))
        layOut(XtParent(child), child);
    return False;
}

} // namespace

KvManagerClassRec kvToolBarClassRec = widgets::managerClass("XmKvToolBar", sizeof(KvToolBarRec), resources,
                                                            {.initialize = initialize,
                                                             .resize = Arrangement::resize,
                                                             .expose = expose,
                                                             .setValues = setValues,
                                                             .queryGeometry = Arrangement::queryGeometry},
                                                            Arrangement::composite(),
                                                            {.resources = constraints,
                                                             .recordSize = sizeof(KvToolBarConstraintRec),
                                                             .initialize = initializeChild,
                                                             .destroy = destroyChild,
                                                             .setValues = setChildValues});

WidgetClass xmKvToolBarWidgetClass = reinterpret_cast<WidgetClass>(&kvToolBarClassRec);

Widget XmCreateKvToolBar(Widget parent, const char* name, ArgList args, Cardinal count)
{
    return XtCreateWidget(name, xmKvToolBarWidgetClass, parent, args, count);
}
