// SPDX-License-Identifier: MIT
// What the set's managers share: sizes that children want, and giving children their places.
#pragma once

#include "widgets/ClassRecord.h"
#include "widgets/Scale.h"

#include <Xm/ManagerP.h>
#include <Xm/XmP.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace widgets {

// In pixels, borders included.
struct Size {
    int width = 0, height = 0;
};

inline Size preferredSizeOf(Widget child)
{
    XtWidgetGeometry preferred;
    XtQueryGeometry(child, nullptr, &preferred);
    const int borders = 2 * child->core.border_width;
    return {preferred.width + borders, preferred.height + borders};
}

// A child that is asking for its size itself is configured by the toolkit from these fields; null: none asks.
inline void configure(Widget child, int x, int y, Size size, Widget asking)
{
    const auto width = static_cast<Dimension>(std::max(1, size.width - 2 * child->core.border_width));
    const auto height = static_cast<Dimension>(std::max(1, size.height - 2 * child->core.border_width));
    if (child != asking)
        return XmeConfigureObject(child, static_cast<Position>(x), static_cast<Position>(y), width, height,
                                  child->core.border_width);
    child->core.x = static_cast<Position>(x);
    child->core.y = static_cast<Position>(y);
    child->core.width = width;
    child->core.height = height;
}

// Asks the manager's parent for a size, and takes what it offers instead.
inline void askForSize(Widget manager, Size size)
{
    auto width = static_cast<Dimension>(std::max(1, size.width));
    auto height = static_cast<Dimension>(std::max(1, size.height));
    if (XtMakeResizeRequest(manager, width, height, &width, &height) == XtGeometryAlmost)
        XtMakeResizeRequest(manager, width, height, nullptr, nullptr);
}

inline XtGeometryResult replyWithSize(Widget manager, XtWidgetGeometry* request, XtWidgetGeometry* reply,
                                      Size size)
{
    reply->width = static_cast<Dimension>(std::max(1, size.width));
    reply->height = static_cast<Dimension>(std::max(1, size.height));
    return XmeReplyToQueryGeometry(manager, request, reply);
}

// The geometry methods of a manager that is described by two functions: preferredSize tells the size that it
// wants, layOut gives its children their places. The second argument of both is the child that is asking for
// a size of its own; null: none asks.
template<Size (*preferredSize)(Widget manager, Widget asking), void (*layOut)(Widget manager, Widget asking)>
struct Arrangement {
    static void resize(Widget manager) { layOut(manager, nullptr); }

    static void changeManaged(Widget manager)
    {
        arrange(manager, nullptr);
        XmeNavigChangeManaged(manager);
    }

    static XtGeometryResult manageGeometry(Widget child, XtWidgetGeometry* request, XtWidgetGeometry*)
    {
        if (request->request_mode & XtCWQueryOnly)
            return XtGeometryYes;
        if (request->request_mode & CWBorderWidth)
            child->core.border_width = request->border_width;
        arrange(XtParent(child), child);
        return XtGeometryYes;
    }

    static XtGeometryResult queryGeometry(Widget manager, XtWidgetGeometry* request, XtWidgetGeometry* reply)
    {
        return replyWithSize(manager, request, reply, preferredSize(manager, nullptr));
    }

    static CompositeClassPart composite() { return compositePart(manageGeometry, changeManaged); }

private:
    static void arrange(Widget manager, Widget asking)
    {
        askForSize(manager, preferredSize(manager, asking));
        layOut(manager, asking);
    }
};

inline std::vector<Widget> managedChildren(Widget manager)
{
    const CompositePart& part = reinterpret_cast<CompositeWidget>(manager)->composite;
    std::vector<Widget> children;
    std::copy_if(part.children, part.children + part.num_children, std::back_inserter(children),
                 [](Widget child) { return XtIsManaged(child); });
    return children;
}

// The default of a dimension: pixels of 96 dots per inch.
template<int pixels> void scaledDimension(Widget widget, int, XrmValue* value)
{
    static Dimension size;
    size = static_cast<Dimension>(scaled(widget, pixels));
    value->size = sizeof size;
    value->addr = reinterpret_cast<XPointer>(&size);
}

} // namespace widgets
