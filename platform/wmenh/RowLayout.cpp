// SPDX-License-Identifier: MIT
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

// A canvas has no wish of its own but the size that its program gave it.
Size naturalSize(Widget widget, RowLayout::Kind kind)
{
    Dimension width = 0, height = 0;
    XtVaGetValues(widget, XmNwidth, &width, XmNheight, &height, nullptr);
    XtWidgetGeometry wish{};
    if (kind == RowLayout::Kind::Control)
        XtQueryGeometry(widget, nullptr, &wish);
    return {wish.request_mode & CWWidth ? wish.width : width,
            wish.request_mode & CWHeight ? wish.height : height};
}

} // namespace

void RowLayout::add(Widget control, Kind kind)
{
    const Item* const left = row.empty() ? nullptr : &row.back();
    const bool touching = !left || (kind == Kind::Canvas && left->kind == Kind::Canvas);
    const Item item{control, kind, offsetLeft + (touching ? 0 : controlGap), offsetTop, offsetBottom, 0, 0};
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
    XtVaSetValues(lastControl, XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, offsetRight, nullptr);
}

void RowLayout::newRow()
{
    if (row.empty())
        return;
    int bottom = 0;
    for (Item& item : row) {
        const Size size = naturalSize(item.widget, item.kind);
        item.width = size.width;
        item.height = size.height;
        bottom = std::max(bottom, item.bottom);
    }
    const Item& tallest = *std::max_element(row.begin(), row.end(),
                                            [](const Item& a, const Item& b) { return a.height < b.height; });
    for (const Item& item : row)
        if (item.kind == Kind::Control)
            attachTop(item, (tallest.height - item.height) / 2);
    above = tallest.widget;
    gapAbove = rowGap + bottom;
    rows.push_back(std::move(row));
    row.clear();
}

int RowLayout::neededWidth(int canvasWidth) const
{
    int widest = 0;
    for (const auto& items : rows) {
        int width = 0;
        for (const Item& item : items)
            width +=
                item.left + (item.kind == Kind::Control ? item.width : std::min(item.width, canvasWidth));
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
                tallest = std::max(tallest, item.height);
    return tallest;
}

} // namespace wmenh
