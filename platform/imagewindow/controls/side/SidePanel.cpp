// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/side/SidePanel.h"

#include "platform/imagewindow/controls/Desk.h"
#include "widgets/KvTabManager.h"
#include "widgets/KvTip.h"
#include "widgets/Scale.h"

#include <X11/IntrinsicP.h> // XtConfigureWidget
#include <X11/cursorfont.h>
#include <Xm/DrawingA.h>
#include <Xm/Form.h>

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

constexpr int usualWidth = 330, narrowest = 270, edgeWidth = 5; // pixels of 96 dots per inch
constexpr int leastImage = 160;                                 // what the image keeps, the same

constexpr struct {
    const char *name, *title;
} pages[] = {{"channelsTab", "Channels"}, {"metadataTab", "Metadata"}, {"messagesTab", "Messages"}};

SidePanel* panelOf(XtPointer client)
{
    return static_cast<SidePanel*>(client);
}

} // namespace

SidePanel::SidePanel(Widget parent, Desk& desk) : desk(desk), parent(parent) {}

int SidePanel::widthIn(int windowWidth) const
{
    if (!desk.shown.parts.sidePanel)
        return 0;
    const int kept = desk.shown.parts.sideWidth;
    const int wanted = widgets::scaled(parent, kept > 0 ? std::max(kept, narrowest) : usualWidth);
    return std::clamp(windowWidth - widgets::scaled(parent, leastImage), 1, wanted);
}

void SidePanel::place(int x, int y, int width, int height)
{
    if (!area)
        return;
    const auto side = [](int pixels) { return static_cast<Dimension>(std::max(1, pixels)); };
    XtConfigureWidget(area, static_cast<Position>(x), static_cast<Position>(y), side(width), side(height), 0);
}

void SidePanel::make()
{
    area = XtVaCreateWidget("sidePanel", xmFormWidgetClass, parent, XmNresizePolicy, XmRESIZE_NONE, nullptr);
    makeEdge();
    tabs = XtVaCreateManagedWidget("tabs", xmKvTabManagerWidgetClass, area, XmNmarginWidth, 0,
                                   XmNmarginHeight, 0, XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment,
                                   XmATTACH_FORM, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, edge,
                                   XmNrightAttachment, XmATTACH_FORM, nullptr);
    for (std::size_t i = 0; i < holders.size(); ++i)
        holders[i] = XtVaCreateManagedWidget(pages[i].name, xmFormWidgetClass, tabs, XmNkvTabText,
                                             pages[i].title, XmNkvTabClosable, False, nullptr);
    const auto chosen = [](Widget, XtPointer client, XtPointer call) {
        panelOf(client)->tabChosen(static_cast<XmKvTabCallbackStruct*>(call)->page);
    };
    XtAddCallback(tabs, XmNvalueChangedCallback, chosen, this);
}

void SidePanel::makeEdge()
{
    edge = XtVaCreateManagedWidget("sideEdge", xmDrawingAreaWidgetClass, area, XmNresizePolicy, XmRESIZE_NONE,
                                   XmNtraversalOn, False, XmNtopAttachment, XmATTACH_FORM,
                                   XmNbottomAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                                   XmNwidth, widgets::scaled(parent, edgeWidth), nullptr);
    XmKvTipSet(edge, "Drag to make the panel wider or narrower");
    const auto handle = [](Widget, XtPointer client, XEvent* event, Boolean*) {
        panelOf(client)->dragged(*event);
    };
    XtAddEventHandler(edge, ButtonPressMask | ButtonReleaseMask | Button1MotionMask, False, handle, this);
    const auto dress = [](Widget self, XtPointer, XEvent*, Boolean*) {
        const Cursor cursor = XCreateFontCursor(XtDisplay(self), XC_sb_h_double_arrow);
        XDefineCursor(XtDisplay(self), XtWindow(self), cursor);
        XFreeCursor(XtDisplay(self), cursor);
    };
    XtAddEventHandler(edge, StructureNotifyMask, False, dress, nullptr);
}

void SidePanel::dragged(const XEvent& event)
{
    const double scale = widgets::screenScale(XtDisplay(edge));
    const auto width = [&](int x) {
        return std::max(narrowest, static_cast<int>(std::lround((dragWidth + dragStart - x) / scale)));
    };
    if (event.type == ButtonPress && event.xbutton.button == Button1) {
        Dimension now = 0;
        XtVaGetValues(area, XmNwidth, &now, nullptr);
        dragStart = event.xbutton.x_root;
        dragWidth = now;
    } else if (event.type == MotionNotify) {
        desk.actions.setSideWidth(width(event.xmotion.x_root), false);
    } else if (event.type == ButtonRelease && event.xbutton.button == Button1) {
        desk.actions.setSideWidth(width(event.xbutton.x_root), true);
    }
}

void SidePanel::makePage(SideTab tab)
{
    const Widget holder = holders[static_cast<std::size_t>(tab)];
    Widget page = nullptr;
    if (tab == SideTab::Channels && !channels)
        page = channels.emplace(holder, desk).widget();
    if (tab == SideTab::Metadata && !metadata)
        page = metadata.emplace(holder, desk).widget();
    if (tab == SideTab::Messages && !messages)
        page = messages.emplace(holder, desk).widget();
    if (page)
        XtVaSetValues(page, XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                      XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
}

void SidePanel::tabChosen(Widget page)
{
    const auto place = std::find(holders.begin(), holders.end(), page);
    if (place != holders.end())
        desk.actions.showTab(static_cast<SideTab>(place - holders.begin()));
}

void SidePanel::show()
{
    const WindowParts& parts = desk.shown.parts;
    if (!parts.sidePanel) {
        if (area && XtIsManaged(area))
            XtUnmanageChild(area);
        return;
    }
    if (!area)
        make();
    makePage(parts.tab);
    XtManageChild(area);
    XmKvTabManagerShow(tabs, holders[static_cast<std::size_t>(parts.tab)]);
    refresh();
}

void SidePanel::refresh()
{
    const WindowParts& parts = desk.shown.parts;
    if (!area || !parts.sidePanel)
        return;
    if (parts.tab == SideTab::Channels && channels)
        channels->refresh();
    if (parts.tab == SideTab::Metadata && metadata)
        metadata->refresh();
    showMessages();
}

void SidePanel::showMessages()
{
    if (desk.shown.parts.sidePanel && desk.shown.parts.tab == SideTab::Messages && messages)
        messages->refresh();
}

} // namespace viewer
