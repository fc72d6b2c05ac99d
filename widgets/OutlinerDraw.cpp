// SPDX-License-Identifier: MIT
// What an outliner shows, and where.
#include "widgets/KvOutlinerP.h"
#include "widgets/Painter.h"
#include "widgets/Scale.h"

#include <Xm/DrawP.h>

#include <algorithm>
#include <string>
#include <vector>

namespace widgets {

OutlinerLayout outlinerLayout(Widget widget)
{
    const KvOutlinerRec* outliner = asOutliner(widget);
    const TextFont font(widget, outliner->kv.renderTable);
    OutlinerLayout layout{};
    layout.edge = outliner->primitive.highlight_thickness + outliner->primitive.shadow_thickness;
    layout.lineHeight = font.height() + scaled(widget, 4);
    layout.margin = scaled(widget, 5);
    layout.indent = scaled(widget, 14);
    layout.thumbWidth = scaled(widget, 13);
    layout.top = layout.edge + (stateOf(widget).headings.empty() ? 0 : layout.lineHeight + scaled(widget, 2));
    layout.right = outliner->core.width - layout.edge - layout.thumbWidth;
    layout.rowsInSight = std::max(1, (outliner->core.height - layout.edge - layout.top) / layout.lineHeight);
    return layout;
}

ThumbBox thumbOf(Widget widget, const OutlinerLayout& layout)
{
    const int count = static_cast<int>(stateOf(widget).rows.shown().size());
    const int height = std::max(1, widget->core.height - layout.edge - layout.top);
    const int hidden = count - layout.rowsInSight;
    if (hidden <= 0)
        return {layout.top, height, 0};
    const int least = std::min(height, 2 * layout.thumbWidth);
    const auto share = static_cast<int>(static_cast<long>(height) * layout.rowsInSight / count);
    const int thumb = std::max(least, share), room = height - thumb;
    return {layout.top + static_cast<int>(static_cast<long>(room) * stateOf(widget).first / hidden), thumb,
            room};
}

int columnLeft(Widget widget, const OutlinerLayout& layout, int column)
{
    const std::vector<int>& widths = stateOf(widget).columnWidths;
    int x = layout.edge;
    for (int i = 0; i < column && i < static_cast<int>(widths.size()); ++i)
        x += widths[static_cast<std::size_t>(i)];
    return column >= std::max(1, static_cast<int>(widths.size())) ? layout.right : std::min(x, layout.right);
}

namespace {

// Colours and measures of one drawing.
struct Drawing {
    Widget widget;
    Painter& painter;
    OutlinerLayout layout;
    TextFont font;
    Color ground, ink, paper, selected;

    Drawing(Widget owner, Painter& with, const Color& background)
        : widget(owner), painter(with), layout(outlinerLayout(owner)),
          font(owner, asOutliner(owner)->kv.renderTable), ground(background),
          ink(colorOf(owner, asOutliner(owner)->primitive.foreground)),
          paper(luminance(background) > 0.3 ? mix(background, {1, 1, 1}, 0.85)
                                            : mix(background, {0, 0, 0}, 0.2)),
          selected(colorOf(owner, asOutliner(owner)->kv.selectColor))
    {
    }
    int baseline(int top) const { return top + (layout.lineHeight - font.height()) / 2 + font.ascent(); }
    int columns() const { return std::max(1, static_cast<int>(stateOf(widget).headings.size())); }
};

void drawHeading(const Drawing& on, int column)
{
    const KvOutlinerPart& part = asOutliner(on.widget)->kv;
    const int left = columnLeft(on.widget, on.layout, column),
              right = columnLeft(on.widget, on.layout, column + 1);
    const int mark = part.sortColumn == column ? on.layout.indent : 0;
    const std::string text = on.font.fitted(stateOf(on.widget).headings[static_cast<std::size_t>(column)],
                                            right - left - 2 * on.layout.margin - mark);
    on.painter.text(on.font, text, left + on.layout.margin, on.baseline(on.layout.edge), on.ink);
    const double size = on.layout.indent * 0.6;
    if (mark > 0)
        on.painter.triangle(
            right - on.layout.margin - size, on.layout.edge + (on.layout.lineHeight - size) / 2, size,
            part.sortDescending ? Direction::Down : Direction::Up, mix(on.ground, on.ink, 0.7));
    if (column + 1 < on.columns())
        on.painter.fill(right - 1, on.layout.edge + 2, 1, on.layout.lineHeight - 4,
                        mix(on.ground, on.ink, 0.4));
}

void drawNode(const Drawing& on, const OutlineRow& row, int x, int top, const Color& color)
{
    const double size = on.layout.indent * 0.65;
    if (!row.children.empty())
        on.painter.triangle(x + (on.layout.indent - size) / 2, top + (on.layout.lineHeight - size) / 2, size,
                            row.open ? Direction::Down : Direction::Right, mix(color, on.paper, 0.3));
}

void drawRow(const Drawing& on, int place)
{
    OutlinerState& state = stateOf(on.widget);
    const ShownRow& shown = state.rows.shown()[static_cast<std::size_t>(place)];
    const bool isSelected = widgets::isSelected(on.widget, shown.row);
    const int top = on.layout.rowTop(place, state.first);
    const Color ink = !isSelected || luminance(on.selected) > 0.5 ? on.ink : Color{1, 1, 1};
    if (isSelected)
        on.painter.fill(on.layout.edge, top, on.layout.right - on.layout.edge, on.layout.lineHeight,
                        on.selected);
    for (int column = 0; column < on.columns(); ++column) {
        int left = columnLeft(on.widget, on.layout, column) + on.layout.margin;
        const int right = columnLeft(on.widget, on.layout, column + 1) - on.layout.margin;
        if (column == 0) {
            left += shown.depth * on.layout.indent;
            if (left < right)
                drawNode(on, state.rows.at(shown.row), left - on.layout.margin / 2, top, ink);
            left += on.layout.indent;
        }
        on.painter.text(on.font, on.font.fitted(state.rows.cell(shown.row, column), right - left), left,
                        on.baseline(top), ink);
    }
}

void drawThumb(const Drawing& on)
{
    const ThumbBox thumb = thumbOf(on.widget, on.layout);
    const double gap = on.layout.thumbWidth / 6.0;
    on.painter.fill(on.layout.right, on.layout.edge, on.layout.thumbWidth, on.widget->core.height, on.ground);
    if (thumb.room > 0)
        on.painter.fill(on.layout.right + gap, thumb.top, on.layout.thumbWidth - 2 * gap, thumb.height,
                        mix(on.ground, on.ink, stateOf(on.widget).grip == Grip::Thumb ? 0.6 : 0.4));
}

void drawRows(const Drawing& on)
{
    OutlinerState& state = stateOf(on.widget);
    const int count = static_cast<int>(state.rows.shown().size());
    const int bottom = on.widget->core.height - on.layout.edge;
    on.painter.fill(on.layout.edge, on.layout.top, on.layout.right - on.layout.edge, bottom - on.layout.top,
                    on.paper);
    for (int place = state.first; place < count && on.layout.rowTop(place, state.first) < bottom; ++place)
        drawRow(on, place);
}

} // namespace

void drawOutliner(Widget widget)
{
    const KvOutlinerRec* outliner = asOutliner(widget);
    const Color ground = colorOf(widget, outliner->core.background_pixel);
    Painter painter(widget, ground);
    const Drawing on(widget, painter, ground);
    drawRows(on);
    drawThumb(on);
    for (int column = 0; column < static_cast<int>(stateOf(widget).headings.size()); ++column)
        drawHeading(on, column);
    const int frame = outliner->primitive.highlight_thickness;
    // The last row may reach beyond the shadow.
    painter.frame(0, 0, outliner->core.width, outliner->core.height, frame, ground);
    XmeDrawShadows(XtDisplay(widget), painter.drawable(), outliner->primitive.top_shadow_GC,
                   outliner->primitive.bottom_shadow_GC, static_cast<Position>(frame),
                   static_cast<Position>(frame), static_cast<Dimension>(outliner->core.width - 2 * frame),
                   static_cast<Dimension>(outliner->core.height - 2 * frame),
                   outliner->primitive.shadow_thickness, XmSHADOW_IN);
}

} // namespace widgets
