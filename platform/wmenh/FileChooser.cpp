// SPDX-License-Identifier: MIT
// The modal chooser of a file to write, an XmFileSelectionBox. It starts in the folder that the program names
// when a file can be written there, else in the one remembered from last time, and a button leads to the
// latter. A name without an extension gets that of the filter. What cannot be taken is said in the dialogue,
// which then stays.
#include "platform/include/IWL.h"
#include "platform/include/WMEnh.h"
#include "platform/text/LocaleText.h"
#include "platform/wmenh/ChooserPaths.h"
#include "platform/wmenh/Dialogues.h"
#include "platform/wmenh/Toolkit.h"
#include "widgets/KvTip.h"

#include <Xm/FileSB.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>

using namespace wmenh;

namespace {

// Configuration keys of the next chooser, empty: nothing is remembered.
std::string directoryKey, extensionKey;

struct Chooser {
    Widget box = nullptr;
    Widget complaint = nullptr;
    int capacity = 0;
    std::string extension;      // appended to names that have none
    std::string remembered;     // folder of last time, empty when there is none
    std::string name;           // what stands in the name field, unless the box has emptied that
    XtIntervalId restoring = 0; // timeout that puts the name back
    bool ended = false;
    std::string path; // chosen, empty when cancelled
};

std::string plainKey(const char* key)
{
    std::string plain = key ? key : "";
    while (!plain.empty() && plain.back() == ':')
        plain.pop_back();
    return plain;
}

std::string configured(const std::string& key)
{
    const char* const value = key.empty() ? nullptr : IWGetConfig(key.c_str());
    return value ? value : "";
}

bool usableFolder(const std::string& folder)
{
    std::error_code error;
    return !folder.empty() && std::filesystem::is_directory(folder, error) &&
           access(folder.c_str(), W_OK) == 0;
}

Widget nameField(const Chooser& chooser)
{
    return XmFileSelectionBoxGetChild(chooser.box, XmDIALOG_TEXT);
}

std::string folderOf(const Chooser& chooser)
{
    return text::textResource(chooser.box, XmNdirectory);
}

void showName(const Chooser& chooser)
{
    const Widget field = nameField(chooser);
    XmTextFieldSetString(field, const_cast<char*>(chooser.name.c_str()));
    XmTextFieldSetInsertionPosition(field, XmTextFieldGetLastPosition(field));
}

void restoreName(XtPointer data, XtIntervalId*)
{
    Chooser& chooser = *static_cast<Chooser*>(data);
    chooser.restoring = 0;
    showName(chooser);
}

// Value callback of the name field. The box empties the field when the user turns to a folder, in the list or
// otherwise; only what a person has deleted comes with an event.
void nameChanged(Widget field, XtPointer data, XtPointer call)
{
    Chooser& chooser = *static_cast<Chooser*>(data);
    const std::string name = text::fieldText(field);
    if (!name.empty() || static_cast<XmAnyCallbackStruct*>(call)->event)
        chooser.name = name;
    else if (!chooser.name.empty() && !chooser.restoring)
        chooser.restoring = XtAppAddTimeOut(toolkit().context, 0, restoreName, &chooser);
}

// Room for two lines is kept so that the dialogue does not jump.
void complain(const Chooser& chooser, const std::string& sentence)
{
    std::string text = wrapText(text::fromMixed(sentence), 72);
    if (lineCount(text) < 2)
        text += "\n";
    const MotifString label(text);
    XtVaSetValues(chooser.complaint, XmNlabelString, label.get(), nullptr);
}

void goTo(const Chooser& chooser, const std::string& folder)
{
    const MotifString directory(folder);
    XtVaSetValues(chooser.box, XmNdirectory, directory.get(), nullptr);
}

void okPressed(Widget, XtPointer data, XtPointer)
{
    Chooser& chooser = *static_cast<Chooser*>(data);
    const std::string typed = text::fieldText(nameField(chooser));
    const bool blank = typed.find_first_not_of(' ') == std::string::npos;
    const std::string named = pathFromName(folderOf(chooser), typed);
    std::error_code error;
    if (!blank && std::filesystem::is_directory(named, error)) {
        chooser.name.clear(); // it was the folder's
        showName(chooser);
        complain(chooser, "");
        goTo(chooser, named);
        return;
    }
    const std::string path = withExtension(named, chooser.extension);
    const std::string sentence = complaintAbout(path, chooser.capacity);
    complain(chooser, sentence);
    if (!sentence.empty())
        return;
    chooser.path = path;
    chooser.ended = true;
}

void cancelPressed(Widget, XtPointer data, XtPointer)
{
    static_cast<Chooser*>(data)->ended = true;
}

void lastFolderPressed(Widget, XtPointer data, XtPointer)
{
    const Chooser& chooser = *static_cast<Chooser*>(data);
    goTo(chooser, chooser.remembered);
}

void addLastFolderButton(Chooser& chooser)
{
    const MotifString label("Last Folder");
    const Widget button = XtVaCreateManagedWidget("lastFolder", xmPushButtonWidgetClass, chooser.box,
                                                  XmNlabelString, label.get(), nullptr);
    XmKvTipSet(button, "Go to the folder of the file\nthat was written last");
    XtAddCallback(button, XmNactivateCallback, lastFolderPressed, &chooser);
}

// The box takes these keys for its list, although the name has the focus.
const char editing[] = "s <Key>osfBeginLine: beginning-of-line(extend)\n"
                       "s <Key>osfEndLine: end-of-line(extend)\n"
                       "<Key>osfBeginLine: beginning-of-line()\n"
                       "<Key>osfEndLine: end-of-line()\n"
                       "c <Key>a: select-all()\n";

void followName(Chooser& chooser)
{
    XtAddCallback(nameField(chooser), XmNvalueChangedCallback, nameChanged, &chooser);
    XtOverrideTranslations(nameField(chooser), XtParseTranslationTable(editing));
}

void makeBox(Chooser& chooser, const char* title, const std::string& folder, const std::string& filter)
{
    const MotifString directory(folder), pattern(filter.empty() ? "*" : filter);
    const MotifString save("Save"), name("File name"), empty("\n");
    Arg args[] = {{const_cast<char*>(XmNdirectory), reinterpret_cast<XtArgVal>(directory.get())},
                  {const_cast<char*>(XmNpattern), reinterpret_cast<XtArgVal>(pattern.get())},
                  {const_cast<char*>(XmNokLabelString), reinterpret_cast<XtArgVal>(save.get())},
                  {const_cast<char*>(XmNselectionLabelString), reinterpret_cast<XtArgVal>(name.get())},
                  {const_cast<char*>(XmNpathMode), XmPATH_MODE_RELATIVE},
                  {const_cast<char*>(XmNfileFilterStyle), XmFILTER_HIDDEN_FILES},
                  {const_cast<char*>(XmNautoUnmanage), False},
                  {const_cast<char*>(XmNtextColumns), 40},
                  {const_cast<char*>(XmNlistVisibleItemCount), 14},
                  {const_cast<char*>(XmNdialogStyle), XmDIALOG_FULL_APPLICATION_MODAL}};
    chooser.box =
        XmCreateFileSelectionDialog(dialogueParent(), const_cast<char*>("chooser"), args, XtNumber(args));
    XtUnmanageChild(XmFileSelectionBoxGetChild(chooser.box, XmDIALOG_HELP_BUTTON));
    chooser.complaint = XtVaCreateManagedWidget("complaint", xmLabelWidgetClass, chooser.box, XmNlabelString,
                                                empty.get(), XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    if (usableFolder(chooser.remembered))
        addLastFolderButton(chooser);
    followName(chooser);
    text::fixFileBoxWidth(chooser.box);
    XtAddCallback(chooser.box, XmNokCallback, okPressed, &chooser);
    XtAddCallback(chooser.box, XmNcancelCallback, cancelPressed, &chooser);
    prepareDialogue(chooser.box, title, cancelPressed, &chooser);
}

void remember(const std::string& path)
{
    if (!directoryKey.empty())
        IWSetConfig(directoryKey.c_str(), directoryPart(path).c_str());
    if (!extensionKey.empty() && !extensionOf(path).empty())
        IWSetConfig(extensionKey.c_str(), extensionOf(path).c_str());
    if (!directoryKey.empty() || !extensionKey.empty())
        IWSaveUserConfig();
}

void copyOut(char* buffer, const std::string& text, int capacity)
{
    if (buffer && text.size() < static_cast<size_t>(capacity))
        memcpy(buffer, text.c_str(), text.size() + 1);
}

} // namespace

void WMSetGetFileSrc(const char* directoryName, const char* extensionName)
{
    directoryKey = plainKey(directoryName);
    extensionKey = plainKey(extensionName);
}

// NOLINTNEXTLINE(readability-function-size): WMEnh.h has that many parameters
int WMInlineFileChooser(const char* title, char* directory, char* filter, int capacity, int,
                        char* defaultName, char* path, int, int, int)
{
    Chooser chooser;
    chooser.capacity = capacity;
    chooser.remembered = configured(directoryKey);
    chooser.extension = extensionOf(filter);
    if (chooser.extension.empty())
        chooser.extension = configured(extensionKey);
    // A text field shows nothing of a name that is not in the encoding of the locale.
    chooser.name = text::localeIsUtf8() ? text::fromMixed(defaultName) : defaultName;
    const std::string folder = usableFolder(directory)            ? directory
                               : usableFolder(chooser.remembered) ? chooser.remembered
                                                                  : nearestDirectory(directory);
    makeBox(chooser, title, nearestDirectory(folder), filter);
    XtManageChild(chooser.box);
    showName(chooser);
    XmProcessTraversal(nameField(chooser), XmTRAVERSE_CURRENT);
    runUntil([&] { return chooser.ended; });
    const std::string pattern = text::textResource(chooser.box, XmNpattern);
    if (chooser.restoring)
        XtRemoveTimeOut(chooser.restoring);
    destroyDialogue(chooser.box);
    if (chooser.path.empty())
        return 0;
    copyOut(path, chooser.path, capacity);
    copyOut(directory, directoryPart(chooser.path), capacity);
    copyOut(defaultName, lastPart(chooser.path), capacity);
    copyOut(filter, pattern, capacity);
    remember(chooser.path);
    return 1;
}
