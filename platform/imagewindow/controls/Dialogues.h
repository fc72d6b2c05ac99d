// SPDX-License-Identifier: MIT
// The dialogues of one window, each made when it is first asked for. Goes before the window's widgets do.
#pragma once

#include "platform/imagewindow/controls/ContrastDialogue.h"
#include "platform/imagewindow/controls/ScaleDialogue.h"

#include <memory>
#include <string>

namespace viewer {

struct Desk;

class Dialogues {
public:
    explicit Dialogues(Desk& desk) : desk(desk) {}

    void showContrast();
    // Asks for the scale of an image whose file does not tell it.
    void askScale();
    void showHelp();
    void showAbout();
    // Asks for a file and opens it in a new window.
    void chooseAnother();
    // False when it cannot be opened; the user has been told.
    bool openAnother(const std::string& path);

    // Those that are open follow: the image was drawn anew; a tool has drawn another segment.
    void imageDrawn();
    void segmentDrawn();

private:
    Desk& desk;
    std::unique_ptr<ContrastDialogue> contrast;
    std::unique_ptr<ScaleDialogue> scale;
};

} // namespace viewer
