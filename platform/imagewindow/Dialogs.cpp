#include "platform/imagewindow/Dialogs.h"

#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/LocalText.h"

#include <Xm/FileSB.h>
#include <Xm/MessageB.h>

#include <memory>

namespace viewer {

namespace {

void destroyDialogue(Widget dialogue, XtPointer /*client*/, XtPointer /*call*/)
{
    XtDestroyWidget(XtParent(dialogue));
}

using MakeDialogue = decltype(&XmCreateErrorDialog);

void showMessage(Widget parent, MakeDialogue make, const std::string& title, const std::string& text)
{
    Widget dialogue = make(parent, const_cast<char*>("message"), nullptr, 0);
    const LabelText message(text), heading(title);
    XtVaSetValues(dialogue, XmNmessageString, static_cast<XmString>(message), XmNdialogTitle,
                  static_cast<XmString>(heading), XmNautoUnmanage, True, nullptr);
    XtUnmanageChild(XtNameToWidget(dialogue, "Cancel"));
    XtUnmanageChild(XtNameToWidget(dialogue, "Help"));
    XtAddCallback(dialogue, XmNunmapCallback, destroyDialogue, nullptr);
    XtManageChild(dialogue);
}

void fileChosen(Widget dialogue, XtPointer client, XtPointer call)
{
    const auto* choice = static_cast<XmFileSelectionBoxCallbackStruct*>(call);
    auto* text = static_cast<char*>(
        XmStringUnparse(choice->value, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, nullptr, 0, XmOUTPUT_ALL));
    const std::string path = text ? text : "";
    XtFree(text);
    XtUnmanageChild(dialogue);
    if (!path.empty())
        static_cast<ImageWindow*>(client)->openAnother(path);
}

void unmanage(Widget dialogue, XtPointer /*client*/, XtPointer /*call*/)
{
    XtUnmanageChild(dialogue);
}

} // namespace

void showError(Widget parent, const std::string& text)
{
    showMessage(parent, XmCreateErrorDialog, "Image window", text);
}

void showInformation(Widget parent, const std::string& title, const std::string& text)
{
    showMessage(parent, XmCreateInformationDialog, title, text);
}

void chooseFile(Widget parent, ImageWindow& window)
{
    Widget dialogue = XmCreateFileSelectionDialog(parent, const_cast<char*>("open"), nullptr, 0);
    const LabelText title("Open image");
    const LabelText folder(window.image().info().path.parent_path().string());
    XtVaSetValues(dialogue, XmNdialogTitle, static_cast<XmString>(title), XmNdirectory,
                  static_cast<XmString>(folder), XmNresizePolicy, XmRESIZE_GROW, XmNwidth, 560, XmNheight,
                  420, XmNpathMode, XmPATH_MODE_RELATIVE, nullptr);
    XtUnmanageChild(XtNameToWidget(dialogue, "Help"));
    XtAddCallback(dialogue, XmNokCallback, fileChosen, &window);
    XtAddCallback(dialogue, XmNcancelCallback, unmanage, nullptr);
    XtAddCallback(dialogue, XmNunmapCallback, destroyDialogue, nullptr);
    XtManageChild(dialogue);
}

} // namespace viewer
