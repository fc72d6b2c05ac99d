// SPDX-License-Identifier: MIT
// Images that come to a window from outside: dropped on it, pasted as paths, or chosen. All go one way: a
// list of paths is opened, and one dialogue tells what could not be.
#pragma once

#include "platform/imagewindow/controls/DropTarget.h"
#include "platform/imagewindow/controls/SelectionText.h"

#include <X11/Intrinsic.h>

#include <functional>
#include <string>
#include <vector>

namespace viewer {

// Opens a file in a window of its own. Throws image::ImageError with a sentence.
using OpenFile = std::function<void(const std::string& path)>;

// Where images come in.
struct Entrance {
    Widget shell; // realized when it is used; dialogues stand before it
    OpenFile open;
    // Takes down what could not be opened and why, besides the dialogue; null: nobody does.
    std::function<void(const std::string& sentence)> note{};
};

// Of an image window, which lists failures under its messages; it lives as long as the window.
struct Desk;
Entrance entranceOf(Desk& desk);

// Opens each; tells in a dialogue which could not be opened, and problem (may be empty). Whether all is well.
bool openAll(const Entrance& entrance, const std::vector<std::string>& paths,
             const std::string& problem = "");

class Intake {
public:
    // Its shell is realized, and lives as long as this object.
    explicit Intake(Entrance entrance);

    // Asks the clipboard, else the primary selection, for paths and opens them.
    void paste();

private:
    void askNext(std::size_t question);
    void take(const SelectionText::Answer& answer);

    Entrance entrance;
    SelectionText text;
    DropTarget target;
};

} // namespace viewer
