// SPDX-License-Identifier: MIT
// Push buttons of a row.
#include "platform/include/WMEnh.h"
#include "platform/text/LocaleText.h"
#include "platform/wmenh/FieldRegistry.h"
#include "platform/wmenh/Help.h"
#include "platform/wmenh/Keyboard.h"
#include "platform/wmenh/MainWindow.h"
#include "platform/wmenh/Toolkit.h"

#include <Xm/PushB.h>

#include <string>

using namespace wmenh;

namespace {

// Motif leaves Return to a dialogue's default button; in the main window it presses the button with the
// focus.
const char returnActivates[] = "<Key>osfActivate: ArmAndActivate()\n"
                               "~s ~m ~a <Key>Return: ArmAndActivate()\n";

Widget addButton(const char* label, XtCallbackProc activated, XtPointer clientData)
{
    const MotifString text(text::fromMixed(label));
    const Widget button = XtVaCreateWidget("button", xmPushButtonWidgetClass, currentRows().parent(),
                                           XmNlabelString, text.get(), XmNmarginWidth, 8, XmNmarginHeight, 4,
                                           XmNnavigationType, XmTAB_GROUP, nullptr);
    XtOverrideTranslations(button, XtParseTranslationTable(returnActivates));
    offerMnemonic(button, button, MnemonicRank::Button);
    if (activated)
        XtAddCallback(button, XmNactivateCallback, activated, clientData);
    currentRows().add(button);
    return button;
}

} // namespace

Widget WMAddFuncButton(const char* label, XtCallbackProc activated, XtPointer clientData, int, int)
{
    return addButton(label, activated, clientData);
}

Widget WMAddDoneButton(const char* label, XtCallbackProc activated, XtPointer clientData, int, int)
{
    return addButton(label, activated, clientData);
}

Widget WMAddHelpButton(const char* topic)
{
    const Widget button = addButton("Help", nullptr, nullptr);
    Field field{.control = button};
    field.take = [name = std::string(topic)] {
        showHelp(name);
        return false;
    };
    XtAddCallback(button, XmNactivateCallback, fieldChanged, &bindField(std::move(field)));
    return button;
}
