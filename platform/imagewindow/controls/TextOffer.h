// SPDX-License-Identifier: MIT
// Text that a widget offers to other programs as a selection: PRIMARY and the clipboard.
#pragma once

#include <X11/Intrinsic.h>

#include <map>
#include <string>

namespace viewer {

class TextOffer {
public:
    // owner: a realised widget that outlives this and gives its resource XmNuserData to it.
    explicit TextOffer(Widget owner);
    TextOffer(const TextOffer&) = delete;
    TextOffer& operator=(const TextOffer&) = delete;

    // utf8 is offered as XA_PRIMARY or the atom CLIPBOARD until another program offers something. time: of
    // the event. False when the server refuses.
    bool offer(Atom selection, const std::string& utf8, Time time);

private:
    static Boolean convert(Widget owner, Atom* selection, Atom* target, Atom* type, XtPointer* value,
                           unsigned long* length, int* format);
    static void lose(Widget owner, Atom* selection);

    Widget owner;
    std::map<Atom, std::string> texts; // by selection
};

} // namespace viewer
