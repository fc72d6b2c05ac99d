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

void showError(Widget parent, const std::string& title, const std::string& text)
{
    showMessage(parent, XmCreateErrorDialog, title, text);
}

void showInformation(Widget parent, const std::string& title, const std::string& text)
{
    showMessage(parent, XmCreateInformationDialog, title, text);
}

void chooseFile(Widget parent, ImageWindow& window)
{
    const LabelText title("Open image");
    const LabelText folder(window.image().info().path.parent_path().string());
    // The path mode can be set at creation only: changing it later crashes the toolkit.
    Arg args[] = {
        {const_cast<char*>(XmNpathMode), XmPATH_MODE_RELATIVE},
        {const_cast<char*>(XmNfileFilterStyle), XmFILTER_HIDDEN_FILES},
        {const_cast<char*>(XmNdirectory), reinterpret_cast<XtArgVal>(static_cast<XmString>(folder))},
        {const_cast<char*>(XmNdialogTitle), reinterpret_cast<XtArgVal>(static_cast<XmString>(title))},
        {const_cast<char*>(XmNresizePolicy), XmRESIZE_GROW},
        {const_cast<char*>(XmNwidth), 520},
    };
    Widget dialogue = XmCreateFileSelectionDialog(parent, const_cast<char*>("open"), args,
                                                  static_cast<Cardinal>(std::size(args)));
    XtUnmanageChild(XtNameToWidget(dialogue, "Help"));
    XtAddCallback(dialogue, XmNokCallback, fileChosen, &window);
    XtAddCallback(dialogue, XmNcancelCallback, unmanage, nullptr);
    XtAddCallback(dialogue, XmNunmapCallback, destroyDialogue, nullptr);
    XtManageChild(dialogue);
}

} // namespace viewer
