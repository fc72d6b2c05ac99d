// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Messages.h"

#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/view/TextFlow.h"

#include <Xm/MessageB.h>

namespace viewer {

namespace {

void destroyDialogue(Widget dialogue, XtPointer /*client*/, XtPointer /*call*/)
{
    XtDestroyWidget(XtParent(dialogue));
}

using MakeDialogue = decltype(&XmCreateErrorDialog);

Widget makeMessage(Widget parent, MakeDialogue make, const std::string& title,
                   const text::MotifString& message)
{
    Widget dialogue = make(parent, const_cast<char*>("message"), nullptr, 0);
    const auto heading = labelString(title);
    XtVaSetValues(dialogue, XmNmessageString, message.get(), XmNdialogTitle, heading.get(), XmNautoUnmanage,
                  True, nullptr);
    XtUnmanageChild(XtNameToWidget(dialogue, "Cancel"));
    XtUnmanageChild(XtNameToWidget(dialogue, "Help"));
    XtAddCallback(dialogue, XmNunmapCallback, destroyDialogue, nullptr);
    return dialogue;
}

constexpr int errorWidth = 90; // bytes of a line
constexpr std::size_t maxErrorLines = 12;

} // namespace

void showError(Widget parent, const std::string& title, const std::string& text)
{
    const Measure length = [](const std::string& line) { return static_cast<int>(line.size()); };
    const auto lines = labelString(flow(wordsOf(text), " ", errorWidth, maxErrorLines, length));
    XtManageChild(makeMessage(parent, XmCreateErrorDialog, title, lines));
}

void showInformation(Widget parent, const std::string& title, const std::string& text)
{
    XtManageChild(makeMessage(parent, XmCreateInformationDialog, title, labelString(text, LineFeeds::Kept)));
}

} // namespace viewer
