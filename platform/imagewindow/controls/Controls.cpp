// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Controls.h"

#include "platform/imagewindow/canvas/Canvas.h"
#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/imagewindow/state/Reports.h"
#include "platform/protocol/XProtocol.h"

#include <X11/IntrinsicP.h> // XtConfigureWidget
#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/Protocols.h>
#include <Xm/RowColumn.h>
#include <Xm/ScrollBar.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace viewer {

namespace {

constexpr int dragSlack = 4;                    // screen pixels that a click may move
constexpr unsigned long holdMilliseconds = 500; // a longer press is no click

Desk& deskOf(XtPointer client)
{
    return *static_cast<Desk*>(client);
}

Size sizeOf(Widget area)
{
    Dimension width = 0, height = 0;
    XtVaGetValues(area, XmNwidth, &width, XmNheight, &height, nullptr);
    return {std::max<int>(width, 1), std::max<int>(height, 1)};
}

void closeAsked(Widget, XtPointer client, XtPointer)
{
    deskOf(client).program.closeWindow();
}

void canvasExposed(Widget, XtPointer client, XtPointer call)
{
    deskOf(client).listener.exposed(static_cast<CanvasExposure*>(call)->region);
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

// Motion, leaving and overlay commands: everything that the viewer selects on the canvas itself.
void canvasEvent(Widget, XtPointer client, XEvent* event, Boolean*)
{
    CanvasListener& listener = deskOf(client).listener;
    if (event->type == MotionNotify)
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

void portEvent(Widget, XtPointer client, XEvent* event, Boolean*)
{
    static_cast<Controls*>(client)->handlePort(*event);
}

} // namespace

Controls::Controls(Desk& desk, Display* display, Size size, const std::string& userGeometry) : desk(desk)
{
    // Without a base size the size in a geometry would count from the smallest size.
    topLevel = XtVaAppCreateShell("imagewindow", "ImageWindow", applicationShellWidgetClass, display,
                                  XmNdeleteResponse, XmDO_NOTHING, XmNminWidth, 320, XmNminHeight, 240,
                                  XmNbaseWidth, 0, XmNbaseHeight, 0, XmNmappedWhenManaged, False, nullptr);
    if (!userGeometry.empty())
        XtVaSetValues(topLevel, XmNgeometry, userGeometry.c_str(), nullptr);
    const Atom deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    XmAddWMProtocolCallback(topLevel, deleteWindow, closeAsked, &desk);
    makeWidgets(size);
    desk.shell = topLevel;
    desk.canvas = canvasWidget;
}

Controls::~Controls()
{
    cancelMenu();
    XtDestroyWidget(topLevel);
}

const image::ImageInfo& Controls::info() const
{
    return desk.shown.info();
}

void Controls::makeWidgets(Size size)
{
    form = XtVaCreateWidget("form", xmDrawingAreaWidgetClass, topLevel, XmNmarginWidth, 0, XmNmarginHeight, 0,
                            XmNresizePolicy, XmRESIZE_NONE, nullptr);
    makeMenuBar(menus, form, desk);
    channels = makeToggles(form);
    makeArea(size);
    const Dimensions steps = desk.shown.life.dimensions();
    pScale = makeScale("position", "pos", steps.p);
    tScale = makeScale("time", "t", steps.t);
    zScale = makeScale("z", "z", steps.z);
    status.emplace(form);
    showSizes();
    showView(desk.shown.view, widestStatus(desk.shown));
    XtVaSetValues(form, XmNwidth, size.width, XmNheight, size.height + layOutAround(size.width, 0), nullptr);
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

// From the top: menu bar, toggles in as many rows as they need, area, scales, status lines. Returns what all
// but the area take. height: of the whole; 0 to place nothing yet.
int Controls::layOutAround(int width, int height)
{
    const auto place = [&](Widget widget, int y, int side) {
        if (height > 0)
            XtConfigureWidget(widget, 0, static_cast<Position>(y), static_cast<Dimension>(width),
                              static_cast<Dimension>(std::max(1, side)), 0);
    };
    int top = 0, bottom = height;
    for (Widget row : {menus.bar, channels}) {
        const int side = preferredHeight(row, width);
        place(row, top, side);
        top += side;
    }
    const int statusHeight = status->layOut(width);
    bottom -= statusHeight;
    place(status->widget(), bottom, statusHeight);
    for (Widget row : {pScale.row, tScale.row, zScale.row})
        if (XtIsManaged(row)) {
            const int side = preferredHeight(row, width);
            bottom -= side;
            place(row, bottom, side);
        }
    place(area, top, bottom - top);
    return top + height - bottom;
}

void Controls::layOut()
{
    Dimension width = 0, height = 0;
    XtVaGetValues(form, XmNwidth, &width, XmNheight, &height, nullptr);
    if (XtIsRealized(form))
        layOutAround(width, height);
}

void Controls::makeArea(Size size)
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
    canvasWidget = XtVaCreateManagedWidget("canvas", canvasWidgetClass, port, XtNwidth, size.width, XtNheight,
                                           size.height, XtNborderWidth, 0, nullptr);
    XtAddCallback(canvasWidget, exposeCallback, canvasExposed, &desk);
    XtAddEventHandler(canvasWidget, PointerMotionMask | LeaveWindowMask | PropertyChangeMask, False,
                      canvasEvent, &desk);
    constexpr EventMask dragMask = Button2MotionMask | Button3MotionMask | ButtonReleaseMask;
    XtAddEventHandler(port, ButtonPressMask | Button1MotionMask | dragMask, False, portEvent, this);
    // All but button 1 belong to the viewer also while a tool takes the presses on the canvas.
    for (int button : {Button2, Button3, Button4, Button5})
        XtGrabButton(port, button, AnyModifier, False, ButtonPressMask | dragMask, GrabModeAsync,
                     GrabModeAsync, None, None);
    makePopupMenu(menus, port, desk);
    XtManageChild(area);
}

void Controls::show(const std::string& title)
{
    XtRealizeWidget(topLevel);
    // The toolkit asks for the top left corner of the screen where the user asked for no place.
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
    const std::string local = localText(title);
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
    const XRectangle below{0, static_cast<short>(height), side(width), scrollBarThickness};
    const XRectangle right{static_cast<short>(width), 0, scrollBarThickness, side(height)};
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

void Controls::handlePort(XEvent& event)
{
    if (event.type == ButtonPress)
        return pressed(event.xbutton);
    if (event.type == ButtonRelease && event.xbutton.button == Button3)
        return postMenu(false);
    if (event.type != MotionNotify)
        return;
    if (event.xmotion.state & Button3Mask) {
        if (std::max(std::abs(event.xmotion.x - menuPress.x), std::abs(event.xmotion.y - menuPress.y)) >
            dragSlack)
            postMenu(true);
        return;
    }
    desk.actions.panBy(dragX - event.xmotion.x, dragY - event.xmotion.y);
    dragX = event.xmotion.x;
    dragY = event.xmotion.y;
}

void Controls::pressed(const XButtonEvent& press)
{
    if (press.button == Button4 || press.button == Button5) {
        turnWheel(press, press.button == Button4 ? 1 : -1);
    } else if (press.button == Button3) {
        const auto held = [](XtPointer client, XtIntervalId*) {
            static_cast<Controls*>(client)->postMenu(true);
        };
        menuPress = press;
        cancelMenu();
        menuTimer = XtAppAddTimeOut(XtWidgetToApplicationContext(port), holdMilliseconds, held, this);
    } else {
        dragX = press.x;
        dragY = press.y;
    }
}

// The toolkit takes a menu down with the release that ends its press. So the menu of a click comes with the
// release and waits for a second click; once the pointer has moved or the button has been held, it comes
// while the button is down, and the release chooses.
void Controls::postMenu(bool held)
{
    if (!menuTimer)
        return;
    cancelMenu();
    postPopupMenu(menus, menuPress, !held);
}

void Controls::cancelMenu()
{
    if (menuTimer)
        XtRemoveTimeOut(menuTimer);
    menuTimer = 0;
}

void Controls::turnWheel(const XButtonEvent& event, int step)
{
    if (event.state & ShiftMask)
        return desk.actions.stepZ(step);
    if (event.state & ControlMask)
        return desk.actions.stepTime(step);
    desk.actions.zoomStepsAt(step, event.x, event.y);
}

} // namespace viewer
