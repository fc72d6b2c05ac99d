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

// Opens each; tells in a dialogue which could not be opened, and problem (may be empty). Whether all is well.
bool openAll(Widget shell, const OpenFile& open, const std::vector<std::string>& paths,
             const std::string& problem = "");

class Intake {
public:
    // shell: realized, and lives as long as this object.
    Intake(Widget shell, OpenFile open);

    // Asks the clipboard, else the primary selection, for paths and opens them.
    void paste();

private:
    void askNext(std::size_t question);
    void take(const SelectionText::Answer& answer);

    Widget shell;
    OpenFile open;
    SelectionText text;
    DropTarget target;
};

} // namespace viewer
