#include "platform/wmenh/RowLayout.h"

#include <Xm/Xm.h>

#include <algorithm>

namespace wmenh {
namespace {

constexpr int controlGap = 8;
constexpr int rowGap = 8;

struct Size {
    int width = 0, height = 0;
};

// What a control asks for; a canvas has no wish of its own but the size that its program gave it.
Size preferredSize(Widget widget)
{
    XtWidgetGeometry wish{};
    XtQueryGeometry(widget, nullptr, &wish);
    Dimension width = 0, height = 0;
    XtVaGetValues(widget, XmNwidth, &width, XmNheight, &height, nullptr);
    return {wish.request_mode & CWWidth ? wish.width : width,
            wish.request_mode & CWHeight ? wish.height : height};
}

Size givenSize(Widget widget)
{
    Dimension width = 0, height = 0;
    XtVaGetValues(widget, XmNwidth, &width, XmNheight, &height, nullptr);
    return {width, height};
}

} // namespace

void RowLayout::add(Widget control, Kind kind)
{
    const Item* const left = row.empty() ? nullptr : &row.back();
    const bool touching = !left || (kind == Kind::Canvas && left->kind == Kind::Canvas);
    const Item item{control, kind, offsetLeft + (touching ? 0 : controlGap), offsetTop, offsetBottom, false};
    if (left)
        XtVaSetValues(control, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, left->widget, XmNleftOffset,
                      item.left, nullptr);
    else
        XtVaSetValues(control, XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, item.left, nullptr);
    attachTop(item, 0);
    row.push_back(item);
    lastControl = control;
    XtManageChild(control);
}

void RowLayout::attachTop(const Item& item, int extra) const
{
    const int offset = item.top + extra;
    if (above)
        XtVaSetValues(item.widget, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, above, XmNtopOffset,
                      offset + gapAbove, nullptr);
    else
        XtVaSetValues(item.widget, XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, offset, nullptr);
}

void RowLayout::setOffset(int left, int right, int top, int bottom)
{
    offsetLeft = left;
    offsetRight = right;
    offsetTop = top;
    offsetBottom = bottom;
}

void RowLayout::attachRightSide()
{
    if (row.empty())
        return;
    row.back().rightAttached = true;
    XtVaSetValues(lastControl, XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, offsetRight, nullptr);
}

void RowLayout::newRow()
{
    if (row.empty())
        return;
    int tallest = -1;
    int bottom = 0;
    Widget anchor = nullptr;
    for (const Item& item : row) {
        const int height = preferredSize(item.widget).height;
        bottom = std::max(bottom, item.bottom);
        if (height > tallest) {
            tallest = height;
            anchor = item.widget;
        }
    }
    for (const Item& item : row)
        if (item.kind == Kind::Control)
            attachTop(item, (tallest - preferredSize(item.widget).height) / 2);
    above = anchor;
    gapAbove = rowGap + bottom;
    rows.push_back(std::move(row));
    row.clear();
}

int RowLayout::neededWidth(int canvasWidth) const
{
    int widest = 0;
    for (const auto& items : rows) {
        int width = 0;
        for (const Item& item : items) {
            const int own = item.kind == Kind::Control ? preferredSize(item.widget).width
                                                       : std::min(givenSize(item.widget).width, canvasWidth);
            width += item.left + own;
        }
        widest = std::max(widest, width);
    }
    return widest;
}

int RowLayout::canvasHeight() const
{
    int tallest = 0;
    for (const auto& items : rows)
        for (const Item& item : items)
            if (item.kind == Kind::Canvas)
                tallest = std::max(tallest, givenSize(item.widget).height);
    return tallest;
}

} // namespace wmenh
