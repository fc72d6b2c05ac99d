// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Controls.h"

#include "platform/imagewindow/canvas/CanvasSurface.h"
#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/imagewindow/state/Reports.h"
#include "platform/protocol/XProtocol.h"
#include "platform/text/LocaleText.h"
#include "widgets/Scale.h"

#include <X11/IntrinsicP.h> // XtConfigureWidget
#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/Protocols.h>
#include <Xm/RowColumn.h>
#include <Xm/ScrollBar.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace viewer {

namespace {

// Of the window manager's frame beside the window, and of a window with the side panel; pixels of 96 dots per
// inch.
constexpr int frameWidth = 10, usefulPanelHeight = 560;

Desk& deskOf(XtPointer client)
{
    return *static_cast<Desk*>(client);
}

void closeAsked(Widget, XtPointer client, XtPointer)
{
    deskOf(client).program.closeWindow();
}

void areaResized(Widget area, XtPointer client, XtPointer)
{
    deskOf(client).listener.areaResized(sizeOf(area));
}

void barMoved(Widget bar, XtPointer client, XtPointer)
{
    int horizontal = 0, vertical = 0;
    XtVaGetValues(XtNameToWidget(XtParent(bar), "horizontal"), XmNvalue, &horizontal, nullptr);
    XtVaGetValues(XtNameToWidget(XtParent(bar), "vertical"), XmNvalue, &vertical, nullptr);
    deskOf(client).actions.scrollTo(horizontal, vertical);
}

// Exposure, motion, leaving and overlay commands: everything that the viewer selects on the canvas itself.
void canvasEvent(Widget, XtPointer client, XEvent* event, Boolean*)
{
    CanvasListener& listener = deskOf(client).listener;
    if (event->type == Expose)
        listener.exposed({event->xexpose.x, event->xexpose.y, event->xexpose.width, event->xexpose.height});
    else if (event->type == MotionNotify)
        listener.pointerAt(event->xmotion.x, event->xmotion.y);
    else if (event->type == LeaveNotify && event->xcrossing.mode == NotifyNormal)
        listener.pointerLeft();
    else if (event->type == PropertyNotify && event->xproperty.state == PropertyNewValue &&
             event->xproperty.atom == protocol::atoms(event->xproperty.display).overlay)
        listener.overlayArrived(event->xproperty.serial);
    else if (event->type == PropertyNotify &&
             event->xproperty.atom == protocol::atoms(event->xproperty.display).tools)
        listener.toolsChanged();
}

} // namespace

Controls::Controls(Desk& desk, Display* display, Size size, const std::string& userGeometry,
                   CanvasKind canvas)
    : desk(desk)
{
    // Without a base size, window managers count the size that the user reads from the smallest size on.
    topLevel = XtVaAppCreateShell("imagewindow", "ImageWindow", applicationShellWidgetClass, display,
                                  XmNdeleteResponse, XmDO_NOTHING, XmNminWidth, widgets::scaled(display, 320),
                                  XmNminHeight, widgets::scaled(display, 240), XmNbaseWidth, 0, XmNbaseHeight,
                                  0, XmNmappedWhenManaged, False, nullptr);
    if (!userGeometry.empty())
        XtVaSetValues(topLevel, XmNgeometry, userGeometry.c_str(), nullptr);
    const Atom deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    XmAddWMProtocolCallback(topLevel, deleteWindow, closeAsked, &desk);
    makeWidgets(size, canvas);
    desk.shell = topLevel;
    desk.canvas = canvasWidget;
}

Controls::~Controls()
{
    input.reset(); // its timeout must not find the widgets gone
    XtDestroyWidget(topLevel);
}

const image::ImageInfo& Controls::info() const
{
    return desk.shown.info();
}

void Controls::makeWidgets(Size size, CanvasKind canvas)
{
    form = XtVaCreateWidget("form", xmDrawingAreaWidgetClass, topLevel, XmNmarginWidth, 0, XmNmarginHeight, 0,
                            XmNresizePolicy, XmRESIZE_NONE, nullptr);
    makeMenuBar(menus, form, desk);
    toolBar.emplace(form, menus, desk);
    sidePanel.emplace(form, desk);
    channels = makeToggles(form);
    makeArea(size, canvas);
    const Dimensions steps = desk.shown.life.dimensions();
    pScale = makeScale("position", "pos", steps.p);
    tScale = makeScale("time", "t", steps.t);
    zScale = makeScale("z", "z", steps.z);
    status.emplace(form);
    showSizes();
    showView(desk.shown.view, widestStatus(desk.shown));
    const int wide = size.width + sideWidth;
    const int useful = std::min(widgets::scaled(form, sideWidth > 0 ? usefulPanelHeight : 1),
                                HeightOfScreen(XtScreen(form)) * 85 / 100);
    const int high = size.height + layOutAround(wide, 0);
    grown = {sideWidth, std::max(0, useful - high)};
    XtVaSetValues(form, XmNwidth, wide, XmNheight, high + grown.height, nullptr);
    XtAddCallback(
        form, XmNresizeCallback,
        [](Widget, XtPointer client, XtPointer) { static_cast<Controls*>(client)->layOut(); }, this);
    XtManageChild(form);
}

namespace {

int preferredHeight(Widget widget, int width)
{
    XtWidgetGeometry given{}, preferred{};
    given.request_mode = CWWidth;
    given.width = static_cast<Dimension>(width);
    XtQueryGeometry(widget, &given, &preferred);
    return std::max<int>(preferred.height, 1);
}

} // namespace

// From the top: menu bar, tool bar, toggles in as many rows as they need, area, scales, status lines; the
// side panel at the right of what is between tool bar and status lines. Returns what all but the area take.
// height: of the whole; 0 to place nothing yet.
int Controls::layOutAround(int width, int height)
{
    const auto place = [&](Widget widget, int y, int across, int side) {
        if (height > 0)
            XtConfigureWidget(widget, 0, static_cast<Position>(y), static_cast<Dimension>(across),
                              static_cast<Dimension>(std::max(1, side)), 0);
    };
    const int panel = sidePanel->widthIn(width), left = std::max(1, width - panel);
    int top = 0, bottom = height;
    const auto placeAtTop = [&](Widget row, int across) {
        if (!XtIsManaged(row))
            return;
        const int side = preferredHeight(row, across);
        place(row, top, across, side);
        top += side;
    };
    placeAtTop(menus.bar, width);
    placeAtTop(toolBar->widget(), width);
    const int statusHeight = status->layOut(width);
    bottom -= statusHeight;
    place(status->widget(), bottom, width, statusHeight);
    if (height > 0)
        sidePanel->place(left, top, panel, bottom - top);
    placeAtTop(channels, left);
    for (Widget row : {pScale.row, tScale.row, zScale.row})
        if (XtIsManaged(row)) {
            const int side = preferredHeight(row, left);
            bottom -= side;
            place(row, bottom, left, side);
        }
    place(area, top, left, bottom - top);
    return top + height - bottom;
}

// The window becomes larger by the panel as far as the screen has room, so that the image keeps its size, and
// as high as the panel is useful.
void Controls::showSidePanel()
{
    constexpr int unlimited = 30000;
    const int before = std::exchange(sideWidth, sidePanel->widthIn(unlimited));
    sidePanel->show();
    if (!XtIsRealized(form) || (before == 0) == (sideWidth == 0))
        return;
    const Size now = sizeOf(form);
    if (before == 0) {
        Position left = 0, top = 0;
        XtTranslateCoords(topLevel, 0, 0, &left, &top);
        const int frame = widgets::scaled(form, frameWidth);
        const Size room{WidthOfScreen(XtScreen(form)) - left - frame,
                        HeightOfScreen(XtScreen(form)) - top - frame};
        const int wantedHeight = widgets::scaled(form, usefulPanelHeight);
        grown = {std::max(0, std::min(sideWidth, room.width - now.width)),
                 std::max(0, std::min(wantedHeight, room.height) - now.height)};
    }
    const int sign = before == 0 ? 1 : -1;
    XtVaSetValues(topLevel, XmNwidth, std::max(1, now.width + sign * grown.width), XmNheight,
                  std::max(1, now.height + sign * grown.height), nullptr);
    if (before != 0)
        grown = {};
}

void Controls::layOut()
{
    Dimension width = 0, height = 0;
    XtVaGetValues(form, XmNwidth, &width, XmNheight, &height, nullptr);
    if (XtIsRealized(form))
        layOutAround(width, height);
}

void Controls::makeArea(Size size, CanvasKind canvas)
{
    area = XtVaCreateWidget("area", xmDrawingAreaWidgetClass, form, XmNmarginWidth, 0, XmNmarginHeight, 0,
                            XmNresizePolicy, XmRESIZE_NONE, XmNwidth, size.width, XmNheight, size.height,
                            XmNtraversalOn, False, nullptr);
    XtAddCallback(area, XmNresizeCallback, areaResized, &desk);
    port = XtVaCreateManagedWidget("port", xmDrawingAreaWidgetClass, area, XmNmarginWidth, 0, XmNmarginHeight,
                                   0, XmNresizePolicy, XmRESIZE_NONE, XmNwidth, size.width, XmNheight,
                                   size.height, nullptr);
    const auto makeBar = [&](const char* name, unsigned char orientation) {
        Widget bar = XtVaCreateWidget(name, xmScrollBarWidgetClass, area, XmNorientation, orientation,
                                      XmNtraversalOn, False, XmNhighlightThickness, 0, nullptr);
        XtAddCallback(bar, XmNvalueChangedCallback, barMoved, &desk);
        XtAddCallback(bar, XmNdragCallback, barMoved, &desk);
        return bar;
    };
    horizontal = makeBar("horizontal", XmHORIZONTAL);
    vertical = makeBar("vertical", XmVERTICAL);
    canvasWidget = makeCanvas(port, "canvas", size, canvas);
    XtAddEventHandler(canvasWidget, ExposureMask | PointerMotionMask | LeaveWindowMask | PropertyChangeMask,
                      False, canvasEvent, &desk);
    makePopupMenu(menus, port, desk);
    input.emplace(desk, menus, port);
    XtManageChild(area);
}

void Controls::show(const std::string& title)
{
    XtRealizeWidget(topLevel);
    // Where the user asked for no place, Xt claims (0, 0) as the program's wish, and window managers would
    // put the window there.
    XSizeHints hints;
    long supplied = 0;
    if (XGetWMNormalHints(XtDisplay(topLevel), XtWindow(topLevel), &hints, &supplied) != 0) {
        hints.flags &= ~PPosition;
        XSetWMNormalHints(XtDisplay(topLevel), XtWindow(topLevel), &hints);
    }
    setTitle(title);
    XtMapWidget(topLevel);
}

void Controls::setTitle(const std::string& title)
{
    const std::string local = text::fromUtf8(title);
    XtVaSetValues(topLevel, XmNtitle, local.c_str(), XmNiconName, local.c_str(), nullptr);
    const protocol::Atoms& atoms = protocol::atoms(XtDisplay(topLevel));
    XChangeProperty(XtDisplay(topLevel), XtWindow(topLevel), atoms.netWmName, atoms.utf8String, 8,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(title.data()),
                    static_cast<int>(title.size()));
}

std::optional<XPoint> Controls::pointerOnCanvas() const
{
    Window root = None, child = None;
    int rootX = 0, rootY = 0, x = 0, y = 0;
    unsigned buttons = 0;
    Display* display = XtDisplay(port);
    if (!XQueryPointer(display, XtWindow(port), &root, &child, &rootX, &rootY, &x, &y, &buttons) ||
        child != canvas())
        return std::nullopt;
    Position left = 0, top = 0;
    XtVaGetValues(canvasWidget, XtNx, &left, XtNy, &top, nullptr);
    return XPoint{static_cast<short>(x - left), static_cast<short>(y - top)};
}

namespace {

// The window below the root that holds it: the frame, where a window manager makes one.
Window frameOf(Display* display, Window window)
{
    for (;;) {
        Window root = None, parent = None, *children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(display, window, &root, &parent, &children, &count))
            return None;
        if (children)
            XFree(children);
        if (parent == root)
            return window;
        window = parent;
    }
}

} // namespace

std::optional<base::Rectangle> Controls::windowPlace() const
{
    Display* display = XtDisplay(topLevel);
    const protocol::ErrorTrap trap(display);
    const Window frame = frameOf(display, XtWindow(topLevel));
    XWindowAttributes outer, inner;
    if (frame == None || !XGetWindowAttributes(display, frame, &outer) ||
        !XGetWindowAttributes(display, XtWindow(topLevel), &inner))
        return std::nullopt;
    return base::Rectangle{outer.x, outer.y, inner.width, inner.height};
}

Size Controls::areaSize() const
{
    return sizeOf(area);
}

namespace {

void placeBar(Widget bar, bool needed, const XRectangle& rect, int value, int slider, int maximum)
{
    if (!needed) {
        XtUnmanageChild(bar);
        return;
    }
    XtConfigureWidget(bar, rect.x, rect.y, rect.width, rect.height, 0);
    XtVaSetValues(bar, XmNminimum, 0, XmNmaximum, maximum, XmNsliderSize, std::clamp(slider, 1, maximum),
                  XmNvalue, std::clamp(value, 0, maximum - slider), XmNincrement, std::max(1, slider / 20),
                  XmNpageIncrement, std::max(1, slider * 9 / 10), nullptr);
    XtManageChild(bar);
}

} // namespace

void Controls::place(const Arrangement& arrangement)
{
    const protocol::Geometry& g = arrangement.geometry;
    const auto [width, height] = arrangement.visible;
    const auto side = [](int pixels) { return static_cast<unsigned short>(pixels); };
    const unsigned short thickness = side(desk.shown.barThickness);
    const XRectangle below{0, static_cast<short>(height), side(width), thickness};
    const XRectangle right{static_cast<short>(width), 0, thickness, side(height)};
    placeBar(horizontal, arrangement.horizontalBar, below, static_cast<int>(std::lround(g.originX * g.zoom)),
             g.panelWidth, scaledSide(g.imageWidth, g.zoom));
    placeBar(vertical, arrangement.verticalBar, right, static_cast<int>(std::lround(g.originY * g.zoom)),
             g.panelHeight, scaledSide(g.imageHeight, g.zoom));
    XtConfigureWidget(port, 0, 0, side(width), side(height), 0);
    XtConfigureWidget(canvasWidget, static_cast<Position>(arrangement.left),
                      static_cast<Position>(arrangement.top), side(arrangement.canvas.width),
                      side(arrangement.canvas.height), 0);
}

void Controls::showStatus(const StatusTexts& texts)
{
    if (status->show(texts))
        layOut();
}

} // namespace viewer
