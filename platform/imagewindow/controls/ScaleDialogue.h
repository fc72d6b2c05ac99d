// SPDX-License-Identifier: MIT
// The dialogue in which the user sets the scale of an image whose file does not tell it: the spacing of its
// pixels, or the known length of the segment that a tool has drawn. Owned by its image window; the widgets go
// with the object. Not shown at first.
#pragma once

#include "platform/imagewindow/files/Scale.h"

#include <X11/Intrinsic.h>

#include <array>
#include <optional>
#include <string>

namespace viewer {

struct Desk;

class ScaleDialogue {
public:
    ScaleDialogue(Widget parent, Desk& desk);
    ~ScaleDialogue();
    ScaleDialogue(const ScaleDialogue&) = delete;
    ScaleDialogue& operator=(const ScaleDialogue&) = delete;

    void show();
    // The segment has changed.
    void refresh();

private:
    enum Field { X, Y, Z, Known, fieldCount };

    Widget addRow(Widget column, Field field);
    void makeButtons(Widget column);
    void fill(const UserScale& scale);
    void takeKnownLength();
    void set();
    void remove();
    void say(const std::string& sentence);
    // Nothing, and said why, when what stands there is no length; untouched when the field is empty.
    bool read(Field field, std::optional<float>& microns);

    Desk& desk;
    Widget dialogue = nullptr, message = nullptr, segment = nullptr, removeButton = nullptr;
    std::array<Widget, fieldCount> fields{};
};

} // namespace viewer
