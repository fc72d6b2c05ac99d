// SPDX-License-Identifier: MIT
// The dialogue that sets what is played, how fast, and what happens at the end. What is chosen counts at once
// and is kept. Owned by its image window.
#pragma once

#include "platform/imagewindow/controls/FormDialogue.h"

namespace viewer {

struct Desk;

class PlayDialogue {
public:
    PlayDialogue(Widget parent, Desk& desk);

    void show();

private:
    // False, and said why, when what stands there is no rate.
    bool set();
    void play();

    Desk& desk;
    FormDialogue form;
    FormDialogue::Choice axis, atEnd;
    Widget rate;
};

} // namespace viewer
