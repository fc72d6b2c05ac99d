// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Commands.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Dialogues.h"
#include "platform/imagewindow/controls/Intake.h"
#include "platform/imagewindow/controls/OpenDialogue.h"
#include "platform/imagewindow/controls/PictureCommands.h"
#include "platform/imagewindow/controls/Tools.h"
#include "platform/imagewindow/files/RecentFiles.h"

namespace viewer {

namespace {

bool canStepZ(const Desk& d, int step)
{
    const int wanted = d.shown.view.z + step;
    return wanted >= 0 && wanted <= lastSection(d.shown.info(), d.shown.view).z;
}

bool canStepTime(const Desk& d, int step)
{
    const int wanted = d.shown.view.t + step;
    return wanted >= 0 && wanted <= lastSection(d.shown.info(), d.shown.view).t;
}

bool canPlay(const Desk& d)
{
    const PlayAxis axis = playedAxis(d.shown.info(), d.shown.view, d.shown.play.axis);
    return lastAlong(d.shown.info(), d.shown.view, axis) > 0;
}

bool stackToProject(const Desk& d)
{
    return canProject(d.shown);
}

bool shows(const Desk& d, Projection projection)
{
    return d.shown.view.projection == projection;
}

bool canZoom(const Desk& d, int step)
{
    return steppedZoom(d.shown.view.zoom, step) != d.shown.view.zoom;
}

bool showsPanels(const Desk& d, int style)
{
    return d.shown.view.style == style;
}

bool canStepFile(const Desk& d)
{
    return !d.shown.life.growing();
}

std::vector<std::string> recentTexts()
{
    std::vector<std::string> texts;
    for (const auto& path : recentFiles())
        texts.push_back(shownPath(path));
    return texts;
}

// The list may have changed while the menu was up.
void openRecent(Desk& d, std::size_t item)
{
    const auto files = recentFiles();
    if (item < files.size())
        openAll(entranceOf(d), {files[item].string()});
}

// clang-format off
const Command table[] = {
    {.name = "open", .menu = Menu::File, .label = "Open...", .mnemonic = 'O',
     .tip = "Open other images, each in a window of its own",
     .accelerator = "Ctrl<Key>o", .keys = "Ctrl+O", .icon = "open",
     .action = [](Desk& d) { chooseFiles(entranceOf(d), d.shown.info().path.parent_path()); }},
    {.name = "openRecent", .menu = Menu::File, .label = "Open recent", .mnemonic = 'r',
     .tip = "Open an image that was opened before",
     .kind = EntryKind::List, .items = [](const Desk&) { return recentTexts(); },
     .itemAction = [](Desk& d, std::size_t item) { openRecent(d, item); }},
    {.name = "paste", .menu = Menu::File, .label = "Paste path", .mnemonic = 'P',
     .tip = "Open the images whose paths were copied",
     .accelerator = "Ctrl<Key>v", .keys = "Ctrl+V",
     .enabled = [](const Desk& d) { return d.intake != nullptr; },
     .action = [](Desk& d) { d.intake->paste(); }},
    {.name = "savePicture", .menu = Menu::File, .label = "Save picture...", .mnemonic = 'S',
     .tip = "Save the view with all that is drawn on it as a picture or a document",
     .accelerator = "Ctrl<Key>s", .keys = "Ctrl+S", .icon = "save", .newGroup = true,
     .action = [](Desk& d) { savePicture(d); }},
    {.name = "saveFigure", .menu = Menu::File, .label = "Save figure...", .mnemonic = 'f',
     .tip = "Save a page with the view and the profile along the segment that a tool has drawn",
     .accelerator = "Ctrl<Key>g", .keys = "Ctrl+G",
     .action = [](Desk& d) { saveFigure(d); }},
    {.name = "copyPicture", .menu = Menu::File, .label = "Copy picture", .mnemonic = 'y',
     .tip = "Put the view with all that is drawn on it on the clipboard",
     .accelerator = "Ctrl<Key>c", .keys = "Ctrl+C", .icon = "copy",
     .action = [](Desk& d) { copyPicture(d); }},
    {.name = "nextFile", .menu = Menu::File, .label = "Next image of the folder", .mnemonic = 'N',
     .tip = "Show the next image of the folder; in a new window where a tool is attached",
     .accelerator = "Ctrl<Key>osfRight", .keys = "Ctrl+Right", .newGroup = true,
     .enabled = canStepFile,
     .action = [](Desk& d) { d.program.showNeighbour(1); }},
    {.name = "previousFile", .menu = Menu::File, .label = "Previous image of the folder", .mnemonic = 'v',
     .tip = "Show the previous image of the folder; in a new window where a tool is attached",
     .accelerator = "Ctrl<Key>osfLeft", .keys = "Ctrl+Left",
     .enabled = canStepFile,
     .action = [](Desk& d) { d.program.showNeighbour(-1); }},
    {.name = "close", .menu = Menu::File, .label = "Close", .mnemonic = 'C',
     .tip = "Close this window and the tools on it",
     .accelerator = "Ctrl<Key>w", .keys = "Ctrl+W", .newGroup = true,
     .action = [](Desk& d) { d.program.closeWindow(); }},
    {.name = "quit", .menu = Menu::File, .label = "Quit", .mnemonic = 'Q',
     .tip = "Close all windows",
     .accelerator = "Ctrl<Key>q", .keys = "Ctrl+Q",
     .action = [](Desk& d) { d.program.quit(); }},

    {.name = "zoomIn", .menu = Menu::View, .label = "Zoom in", .mnemonic = 'i',
     .tip = "Show the image larger",
     .accelerator = "<Key>equal", .keys = "=", .icon = "zoomIn", .inPopup = true,
     .enabled = [](const Desk& d) { return canZoom(d, 1); },
     .action = [](Desk& d) { d.actions.zoomSteps(1); }},
    {.name = "zoomOut", .menu = Menu::View, .label = "Zoom out", .mnemonic = 'o',
     .tip = "Show the image smaller",
     .accelerator = "<Key>minus", .keys = "-", .icon = "zoomOut", .inPopup = true,
     .enabled = [](const Desk& d) { return canZoom(d, -1); },
     .action = [](Desk& d) { d.actions.zoomSteps(-1); }},
    {.name = "oneToOne", .menu = Menu::View, .label = "One to one", .mnemonic = 'e',
     .tip = "One screen pixel for each image pixel",
     .accelerator = "<Key>1", .keys = "1", .icon = "oneToOne", .inPopup = true,
     .action = [](Desk& d) { d.actions.zoomTo(1.0); }},
    {.name = "fit", .menu = Menu::View, .label = "Fit to window", .mnemonic = 'F',
     .tip = "Show the whole image, as large as the window has room",
     .accelerator = "<Key>f", .keys = "F", .icon = "fit", .inPopup = true,
     .action = [](Desk& d) { d.actions.zoomToFit(); }},

    {.name = "singlePanel", .menu = Menu::View, .label = "Single panel", .mnemonic = 'S',
     .tip = "Show one section",
     .icon = "singlePanel", .newGroup = true, .kind = EntryKind::OneOfSeveral,
     .on = [](const Desk& d) { return showsPanels(d, protocol::SinglePanel); },
     .action = [](Desk& d) { d.actions.setPanels(protocol::SinglePanel); }},
    {.name = "zPanels", .menu = Menu::View, .label = "Z panels", .mnemonic = 'Z',
     .tip = "Show the z sections side by side",
     .icon = "zPanels", .kind = EntryKind::OneOfSeveral,
     .enabled = [](const Desk& d) { return d.shown.info().sizeZ > 1; },
     .on = [](const Desk& d) { return showsPanels(d, protocol::ZPanels); },
     .action = [](Desk& d) { d.actions.setPanels(protocol::ZPanels); }},
    {.name = "wavelengthPanels", .menu = Menu::View, .label = "Wavelength panels", .mnemonic = 'W',
     .tip = "Show the wavelengths side by side",
     .icon = "wavelengthPanels", .kind = EntryKind::OneOfSeveral,
     .enabled = [](const Desk& d) { return d.shown.info().sizeW > 1; },
     .on = [](const Desk& d) { return showsPanels(d, protocol::WavelengthPanels); },
     .action = [](Desk& d) { d.actions.setPanels(protocol::WavelengthPanels); }},
    {.name = "timePanels", .menu = Menu::View, .label = "Time panels", .mnemonic = 'T',
     .tip = "Show the time points side by side",
     .icon = "timePanels", .kind = EntryKind::OneOfSeveral,
     .enabled = [](const Desk& d) { return d.shown.info().sizeT > 1; },
     .on = [](const Desk& d) { return showsPanels(d, protocol::TimePanels); },
     .action = [](Desk& d) { d.actions.setPanels(protocol::TimePanels); }},

    {.name = "montage", .menu = Menu::View, .label = "Montage...", .mnemonic = 'n',
     .tip = "Choose the rows and columns in which sections, wavelengths or time points are shown",
     .enabled = [](const Desk& d) { return d.shown.info().sizeZ > 1 || d.shown.info().sizeW > 1 || d.shown.info().sizeT > 1; },
     .action = [](Desk& d) { d.dialogues.askForMontage(); }},
    {.name = "merge", .menu = Menu::View, .label = "Merge beside the wavelengths", .mnemonic = 'g',
     .tip = "Show all wavelengths together beside the panels of each",
     .kind = EntryKind::Switch,
     .enabled = [](const Desk& d) { return d.shown.info().sizeW > 1; },
     .on = [](const Desk& d) { return showsPanels(d, protocol::WavelengthPanels) && d.shown.view.merge; },
     .action = [](Desk& d) { d.actions.toggleMerge(); }},

    {.name = "scaleBar", .menu = Menu::View, .label = "Scale bar", .mnemonic = 'b',
     .tip = "Show or hide the scale bar",
     .accelerator = "<Key>s", .keys = "S", .icon = "scaleBar", .newGroup = true, .kind = EntryKind::Switch,
     .on = [](const Desk& d) { return d.shown.scaleBar; },
     .action = [](Desk& d) { d.actions.toggleScaleBar(); }},
    {.name = "scaleBarStyle", .menu = Menu::View, .label = "Scale bar style...", .mnemonic = 'y',
     .tip = "Choose length, corner and colour of the scale bar",
     .action = [](Desk& d) { d.dialogues.askBarStyle(); }},
    {.name = "setScale", .menu = Menu::View, .label = "Set scale...", .mnemonic = 'l',
     .tip = "Set the scale of an image whose file does not tell it",
     .accelerator = "<Key>u", .keys = "U",
     .enabled = [](const Desk& d) { return needsScale(d.shown.info()); },
     .action = [](Desk& d) { d.dialogues.askScale(); }},

    {.name = "contrast", .menu = Menu::View, .label = "Contrast and colours...", .mnemonic = 'C',
     .tip = "Show the wavelengths with their histograms: contrast, gamma and colour by hand",
     .accelerator = "<Key>c", .keys = "C", .newGroup = true, .inPopup = true,
     .action = [](Desk& d) { d.actions.showTab(SideTab::Channels); }},
    {.name = "automaticContrast", .menu = Menu::View, .label = "Automatic contrast", .mnemonic = 'A',
     .tip = "Set the contrast from the image",
     .accelerator = "<Key>a", .keys = "A", .icon = "automaticContrast", .inPopup = true,
     .action = [](Desk& d) { d.actions.setAutomaticContrast(); }},

    {.name = "labels", .menu = Menu::View, .label = "Labels in colours", .mnemonic = 'u',
     .tip = "Show each number of a label image in a colour of its own",
     .accelerator = "<Key>l", .keys = "L", .kind = EntryKind::Switch,
     .on = [](const Desk& d) { return d.shown.view.labels; },
     .action = [](Desk& d) { d.actions.setLabels(!d.shown.view.labels); }},

    {.name = "resetView", .menu = Menu::View, .label = "Reset the view", .mnemonic = 'h',
     .tip = "Show the image as if for the first time, and forget how it was seen",
     .newGroup = true,
     .action = [](Desk& d) { d.actions.resetView(); }},

    {.name = "play", .menu = Menu::Stack, .label = "Play", .mnemonic = 'P',
     .tip = "Show one section or time point after the other, until a step by hand",
     .accelerator = "<Key>p", .keys = "P", .icon = "play", .newGroup = true, .kind = EntryKind::Switch,
     .enabled = canPlay,
     .on = [](const Desk& d) { return d.shown.playback.running(); },
     .action = [](Desk& d) { d.actions.togglePlay(); }},
    {.name = "playing", .menu = Menu::Stack, .label = "What to play...", .mnemonic = 'W',
     .tip = "Choose what is played, how fast, and what happens at the end",
     .enabled = canPlay,
     .action = [](Desk& d) { d.dialogues.askWhatToPlay(); }},

    {.name = "nextSection", .menu = Menu::Stack, .label = "Next section", .mnemonic = 'N',
     .tip = "Show the next z section",
     .accelerator = "<Key>osfPageDown", .keys = "Page Down", .newGroup = true,
     .enabled = [](const Desk& d) { return canStepZ(d, 1); },
     .action = [](Desk& d) { d.actions.stepZ(1); }},
    {.name = "previousSection", .menu = Menu::Stack, .label = "Previous section", .mnemonic = 'r',
     .tip = "Show the previous z section",
     .accelerator = "<Key>osfPageUp", .keys = "Page Up",
     .enabled = [](const Desk& d) { return canStepZ(d, -1); },
     .action = [](Desk& d) { d.actions.stepZ(-1); }},
    {.name = "nextTimePoint", .menu = Menu::Stack, .label = "Next time point", .mnemonic = 'x',
     .tip = "Show the next time point",
     .accelerator = "Ctrl<Key>osfPageDown", .keys = "Ctrl+Page Down",
     .enabled = [](const Desk& d) { return canStepTime(d, 1); },
     .action = [](Desk& d) { d.actions.stepTime(1); }},
    {.name = "previousTimePoint", .menu = Menu::Stack, .label = "Previous time point", .mnemonic = 'v',
     .tip = "Show the previous time point",
     .accelerator = "Ctrl<Key>osfPageUp", .keys = "Ctrl+Page Up",
     .enabled = [](const Desk& d) { return canStepTime(d, -1); },
     .action = [](Desk& d) { d.actions.stepTime(-1); }},

    {.name = "section", .menu = Menu::Stack, .label = "Section", .mnemonic = 'i',
     .tip = "Show the section",
     .newGroup = true, .kind = EntryKind::OneOfSeveral,
     .on = [](const Desk& d) { return shows(d, Projection::Section); },
     .action = [](Desk& d) { d.actions.setProjection(Projection::Section); }},
    {.name = "maximum", .menu = Menu::Stack, .label = "Maximum over z", .mnemonic = 'M',
     .tip = "Show for each pixel the largest value of all sections; tools sample the section",
     .kind = EntryKind::OneOfSeveral,
     .enabled = stackToProject,
     .on = [](const Desk& d) { return shows(d, Projection::Maximum); },
     .action = [](Desk& d) { d.actions.setProjection(Projection::Maximum); }},
    {.name = "mean", .menu = Menu::Stack, .label = "Mean over z", .mnemonic = 'e',
     .tip = "Show for each pixel the mean of all sections; tools sample the section",
     .kind = EntryKind::OneOfSeveral,
     .enabled = stackToProject,
     .on = [](const Desk& d) { return shows(d, Projection::Mean); },
     .action = [](Desk& d) { d.actions.setProjection(Projection::Mean); }},
    {.name = "sum", .menu = Menu::Stack, .label = "Sum over z", .mnemonic = 'o',
     .tip = "Show for each pixel the sum of all sections; tools sample the section",
     .kind = EntryKind::OneOfSeveral,
     .enabled = stackToProject,
     .on = [](const Desk& d) { return shows(d, Projection::Sum); },
     .action = [](Desk& d) { d.actions.setProjection(Projection::Sum); }},

    {.name = "lineProfile", .menu = Menu::Tools, .label = "Line profile", .mnemonic = 'L',
     .tip = "Start the line profile tool, or bring it to the front",
     .accelerator = "Ctrl<Key>l", .keys = "Ctrl+L", .icon = "lineProfile", .inPopup = true,
     .enabled = [](const Desk& d) { return d.shown.windowNumber > 0; }, // tools attach by it
     .action = [](Desk& d) { d.tools.startLineProfile(); }},

    {.name = "sidePanel", .menu = Menu::Window, .label = "Side panel", .mnemonic = 'd',
     .tip = "Show or hide wavelengths, metadata and messages at the side",
     .accelerator = "<Key>F9", .keys = "F9", .icon = "sidePanel", .kind = EntryKind::Switch,
     .on = [](const Desk& d) { return d.shown.parts.sidePanel; },
     .action = [](Desk& d) { d.actions.toggleSidePanel(); }},
    {.name = "metadata", .menu = Menu::Window, .label = "Metadata", .mnemonic = 'M',
     .tip = "Show all that the file tells about the image",
     .accelerator = "Ctrl<Key>i", .keys = "Ctrl+I",
     .action = [](Desk& d) { d.actions.showTab(SideTab::Metadata); }},
    {.name = "messages", .menu = Menu::Window, .label = "Messages", .mnemonic = 'g',
     .tip = "Show what the window has told",
     .action = [](Desk& d) { d.actions.showTab(SideTab::Messages); }},
    {.name = "toolBar", .menu = Menu::Window, .label = "Tool bar", .mnemonic = 'r',
     .tip = "Show or hide the tool bar",
     .kind = EntryKind::Switch,
     .on = [](const Desk& d) { return d.shown.parts.toolBar; },
     .action = [](Desk& d) { d.actions.toggleToolBar(); }},
    {.name = "overview", .menu = Menu::Window, .label = "Overview", .mnemonic = 'O',
     .tip = "Show the whole image in a corner while only a part is in sight",
     .accelerator = "<Key>o", .keys = "O", .kind = EntryKind::Switch,
     .on = [](const Desk& d) { return d.shown.parts.overview; },
     .action = [](Desk& d) { d.actions.toggleOverview(); }},
    {.name = "linkWindows", .menu = Menu::Window, .label = "Link windows", .mnemonic = 'k',
     .tip = "Follow section, zoom and place of the other windows that are linked",
     .accelerator = "<Key>k", .keys = "K", .newGroup = true, .kind = EntryKind::Switch,
     .on = [](const Desk& d) { return d.shown.linked; },
     .action = [](Desk& d) { d.actions.toggleLinked(); }},

    {.name = "mouseAndKeys", .menu = Menu::Help, .label = "Mouse and keys", .mnemonic = 'M',
     .tip = "Show what mouse and keys do",
     .accelerator = "<Key>F1", .keys = "F1",
     .action = [](Desk& d) { d.dialogues.showHelp(); }},
    {.name = "about", .menu = Menu::Help, .label = "About", .mnemonic = 'A',
     .tip = "Show which program and version this is",
     .action = [](Desk& d) { d.dialogues.showAbout(); }},
};
// clang-format on

const InputRow mouse[] = {
    {"Wheel", "Zoom around the pointer"},
    {"Shift + wheel", "Next or previous z section"},
    {"Ctrl + wheel", "Next or previous time point"},
    {"Drag button 1 or 2", "Move the image (a tool may take button 1)"},
    {"Drag in the overview", "Bring that part of the image into sight (button 2 where a tool has button 1)"},
    {"Button 3", "Menu: a click leaves it up, a drag chooses"},
    {"Wheel on a slider", "One section, time point or position on or back"},
};

const InputRow escape{"Escape", "Close a dialogue or menu"};

} // namespace

std::span<const Command> commands()
{
    return table;
}

bool isEnabled(const Command& command, const Desk& desk)
{
    return !command.enabled || command.enabled(desk);
}

const char* titleOf(Menu menu)
{
    switch (menu) {
    case Menu::File:
        return "File";
    case Menu::View:
        return "View";
    case Menu::Stack:
        return "Stack";
    case Menu::Tools:
        return "Tools";
    case Menu::Window:
        return "Window";
    case Menu::Help:
        break;
    }
    return "Help";
}

std::vector<InputSection> mouseAndKeys()
{
    InputSection keys{"Keys", {}};
    for (const Command& command : commands())
        if (*command.keys)
            keys.rows.push_back({command.keys, command.tip});
    keys.rows.push_back(escape);
    return {{"Mouse", {std::begin(mouse), std::end(mouse)}}, keys};
}

} // namespace viewer
