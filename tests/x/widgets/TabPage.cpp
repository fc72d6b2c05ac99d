// SPDX-License-Identifier: MIT
// The tab manager.
#include "tests/x/widgets/Gallery.h"
#include "widgets/KvTabManager.h"
#include "widgets/Scale.h"

#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>

#include <string>

namespace gallery {

namespace {

// "shown Measure", "closed Save", "order Open Measure"
void tellTab(Widget manager, XtPointer what, XtPointer callData)
{
    const auto* data = static_cast<XmKvTabCallbackStruct*>(callData);
    tell(std::string(static_cast<const char*>(what)) + " " + XtName(data->page));
    std::string order = "order";
    for (int i = 0; XmKvTabManagerPage(manager, i); ++i)
        order += std::string(" ") + XtName(XmKvTabManagerPage(manager, i));
    tell(order);
}

} // namespace

void tabPage(Widget parent)
{
    const Widget manager = XmCreateKvTabManager(parent, "tabs", nullptr, 0);
    XtAddCallback(manager, XmNvalueChangedCallback, tellTab, const_cast<char*>("shown"));
    XtAddCallback(manager, XmNkvCloseCallback, tellTab, const_cast<char*>("closed"));
    XtAddCallback(manager, XmNkvReorderCallback, tellTab, const_cast<char*>("moved"));
    for (const char* name : {"Display", "Contrast", "Measurement"}) {
        const Widget page = XtVaCreateManagedWidget(name, xmRowColumnWidgetClass, manager, nullptr);
        XtVaCreateManagedWidget((std::string("The page ") + name).c_str(), xmLabelWidgetClass, page, nullptr);
        XtVaCreateManagedWidget("A button of it", xmPushButtonWidgetClass, page, nullptr);
    }
    XtVaCreateManagedWidget("Fixed", xmLabelWidgetClass, manager, XmNkvTabText, "This one stays",
                            XmNkvTabClosable, False, nullptr);
    XtManageChild(manager);
}

} // namespace gallery
