// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Messages.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Dialogues.h"
#include "platform/imagewindow/controls/LocalText.h"

#include <Xm/FileSB.h>
#include <Xm/MessageB.h>
#include <Xm/ToggleB.h>

#include <filesystem>

namespace viewer {

namespace {

void destroyDialogue(Widget dialogue, XtPointer /*client*/, XtPointer /*call*/)
{
    XtDestroyWidget(XtParent(dialogue));
}

using MakeDialogue = decltype(&XmCreateErrorDialog);

Widget makeMessage(Widget parent, MakeDialogue make, const std::string& title, const LabelText& message)
{
    Widget dialogue = make(parent, const_cast<char*>("message"), nullptr, 0);
    const LabelText heading(title);
    XtVaSetValues(dialogue, XmNmessageString, static_cast<XmString>(message), XmNdialogTitle,
                  static_cast<XmString>(heading), XmNautoUnmanage, True, nullptr);
    XtUnmanageChild(XtNameToWidget(dialogue, "Cancel"));
    XtUnmanageChild(XtNameToWidget(dialogue, "Help"));
    XtAddCallback(dialogue, XmNunmapCallback, destroyDialogue, nullptr);
    return dialogue;
}

constexpr int errorWidth = 90; // bytes of a line
constexpr std::size_t maxErrorLines = 12;

// .tif and .tiff, .ome and .ome.xml (the companion files), .btf.
constexpr const char* imagePattern = "*.[tToObB][iImMtT][fFeE]*";
constexpr const char* anyPattern = "*";

// Where the last file was looked for, of all windows; empty at first.
std::string lastFolder;

std::string textOf(XmString string)
{
    auto* text = static_cast<char*>(
        XmStringUnparse(string, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, nullptr, 0, XmOUTPUT_ALL));
    const std::string result = text ? text : "";
    XtFree(text);
    return result;
}

void enterFolder(Widget dialogue, const std::filesystem::path& path)
{
    lastFolder = path.string();
    if (lastFolder.back() != '/')
        lastFolder += '/';
    const LabelText folder(lastFolder);
    XtVaSetValues(dialogue, XmNdirectory, static_cast<XmString>(folder), nullptr);
}

void fileChosen(Widget dialogue, XtPointer client, XtPointer call)
{
    const auto* choice = static_cast<XmFileSelectionBoxCallbackStruct*>(call);
    const std::filesystem::path path = textOf(choice->value);
    std::error_code error;
    if (path.empty())
        return;
    if (std::filesystem::is_directory(path, error))
        return enterFolder(dialogue, path);
    lastFolder = textOf(choice->dir);
    if (static_cast<Desk*>(client)->dialogues.openAnother(path.string()))
        XtUnmanageChild(dialogue);
}

void allFilesToggled(Widget toggle, XtPointer, XtPointer call)
{
    const bool all = static_cast<XmToggleButtonCallbackStruct*>(call)->set != 0;
    const LabelText pattern(all ? anyPattern : imagePattern);
    XtVaSetValues(XtParent(toggle), XmNpattern, static_cast<XmString>(pattern), nullptr);
}

void unmanage(Widget dialogue, XtPointer /*client*/, XtPointer /*call*/)
{
    XtUnmanageChild(dialogue);
}

} // namespace

void showError(Widget parent, const std::string& title, const std::string& text)
{
    const Measure length = [](const std::string& line) { return static_cast<int>(line.size()); };
    const LabelText lines(flow(wordsOf(text), " ", errorWidth, maxErrorLines, length));
    XtManageChild(makeMessage(parent, XmCreateErrorDialog, title, lines));
}

void showInformation(Widget parent, const std::string& title, const std::string& text)
{
    XtManageChild(makeMessage(parent, XmCreateInformationDialog, title, LabelText(text, LineFeeds::Kept)));
}

void chooseFile(Widget parent, Desk& desk)
{
    if (lastFolder.empty())
        lastFolder = desk.shown.info().path.parent_path().string();
    const LabelText title("Open image"), folder(lastFolder), pattern(imagePattern);
    // The path mode can be set at creation only: changing it later crashes the toolkit.
    Arg args[] = {
        {const_cast<char*>(XmNpathMode), XmPATH_MODE_RELATIVE},
        {const_cast<char*>(XmNfileFilterStyle), XmFILTER_HIDDEN_FILES},
        {const_cast<char*>(XmNdirectory), reinterpret_cast<XtArgVal>(static_cast<XmString>(folder))},
        {const_cast<char*>(XmNpattern), reinterpret_cast<XtArgVal>(static_cast<XmString>(pattern))},
        {const_cast<char*>(XmNautoUnmanage), False},
        {const_cast<char*>(XmNdialogTitle), reinterpret_cast<XtArgVal>(static_cast<XmString>(title))},
        {const_cast<char*>(XmNresizePolicy), XmRESIZE_GROW},
        {const_cast<char*>(XmNwidth), 520},
    };
    Widget dialogue = XmCreateFileSelectionDialog(parent, const_cast<char*>("open"), args,
                                                  static_cast<Cardinal>(std::size(args)));
    XtUnmanageChild(XtNameToWidget(dialogue, "Help"));
    const LabelText all("Show all files, not only TIFF");
    Widget toggle =
        XtVaCreateManagedWidget("allFiles", xmToggleButtonWidgetClass, dialogue, XmNlabelString,
                                static_cast<XmString>(all), XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    XtAddCallback(toggle, XmNvalueChangedCallback, allFilesToggled, nullptr);
    XtAddCallback(dialogue, XmNokCallback, fileChosen, &desk);
    XtAddCallback(dialogue, XmNcancelCallback, unmanage, nullptr);
    XtAddCallback(dialogue, XmNunmapCallback, destroyDialogue, nullptr);
    XtManageChild(dialogue);
}

} // namespace viewer
