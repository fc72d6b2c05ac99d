// SPDX-License-Identifier: MIT
// The dialogue that asks for the rows and columns of a montage of sections, wavelengths or time points. Owned
// by its image window.
#pragma once

#include "platform/imagewindow/controls/FormDialogue.h"
#include "platform/imagewindow/view/View.h"

namespace viewer {

struct Desk;

class MontageDialogue {
public:
    MontageDialogue(Widget parent, Desk& desk);

    void show();

private:
    // Of the panels that are chosen, without a grid.
    View chosenView() const;
    void propose(const PanelGrid& grid);
    void montage();

    Desk& desk;
    FormDialogue form;
    FormDialogue::Choice style;
    Widget columns, rows;
};

} // namespace viewer
