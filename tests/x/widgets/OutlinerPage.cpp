// SPDX-License-Identifier: MIT
// An outliner of ten thousand rows and a field that searches it.
#include "tests/x/widgets/Gallery.h"
#include "widgets/KvOutliner.h"

#include <Xm/TextF.h>

#include <cstdio>
#include <string>

namespace gallery {

namespace {

constexpr int folders = 100, filesInEach = 99;

void fill(Widget outliner)
{
    char name[40], size[20];
    for (int folder = 0; folder < folders; ++folder) {
        std::snprintf(name, sizeof name, "Well %02d", folder);
        const char* const well[] = {name, "", "folder"};
        const int parent = XmKvOutlinerAdd(outliner, -1, well, 3);
        for (int file = 0; file < filesInEach; ++file) {
            std::snprintf(name, sizeof name, "image-%02d-%02d.ome.tif", folder, file);
            std::snprintf(size, sizeof size, "%d", (file * 37 + folder * 11) % 1000);
            const char* const image[] = {name, size, file % 3 ? "image" : "stack"};
            XmKvOutlinerAdd(outliner, parent, image, 3);
        }
    }
}

int selectedCount(Widget outliner)
{
    int count = 0;
    for (int row = 0; row < folders * (filesInEach + 1); ++row)
        count += XmKvOutlinerIsSelected(outliner, row);
    return count;
}

// "selected image-00-01.ome.tif", "selected Well 02 and 3 more"
void tellRow(Widget outliner, XtPointer what, XtPointer callData)
{
    const int row = static_cast<XmKvOutlinerCallbackStruct*>(callData)->row;
    char* cell = XmKvOutlinerCell(outliner, row, 0);
    const int others = selectedCount(outliner) - 1;
    tell(std::string(static_cast<const char*>(what)) + " " + (cell ? cell : "") +
         (others > 0 ? " and " + std::to_string(others) + " more" : ""));
    XtFree(cell);
}

void tellSort(Widget, XtPointer, XtPointer callData)
{
    tell("sorted " + std::to_string(static_cast<XmKvOutlinerCallbackStruct*>(callData)->row));
}

void search(Widget field, XtPointer outliner, XtPointer)
{
    char* text = XmTextFieldGetString(field);
    XtVaSetValues(static_cast<Widget>(outliner), XmNkvSearch, text, nullptr);
    XtFree(text);
    tell("shown " + std::to_string(XmKvOutlinerShownCount(static_cast<Widget>(outliner))));
}

} // namespace

void outlinerPage(Widget parent)
{
    const Widget outliner = XtVaCreateWidget("outliner", xmKvOutlinerWidgetClass, parent, XmNkvHeadings,
                                             "Name|Size|Kind", XmNkvMultiple, True, nullptr);
    XtAddCallback(outliner, XmNkvSelectCallback, tellRow, const_cast<char*>("selected"));
    XtAddCallback(outliner, XmNdefaultActionCallback, tellRow, const_cast<char*>("opened"));
    XtAddCallback(outliner, XmNkvSortCallback, tellSort, nullptr);
    fill(outliner);
    XtManageChild(outliner);
    const Widget field = XtVaCreateManagedWidget("search", xmTextFieldWidgetClass, parent, nullptr);
    XtAddCallback(field, XmNvalueChangedCallback, search, outliner);
}

} // namespace gallery
