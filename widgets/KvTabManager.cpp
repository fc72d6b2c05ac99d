// SPDX-License-Identifier: MIT
#include "widgets/KvTabManagerP.h"

#include "widgets/ClassRecord.h"
#include "widgets/Layout.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using Pages = std::vector<Widget>;

KvTabManagerRec* asManager(Widget widget)
{
    return reinterpret_cast<KvTabManagerRec*>(widget);
}

KvTabManagerConstraintPart& constraintsOf(Widget child)
{
    return reinterpret_cast<KvTabManagerConstraintRec*>(child->core.constraints)->kv;
}

Pages& pagesOf(Widget manager)
{
    return *asManager(manager)->kv.pages;
}

#define MANAGER_FIELD(name) XtOffsetOf(KvTabManagerRec, kv.name)
#define CHILD_FIELD(name) XtOffsetOf(KvTabManagerConstraintRec, kv.name)

XtResource resources[] = {
    pointerRow(XmNkvCurrentPage, "KvCurrentPage", XmRWidget, MANAGER_FIELD(currentPage)),
    computedRow(XmNmarginWidth, XmCMarginWidth, XmRHorizontalDimension, sizeof(Dimension),
                MANAGER_FIELD(marginWidth), widgets::scaledDimension<4>),
    computedRow(XmNmarginHeight, XmCMarginHeight, XmRVerticalDimension, sizeof(Dimension),
                MANAGER_FIELD(marginHeight), widgets::scaledDimension<4>),
    callbackRow(XmNvalueChangedCallback, MANAGER_FIELD(changedCallback)),
    callbackRow(XmNkvCloseCallback, MANAGER_FIELD(closeCallback)),
    callbackRow(XmNkvReorderCallback, MANAGER_FIELD(reorderCallback)),
};

XtResource constraints[] = {
    widgets::textRow(XmNkvTabText, "KvTabText", CHILD_FIELD(text)),
    flagRow(XmNkvTabClosable, "KvTabClosable", CHILD_FIELD(closable), true),
};

int stripHeight(Widget manager)
{
    int height = 0;
    for (const Widget page : pagesOf(manager))
        height = std::max(height, widgets::preferredSizeOf(constraintsOf(page).tab).height);
    return height;
}

widgets::Size preferredSize(Widget manager, Widget)
{
    const KvTabManagerPart& part = asManager(manager)->kv;
    widgets::Size size;
    int tabs = 0;
    for (const Widget page : pagesOf(manager)) {
        const widgets::Size wanted = widgets::preferredSizeOf(page);
        size = {std::max(size.width, wanted.width), std::max(size.height, wanted.height)};
        tabs += widgets::preferredSizeOf(constraintsOf(page).tab).width;
    }
    return {std::max(size.width + 2 * part.marginWidth, tabs),
            size.height + 2 * part.marginHeight + stripHeight(manager)};
}

// Tabs have the widths that they want, and shrink alike where the strip is too short for that.
void layOutTabs(Widget manager, int height)
{
    int wanted = 0;
    for (const Widget page : pagesOf(manager))
        wanted += widgets::preferredSizeOf(constraintsOf(page).tab).width;
    const double share = wanted > manager->core.width ? 1.0 * manager->core.width / wanted : 1;
    double x = 0;
    for (const Widget page : pagesOf(manager)) {
        const Widget tab = constraintsOf(page).tab;
        const double width = widgets::preferredSizeOf(tab).width * share;
        widgets::configure(tab, static_cast<int>(x), 0,
                           {static_cast<int>(x + width) - static_cast<int>(x), height}, nullptr);
        x += width;
    }
}

void layOut(Widget manager, Widget asking)
{
    const KvTabManagerPart& part = asManager(manager)->kv;
    const int strip = stripHeight(manager);
    layOutTabs(manager, strip);
    const widgets::Size room{manager->core.width - 2 * part.marginWidth,
                             manager->core.height - strip - 2 * part.marginHeight};
    for (const Widget page : pagesOf(manager))
        widgets::configure(page, part.marginWidth, strip + part.marginHeight, room, asking);
    if (XtIsRealized(manager))
        XClearArea(XtDisplay(manager), XtWindow(manager), 0, 0, 0, 0, True);
}

using Arrangement = widgets::Arrangement<preferredSize, layOut>;

// Exactly the current page is mapped.
void showCurrent(Widget manager)
{
    KvTabManagerPart& part = asManager(manager)->kv;
    if (std::find(part.pages->begin(), part.pages->end(), part.currentPage) == part.pages->end())
        part.currentPage = part.pages->empty() ? nullptr : part.pages->front();
    for (const Widget page : *part.pages) {
        XtVaSetValues(constraintsOf(page).tab, XmNkvTabSelected, page == part.currentPage, nullptr);
        XtSetMappedWhenManaged(page, page == part.currentPage);
    }
}

void tell(Widget page, XtCallbackList list, XEvent* event)
{
    widgets::callBack(XtParent(page), list, XmKvTabCallbackStruct{XmCR_VALUE_CHANGED, event, page, True});
}

void changeManaged(Widget manager)
{
    Pages& pages = pagesOf(manager);
    for (const Widget child : widgets::managedChildren(manager)) {
        const bool isPage = constraintsOf(child).tab != nullptr;
        if (isPage && std::find(pages.begin(), pages.end(), child) == pages.end()) {
            pages.push_back(child);
            XtManageChild(constraintsOf(child).tab);
        }
    }
    for (const Widget page : Pages(pages)) {
        if (XtIsManaged(page))
            continue;
        std::erase(pages, page);
        XtUnmanageChild(constraintsOf(page).tab);
    }
    showCurrent(manager);
    Arrangement::changeManaged(manager);
}

// A line under the tabs, open below the selected one.
void expose(Widget manager, XEvent*, Region)
{
    const KvTabManagerRec* record = asManager(manager);
    const int thickness = widgets::scaled(manager, 1);
    const int y = stripHeight(manager) - thickness;
    int end = 0;
    for (const Widget page : pagesOf(manager))
        end = std::max(end, constraintsOf(page).tab->core.x + constraintsOf(page).tab->core.width);
    if (end < record->core.width)
        XFillRectangle(XtDisplay(manager), XtWindow(manager), record->manager.bottom_shadow_GC, end, y,
                       static_cast<unsigned>(record->core.width - end), static_cast<unsigned>(thickness));
}

void initialize(Widget, Widget created, ArgList, Cardinal*)
{
    asManager(created)->kv.pages = std::make_unique<Pages>().release();
}

void destroy(Widget widget)
{
    const std::unique_ptr<Pages> pages(asManager(widget)->kv.pages);
}

Boolean setValues(Widget oldWidget, Widget, Widget widget, ArgList, Cardinal*)
{
    const KvTabManagerPart &old = asManager(oldWidget)->kv, &now = asManager(widget)->kv;
    if (old.currentPage != now.currentPage)
        showCurrent(widget);
    if (old.marginWidth != now.marginWidth || old.marginHeight != now.marginHeight)
        layOut(widget, nullptr);
    return False;
}

const char* tabTextOf(Widget page)
{
    const char* text = constraintsOf(page).text;
    return text ? text : XtName(page);
}

void initializeChild(Widget, Widget child, ArgList, Cardinal*)
{
    KvTabManagerConstraintPart& part = constraintsOf(child);
    widgets::keepCopy(part.text);
    part.tab = nullptr;
    if (XtIsSubclass(child, xmKvTabButtonWidgetClass))
        return;
    part.tab =
        XtVaCreateWidget("tab", xmKvTabButtonWidgetClass, XtParent(child), XmNkvTabText, tabTextOf(child),
                         XmNkvTabClosable, part.closable, XmNkvTabPage, child, nullptr);
}

void destroyChild(Widget child)
{
    XtFree(constraintsOf(child).text);
    const Widget manager = XtParent(child);
    if (constraintsOf(child).tab && !manager->core.being_destroyed)
        XtDestroyWidget(constraintsOf(child).tab);
}

Boolean setChildValues(Widget oldChild, Widget, Widget child, ArgList, Cardinal*)
{
    KvTabManagerConstraintPart &now = constraintsOf(child), &old = constraintsOf(oldChild);
    const bool other = widgets::takeText(now.text, old.text) || now.closable != old.closable;
    if (other && now.tab)
        XtVaSetValues(now.tab, XmNkvTabText, tabTextOf(child), XmNkvTabClosable, now.closable, nullptr);
    return False;
}

Pages::iterator placeOf(Widget page)
{
    return std::find(pagesOf(XtParent(page)).begin(), pagesOf(XtParent(page)).end(), page);
}

// The page at a distance of -1 or 1; null at the ends.
Widget neighbourOf(Widget page, int distance)
{
    const Pages& pages = pagesOf(XtParent(page));
    const auto place = placeOf(page) - pages.begin() + distance;
    return place >= 0 && place < std::ssize(pages) ? pages[static_cast<std::size_t>(place)] : nullptr;
}

void swapWith(Widget page, Widget neighbour)
{
    std::iter_swap(placeOf(page), placeOf(neighbour));
    layOut(XtParent(page), nullptr);
}

} // namespace

namespace widgets {

void tabSelected(Widget page, XEvent* event)
{
    const Widget manager = XtParent(page);
    if (asManager(manager)->kv.currentPage == page)
        return;
    XmKvTabManagerShow(manager, page);
    tell(page, asManager(manager)->kv.changedCallback, event);
}

void tabClosed(Widget page, XEvent* event)
{
    XmKvTabCallbackStruct data{XmCR_VALUE_CHANGED, event, page, True};
    const Widget manager = XtParent(page);
    XtCallCallbackList(manager, asManager(manager)->kv.closeCallback, &data);
    if (!data.doit)
        return;
    Widget next = neighbourOf(page, 1);
    if (!next)
        next = neighbourOf(page, -1);
    if (next && asManager(manager)->kv.currentPage == page)
        tabSelected(next, event);
    if (next)
        XmProcessTraversal(constraintsOf(next).tab, XmTRAVERSE_CURRENT);
    XtDestroyWidget(page);
}

// A tab changes places with its neighbour when the pointer has passed the neighbour's middle.
void tabDragged(Widget page, int x)
{
    for (const int distance : {-1, 1}) {
        const Widget neighbour = neighbourOf(page, distance);
        if (!neighbour)
            continue;
        const Widget tab = constraintsOf(neighbour).tab;
        const int middle = tab->core.x + tab->core.width / 2;
        if (distance < 0 ? x < middle : x > middle) {
            swapWith(page, neighbour);
            return tabDragged(page, x); // a quick pointer may have passed several
        }
    }
}

void tabDropped(Widget page, XEvent* event)
{
    tell(page, asManager(XtParent(page))->kv.reorderCallback, event);
}

void neighbourSelected(Widget page, int distance, XEvent* event)
{
    const Widget neighbour = neighbourOf(page, distance);
    if (!neighbour)
        return;
    tabSelected(neighbour, event);
    XmProcessTraversal(constraintsOf(neighbour).tab, XmTRAVERSE_CURRENT);
}

void tabMoved(Widget page, int distance, XEvent* event)
{
    if (const Widget neighbour = neighbourOf(page, distance)) {
        swapWith(page, neighbour);
        tabDropped(page, event);
    }
}

} // namespace widgets

KvManagerClassRec kvTabManagerClassRec =
    widgets::managerClass("XmKvTabManager", sizeof(KvTabManagerRec), resources,
                          {.initialize = initialize,
                           .destroy = destroy,
                           .resize = Arrangement::resize,
                           .expose = expose,
                           .setValues = setValues,
                           .queryGeometry = Arrangement::queryGeometry},
                          widgets::compositePart(Arrangement::manageGeometry, changeManaged),
                          {.resources = constraints,
                           .recordSize = sizeof(KvTabManagerConstraintRec),
                           .initialize = initializeChild,
                           .destroy = destroyChild,
                           .setValues = setChildValues});

WidgetClass xmKvTabManagerWidgetClass = reinterpret_cast<WidgetClass>(&kvTabManagerClassRec);

Widget XmCreateKvTabManager(Widget parent, const char* name, ArgList args, Cardinal count)
{
    return XtCreateWidget(name, xmKvTabManagerWidgetClass, parent, args, count);
}

void XmKvTabManagerShow(Widget manager, Widget page)
{
    asManager(manager)->kv.currentPage = page;
    showCurrent(manager);
}

Widget XmKvTabManagerPage(Widget manager, int place)
{
    const Pages& pages = pagesOf(manager);
    return place >= 0 && place < std::ssize(pages) ? pages[static_cast<std::size_t>(place)] : nullptr;
}
