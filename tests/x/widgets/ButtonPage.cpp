// SPDX-License-Identifier: MIT
// Push buttons and tool bars.
#include "tests/x/widgets/Gallery.h"
#include "widgets/KvPushButton.h"
#include "widgets/KvToolBar.h"

#include <Xm/ComboBox.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/ToggleB.h>

namespace gallery {

namespace {

void drawDisk(cairo_t* cairo)
{
    cairo_set_source_rgb(cairo, 0.16, 0.35, 0.6);
    cairo_rectangle(cairo, 2, 2, 12, 12);
    cairo_fill(cairo);
    cairo_set_source_rgb(cairo, 1, 1, 1);
    cairo_rectangle(cairo, 4.5, 2, 7, 4.5);
    cairo_rectangle(cairo, 4.5, 9, 7, 5);
    cairo_fill(cairo);
}

void drawFolder(cairo_t* cairo)
{
    cairo_set_source_rgb(cairo, 0.87, 0.68, 0.2);
    cairo_rectangle(cairo, 1.5, 3, 6, 3);
    cairo_rectangle(cairo, 1.5, 5, 13, 8.5);
    cairo_fill(cairo);
}

void drawLens(cairo_t* cairo)
{
    cairo_set_source_rgb(cairo, 0.2, 0.2, 0.2);
    cairo_set_line_width(cairo, 1.8);
    cairo_arc(cairo, 6.5, 6.5, 4, 0, 7);
    cairo_stroke(cairo);
    cairo_move_to(cairo, 9.5, 9.5);
    cairo_line_to(cairo, 14, 14);
    cairo_stroke(cairo);
}

struct Item {
    const char* name;
    picture::Drawing draw;
    int group;
};

Widget addButton(Widget bar, const Item& item)
{
    const Pixmap pixmap = item.draw ? icon(bar, item.draw) : None;
    Arg args[3];
    Cardinal count = 0;
    XtSetArg(args[count], const_cast<char*>(XmNkvGroup), item.group);
    ++count;
    if (pixmap != None) {
        XtSetArg(args[count], const_cast<char*>(XmNlabelPixmap), pixmap);
        ++count;
    }
    const Widget button = XmCreateKvPushButton(bar, item.name, args, count);
    XtAddCallback(button, XmNactivateCallback, tellCallback, const_cast<char*>(item.name));
    XtManageChild(button);
    return button;
}

void addBar(Widget parent)
{
    const Widget bar = XmCreateKvToolBar(parent, "bar", nullptr, 0);
    for (const Item& item : {Item{"Open", drawFolder, 0}, {"Save", drawDisk, 0}, {"Zoom", drawLens, 1}})
        addButton(bar, item);
    const Widget grid =
        XtVaCreateManagedWidget("Grid", xmToggleButtonWidgetClass, bar, XmNkvGroup, 1, nullptr);
    XtAddCallback(grid, XmNvalueChangedCallback, tellCallback, const_cast<char*>("Grid"));
    XtSetSensitive(addButton(bar, {"Measure", nullptr, 2}), False);
    addButton(bar, {"Quit", nullptr, 2});
    XtManageChild(bar);
}

} // namespace

void buttonPage(Widget parent)
{
    addHeading(parent, "Push button: flat, not flat, insensitive, without picture");
    const Widget row = XtVaCreateManagedWidget("row", xmRowColumnWidgetClass, parent, XmNorientation,
                                               XmHORIZONTAL, XmNisAligned, False, nullptr);
    addButton(row, {"flat", drawFolder, 0});
    XtVaSetValues(addButton(row, {"raised", drawDisk, 0}), XmNkvFlat, False, nullptr);
    XtSetSensitive(addButton(row, {"insensitive", drawLens, 0}), False);
    addButton(row, {"words", nullptr, 0});
    addHeading(parent, "Tool bar");
    addBar(parent);
}

} // namespace gallery
