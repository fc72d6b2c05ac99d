// SPDX-License-Identifier: MIT
#include "platform/wmenh/Dialogues.h"

#include "platform/include/WMEnh.h"
#include "platform/text/LocaleText.h"
#include "platform/wmenh/ImageWindows.h"
#include "platform/wmenh/MainWindow.h"
#include "platform/wmenh/Toolkit.h"

#include <Xm/DialogS.h>
#include <Xm/MessageB.h>
#include <Xm/Protocols.h>

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

namespace wmenh {
namespace {

constexpr int textColumns = 76;
constexpr int mostLines = 24;                // a longer text scrolls
constexpr size_t mostText = size_t{1} << 16; // characters of a dialogue's text
constexpr size_t mostWarnings = 5;           // on the screen at a time

bool centerNext = false;

struct Warning {
    std::string text;
    Widget dialogue;
};
// On the screen, the oldest first.
std::vector<Warning> warnings;

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds quietTime{1};

// The warning that the user closed last. What made it may go on: closing uncovers the window that is drawn in
// vain again. It stays away until it has not been raised for a while.
struct ClosedWarning {
    std::string text;
    Clock::time_point lastRaised;
};
ClosedWarning closedWarning;

bool stillQuiet(const char* text)
{
    const Clock::time_point now = Clock::now();
    if (closedWarning.text != text || now - closedWarning.lastRaised > quietTime)
        return false;
    closedWarning.lastRaised = now;
    return true;
}

bool mainWindowShown()
{
    const Widget shell = mainShell();
    XWindowAttributes attributes;
    return shell && XtIsRealized(shell) &&
           XGetWindowAttributes(XtDisplay(shell), XtWindow(shell), &attributes) &&
           attributes.map_state == IsViewable;
}

Rectangle sizeOf(Widget dialogue)
{
    Dimension width = 0, height = 0;
    XtVaGetValues(dialogue, XmNwidth, &width, XmNheight, &height, nullptr);
    return {0, 0, width, height};
}

void moveDialogue(Widget dialogue, int x, int y)
{
    XtVaSetValues(dialogue, XmNx, x, XmNy, y, nullptr);
    placeShell(XtParent(dialogue), x, y);
}

// The next two are map callbacks of a dialogue: its size is known, its window not yet shown.
void centerOnScreen(Widget dialogue, XtPointer, XtPointer)
{
    const Rectangle size = sizeOf(dialogue), screen = screenArea(dialogue);
    moveDialogue(dialogue, std::max(0, (screen.width - size.width) / 2),
                 std::max(0, (screen.height - size.height) / 2));
}

void placeBesideMainWindow(Widget dialogue, XtPointer, XtPointer)
{
    const TopLevel top = topLevelOf(XtDisplay(dialogue), XtWindow(mainShell()));
    Rectangle size = sizeOf(dialogue);
    size.width += top.frameArea.width - top.clientArea.width;
    size.height += top.frameArea.height - top.clientArea.height;
    const Rectangle place = base::placeBeside(top.frameArea, size, screenArea(dialogue));
    moveDialogue(dialogue, place.x, place.y);
}

enum class Kind { Error, Question, Warning };

Widget makeMessage(Kind kind, std::string_view message)
{
    const std::string text = wrapText(text::fromMixed(message.substr(0, mostText)), textColumns);
    const bool scrolled = lineCount(text) > mostLines;
    const auto create = kind == Kind::Error      ? XmCreateErrorDialog
                        : kind == Kind::Question ? XmCreateQuestionDialog
                                                 : XmCreateWarningDialog;
    const Widget dialogue = create(dialogueParent(), const_cast<char*>("dialogue"), nullptr, 0);
    const MotifString label(scrolled ? "" : text);
    XtVaSetValues(dialogue, XmNmessageString, label.get(), XmNautoUnmanage, False, nullptr);
    if (scrolled)
        makeScrolledText(dialogue, text, mostLines, textColumns);
    XtUnmanageChild(XmMessageBoxGetChild(dialogue, XmDIALOG_HELP_BUTTON));
    return dialogue;
}

// What the user has answered a modal dialogue.
struct Answer {
    bool given = false;
    bool yes = false;
};

void answerYes(Widget, XtPointer data, XtPointer)
{
    *static_cast<Answer*>(data) = {true, true};
}

void answerNo(Widget, XtPointer data, XtPointer)
{
    *static_cast<Answer*>(data) = {true, false};
}

// A dialogue that the loss of the image windows ends has nothing left to say without them.
enum class WithoutImage { Stays, Ends };

bool runModal(Widget dialogue, const char* title, WithoutImage withoutImage)
{
    const bool ends = withoutImage == WithoutImage::Ends;
    if (ends)
        watchImageWindows();
    Answer answer;
    XtVaSetValues(dialogue, XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL, nullptr);
    XtAddCallback(dialogue, XmNokCallback, answerYes, &answer);
    XtAddCallback(dialogue, XmNcancelCallback, answerNo, &answer);
    prepareDialogue(dialogue, title, answerNo, &answer);
    XtManageChild(dialogue);
    runUntil([&] { return answer.given || (ends && imageWindowsGone()); });
    destroyDialogue(dialogue);
    return answer.yes;
}

void endWarning(Widget, XtPointer data, XtPointer)
{
    const auto found = std::ranges::find(warnings, static_cast<Widget>(data), &Warning::dialogue);
    if (found == warnings.end())
        return;
    closedWarning = {found->text, Clock::now()};
    destroyDialogue(found->dialogue);
    warnings.erase(found);
}

std::string format(const char* pattern, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    const int length = vsnprintf(nullptr, 0, pattern, again);
    va_end(again);
    std::string text(static_cast<size_t>(std::max(length, 0)) + 1, '\0');
    vsnprintf(text.data(), text.size(), pattern, arguments);
    text.pop_back();
    return text;
}

} // namespace

Widget dialogueParent()
{
    return toolkit().shell;
}

void prepareDialogue(Widget dialogue, const char* title, XtCallbackProc closed, XtPointer clientData,
                     Place place)
{
    const MotifString name(text::fromMixed(title));
    const bool center = centerNext || !mainWindowShown();
    const bool own = center || place == Place::Beside; // not where Motif would put it
    centerNext = false;
    XtVaSetValues(dialogue, XmNdialogTitle, name.get(), XmNdefaultPosition, !own, nullptr);
    if (own)
        XtAddCallback(dialogue, XmNmapCallback, center ? centerOnScreen : placeBesideMainWindow, nullptr);
    const Widget shell = XtParent(dialogue);
    XtVaSetValues(shell, XmNdeleteResponse, XmDO_NOTHING, nullptr);
    XmAddWMProtocolCallback(shell, XInternAtom(XtDisplay(shell), "WM_DELETE_WINDOW", False), closed,
                            clientData);
}

void destroyDialogue(Widget dialogue)
{
    XtUnmanageChild(dialogue);
    XtDestroyWidget(XtParent(dialogue));
}

} // namespace wmenh

using namespace wmenh;

void WMConfirmError(const char* pattern, ...)
{
    va_list arguments;
    va_start(arguments, pattern);
    const std::string text = format(pattern, arguments);
    va_end(arguments);
    const Widget dialogue = makeMessage(Kind::Error, text);
    XtUnmanageChild(XmMessageBoxGetChild(dialogue, XmDIALOG_CANCEL_BUTTON));
    runModal(dialogue, "Error", WithoutImage::Ends);
}

int WMConfirm(const char* text)
{
    const Widget dialogue = makeMessage(Kind::Question, text);
    const MotifString yes("Yes"), no("No");
    XtVaSetValues(dialogue, XmNokLabelString, yes.get(), XmNcancelLabelString, no.get(), XmNdefaultButtonType,
                  XmDIALOG_CANCEL_BUTTON, nullptr);
    return runModal(dialogue, "Question", WithoutImage::Stays) ? 1 : 0;
}

void WMShowWarning(const char* text)
{
    const auto same = std::find_if(warnings.begin(), warnings.end(),
                                   [text](const Warning& warning) { return warning.text == text; });
    if (same != warnings.end() || stillQuiet(text))
        return;
    if (warnings.size() == mostWarnings)
        endWarning(nullptr, warnings.front().dialogue, nullptr);
    const Widget dialogue = makeMessage(Kind::Warning, text);
    XtUnmanageChild(XmMessageBoxGetChild(dialogue, XmDIALOG_CANCEL_BUTTON));
    XtAddCallback(dialogue, XmNokCallback, endWarning, dialogue);
    XtAddCallback(dialogue, XmNcancelCallback, endWarning, dialogue);
    prepareDialogue(dialogue, "Warning", endWarning, dialogue);
    warnings.push_back({text, dialogue});
    XtManageChild(dialogue);
}

void WMSetCenterOnScreen(int on)
{
    centerNext = on != 0;
}
