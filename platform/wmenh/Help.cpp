// SPDX-License-Identifier: MIT
#include "platform/wmenh/Help.h"

#include "platform/text/LocaleText.h"
#include "platform/wmenh/Dialogues.h"
#include "platform/wmenh/Toolkit.h"

#include <Xm/Form.h>
#include <Xm/PushB.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <vector>

namespace wmenh {
namespace {

namespace fs = std::filesystem;

constexpr int columns = 78, rows = 34;

// Open help windows by topic.
std::map<std::string, Widget> windows;

std::vector<fs::path> helpFolders()
{
    std::vector<fs::path> folders;
    if (const char* const given = std::getenv("KELVORA_HELP_DIR"); given && *given)
        folders.emplace_back(given);
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (!error)
        folders.push_back(program.parent_path().parent_path() / "share/kelvora/help");
    folders.emplace_back(HELP_DIR);
    return folders;
}

void closeHelp(Widget, XtPointer data, XtPointer)
{
    const auto window = static_cast<Widget>(data);
    std::erase_if(windows, [window](const auto& entry) { return entry.second == window; });
    destroyDialogue(window);
}

Widget addCloseButton(Widget form)
{
    const MotifString label("Close");
    const Widget button = XtVaCreateManagedWidget(
        "close", xmPushButtonWidgetClass, form, XmNlabelString, label.get(), XmNmarginWidth, 16,
        XmNmarginHeight, 4, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, nullptr);
    XtAddCallback(button, XmNactivateCallback, closeHelp, form);
    return button;
}

void addText(Widget form, Widget below, const std::string& text)
{
    const Widget field = makeScrolledText(form, text::fromMixed(joinLines(text)), rows, columns);
    XtVaSetValues(XtParent(field), XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                  XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget,
                  below, XmNbottomOffset, 8, nullptr);
}

Widget makeWindow(const std::string& topic)
{
    Arg args[] = {{const_cast<char*>(XmNmarginWidth), 10}, {const_cast<char*>(XmNmarginHeight), 10}};
    const Widget form = XmCreateFormDialog(dialogueParent(), const_cast<char*>("help"), args, XtNumber(args));
    const Widget close = addCloseButton(form);
    XtVaSetValues(form, XmNcancelButton, close, XmNdefaultButton, close, XmNautoUnmanage, False, nullptr);
    addText(form, close, helpText(topic).value_or("There is no help text for \"" + topic + "\"."));
    prepareDialogue(form, ("Help: " + topic).c_str(), closeHelp, form, Place::Beside);
    return form;
}

} // namespace

std::optional<std::string> helpText(const std::string& topic)
{
    if (topic.find('/') != std::string::npos)
        return std::nullopt;
    for (const fs::path& folder : helpFolders()) {
        std::ifstream file(folder / (topic + ".txt"), std::ios::binary);
        if (file)
            return std::string(std::istreambuf_iterator<char>(file), {});
    }
    return std::nullopt;
}

void showHelp(const std::string& topic)
{
    const auto open = windows.find(topic);
    const bool found = open != windows.end();
    const Widget window = found ? open->second : makeWindow(topic);
    windows[topic] = window;
    XtManageChild(window);
    if (found)
        XMapRaised(XtDisplay(window), XtWindow(XtParent(window)));
}

} // namespace wmenh
