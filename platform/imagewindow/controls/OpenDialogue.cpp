// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/OpenDialogue.h"

#include "platform/imagewindow/controls/LocalText.h"
#include "platform/text/MotifText.h"

#include <Xm/FileSB.h>
#include <Xm/List.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace viewer {

namespace {

// .tif and .tiff, .ome and .ome.xml (the companion files), .btf, .png, .jpg and .jpeg, .gif: one pattern, as
// the file box takes no more.
constexpr const char* imagePattern = "*.[tToObBpPjJgG][iImMtTnNpP][fFeEgG]*";
constexpr const char* anyPattern = "*";

// Where the last file was looked for, of all windows; empty at first.
std::string lastFolder;

void enterFolder(Widget dialogue, const std::filesystem::path& path)
{
    lastFolder = path.string();
    if (lastFolder.back() != '/')
        lastFolder += '/';
    const text::MotifString folder(lastFolder); // as its bytes are
    XtVaSetValues(dialogue, XmNdirectory, folder.get(), nullptr);
}

// The files that are selected in the list.
std::vector<std::string> selectedFiles(Widget dialogue)
{
    XmStringTable items = nullptr;
    int count = 0;
    XtVaGetValues(XtNameToWidget(dialogue, "*ItemsList"), XmNselectedItems, &items, XmNselectedItemCount,
                  &count, nullptr);
    std::vector<std::string> files;
    for (int i = 0; i < count; ++i)
        files.push_back((std::filesystem::path(lastFolder) / text::plainText(items[i])).string());
    return files;
}

void filesChosen(Widget dialogue, XtPointer client, XtPointer call)
{
    const auto* choice = static_cast<XmFileSelectionBoxCallbackStruct*>(call);
    const auto& entrance = *static_cast<Entrance*>(client); // goes with its widget
    const std::filesystem::path path = text::plainText(choice->value);
    std::error_code error;
    if (path.empty())
        return;
    if (std::filesystem::is_directory(path, error))
        return enterFolder(dialogue, path);
    lastFolder = text::plainText(choice->dir);
    std::vector<std::string> files = selectedFiles(dialogue);
    if (files.size() < 2) // the name may have been typed
        files = {path.string()};
    if (openAll(entrance, files))
        XtUnmanageChild(dialogue);
}

// Puts the chosen name into the field, as a list with single selection does by itself.
void selectionChanged(Widget list, XtPointer client, XtPointer call)
{
    const auto* selection = static_cast<XmListCallbackStruct*>(call);
    const std::string name = selection->selected_item_count > 0 ? text::plainText(selection->item) : "";
    XmTextFieldSetString(XtNameToWidget(static_cast<Widget>(client), "Text"),
                         const_cast<char*>(name.c_str()));
    (void)list;
}

void allFilesToggled(Widget toggle, XtPointer, XtPointer call)
{
    const bool all = static_cast<XmToggleButtonCallbackStruct*>(call)->set != 0;
    const auto pattern = labelString(all ? anyPattern : imagePattern);
    XtVaSetValues(XtParent(toggle), XmNpattern, pattern.get(), nullptr);
}

void unmanage(Widget dialogue, XtPointer /*client*/, XtPointer /*call*/)
{
    XtUnmanageChild(dialogue);
}

void destroyDialogue(Widget dialogue, XtPointer /*client*/, XtPointer /*call*/)
{
    XtDestroyWidget(XtParent(dialogue));
}

void freeEntrance(Widget, XtPointer client, XtPointer)
{
    const std::unique_ptr<Entrance> owned(static_cast<Entrance*>(client));
}

Widget makeDialogue(Widget parent)
{
    const text::MotifString title("Open images"), pattern(imagePattern);
    const text::MotifString folder(lastFolder); // as its bytes are
    // The path mode can be set at creation only: changing it later crashes the toolkit.
    Arg args[] = {
        {const_cast<char*>(XmNpathMode), XmPATH_MODE_RELATIVE},
        {const_cast<char*>(XmNfileFilterStyle), XmFILTER_HIDDEN_FILES},
        {const_cast<char*>(XmNdirectory), reinterpret_cast<XtArgVal>(folder.get())},
        {const_cast<char*>(XmNpattern), reinterpret_cast<XtArgVal>(pattern.get())},
        {const_cast<char*>(XmNautoUnmanage), False},
        {const_cast<char*>(XmNdialogTitle), reinterpret_cast<XtArgVal>(title.get())},
    };
    return XmCreateFileSelectionDialog(parent, const_cast<char*>("open"), args,
                                       static_cast<Cardinal>(std::size(args)));
}

} // namespace

void chooseFiles(const Entrance& entrance, const std::filesystem::path& start)
{
    std::error_code error;
    if (lastFolder.empty())
        lastFolder = start.empty() ? std::filesystem::current_path(error).string() : start.string();
    Widget dialogue = makeDialogue(entrance.shell);
    auto owned = std::make_unique<Entrance>(entrance);
    XtUnmanageChild(XtNameToWidget(dialogue, "Help"));
    text::fixFileBoxWidth(dialogue);
    Widget list = XtNameToWidget(dialogue, "*ItemsList");
    XtVaSetValues(list, XmNselectionPolicy, XmEXTENDED_SELECT, nullptr);
    XtAddCallback(list, XmNextendedSelectionCallback, selectionChanged, dialogue);
    const auto all = labelString("Show all files, not only images");
    Widget toggle = XtVaCreateManagedWidget("allFiles", xmToggleButtonWidgetClass, dialogue, XmNlabelString,
                                            all.get(), XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    XtAddCallback(toggle, XmNvalueChangedCallback, allFilesToggled, nullptr);
    XtAddCallback(dialogue, XmNokCallback, filesChosen, owned.get());
    XtAddCallback(dialogue, XmNcancelCallback, unmanage, nullptr);
    XtAddCallback(dialogue, XmNunmapCallback, destroyDialogue, nullptr);
    XtAddCallback(dialogue, XmNdestroyCallback, freeEntrance, owned.release());
    XtManageChild(dialogue);
}

} // namespace viewer
