// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/SaveDialogue.h"

#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Messages.h"
#include "platform/text/MotifText.h"

#include <Xm/FileSB.h>
#include <Xm/Label.h>
#include <Xm/MessageB.h>
#include <Xm/RowColumn.h>
#include <Xm/Text.h>
#include <Xm/ToggleB.h>

#include <iterator>
#include <system_error>
#include <utility>

namespace viewer {

namespace fs = std::filesystem;

namespace {

std::string folderText(const fs::path& folder)
{
    const std::string text = folder.empty() ? "." : folder.string();
    return text.back() == '/' ? text : text + '/';
}

SaveDialogue& dialogueOf(XtPointer client)
{
    return *static_cast<SaveDialogue*>(client);
}

} // namespace

SaveDialogue::SaveDialogue(Widget parent, const SaveQuestion& question, Save toSave) : save(std::move(toSave))
{
    const auto title = labelString(question.title), ok = labelString("Save"),
               fileName = labelString("File name");
    const text::MotifString all("*"), folder(folderText(question.proposal.parent_path())); // as its bytes are
    // The path mode can be set at creation only: changing it later crashes the toolkit.
    Arg args[] = {
        {const_cast<char*>(XmNpathMode), XmPATH_MODE_RELATIVE},
        {const_cast<char*>(XmNfileFilterStyle), XmFILTER_HIDDEN_FILES},
        {const_cast<char*>(XmNdirectory), reinterpret_cast<XtArgVal>(folder.get())},
        {const_cast<char*>(XmNpattern), reinterpret_cast<XtArgVal>(all.get())},
        {const_cast<char*>(XmNautoUnmanage), False},
        {const_cast<char*>(XmNdialogTitle), reinterpret_cast<XtArgVal>(title.get())},
        {const_cast<char*>(XmNokLabelString), reinterpret_cast<XtArgVal>(ok.get())},
        {const_cast<char*>(XmNselectionLabelString), reinterpret_cast<XtArgVal>(fileName.get())},
    };
    dialogue = XmCreateFileSelectionDialog(parent, const_cast<char*>("save"), args,
                                           static_cast<Cardinal>(std::size(args)));
    XtUnmanageChild(XtNameToWidget(dialogue, "Help"));
    text::fixFileBoxWidth(dialogue);
    name = XmFileSelectionBoxGetChild(dialogue, XmDIALOG_TEXT);
    extraEnding = question.extraEnding;
    addOptions(question);
    addCallbacks();
    typed = question.proposal.filename().string(); // as its bytes are
    restoreName();
    XtManageChild(dialogue);
    XmProcessTraversal(name, XmTRAVERSE_CURRENT);
}

void SaveDialogue::addOptions(const SaveQuestion& question)
{
    Widget column = XtVaCreateManagedWidget("options", xmRowColumnWidgetClass, dialogue, nullptr);
    if (!question.choices.empty()) {
        Widget radio = XmCreateRadioBox(column, const_cast<char*>("choices"), nullptr, 0);
        for (const std::string& choice : question.choices) {
            const auto text = labelString(choice);
            choices.push_back(XtVaCreateManagedWidget("choice", xmToggleButtonWidgetClass, radio,
                                                      XmNlabelString, text.get(), XmNset,
                                                      choices.empty() ? XmSET : XmUNSET, nullptr));
        }
        XtManageChild(radio);
    }
    if (!question.extra.empty()) {
        const auto text = labelString(question.extra);
        extra = XtVaCreateManagedWidget("extra", xmToggleButtonWidgetClass, column, XmNlabelString,
                                        text.get(), nullptr);
    }
    const auto hint = labelString(question.hint);
    XtVaCreateManagedWidget("hint", xmLabelWidgetClass, column, XmNlabelString, hint.get(), XmNalignment,
                            XmALIGNMENT_BEGINNING, nullptr);
}

SaveDialogue::~SaveDialogue()
{
    XtDestroyWidget(XtParent(dialogue));
}

void SaveDialogue::addCallbacks()
{
    XtAddCallback(
        dialogue, XmNokCallback,
        [](Widget, XtPointer client, XtPointer call) {
            dialogueOf(client).confirmed(
                text::plainText(static_cast<XmFileSelectionBoxCallbackStruct*>(call)->value));
        },
        this);
    XtAddCallback(
        dialogue, XmNapplyCallback,
        [](Widget, XtPointer client, XtPointer) { dialogueOf(client).restoreName(); }, this);
    XtAddCallback(
        name, XmNvalueChangedCallback,
        [](Widget, XtPointer client, XtPointer) { dialogueOf(client).keepName(); }, this);
    XtAddCallback(
        dialogue, XmNcancelCallback, [](Widget box, XtPointer, XtPointer) { XtUnmanageChild(box); }, this);
}

void SaveDialogue::keepName()
{
    char* text = XmTextGetString(name);
    if (*text)
        typed = text;
    XtFree(text);
}

void SaveDialogue::restoreName()
{
    char* text = XmTextGetString(name);
    if (!*text && !typed.empty()) {
        const std::string kept = typed;
        XmTextSetString(name, const_cast<char*>(kept.c_str()));
        XmTextSetInsertionPosition(name, static_cast<XmTextPosition>(kept.size()));
    }
    XtFree(text);
}

void SaveDialogue::confirmed(const fs::path& chosen)
{
    std::error_code error;
    if (chosen.empty() || chosen.filename().empty())
        return;
    if (fs::is_directory(chosen, error)) {
        const text::MotifString folder(folderText(chosen));
        XtVaSetValues(dialogue, XmNdirectory, folder.get(), nullptr);
        return;
    }
    path = chosen;
    if (const std::string names = alreadyThere(); !names.empty())
        askToReplace(names);
    else
        write();
}

// The names of the files that would be replaced.
std::string SaveDialogue::alreadyThere() const
{
    std::error_code error;
    std::string names;
    if (fs::exists(path, error))
        names = path.filename().string();
    const fs::path beside = fs::path(path).replace_extension(extraEnding);
    if (extra && XmToggleButtonGetState(extra) && fs::exists(beside, error))
        names += (names.empty() ? "" : " and ") + beside.filename().string();
    return names;
}

void SaveDialogue::askToReplace(const std::string& names)
{
    Widget box = XmCreateQuestionDialog(dialogue, const_cast<char*>("replace"), nullptr, 0);
    const auto title = labelString("Save"), replace = labelString("Replace"),
               text = labelString(names + (names.find(" and ") == std::string::npos
                                               ? " is there already. Replace it?"
                                               : " are there already. Replace them?"));
    XtVaSetValues(box, XmNdialogTitle, title.get(), XmNmessageString, text.get(), XmNokLabelString,
                  replace.get(), XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL, XmNdefaultButtonType,
                  XmDIALOG_CANCEL_BUTTON, nullptr);
    XtUnmanageChild(XtNameToWidget(box, "Help"));
    XtAddCallback(
        box, XmNokCallback, [](Widget, XtPointer client, XtPointer) { dialogueOf(client).write(); }, this);
    XtAddCallback(
        box, XmNunmapCallback, [](Widget gone, XtPointer, XtPointer) { XtDestroyWidget(XtParent(gone)); },
        nullptr);
    XtManageChild(box);
}

void SaveDialogue::write()
{
    SaveAnswer answer{path, 0, extra && XmToggleButtonGetState(extra)};
    for (std::size_t i = 0; i < choices.size(); ++i)
        if (XmToggleButtonGetState(choices[i]))
            answer.choice = static_cast<int>(i);
    const std::string problem = save(answer);
    if (problem.empty())
        XtUnmanageChild(dialogue);
    else
        showError(dialogue, "Cannot save", problem);
}

fs::path proposedName(const fs::path& image, const std::string& ending)
{
    fs::path stem = image.filename();
    for (const char* known : {".tif", ".tiff", ".btf", ".ome", ".companion"})
        if (stem.extension() == known)
            stem.replace_extension();
    const std::string base = stem.empty() ? "picture" : stem.string();
    fs::path path = image.parent_path() / (base + "." + ending);
    std::error_code error;
    constexpr int most = 1000;
    for (int number = 2; number < most && fs::exists(path, error); ++number)
        path = image.parent_path() / (base + "-" + std::to_string(number) + "." + ending);
    return path;
}

} // namespace viewer
