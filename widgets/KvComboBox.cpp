// SPDX-License-Identifier: MIT
#include "widgets/KvComboBoxP.h"

#include "platform/text/MotifText.h"
#include "widgets/ClassRecord.h"
#include "widgets/Layout.h"

#include <Xm/ComboBox.h>
#include <Xm/List.h>

#include <algorithm>
#include <sstream>
#include <string>

namespace {

KvComboBoxRec* asCombo(Widget widget)
{
    return reinterpret_cast<KvComboBoxRec*>(widget);
}

#define COMBO_FIELD(name) XtOffsetOf(KvComboBoxRec, name)

XtResource resources[] = {
    widgets::textRow(XmNkvItems, "KvItems", COMBO_FIELD(kv.items)),
    immediateRow(XmNcomboBoxType, XmCComboBoxType, XmRComboBoxType, sizeof(unsigned char),
                 COMBO_FIELD(combo_box.type), XmDROP_DOWN_LIST),
    immediateRow(XmNpositionMode, XmCPositionMode, XmRPositionMode, sizeof(XtEnum),
                 COMBO_FIELD(combo_box.position_mode), XmZERO_BASED),
    computedRow(XmNarrowSize, XmCArrowSize, XmRHorizontalDimension, sizeof(Dimension),
                COMBO_FIELD(combo_box.arrow_size), widgets::scaledDimension<15>),
    computedRow(XmNarrowSpacing, XmCArrowSpacing, XmRHorizontalDimension, sizeof(Dimension),
                COMBO_FIELD(combo_box.arrow_spacing), widgets::scaledDimension<3>),
};

// The list shows all items where they are few.
void takeItems(Widget widget)
{
    constexpr int mostVisible = 12;
    const Widget list = asCombo(widget)->combo_box.list;
    XmListDeleteAllItems(list);
    std::istringstream items(asCombo(widget)->kv.items ? asCombo(widget)->kv.items : "");
    int count = 0;
    for (std::string item; std::getline(items, item, '|'); ++count)
        XmListAddItemUnselected(list, text::MotifString(item).get(), 0);
    if (count == 0)
        return;
    XtVaSetValues(list, XmNvisibleItemCount, std::min(count, mostVisible), nullptr);
    XmStringTable all = nullptr;
    XtVaGetValues(list, XmNitems, &all, nullptr);
    XmComboBoxSelectItem(widget, all[0]);
}

void initialize(Widget, Widget created, ArgList, Cardinal*)
{
    widgets::keepCopy(asCombo(created)->kv.items);
    if (asCombo(created)->kv.items)
        takeItems(created);
}

void destroy(Widget widget)
{
    XtFree(asCombo(widget)->kv.items);
}

Boolean setValues(Widget old, Widget, Widget widget, ArgList, Cardinal*)
{
    if (widgets::takeText(asCombo(widget)->kv.items, asCombo(old)->kv.items))
        takeItems(widget);
    return False;
}

} // namespace

KvComboBoxClassRec kvComboBoxClassRec = {
    .core_class =
        corePart(reinterpret_cast<WidgetClass>(&xmComboBoxClassRec), "XmKvComboBox", sizeof(KvComboBoxRec),
                 resources, {.initialize = initialize, .destroy = destroy, .setValues = setValues}),
    .composite_class = widgets::compositePart(XtInheritGeometryManager, XtInheritChangeManaged),
    .constraint_class = widgets::constraintPart({}),
    .manager_class = widgets::managerPart(),
    .combo_box_class = {.extension = nullptr},
    .kv_class = {},
};

WidgetClass xmKvComboBoxWidgetClass = reinterpret_cast<WidgetClass>(&kvComboBoxClassRec);

Widget XmCreateKvComboBox(Widget parent, const char* name, ArgList args, Cardinal count)
{
    return XtCreateWidget(name, xmKvComboBoxWidgetClass, parent, args, count);
}
