// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Clipboard.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xatom.h>

#include <algorithm>
#include <array>
#include <utility>

namespace viewer {

namespace {

constexpr unsigned long managerMilliseconds = 2000;

Clipboard* theClipboard = nullptr; // the toolkit's callbacks tell the widget only

// The toolkit frees it.
template<typename Item> XtPointer allocated(const Item* items, std::size_t count)
{
    auto* copy = reinterpret_cast<Item*>(XtMalloc(static_cast<Cardinal>(count * sizeof(Item))));
    std::copy_n(items, count, copy);
    return copy;
}

} // namespace

Clipboard::Clipboard(XtAppContext context, Display* display)
    : context(context), display(display), clipboard(XInternAtom(display, "CLIPBOARD", False)),
      manager(XInternAtom(display, "CLIPBOARD_MANAGER", False)),
      targets(XInternAtom(display, "TARGETS", False)),
      saveTargets(XInternAtom(display, "SAVE_TARGETS", False)), png(XInternAtom(display, "image/png", False))
{
    theClipboard = this;
    owner = XtVaAppCreateShell("clipboard", "ImageWindow", overrideShellWidgetClass, display,
                               XtNmappedWhenManaged, False, XtNwidth, 1, XtNheight, 1, nullptr);
    XtRealizeWidget(owner);
    XtAddEventHandler(owner, NoEventMask, True, answered, this);
}

Clipboard::~Clipboard()
{
    XtDestroyWidget(owner);
    theClipboard = nullptr;
}

bool Clipboard::offer(std::vector<std::byte> bytes)
{
    picture = std::move(bytes);
    if (XtOwnSelection(owner, clipboard, XtLastTimestampProcessed(display), convert, lose, nullptr))
        return true;
    picture.clear();
    return false;
}

Boolean Clipboard::convert(Widget, Atom*, Atom* target, Atom* type, XtPointer* value, unsigned long* length,
                           int* format)
{
    const Clipboard& self = *theClipboard;
    if (*target == self.targets) {
        const std::array offered{self.targets, XInternAtom(self.display, "TIMESTAMP", False),
                                 XInternAtom(self.display, "MULTIPLE", False), self.saveTargets, self.png};
        *value = allocated(offered.data(), offered.size());
        *length = offered.size();
        *type = XA_ATOM;
        *format = 32;
        return True;
    }
    if (*target != self.png || self.picture.empty())
        return False;
    *value = allocated(self.picture.data(), self.picture.size());
    *length = self.picture.size();
    *type = self.png;
    *format = 8;
    return True;
}

void Clipboard::lose(Widget, Atom*)
{
    theClipboard->picture = {};
}

void Clipboard::answered(Widget, XtPointer client, XEvent* event, Boolean*)
{
    auto& self = *static_cast<Clipboard*>(client);
    if (event->type == SelectionNotify && event->xselection.selection == self.manager)
        self.managerAnswered = true;
}

// The manager asks for the picture, as any peer does, and then answers.
void Clipboard::handOver()
{
    if (picture.empty() || XGetSelectionOwner(display, manager) == None)
        return;
    const Window window = XtWindow(owner);
    XChangeProperty(display, window, saveTargets, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&png), 1);
    XConvertSelection(display, manager, saveTargets, saveTargets, window, XtLastTimestampProcessed(display));
    bool late = false;
    const auto expire = [](XtPointer client, XtIntervalId*) { *static_cast<bool*>(client) = true; };
    const XtIntervalId timer = XtAppAddTimeOut(context, managerMilliseconds, expire, &late);
    while (!managerAnswered && !late)
        XtAppProcessEvent(context, XtIMAll);
    if (!late)
        XtRemoveTimeOut(timer);
}

} // namespace viewer
