// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Dialogues.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/HelpPage.h"
#include "platform/imagewindow/controls/Messages.h"

namespace viewer {

namespace {

constexpr const char* aboutText = "Image window " PROJECT_VERSION "\n\n"
                                  "Shows microscope images: OME-TIFF, hyperstacks and plain TIFF.\n"
                                  "Tools attach to an image window by its number.";

} // namespace

void Dialogues::showContrast()
{
    if (!contrast)
        contrast = std::make_unique<ContrastDialogue>(desk.shell, desk);
    contrast->show();
}

void Dialogues::askScale()
{
    if (!scale)
        scale = std::make_unique<ScaleDialogue>(desk.shell, desk);
    scale->show();
}

void Dialogues::showHelp()
{
    showHelpPage(desk.shell);
}

void Dialogues::showAbout()
{
    showInformation(desk.shell, "About the image window", aboutText);
}

void Dialogues::chooseAnother()
{
    chooseFile(desk.shell, desk);
}

bool Dialogues::openAnother(const std::string& path)
{
    try {
        desk.program.open(path);
        return true;
    } catch (const image::ImageError& error) {
        showError(desk.shell, "Cannot open image", error.what());
    }
    return false;
}

void Dialogues::imageDrawn()
{
    if (contrast)
        contrast->refresh();
}

void Dialogues::segmentDrawn()
{
    if (scale)
        scale->refresh();
}

} // namespace viewer
