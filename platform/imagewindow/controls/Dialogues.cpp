// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Dialogues.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/HelpPage.h"
#include "platform/imagewindow/controls/Messages.h"

#include <utility>

namespace viewer {

namespace {

constexpr const char* aboutText =
    "Image window " PROJECT_VERSION "\n\n"
    "Shows microscope images: OME-TIFF, hyperstacks, plain TIFF, PNG, JPEG and GIF.\n"
    "Tools attach to an image window by its number.";

} // namespace

void Dialogues::askScale()
{
    if (!scale)
        scale = std::make_unique<ScaleDialogue>(desk.shell, desk);
    scale->show();
}

void Dialogues::askBarStyle()
{
    if (!bar)
        bar = std::make_unique<ScaleBarDialogue>(desk.shell, desk);
    bar->show();
}

void Dialogues::askForMontage()
{
    if (!montage)
        montage = std::make_unique<MontageDialogue>(desk.shell, desk);
    montage->show();
}

void Dialogues::askWhatToPlay()
{
    if (!play)
        play = std::make_unique<PlayDialogue>(desk.shell, desk);
    play->show();
}

void Dialogues::showHelp()
{
    showHelpPage(desk.shell);
}

void Dialogues::showAbout()
{
    showInformation(desk.shell, "About the image window", aboutText);
}

void Dialogues::askWhereToSave(const SaveQuestion& question, SaveDialogue::Save save)
{
    saving.reset();
    saving = std::make_unique<SaveDialogue>(desk.shell, question, std::move(save));
}

void Dialogues::segmentDrawn()
{
    if (scale)
        scale->refresh();
}

} // namespace viewer
