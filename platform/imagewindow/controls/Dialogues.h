// SPDX-License-Identifier: MIT
// The dialogues of one window, each made when it is first asked for. Goes before the window's widgets do.
#pragma once

#include "platform/imagewindow/controls/MontageDialogue.h"
#include "platform/imagewindow/controls/PlayDialogue.h"
#include "platform/imagewindow/controls/SaveDialogue.h"
#include "platform/imagewindow/controls/ScaleBarDialogue.h"
#include "platform/imagewindow/controls/ScaleDialogue.h"

#include <memory>

namespace viewer {

struct Desk;

class Dialogues {
public:
    explicit Dialogues(Desk& desk) : desk(desk) {}

    // Asks for the scale of an image whose file does not tell it.
    void askScale();
    void askBarStyle();
    // Asks for the rows and columns of panels.
    void askForMontage();
    // Asks what is played, and how fast.
    void askWhatToPlay();
    void showHelp();
    void showAbout();
    // Asks where to save something; see SaveDialogue.
    void askWhereToSave(const SaveQuestion& question, SaveDialogue::Save save);

    // Those that are open follow: a tool has drawn another segment.
    void segmentDrawn();

private:
    Desk& desk;
    std::unique_ptr<ScaleDialogue> scale;
    std::unique_ptr<ScaleBarDialogue> bar;
    std::unique_ptr<MontageDialogue> montage;
    std::unique_ptr<PlayDialogue> play;
    std::unique_ptr<SaveDialogue> saving;
};

} // namespace viewer
