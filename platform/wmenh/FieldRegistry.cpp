// SPDX-License-Identifier: MIT
#include "platform/wmenh/FieldRegistry.h"

#include <Xm/Xm.h>

#include <unordered_map>

namespace wmenh {
namespace {

// By control. Entries keep their address while others come and go.
std::unordered_map<Widget, Field>& fields()
{
    static std::unordered_map<Widget, Field> table;
    return table;
}

void forget(Widget control, XtPointer, XtPointer)
{
    fields().erase(control);
}

} // namespace

Field& bindField(Field field)
{
    const Widget control = field.control;
    XtAddCallback(control, XmNdestroyCallback, forget, nullptr);
    return fields()[control] = std::move(field);
}

Field* findField(Widget control)
{
    const auto found = fields().find(control);
    return found == fields().end() ? nullptr : &found->second;
}

void fieldChanged(Widget, XtPointer data, XtPointer callData)
{
    // The program may destroy the control in its callback.
    const Field field = *static_cast<Field*>(data);
    if (field.take() && field.changed)
        field.changed(field.control, field.clientData, callData);
}

} // namespace wmenh
