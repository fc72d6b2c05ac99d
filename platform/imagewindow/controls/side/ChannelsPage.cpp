// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/side/ChannelsPage.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/imagewindow/view/Readout.h"
#include "platform/text/LocaleText.h"
#include "widgets/KvAligner.h"
#include "widgets/KvPushButton.h"
#include "widgets/KvTip.h"
#include "widgets/Scale.h"

#include <X11/IntrinsicP.h> // XtConfigureWidget
#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/ScrollBar.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <string>
#include <utility>

namespace viewer {

namespace {

constexpr unsigned long countMilliseconds = 60; // histograms wait for that long
constexpr int barWidth = 13, rowMargin = 6;     // pixels of 96 dots per inch

ChannelsPage* pageOf(XtPointer client)
{
    return static_cast<ChannelsPage*>(client);
}

} // namespace

ChannelsPage::ChannelsPage(Widget parent, Desk& desk) : desk(desk)
{
    form = XtVaCreateWidget("channelsPage", xmFormWidgetClass, parent, nullptr);
    makeHead();
    makeList();
    XtManageChild(form);
}

ChannelsPage::~ChannelsPage()
{
    if (countTimer)
        XtRemoveTimeOut(countTimer);
}

Widget ChannelsPage::makeSwitch(const char* name, const char* text, const char* tip)
{
    Widget toggle = XtVaCreateManagedWidget(name, xmToggleButtonWidgetClass, head, XmNalignment,
                                            XmALIGNMENT_BEGINNING, XmNkvFill, True, nullptr);
    setLabel(toggle, text);
    XmKvTipSet(toggle, tip);
    const auto changed = [](Widget self, XtPointer client, XtPointer call) {
        pageOf(client)->switched(self, static_cast<XmToggleButtonCallbackStruct*>(call)->set != 0);
    };
    XtAddCallback(toggle, XmNvalueChangedCallback, changed, this);
    return toggle;
}

void ChannelsPage::makeHead()
{
    head =
        XtVaCreateManagedWidget("head", xmKvAlignerWidgetClass, form, XmNtopAttachment, XmATTACH_FORM,
                                XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
    linked = makeSwitch("linked", "Link limits", "The limits of one wavelength are those of all");
    grey = makeSwitch("grey", "Grey", "Show all wavelengths in white");
    logarithmic = makeSwitch("logarithmic", "Log counts", "Histograms with a logarithmic scale");
    Widget automatic = XtVaCreateManagedWidget("autoAll", xmKvPushButtonWidgetClass, head, XmNlabelType,
                                               XmSTRING, XmNkvFlat, False, nullptr);
    setLabel(automatic, "Auto all");
    XmKvTipSet(automatic, "Fit the limits of all wavelengths to the image");
    const auto pressed = [](Widget, XtPointer client, XtPointer) {
        pageOf(client)->desk.actions.setAutomaticContrast();
    };
    XtAddCallback(automatic, XmNactivateCallback, pressed, this);
    count = XtVaCreateManagedWidget("count", xmLabelWidgetClass, head, XmNkvSpan, 2, XmNkvFill, True,
                                    XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
}

void ChannelsPage::makeList()
{
    bar = XtVaCreateManagedWidget("bar", xmScrollBarWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET,
                                  XmNtopWidget, head, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment,
                                  XmATTACH_FORM, XmNwidth, widgets::scaled(form, barWidth), XmNtraversalOn,
                                  False, XmNhighlightThickness, 0, nullptr);
    view = XtVaCreateManagedWidget("list", xmDrawingAreaWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET,
                                   XmNtopWidget, head, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                   XmATTACH_WIDGET, XmNrightWidget, bar, XmNbottomAttachment, XmATTACH_FORM,
                                   XmNresizePolicy, XmRESIZE_NONE, XmNmarginWidth, 0, XmNmarginHeight, 0,
                                   nullptr);
    const auto moved = [](Widget, XtPointer client, XtPointer call) {
        pageOf(client)->scrollTo(static_cast<XmScrollBarCallbackStruct*>(call)->value);
    };
    XtAddCallback(bar, XmNvalueChangedCallback, moved, this);
    XtAddCallback(bar, XmNdragCallback, moved, this);
    const auto resized = [](Widget, XtPointer client, XtPointer) { pageOf(client)->layOut(); };
    XtAddCallback(view, XmNresizeCallback, resized, this);
    const auto wheel = [](Widget, XtPointer client, XEvent* event, Boolean*) {
        ChannelsPage* page = pageOf(client);
        if (event->type == ButtonPress && event->xbutton.button == Button4)
            page->scrollTo(page->top - 2 * page->rowHeight);
        if (event->type == ButtonPress && event->xbutton.button == Button5)
            page->scrollTo(page->top + 2 * page->rowHeight);
    };
    XtAddEventHandler(view, ButtonPressMask, False, wheel, this);
    // The toolkit must see the release, or it goes on taking presses for the list's.
    for (const int button : {Button4, Button5})
        XtGrabButton(view, button, AnyModifier, False, ButtonPressMask | ButtonReleaseMask, GrabModeAsync,
                     GrabModeAsync, None, None);
    for (int i = 0; i < std::min(maxDisplayed, desk.shown.info().sizeW); ++i)
        cards.push_back(std::make_unique<ChannelCard>(view, desk));
    rowHeight = lineHeightOf(count) + widgets::scaled(form, rowMargin);
}

void ChannelsPage::switched(Widget which, bool on)
{
    if (which == linked)
        desk.actions.setContrastLinked(on);
    if (which == grey)
        desk.actions.setGrey(on);
    if (which == logarithmic) {
        logarithmicCounts = on;
        showCards(false);
    }
}

void ChannelsPage::refresh()
{
    XmToggleButtonSetState(linked, desk.shown.linkedContrast ? True : False, False);
    XmToggleButtonSetState(grey, desk.shown.view.grey ? True : False, False);
    XmToggleButtonSetState(logarithmic, logarithmicCounts ? True : False, False);
    const int all = desk.shown.info().sizeW;
    const auto now = static_cast<int>(displayedWavelengths(desk.shown.view).size());
    setLabel(count, std::to_string(now) + " of " + std::to_string(all) + " shown" +
                        (all > maxDisplayed ? ", at most " + std::to_string(maxDisplayed) : ""));
    layOut();
    showCards(false);
    countLater();
}

// Waits a moment before counting, so that sections that the user only passes on the way to another one are
// not counted.
void ChannelsPage::countLater()
{
    if (countTimer)
        return;
    const auto again = [](XtPointer client, XtIntervalId*) {
        pageOf(client)->countTimer = 0;
        pageOf(client)->showCards(true);
    };
    countTimer = XtAppAddTimeOut(XtWidgetToApplicationContext(form), countMilliseconds, again, this);
}

void ChannelsPage::showCards(bool sampleNow)
{
    const std::vector<int> displayed = displayedWavelengths(desk.shown.view);
    for (std::size_t i = 0; i < cards.size() && i < displayed.size(); ++i)
        cards[i]->show(displayed[i], logarithmicCounts, sampleNow);
}

int ChannelsPage::listHeight() const
{
    const auto open = static_cast<int>(displayedWavelengths(desk.shown.view).size());
    return open * cards.front()->height() + (desk.shown.info().sizeW - open) * rowHeight;
}

// Cards are always in place; rows are given to the wavelengths in sight, from the top.
void ChannelsPage::layOut()
{
    const Size size = sizeOf(view);
    if (!XtIsRealized(view) || size.width < 10)
        return;
    top = std::clamp(top, 0, std::max(0, listHeight() - size.height));
    placeBar(size.height, listHeight());
    std::size_t card = 0, row = 0;
    int y = -top;
    for (int w = 0; w < desk.shown.info().sizeW; ++w) {
        const bool open = desk.shown.view.displayed[static_cast<std::size_t>(w)];
        const int height = open ? cards.front()->height() : rowHeight;
        if (open && card < cards.size())
            cards[card++]->place(y, size.width);
        else if (!open && y + height > 0 && y < size.height)
            showRow(row++, w, y, size.width);
        y += height;
    }
    for (; card < cards.size(); ++card)
        cards[card]->hide();
    for (; row < rows.size(); ++row)
        XtSetMappedWhenManaged(rows[row].widget, False);
}

void ChannelsPage::showRow(std::size_t index, int wavelength, int y, int width)
{
    if (index == rows.size()) {
        Widget made = XtVaCreateManagedWidget("row", xmToggleButtonWidgetClass, view, XmNindicatorOn,
                                              XmINDICATOR_FILL, XmNrecomputeSize, False, XmNalignment,
                                              XmALIGNMENT_BEGINNING, XmNmappedWhenManaged, False, nullptr);
        const auto changed = [](Widget self, XtPointer client, XtPointer) { pageOf(client)->chosen(self); };
        XtAddCallback(made, XmNvalueChangedCallback, changed, this);
        rows.push_back({made, -1});
    }
    Row& row = rows[index];
    const int edge = widgets::scaled(form, rowMargin);
    if (row.wavelength != wavelength) {
        row.wavelength = wavelength;
        setRowName(row.widget, desk, wavelength, width - 2 * edge);
        XmKvTipSet(row.widget,
                   text::fromUtf8("Wavelength " + std::to_string(wavelength + 1) + ": show it").c_str());
    }
    XmToggleButtonSetState(row.widget, False,
                           False); // the press has set it, even when the wavelength was refused as a sixth
    XtConfigureWidget(row.widget, static_cast<Position>(edge), static_cast<Position>(y),
                      static_cast<Dimension>(std::max(1, width - 2 * edge)),
                      static_cast<Dimension>(rowHeight), 0);
    XtSetMappedWhenManaged(row.widget, True);
}

void ChannelsPage::chosen(Widget widget)
{
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const Row& each) { return each.widget == widget; });
    if (row != rows.end())
        desk.actions.setWavelengthShown(row->wavelength, true);
}

void ChannelsPage::placeBar(int viewHeight, int height)
{
    const bool needed = height > viewHeight;
    XtSetMappedWhenManaged(bar, needed ? True : False);
    if (!needed)
        return;
    XtVaSetValues(bar, XmNminimum, 0, XmNmaximum, height, XmNsliderSize, std::max(1, viewHeight), XmNvalue,
                  std::min(top, height - viewHeight), XmNincrement, rowHeight, XmNpageIncrement,
                  std::max(1, viewHeight - rowHeight), nullptr);
}

void ChannelsPage::scrollTo(int wanted)
{
    top = wanted;
    layOut();
}

} // namespace viewer
