// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/side/MetadataPage.h"

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/imagewindow/view/MetadataText.h"
#include "platform/text/LocaleText.h"
#include "widgets/KvAligner.h"
#include "widgets/KvOutliner.h"
#include "widgets/KvPushButton.h"
#include "widgets/KvTip.h"

#include <X11/Xatom.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>

#include <set>
#include <vector>

namespace viewer {

namespace {

constexpr int openDepth = 3; // rows above it show what is below them at first

MetadataPage* pageOf(XtPointer client)
{
    return static_cast<MetadataPage*>(client);
}

Time timeOf(const XEvent* event)
{
    return event && (event->type == ButtonPress || event->type == ButtonRelease) ? event->xbutton.time
           : event && (event->type == KeyPress || event->type == KeyRelease)     ? event->xkey.time
                                                                                 : CurrentTime;
}

} // namespace

MetadataPage::MetadataPage(Widget parent, Desk& desk) : desk(desk)
{
    form = XtVaCreateWidget("metadataPage", xmFormWidgetClass, parent, nullptr);
    makeHead();
    makeRows();
    XtManageChild(form);
}

void MetadataPage::makeHead()
{
    head = XtVaCreateManagedWidget("head", xmKvAlignerWidgetClass, form, XmNkvColumns, 3, XmNtopAttachment,
                                   XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                   XmATTACH_FORM, nullptr);
    Widget label = XtVaCreateManagedWidget("findLabel", xmLabelWidgetClass, head, nullptr);
    setLabel(label, "Find");
    wanted = XtVaCreateManagedWidget("find", xmTextFieldWidgetClass, head, XmNcolumns, 10, XmNkvFill, True,
                                     nullptr);
    XmKvTipSet(wanted, "Show only rows whose name or value has this text");
    Widget button = XtVaCreateManagedWidget("copyRows", xmKvPushButtonWidgetClass, head, XmNlabelType,
                                            XmSTRING, XmNkvFlat, False, nullptr);
    setLabel(button, "Copy");
    XmKvTipSet(button, "Copy the selected rows with what is below them, or all rows in the list");
    const auto changed = [](Widget, XtPointer client, XtPointer) { pageOf(client)->search(); };
    XtAddCallback(wanted, XmNvalueChangedCallback, changed, this);
    const auto pressed = [](Widget, XtPointer client, XtPointer call) {
        pageOf(client)->copy(timeOf(static_cast<XmAnyCallbackStruct*>(call)->event));
    };
    XtAddCallback(button, XmNactivateCallback, pressed, this);
}

void MetadataPage::makeRows()
{
    value = XtVaCreateManagedWidget(
        "value", xmTextWidgetClass, form, XmNeditMode, XmMULTI_LINE_EDIT, XmNeditable, False,
        XmNcursorPositionVisible, False, XmNwordWrap, True, XmNrows, 4, XmNcolumns, 10, XmNleftAttachment,
        XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, nullptr);
    XmKvTipSet(value, "The selected row's value in full");
    outliner =
        XtVaCreateManagedWidget("rows", xmKvOutlinerWidgetClass, form, XmNkvHeadings, "Name|Value",
                                XmNkvMultiple, True, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, head,
                                XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                                XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, value, nullptr);
    offer.emplace(outliner);
    const auto selectedNow = [](Widget, XtPointer client, XtPointer call) {
        const auto* told = static_cast<XmKvOutlinerCallbackStruct*>(call);
        pageOf(client)->selected(told->row, timeOf(told->event));
    };
    XtAddCallback(outliner, XmNkvSelectCallback, selectedNow, this);
    const auto key = [](Widget, XtPointer client, XEvent* event, Boolean* goOn) {
        if (event->type != KeyPress || !(event->xkey.state & ControlMask) ||
            XLookupKeysym(&event->xkey, 0) != 'c')
            return;
        pageOf(client)->copy(event->xkey.time);
        *goOn = False;
    };
    XtInsertEventHandler(outliner, KeyPressMask, False, key, this, XtListHead);
}

void MetadataPage::refresh()
{
    if (version == desk.shown.life.version())
        return;
    version = desk.shown.life.version();
    read();
    fill();
}

void MetadataPage::read()
{
    try {
        tree = image::readMetadata(desk.shown.info().path);
    } catch (const image::ImageError& error) {
        tree = {{-1, "", error.what()}};
    }
}

// A row is closed before anything is below it, which costs nothing then.
void MetadataPage::fill()
{
    XmKvOutlinerClear(outliner);
    std::vector<int> depths;
    for (const image::MetadataRow& each : tree) {
        const std::string name = text::fromUtf8(each.name), text = text::fromUtf8(each.value);
        const char* const cells[] = {name.c_str(), text.c_str()};
        const int made = XmKvOutlinerAdd(outliner, each.parent, cells, 2);
        depths.push_back(each.parent < 0 ? 0 : depths[static_cast<std::size_t>(each.parent)] + 1);
        if (depths.back() >= openDepth)
            XmKvOutlinerSetOpen(outliner, made, False);
    }
    XmTextSetString(value, const_cast<char*>(""));
}

std::string MetadataPage::typed() const
{
    char* const given = XmTextFieldGetString(wanted);
    const std::string text = given ? given : "";
    XtFree(given);
    return text;
}

void MetadataPage::search()
{
    XtVaSetValues(outliner, XmNkvSearch, typed().c_str(), nullptr);
}

std::vector<int> MetadataPage::selectedRows() const
{
    std::vector<int> rows;
    for (int row = 0; row < static_cast<int>(tree.size()); ++row)
        if (XmKvOutlinerIsSelected(outliner, row))
            rows.push_back(row);
    return rows;
}

// What is selected can be pasted with the middle button at once.
void MetadataPage::selected(int row, Time time)
{
    if (row < 0 || row >= static_cast<int>(tree.size()))
        return;
    const std::string& text = tree[static_cast<std::size_t>(row)].value;
    XmTextSetString(value, const_cast<char*>(text::fromUtf8(text).c_str()));
    offer->offer(XA_PRIMARY, rowsText(tree, selectedRows()), time);
}

void MetadataPage::copy(Time time)
{
    const std::vector<int> rows = selectedRows();
    const std::string text = rows.empty() ? foundText(tree, typed()) : rowsText(tree, rows);
    const Atom clipboard = XInternAtom(XtDisplay(outliner), "CLIPBOARD", False);
    for (const Atom selection : {clipboard, Atom{XA_PRIMARY}})
        if (!offer->offer(selection, text, time))
            return desk.actions.refuse("The text could not be copied: another program took the clipboard.");
}

} // namespace viewer
