// SPDX-License-Identifier: MIT
#include "widgets/KvTabManagerP.h"

#include "widgets/ClassRecord.h"
#include "widgets/Layout.h"
#include "widgets/Painter.h"

#include <string>

namespace {

constexpr int sideMargin = 8, endMargin = 5, crossSize = 8, crossGap = 6,
              accentHeight = 2; // at 96 dots per inch

KvTabButtonRec* asTab(Widget widget)
{
    return reinterpret_cast<KvTabButtonRec*>(widget);
}

#define TAB_FIELD(name) XtOffsetOf(KvTabButtonRec, kv.name)

XtResource resources[] = {
    widgets::textRow(XmNkvTabText, "KvTabText", TAB_FIELD(text)),
    pointerRow(XmNrenderTable, XmCRenderTable, XmRRenderTable, TAB_FIELD(renderTable)),
    flagRow(XmNkvTabClosable, "KvTabClosable", TAB_FIELD(closable), true),
    flagRow(XmNkvTabSelected, "KvTabSelected", TAB_FIELD(selected), false),
    pointerRow(XmNkvTabPage, "KvTabPage", XmRWidget, TAB_FIELD(page)),
    computedRow(XmNkvAccentColor, "KvAccentColor", XmRPixel, sizeof(Pixel), TAB_FIELD(accentColor),
                widgets::highlightColor),
};

struct Measures {
    int side, end, cross, gap, accent; // pixels of the screen
    explicit Measures(Widget widget)
        : side(widgets::scaled(widget, sideMargin)), end(widgets::scaled(widget, endMargin)),
          cross(widgets::scaled(widget, crossSize)), gap(widgets::scaled(widget, crossGap)),
          accent(widgets::scaled(widget, accentHeight))
    {
    }
};

widgets::Size wantedSize(Widget widget)
{
    const KvTabButtonPart& part = asTab(widget)->kv;
    const widgets::TextFont font(widget, part.renderTable);
    const Measures m(widget);
    const int cross = part.closable ? m.gap + m.cross : 0;
    return {font.width(part.text ? part.text : "") + cross + 2 * m.side,
            font.height() + 2 * m.end + m.accent};
}

// The left edge of the cross; the right end of the text without one.
int crossLeft(Widget widget)
{
    const Measures m(widget);
    return widget->core.width - m.side - (asTab(widget)->kv.closable ? m.cross : 0);
}

widgets::Color groundColor(const KvTabButtonRec* tab, const widgets::Color& ground)
{
    if (tab->kv.selected)
        return ground;
    return mix(ground, {}, tab->kv.entered ? 0.06 : 0.12);
}

void drawFrame(const KvTabButtonRec* tab, widgets::Painter& painter, const widgets::Color& line,
               const Measures& m)
{
    const double thickness = std::max(1, m.accent / 2);
    painter.fill(tab->core.width - thickness, 0, thickness, tab->core.height, line);
    painter.fill(0, 0, thickness, tab->core.height, line);
    painter.fill(0, 0, tab->core.width, thickness, line);
    if (!tab->kv.selected)
        painter.fill(0, tab->core.height - thickness, tab->core.width, thickness, line);
}

void expose(Widget widget, XEvent*, Region)
{
    const KvTabButtonRec* tab = asTab(widget);
    const widgets::Color ground = widgets::colorOf(widget, tab->core.background_pixel);
    const widgets::Color ink = widgets::colorOf(widget, tab->primitive.foreground);
    const widgets::TextFont font(widget, tab->kv.renderTable);
    const Measures m(widget);
    widgets::Painter painter(widget, groundColor(tab, ground));
    drawFrame(tab, painter, mix(ground, ink, 0.45), m);
    if (tab->kv.selected)
        painter.fill(0, 0, tab->core.width, m.accent, widgets::colorOf(widget, tab->kv.accentColor));
    const int right = crossLeft(widget) - (tab->kv.closable ? m.gap : 0);
    const int middle = (tab->core.height + m.accent) / 2;
    painter.text(font, font.fitted(tab->kv.text ? tab->kv.text : "", right - m.side), m.side,
                 middle - font.height() / 2 + font.ascent(), ink);
    if (tab->kv.closable)
        painter.cross(crossLeft(widget), middle - m.cross / 2.0, m.cross, m.accent * 0.8,
                      tab->kv.pressedOnCross ? widgets::Color{0.7, 0, 0} : mix(ground, ink, 0.7));
    if (tab->primitive.highlighted)
        painter.frame(m.accent, 2 * m.accent, tab->core.width - 2 * m.accent, tab->core.height - 3 * m.accent,
                      m.accent * 0.75, widgets::colorOf(widget, tab->primitive.highlight_color));
}

// Motif would clear the edges of a tab without the focus.
void highlight(Widget widget)
{
    asTab(widget)->primitive.highlighted = True;
    widgets::redraw(widget);
}

void unhighlight(Widget widget)
{
    asTab(widget)->primitive.highlighted = False;
    widgets::redraw(widget);
}

void initialize(Widget, Widget created, ArgList, Cardinal*)
{
    KvTabButtonRec* tab = asTab(created);
    widgets::keepCopy(tab->kv.text);
    tab->kv.renderTable = widgets::ownRenderTable(created, tab->kv.renderTable);
    tab->kv.entered = tab->kv.pressedOnCross = tab->kv.dragged = False;
    const widgets::Size size = wantedSize(created);
    tab->core.width = static_cast<Dimension>(size.width);
    tab->core.height = static_cast<Dimension>(size.height);
    widgets::overrideTranslations(created, ":Ctrl<Key>osfLeft: KvTabMove(-1)\n"
                                           ":Ctrl<Key>osfRight: KvTabMove(1)\n"
                                           ":<Key>osfLeft: KvTabNeighbour(-1)\n"
                                           ":<Key>osfRight: KvTabNeighbour(1)\n"
                                           ":<Key>osfDelete: KvTabClose()\n");
}

void destroy(Widget widget)
{
    XtFree(asTab(widget)->kv.text);
    XmRenderTableFree(asTab(widget)->kv.renderTable);
}

XtGeometryResult queryGeometry(Widget widget, XtWidgetGeometry* request, XtWidgetGeometry* reply)
{
    return widgets::replyWithSize(widget, request, reply, wantedSize(widget));
}

Boolean setValues(Widget oldWidget, Widget, Widget widget, ArgList, Cardinal*)
{
    KvTabButtonPart &now = asTab(widget)->kv, &old = asTab(oldWidget)->kv;
    const bool wider = widgets::takeText(now.text, old.text) || now.closable != old.closable;
    widgets::takeRenderTable(widget, now.renderTable, old.renderTable);
    if (wider)
        widget->core.width = static_cast<Dimension>(wantedSize(widget).width);
    return wider || now.selected != old.selected || now.accentColor != old.accentColor;
}

bool onCross(Widget widget, const XEvent* event)
{
    const Measures m(widget);
    return asTab(widget)->kv.closable && event->xbutton.x >= crossLeft(widget) - m.gap / 2 &&
           event->xbutton.x < widget->core.width - m.side / 2 && event->xbutton.y >= 0 &&
           event->xbutton.y < widget->core.height;
}

void press(Widget widget, XEvent* event, String*, Cardinal*)
{
    asTab(widget)->kv.dragged = False;
    asTab(widget)->kv.pressedOnCross = onCross(widget, event);
    if (!asTab(widget)->kv.pressedOnCross)
        widgets::tabSelected(asTab(widget)->kv.page, event);
    XmProcessTraversal(widget, XmTRAVERSE_CURRENT);
    widgets::redraw(widget);
}

void drag(Widget widget, XEvent* event, String*, Cardinal*)
{
    if (asTab(widget)->kv.pressedOnCross)
        return;
    asTab(widget)->kv.dragged = True;
    widgets::tabDragged(asTab(widget)->kv.page, widget->core.x + event->xmotion.x);
}

void release(Widget widget, XEvent* event, String*, Cardinal*)
{
    const bool closes = asTab(widget)->kv.pressedOnCross && onCross(widget, event);
    const bool dropped = asTab(widget)->kv.dragged;
    asTab(widget)->kv.pressedOnCross = asTab(widget)->kv.dragged = False;
    widgets::redraw(widget);
    if (dropped)
        widgets::tabDropped(asTab(widget)->kv.page, event);
    else if (closes)
        widgets::tabClosed(asTab(widget)->kv.page, event);
}

void notePointer(Widget widget, XEvent* event, String*, Cardinal*)
{
    asTab(widget)->kv.entered = event->type == EnterNotify;
    widgets::redraw(widget);
}

int distanceIn(String* words, const Cardinal* count)
{
    return *count > 0 && words[0][0] == '-' ? -1 : 1;
}

void selectNeighbour(Widget widget, XEvent* event, String* words, Cardinal* count)
{
    widgets::neighbourSelected(asTab(widget)->kv.page, distanceIn(words, count), event);
}

void move(Widget widget, XEvent* event, String* words, Cardinal* count)
{
    widgets::tabMoved(asTab(widget)->kv.page, distanceIn(words, count), event);
}

void close(Widget widget, XEvent* event, String*, Cardinal*)
{
    if (asTab(widget)->kv.closable)
        widgets::tabClosed(asTab(widget)->kv.page, event);
}

XtActionsRec actions[] = {{"KvTabPress", press},
                          {"KvTabDrag", drag},
                          {"KvTabRelease", release},
                          {"KvTabPointer", notePointer},
                          {"KvTabNeighbour", selectNeighbour},
                          {"KvTabMove", move},
                          {"KvTabClose", close}};

const std::string translations = std::string("<EnterWindow>: KvTabPointer() PrimitiveEnter()\n"
                                             "<LeaveWindow>: KvTabPointer() PrimitiveLeave()\n"
                                             "<Btn1Down>: KvTabPress()\n"
                                             "<Btn1Motion>: KvTabDrag()\n"
                                             "<Btn1Up>: KvTabRelease()\n") +
                                 widgets::primitiveTranslations;

KvPrimitiveClassRec record()
{
    KvPrimitiveClassRec record = widgets::primitiveClass("XmKvTabButton", sizeof(KvTabButtonRec), resources,
                                                         {.initialize = initialize,
                                                          .destroy = destroy,
                                                          .expose = expose,
                                                          .setValues = setValues,
                                                          .queryGeometry = queryGeometry,
                                                          .actions = actions,
                                                          .translations = translations.c_str()});
    record.primitive_class.border_highlight = highlight;
    record.primitive_class.border_unhighlight = unhighlight;
    return record;
}

} // namespace

KvPrimitiveClassRec kvTabButtonClassRec = record();

WidgetClass xmKvTabButtonWidgetClass = reinterpret_cast<WidgetClass>(&kvTabButtonClassRec);
