// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/SelectionText.h"

#include <utility>

namespace viewer {

namespace {

constexpr unsigned long waitMilliseconds = 3000;
constexpr long maxBytes = 1 << 18;

} // namespace

SelectionText::SelectionText(Widget shell)
    : shell(shell), place(XInternAtom(XtDisplay(shell), "_KV_PASTED", False))
{
    XtAddEventHandler(shell, NoEventMask, True, notified, this);
}

SelectionText::~SelectionText()
{
    XtRemoveEventHandler(shell, NoEventMask, True, notified, this);
    if (limit)
        XtRemoveTimeOut(limit);
}

void SelectionText::ask(Atom selection, Atom target, Time time, Take take)
{
    const auto late = [](XtPointer client, XtIntervalId*) {
        auto& self = *static_cast<SelectionText*>(client);
        self.limit = 0;
        self.end({"", "the other program does not answer"});
    };
    if (limit)
        XtRemoveTimeOut(limit);
    limit = XtAppAddTimeOut(XtWidgetToApplicationContext(shell), waitMilliseconds, late, this);
    waiting = std::move(take);
    asked = selection;
    askedTarget = target;
    XDeleteProperty(XtDisplay(shell), XtWindow(shell), place);
    XConvertSelection(XtDisplay(shell), selection, target, place, XtWindow(shell), time);
}

void SelectionText::notified(Widget, XtPointer self, XEvent* event, Boolean*)
{
    if (event->type == SelectionNotify)
        static_cast<SelectionText*>(self)->handle(event->xselection);
}

void SelectionText::handle(const XSelectionEvent& event)
{
    if (!waiting || event.selection != asked || event.target != askedTarget)
        return;
    end(event.property == place ? readProperty(place) : Answer{"", "the other program has no text"});
}

SelectionText::Answer SelectionText::readProperty(Atom property)
{
    Display* display = XtDisplay(shell);
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, XtWindow(shell), property, 0, maxBytes / 4, False, AnyPropertyType, &type,
                       &format, &count, &rest, &data);
    Answer answer;
    // A text that comes in parts is longer than any list of paths.
    if (rest > 0 || type == XInternAtom(display, "INCR", False))
        answer.problem = "it is too long for a list of files";
    else if (format != 8 || !data)
        answer.problem = "the other program sends no text";
    else
        answer.text.assign(reinterpret_cast<const char*>(data), count);
    if (data)
        XFree(data);
    XDeleteProperty(display, XtWindow(shell), property);
    return answer;
}

void SelectionText::end(const Answer& answer)
{
    if (limit)
        XtRemoveTimeOut(std::exchange(limit, 0));
    if (const Take take = std::exchange(waiting, nullptr))
        take(answer);
}

} // namespace viewer
