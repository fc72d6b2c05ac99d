// SPDX-License-Identifier: MIT
// The rows of an image window that choose what is shown of the image: the wavelengths' toggles, and the
// scales of sections, time points and positions.
#include "platform/imagewindow/controls/Controls.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/imagewindow/view/Readout.h"
#include "platform/text/Utf8.h"
#include "widgets/Scale.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/RowColumn.h>
#include <Xm/Scale.h>
#include <Xm/ScrolledW.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <string>

namespace viewer {

namespace {

constexpr int fewWavelengths = 8; // more than these get a scroll bar of their own
constexpr int scrolledHeight = 50, toggleSpacing = 8, toggleMargin = 6, rowMargin = 2, titleGap = 8,
              valueGap = 16, narrowestValue = 80, rowEdge = 8, rowGap = 3; // pixels at 96 dots per inch

void toggleChanged(Widget toggle, XtPointer client, XtPointer call)
{
    static_cast<Controls*>(client)->toggled(toggle,
                                            static_cast<XmToggleButtonCallbackStruct*>(call)->set != 0);
}

// Shows section (time point, position) index of the dimension that the scale's name tells.
void showIndex(Desk& desk, Widget scale, int index)
{
    const View& view = desk.shown.view;
    const char kind = XtName(scale)[0];
    desk.actions.showSection(kind == 'z' ? index : view.z, kind == 't' ? index : view.t,
                             kind == 'p' ? index : view.p);
}

void scaleChanged(Widget scale, XtPointer client, XtPointer call)
{
    showIndex(*static_cast<Desk*>(client), scale, static_cast<XmScaleCallbackStruct*>(call)->value - 1);
}

// Wheel up is one section on, wheel down one back, as with Shift on the image. A scroll bar of Motif would go
// the other way.
void wheelOnScale(Widget row, XtPointer client, XEvent* event, Boolean*)
{
    const unsigned button = event->xbutton.button;
    if (event->type != ButtonPress || (button != Button4 && button != Button5))
        return;
    Widget scale = static_cast<Widget>(client);
    XtPointer desk = nullptr;
    XtVaGetValues(row, XmNuserData, &desk, nullptr);
    int value = 1;
    XmScaleGetValue(scale, &value);
    showIndex(*static_cast<Desk*>(desk), scale, value - 1 + (button == Button4 ? 1 : -1));
}

// Room for the text of any section, so that neither a digit is cut nor the scale moves.
void showWidest(Widget value, int count)
{
    const std::string most = std::to_string(count);
    const int width = measureOf(value)(most + " - " + most + " / " + most) + widgets::scaled(value, valueGap);
    XtVaSetValues(value, XmNwidth, std::max(widgets::scaled(value, narrowestValue), width), nullptr);
}

void setManaged(Widget widget, bool managed)
{
    if (managed)
        XtManageChild(widget);
    else
        XtUnmanageChild(widget);
}

} // namespace

Widget Controls::makeToggles(Widget parent)
{
    const bool many = info().sizeW > fewWavelengths;
    Widget holder = parent;
    if (many)
        holder = XtVaCreateManagedWidget(
            "channelScroll", xmScrolledWindowWidgetClass, parent, XmNscrollingPolicy, XmAUTOMATIC, XmNheight,
            widgets::scaled(parent, scrolledHeight), XmNshadowThickness, 0, nullptr);
    Widget row =
        XtVaCreateWidget("channels", xmRowColumnWidgetClass, holder, XmNorientation, XmHORIZONTAL, XmNpacking,
                         XmPACK_TIGHT, XmNspacing, widgets::scaled(parent, toggleSpacing), XmNmarginHeight,
                         widgets::scaled(parent, rowMargin), XmNmarginWidth,
                         widgets::scaled(parent, toggleMargin), XmNadjustLast, False, nullptr);
    for (std::size_t color = 0; color < palette.size(); ++color) {
        colorPixels[color] = allocateColor(row, palette[color]);
        textPixels[color] = allocateColor(row, textPalette[color]);
    }
    dimmedPixel = allocateColor(row, dimmedText);
    for (int w = 0; w < info().sizeW; ++w) {
        const auto name = labelString(text::shortened(wavelengthName(info(), w), maxNameLength));
        Widget toggle =
            XtVaCreateManagedWidget(("wavelength" + std::to_string(w + 1)).c_str(), xmToggleButtonWidgetClass,
                                    row, XmNlabelString, name.get(), XmNindicatorOn, XmINDICATOR_FILL,
                                    XmNtraversalOn, False, XmNhighlightThickness, 0, nullptr);
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
        desk.actions.setWavelengthShown(static_cast<int>(place - toggles.begin()), on);
}

void Controls::showToggles(const View& view)
{
    for (std::size_t w = 0; w < toggles.size(); ++w) {
        const auto color = static_cast<std::size_t>(view.colors[w]);
        const Pixel text = view.displayed[w] ? textPixels[color] : dimmedPixel;
        Pixel shownText = 0, shownColor = 0;
        XtVaGetValues(toggles[w], XmNforeground, &shownText, XmNselectColor, &shownColor, nullptr);
        if (shownText != text || shownColor != colorPixels[color])
            XtVaSetValues(toggles[w], XmNforeground, text, XmNselectColor, colorPixels[color], nullptr);
        XmToggleButtonSetState(toggles[w], view.displayed[w] ? True : False, False);
    }
}

Controls::SectionScale Controls::makeScale(const char* name, const char* title, bool present)
{
    SectionScale result;
    result.present = present;
    result.row = XtVaCreateWidget("scaleRow", xmFormWidgetClass, form, XmNuserData, &desk, nullptr);
    const int edge = widgets::scaled(form, rowEdge), gap = widgets::scaled(form, rowGap);
    const auto text = labelString(title);
    Widget label = XtVaCreateManagedWidget(
        "title", xmLabelWidgetClass, result.row, XmNlabelString, text.get(), XmNleftAttachment, XmATTACH_FORM,
        XmNleftOffset, edge, XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
        XmNrecomputeSize, False, XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    XtVaSetValues(label, XmNwidth, measureOf(label)("pos") + widgets::scaled(label, titleGap), nullptr);
    result.value = XtVaCreateManagedWidget("value", xmLabelWidgetClass, result.row, XmNrightAttachment,
                                           XmATTACH_FORM, XmNrightOffset, edge, XmNtopAttachment,
                                           XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                                           XmNrecomputeSize, False, XmNalignment, XmALIGNMENT_END, nullptr);
    result.scale = XtVaCreateManagedWidget(
        name, xmScaleWidgetClass, result.row, XmNorientation, XmHORIZONTAL, XmNminimum, 1, XmNmaximum, 2,
        XmNvalue, 1, XmNscaleMultiple, 1, XmNshowArrows, XmEACH_SIDE, XmNscaleHeight, lineHeightOf(label),
        XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, label, XmNrightAttachment, XmATTACH_WIDGET,
        XmNrightWidget, result.value, XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, gap, XmNbottomAttachment,
        XmATTACH_FORM, XmNbottomOffset, gap, nullptr);
    XtAddCallback(result.scale, XmNvalueChangedCallback, scaleChanged, &desk);
    XtAddCallback(result.scale, XmNdragCallback, scaleChanged, &desk);
    XtAddEventHandler(result.row, ButtonPressMask, False, wheelOnScale, result.scale);
    // The toolkit must see the release, or it goes on taking presses for the row's.
    for (int button : {Button4, Button5})
        XtGrabButton(result.row, button, AnyModifier, False, ButtonPressMask | ButtonReleaseMask,
                     GrabModeAsync, GrabModeAsync, None, None);
    return result;
}

void Controls::showSizes()
{
    const int counts[] = {info().sizeZ, info().sizeT, info().sizeP};
    SectionScale* const scales[] = {&zScale, &tScale, &pScale};
    for (std::size_t i = 0; i < std::size(scales); ++i) {
        scales[i]->count = counts[i];
        showWidest(scales[i]->value, counts[i]);
        if (scales[i]->present) // a scale needs two values at least
            XtVaSetValues(scales[i]->scale, XmNmaximum, std::max(2, counts[i]), nullptr);
    }
}

// There is no scale where there is nothing to choose: the panels show the whole dimension, or more sections
// have yet to come.
void Controls::showScale(SectionScale& section, int index, int lastIndex, bool panelled)
{
    if (!section.present)
        return;
    if (lastIndex > 0) // the user may have moved the scale to where the view cannot follow
        XmScaleSetValue(section.scale, index + 1);
    setManaged(section.scale, lastIndex > 0);
    setManaged(section.row, lastIndex > 0 || !panelled);
    const int last = panelled ? section.count - lastIndex + index : index + 1;
    const std::string shown = std::to_string(index + 1) + (panelled ? " - " + std::to_string(last) : "");
    setLabel(section.value, shown + " / " + std::to_string(section.count));
}

void Controls::showView(const View& view, const StatusTexts& widest)
{
    status->setWidest(widest);
    const View last = lastSection(info(), view);
    showScale(zScale, view.z, last.z, view.style == protocol::ZPanels);
    showScale(tScale, view.t, last.t, view.style == protocol::TimePanels);
    showScale(pScale, view.p, last.p, false);
    showToggles(view);
    toolBar->show(desk.shown.parts.toolBar);
    showSidePanel();
    layOut();
}

} // namespace viewer
