#include "platform/imagewindow/Controls.h"

#include "platform/imagewindow/Canvas.h"
#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/LocalText.h"
#include "platform/imagewindow/Palette.h"
#include "platform/imagewindow/Readout.h"

#include <X11/IntrinsicP.h> // XtConfigureWidget
#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/Protocols.h>
#include <Xm/RowColumn.h>
#include <Xm/Scale.h>
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace viewer {

namespace {

constexpr int fewWavelengths = 8; // more than these get a scroll bar of their own
constexpr std::size_t maxNameLength = 24;

ImageWindow& windowOf(XtPointer client)
{
    return *static_cast<ImageWindow*>(client);
}

void closeAsked(Widget, XtPointer client, XtPointer)
{
    windowOf(client).close();
}

void canvasExposed(Widget, XtPointer client, XtPointer call)
{
    windowOf(client).exposed(static_cast<CanvasExposure*>(call)->region);
}

void areaResized(Widget, XtPointer client, XtPointer)
{
    windowOf(client).areaResized();
}

void toggleChanged(Widget toggle, XtPointer client, XtPointer call)
{
    static_cast<Controls*>(client)->toggled(toggle,
                                            static_cast<XmToggleButtonCallbackStruct*>(call)->set != 0);
}

void scaleChanged(Widget scale, XtPointer client, XtPointer call)
{
    ImageWindow& window = windowOf(client);
    const int index = static_cast<XmScaleCallbackStruct*>(call)->value - 1;
    const View& view = window.currentView();
    const char kind = XtName(scale)[0];
    window.showSection(kind == 'z' ? index : view.z, kind == 't' ? index : view.t,
                       kind == 'p' ? index : view.p);
}

void barMoved(Widget bar, XtPointer client, XtPointer)
{
    int horizontal = 0, vertical = 0;
    XtVaGetValues(XtNameToWidget(XtParent(bar), "horizontal"), XmNvalue, &horizontal, nullptr);
    XtVaGetValues(XtNameToWidget(XtParent(bar), "vertical"), XmNvalue, &vertical, nullptr);
    windowOf(client).scrollTo(horizontal, vertical);
}

// Motion, leaving and overlay commands: everything that the viewer selects on the canvas itself.
void canvasEvent(Widget, XtPointer client, XEvent* event, Boolean*)
{
    ImageWindow& window = windowOf(client);
    if (event->type == MotionNotify)
        window.pointerAt(event->xmotion.x, event->xmotion.y);
    else if (event->type == LeaveNotify && event->xcrossing.mode == NotifyNormal)
        window.pointerLeft();
    else if (event->type == PropertyNotify && event->xproperty.state == PropertyNewValue &&
             event->xproperty.atom == protocol::atoms(event->xproperty.display).overlay)
        window.overlayArrived();
}

void portEvent(Widget, XtPointer client, XEvent* event, Boolean*)
{
    static_cast<Controls*>(client)->handlePort(*event);
}

Pixel allocate(Widget widget, const Rgb& color)
{
    XColor request{};
    request.red = static_cast<unsigned short>(color.red * 257);
    request.green = static_cast<unsigned short>(color.green * 257);
    request.blue = static_cast<unsigned short>(color.blue * 257);
    Colormap colormap = 0;
    XtVaGetValues(widget, XmNcolormap, &colormap, nullptr);
    return XAllocColor(XtDisplay(widget), colormap, &request) ? request.pixel
                                                              : WhitePixelOfScreen(XtScreen(widget));
}

void setLabel(Widget label, const std::string& text)
{
    const LabelText string(text);
    XtVaSetValues(label, XmNlabelString, static_cast<XmString>(string), nullptr);
}

} // namespace

Controls::Controls(ImageWindow& window, Display* display, Size size, const std::string& userGeometry)
    : window(window)
{
    // Without a base size the size in a geometry would count from the smallest size.
    topLevel = XtVaAppCreateShell("imagewindow", "ImageWindow", applicationShellWidgetClass, display,
                                  XmNdeleteResponse, XmDO_NOTHING, XmNminWidth, 320, XmNminHeight, 240,
                                  XmNbaseWidth, 0, XmNbaseHeight, 0, nullptr);
    if (!userGeometry.empty())
        XtVaSetValues(topLevel, XmNgeometry, userGeometry.c_str(), nullptr);
    const Atom deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    XmAddWMProtocolCallback(topLevel, deleteWindow, closeAsked, &window);
    makeWidgets(size);
}

Controls::~Controls()
{
    XtDestroyWidget(topLevel);
}

const image::ImageInfo& Controls::info() const
{
    return window.image().info();
}

void Controls::makeWidgets(Size size)
{
    form =
        XtVaCreateWidget("form", xmFormWidgetClass, topLevel, XmNmarginWidth, 0, XmNmarginHeight, 0, nullptr);
    menus = makeMenuBar(form, window);
    XtVaSetValues(menus.bar, XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                  XmNrightAttachment, XmATTACH_FORM, nullptr);
    Widget channels = makeToggles(form);
    XtVaSetValues(channels, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, menus.bar, XmNleftAttachment,
                  XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
    status = makeStatus();
    zScale = makeScale("z", "z");
    tScale = makeScale("time", "t");
    pScale = makeScale("position", "pos");
    makeArea(size, channels);
    stackScales(window.growing());
    showSizes();
    XtManageChild(form);
}

Widget Controls::makeToggles(Widget parent)
{
    const bool many = info().sizeW > fewWavelengths;
    Widget holder = parent;
    if (many)
        holder =
            XtVaCreateManagedWidget("channelScroll", xmScrolledWindowWidgetClass, parent, XmNscrollingPolicy,
                                    XmAUTOMATIC, XmNheight, 50, XmNshadowThickness, 0, nullptr);
    Widget row =
        XtVaCreateWidget("channels", xmRowColumnWidgetClass, holder, XmNorientation, XmHORIZONTAL, XmNpacking,
                         XmPACK_TIGHT, XmNspacing, 10, XmNmarginHeight, 2, XmNmarginWidth, 6, nullptr);
    for (int w = 0; w < info().sizeW; ++w) {
        const auto color = static_cast<std::size_t>(
            colorIndexOrWhite(info().wavelengths[static_cast<std::size_t>(w)].colorIndex));
        const LabelText name(shortened(wavelengthName(info(), w), maxNameLength));
        Widget toggle = XtVaCreateManagedWidget(
            ("wavelength" + std::to_string(w + 1)).c_str(), xmToggleButtonWidgetClass, row, XmNlabelString,
            static_cast<XmString>(name), XmNindicatorOn, XmINDICATOR_FILL, XmNforeground,
            allocate(row, textPalette[color]), XmNselectColor, allocate(row, palette[color]), XmNtraversalOn,
            False, XmNhighlightThickness, 0, nullptr);
        XtAddCallback(toggle, XmNvalueChangedCallback, toggleChanged, this);
        toggles.push_back(toggle);
    }
    XtManageChild(row);
    return many ? holder : row;
}

void Controls::toggled(Widget toggle, bool on)
{
    const auto place = std::find(toggles.begin(), toggles.end(), toggle);
    if (place != toggles.end())
        window.setWavelengthShown(static_cast<int>(place - toggles.begin()), on);
}

Controls::SectionScale Controls::makeScale(const char* name, const char* title)
{
    SectionScale result;
    result.row = XtVaCreateWidget("scaleRow", xmFormWidgetClass, form, XmNleftAttachment, XmATTACH_FORM,
                                  XmNrightAttachment, XmATTACH_FORM, nullptr);
    const LabelText text(title);
    Widget label = XtVaCreateManagedWidget("title", xmLabelWidgetClass, result.row, XmNlabelString,
                                           static_cast<XmString>(text), XmNleftAttachment, XmATTACH_FORM,
                                           XmNleftOffset, 8, XmNtopAttachment, XmATTACH_FORM,
                                           XmNbottomAttachment, XmATTACH_FORM, XmNwidth, 30, XmNrecomputeSize,
                                           False, XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    result.value = XtVaCreateManagedWidget("value", xmLabelWidgetClass, result.row, XmNrightAttachment,
                                           XmATTACH_FORM, XmNrightOffset, 8, XmNtopAttachment, XmATTACH_FORM,
                                           XmNbottomAttachment, XmATTACH_FORM, XmNwidth, 80, XmNrecomputeSize,
                                           False, XmNalignment, XmALIGNMENT_END, nullptr);
    result.scale = XtVaCreateManagedWidget(
        name, xmScaleWidgetClass, result.row, XmNorientation, XmHORIZONTAL, XmNminimum, 1, XmNmaximum, 2,
        XmNvalue, 1, XmNscaleMultiple, 1, XmNshowArrows, XmEACH_SIDE, XmNscaleHeight, 15, XmNleftAttachment,
        XmATTACH_WIDGET, XmNleftWidget, label, XmNrightAttachment, XmATTACH_WIDGET, XmNrightWidget,
        result.value, XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, 3, XmNbottomAttachment, XmATTACH_FORM,
        XmNbottomOffset, 3, nullptr);
    XtAddCallback(result.scale, XmNvalueChangedCallback, scaleChanged, &window);
    XtAddCallback(result.scale, XmNdragCallback, scaleChanged, &window);
    return result;
}

Widget Controls::makeStatus()
{
    Widget lines =
        XtVaCreateWidget("status", xmFormWidgetClass, form, XmNleftAttachment, XmATTACH_FORM,
                         XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, nullptr);
    const auto line = [&](const char* name, unsigned char alignment) {
        Widget label =
            XtVaCreateManagedWidget(name, xmLabelWidgetClass, lines, XmNalignment, alignment,
                                    XmNrecomputeSize, False, XmNmarginHeight, 2, XmNmarginWidth, 8, nullptr);
        setLabel(label, " ");
        return label;
    };
    pixelLabel = line("pixel", XmALIGNMENT_BEGINNING);
    stageLabel = line("stage", XmALIGNMENT_BEGINNING);
    noteLabel = line("note", XmALIGNMENT_END);
    XtVaSetValues(pixelLabel, XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                  XmNrightAttachment, XmATTACH_FORM, nullptr);
    XtVaSetValues(stageLabel, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, pixelLabel,
                  XmNbottomAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                  XmATTACH_WIDGET, XmNrightWidget, noteLabel, nullptr);
    XtVaSetValues(noteLabel, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, pixelLabel, XmNbottomAttachment,
                  XmATTACH_FORM, XmNrecomputeSize, True, XmNrightAttachment, XmATTACH_FORM, nullptr);
    XtManageChild(lines);
    return lines;
}

void Controls::makeArea(Size size, Widget above)
{
    area = XtVaCreateWidget("area", xmDrawingAreaWidgetClass, form, XmNmarginWidth, 0, XmNmarginHeight, 0,
                            XmNresizePolicy, XmRESIZE_NONE, XmNwidth, size.width, XmNheight, size.height,
                            XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, above, XmNleftAttachment,
                            XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNtraversalOn, False, nullptr);
    XtAddCallback(area, XmNresizeCallback, areaResized, &window);
    port = XtVaCreateManagedWidget("port", xmDrawingAreaWidgetClass, area, XmNmarginWidth, 0, XmNmarginHeight,
                                   0, XmNresizePolicy, XmRESIZE_NONE, XmNwidth, size.width, XmNheight,
                                   size.height, nullptr);
    const auto makeBar = [&](const char* name, unsigned char orientation) {
        Widget bar = XtVaCreateWidget(name, xmScrollBarWidgetClass, area, XmNorientation, orientation,
                                      XmNtraversalOn, False, XmNhighlightThickness, 0, nullptr);
        XtAddCallback(bar, XmNvalueChangedCallback, barMoved, &window);
        XtAddCallback(bar, XmNdragCallback, barMoved, &window);
        return bar;
    };
    horizontal = makeBar("horizontal", XmHORIZONTAL);
    vertical = makeBar("vertical", XmVERTICAL);
    canvasWidget = XtVaCreateManagedWidget("canvas", canvasWidgetClass, port, XtNwidth, size.width, XtNheight,
                                           size.height, XtNborderWidth, 0, nullptr);
    XtAddCallback(canvasWidget, exposeCallback, canvasExposed, &window);
    XtAddEventHandler(canvasWidget, PointerMotionMask | LeaveWindowMask | PropertyChangeMask, False,
                      canvasEvent, &window);
    XtAddEventHandler(port, ButtonPressMask | Button1MotionMask | Button2MotionMask, False, portEvent, this);
    // The wheel belongs to the viewer also while a tool takes the buttons on the canvas.
    for (int button : {Button4, Button5})
        XtGrabButton(port, button, AnyModifier, False, ButtonPressMask, GrabModeAsync, GrabModeAsync, None,
                     None);
    popup = makePopupMenu(port, window);
    XtManageChild(area);
}

void Controls::show(const std::string& title)
{
    XtRealizeWidget(topLevel);
    setTitle(title);
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

Size Controls::areaSize() const
{
    Dimension width = 0, height = 0;
    XtVaGetValues(area, XmNwidth, &width, XmNheight, &height, nullptr);
    return {std::max<int>(width, 1), std::max<int>(height, 1)};
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

// Rows are managed once and for all: a form whose area has been sized by the user does not make room later.
void Controls::stackScales(bool growing)
{
    const bool present[] = {info().sizeP > 1, info().sizeT > 1, info().sizeZ > 1 || growing};
    SectionScale* const scales[] = {&pScale, &tScale, &zScale};
    Widget below = status;
    for (std::size_t i = 0; i < std::size(scales); ++i) {
        scales[i]->present = present[i];
        if (!present[i])
            continue;
        XtVaSetValues(scales[i]->row, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, below, nullptr);
        XtManageChild(scales[i]->row);
        below = scales[i]->row;
    }
    XtVaSetValues(area, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, below, nullptr);
}

void Controls::showSizes()
{
    const int counts[] = {info().sizeZ, info().sizeT, info().sizeP};
    SectionScale* const scales[] = {&zScale, &tScale, &pScale};
    for (std::size_t i = 0; i < std::size(scales); ++i) {
        scales[i]->count = counts[i];
        if (scales[i]->present) // a scale needs two values at least
            XtVaSetValues(scales[i]->scale, XmNmaximum, std::max(2, counts[i]), nullptr);
    }
    const std::array several{true, info().sizeZ > 1, info().sizeW > 1, info().sizeT > 1}; // by PanelStyle
    for (std::size_t style = 0; style < several.size(); ++style)
        XtSetSensitive(menus.panelToggles[style], several[style] ? True : False);
}

bool Controls::hasScalesFor(const image::ImageInfo& other) const
{
    const auto fits = [](const SectionScale& scale, int count) { return scale.present || count < 2; };
    return fits(zScale, other.sizeZ) && fits(tScale, other.sizeT) && fits(pScale, other.sizeP);
}

void Controls::showScale(SectionScale& section, int index, int lastIndex)
{
    if (!section.present)
        return;
    // The user may have moved the scale to where the view cannot follow.
    XmScaleSetValue(section.scale, index + 1);
    XtSetSensitive(section.scale, lastIndex > 0 ? True : False);
    setLabel(section.value, std::to_string(index + 1) + " / " + std::to_string(section.count));
}

void Controls::showView(const View& view)
{
    const View last = lastSection(info(), view);
    showScale(zScale, view.z, last.z);
    showScale(tScale, view.t, last.t);
    showScale(pScale, view.p, last.p);
    for (std::size_t w = 0; w < toggles.size(); ++w)
        XmToggleButtonSetState(toggles[w], view.displayed[w] ? True : False, False);
    for (std::size_t style = 0; style < menus.panelToggles.size(); ++style)
        XmToggleButtonSetState(menus.panelToggles[style],
                               static_cast<int>(style) == view.style ? True : False, False);
}

namespace {

void showText(Widget label, std::string& shown, const std::string& text)
{
    if (shown == text)
        return;
    shown = text;
    setLabel(label, text.empty() ? " " : text);
}

} // namespace

void Controls::showPixel(const std::string& text)
{
    showText(pixelLabel, statusTexts[0], text);
}
void Controls::showStage(const std::string& text)
{
    showText(stageLabel, statusTexts[1], text);
}
void Controls::showNote(const std::string& text)
{
    showText(noteLabel, statusTexts[2], text);
}

void Controls::handlePort(XEvent& event)
{
    if (event.type == MotionNotify) {
        window.panBy(dragX - event.xmotion.x, dragY - event.xmotion.y);
        dragX = event.xmotion.x;
        dragY = event.xmotion.y;
        return;
    }
    if (event.type != ButtonPress)
        return;
    XButtonEvent& press = event.xbutton;
    if (press.button == Button4 || press.button == Button5) {
        turnWheel(press, press.button == Button4 ? 1 : -1);
    } else if (press.button == Button3) {
        XmMenuPosition(popup, &press);
        XtManageChild(popup);
    } else {
        dragX = press.x;
        dragY = press.y;
    }
}

void Controls::turnWheel(const XButtonEvent& event, int step)
{
    if (event.state & ShiftMask)
        return window.stepZ(step);
    if (event.state & ControlMask)
        return window.stepTime(step);
    window.zoomStepsAt(step, event.x, event.y);
}

} // namespace viewer
