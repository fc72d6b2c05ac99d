// SPDX-License-Identifier: MIT
// Combo boxes, and labels whose pictures are named by strings.
#include "tests/x/widgets/Gallery.h"
#include "widgets/KvComboBox.h"
#include "widgets/KvPushButton.h"
#include "widgets/PixmapOf.h"

#include <Xm/ComboBox.h>
#include <Xm/Label.h>
#include <Xm/RowColumn.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

namespace gallery {

namespace {

// A blue disk on nothing, 24 x 24.
picture::Picture disk()
{
    return picture::rasterize({24, 24}, 1, [](cairo_t* cairo) {
        cairo_set_source_rgb(cairo, 0, 0, 1);
        cairo_arc(cairo, 12, 12, 10, 0, 7);
        cairo_fill(cairo);
    });
}

void tellItem(Widget, XtPointer, XtPointer callData)
{
    const auto* data = static_cast<XmComboBoxCallbackStruct*>(callData);
    tell("chosen " + std::to_string(data->item_position));
}

} // namespace

void comboPage(Widget parent)
{
    addHeading(parent, "Drop-down list");
    const Widget combo = XtVaCreateManagedWidget("combo", xmKvComboBoxWidgetClass, parent, XmNkvItems,
                                                 "Autoscale|Constant Min/Max|Per channel", nullptr);
    XtAddCallback(combo, XmNselectionCallback, tellItem, nullptr);
    addHeading(parent, "With an edit field; insensitive");
    XtVaCreateManagedWidget("edit", xmKvComboBoxWidgetClass, parent, XmNkvItems, "0.1|0.2|0.5",
                            XmNcomboBoxType, XmDROP_DOWN_COMBO_BOX, nullptr);
    XtVaCreateManagedWidget("off", xmKvComboBoxWidgetClass, parent, XmNkvItems, "Nothing to choose",
                            XmNsensitive, False, nullptr);
}

void picturePage(Widget parent)
{
    widgets::registerPixmapConverter();
    addHeading(parent, "PNG, GIF, XPM, JPEG, XWD by name");
    const Widget row =
        XtVaCreateManagedWidget("row", xmRowColumnWidgetClass, parent, XmNorientation, XmHORIZONTAL, nullptr);
    std::string folder = (std::filesystem::temp_directory_path() / "gallery-XXXXXX").string();
    if (!mkdtemp(folder.data()))
        return;
    for (const char* extension : {"png", "gif", "xpm", "jpg", "xwd"}) {
        const std::string file = folder + "/disk." + extension;
        picture::write(disk(), file);
        XtVaCreateManagedWidget(extension, xmLabelWidgetClass, row, XmNlabelType, XmPIXMAP, XtVaTypedArg,
                                XmNlabelPixmap, XmRString, file.c_str(), file.size() + 1, nullptr);
    }
    const std::string file = folder + "/disk.png";
    XtVaCreateManagedWidget("Insensitive", xmKvPushButtonWidgetClass, row, XmNsensitive, False, XtVaTypedArg,
                            XmNlabelPixmap, XmRString, file.c_str(), file.size() + 1, nullptr);
    std::filesystem::remove_all(folder);
}

} // namespace gallery
