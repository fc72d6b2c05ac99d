// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Commands.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Dialogues.h"
#include "platform/imagewindow/controls/Tools.h"

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

bool canZoom(const Desk& d, int step)
{
    return steppedZoom(d.shown.view.zoom, step) != d.shown.view.zoom;
}

bool showsPanels(const Desk& d, int style)
{
    return d.shown.view.style == style;
}

// clang-format off
const Command table[] = {
    {.name = "open", .menu = Menu::File, .label = "Open...", .mnemonic = 'O',
     .tip = "Open another image in a window of its own",
     .accelerator = "Ctrl<Key>o", .keys = "Ctrl+O",
     .action = [](Desk& d) { d.dialogues.chooseAnother(); }},
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
     .accelerator = "<Key>equal", .keys = "=", .inPopup = true,
     .enabled = [](const Desk& d) { return canZoom(d, 1); },
     .action = [](Desk& d) { d.actions.zoomSteps(1); }},
    {.name = "zoomOut", .menu = Menu::View, .label = "Zoom out", .mnemonic = 'o',
     .tip = "Show the image smaller",
     .accelerator = "<Key>minus", .keys = "-", .inPopup = true,
     .enabled = [](const Desk& d) { return canZoom(d, -1); },
     .action = [](Desk& d) { d.actions.zoomSteps(-1); }},
    {.name = "oneToOne", .menu = Menu::View, .label = "One to one", .mnemonic = 'e',
     .tip = "One screen pixel for each image pixel",
     .accelerator = "<Key>1", .keys = "1", .inPopup = true,
     .action = [](Desk& d) { d.actions.zoomTo(1.0); }},
    {.name = "fit", .menu = Menu::View, .label = "Fit to window", .mnemonic = 'F',
     .tip = "Show the whole image, as large as the window has room",
     .accelerator = "<Key>f", .keys = "F", .inPopup = true,
     .action = [](Desk& d) { d.actions.zoomToFit(); }},

    {.name = "singlePanel", .menu = Menu::View, .label = "Single panel", .mnemonic = 'S',
     .tip = "Show one section",
     .newGroup = true, .kind = EntryKind::OneOfSeveral,
     .on = [](const Desk& d) { return showsPanels(d, protocol::SinglePanel); },
     .action = [](Desk& d) { d.actions.setPanels(protocol::SinglePanel); }},
    {.name = "zPanels", .menu = Menu::View, .label = "Z panels", .mnemonic = 'Z',
     .tip = "Show the z sections side by side",
     .kind = EntryKind::OneOfSeveral,
     .enabled = [](const Desk& d) { return d.shown.info().sizeZ > 1; },
     .on = [](const Desk& d) { return showsPanels(d, protocol::ZPanels); },
     .action = [](Desk& d) { d.actions.setPanels(protocol::ZPanels); }},
    {.name = "wavelengthPanels", .menu = Menu::View, .label = "Wavelength panels", .mnemonic = 'W',
     .tip = "Show the wavelengths side by side",
     .kind = EntryKind::OneOfSeveral,
     .enabled = [](const Desk& d) { return d.shown.info().sizeW > 1; },
     .on = [](const Desk& d) { return showsPanels(d, protocol::WavelengthPanels); },
     .action = [](Desk& d) { d.actions.setPanels(protocol::WavelengthPanels); }},
    {.name = "timePanels", .menu = Menu::View, .label = "Time panels", .mnemonic = 'T',
     .tip = "Show the time points side by side",
     .kind = EntryKind::OneOfSeveral,
     .enabled = [](const Desk& d) { return d.shown.info().sizeT > 1; },
     .on = [](const Desk& d) { return showsPanels(d, protocol::TimePanels); },
     .action = [](Desk& d) { d.actions.setPanels(protocol::TimePanels); }},

    {.name = "scaleBar", .menu = Menu::View, .label = "Scale bar", .mnemonic = 'b',
     .tip = "Show or hide the scale bar",
     .accelerator = "<Key>s", .keys = "S", .newGroup = true, .kind = EntryKind::Switch,
     .enabled = [](const Desk& d) { return d.shown.life.scale().known; },
     .on = [](const Desk& d) { return d.shown.scaleBar; },
     .action = [](Desk& d) { d.actions.toggleScaleBar(); }},

    {.name = "setScale", .menu = Menu::View, .label = "Set scale...", .mnemonic = 'l',
     .tip = "Set the scale of an image whose file does not tell it",
     .accelerator = "<Key>u", .keys = "U",
     .enabled = [](const Desk& d) { return needsScale(d.shown.info()); },
     .action = [](Desk& d) { d.dialogues.askScale(); }},

    {.name = "nextSection", .menu = Menu::View, .label = "Next section", .mnemonic = 'N',
     .tip = "Show the next z section",
     .accelerator = "<Key>osfPageDown", .keys = "Page Down", .newGroup = true,
     .enabled = [](const Desk& d) { return canStepZ(d, 1); },
     .action = [](Desk& d) { d.actions.stepZ(1); }},
    {.name = "previousSection", .menu = Menu::View, .label = "Previous section", .mnemonic = 'P',
     .tip = "Show the previous z section",
     .accelerator = "<Key>osfPageUp", .keys = "Page Up",
     .enabled = [](const Desk& d) { return canStepZ(d, -1); },
     .action = [](Desk& d) { d.actions.stepZ(-1); }},
    {.name = "nextTimePoint", .menu = Menu::View, .label = "Next time point", .mnemonic = 'x',
     .tip = "Show the next time point",
     .accelerator = "Ctrl<Key>osfPageDown", .keys = "Ctrl+Page Down",
     .enabled = [](const Desk& d) { return canStepTime(d, 1); },
     .action = [](Desk& d) { d.actions.stepTime(1); }},
    {.name = "previousTimePoint", .menu = Menu::View, .label = "Previous time point", .mnemonic = 'v',
     .tip = "Show the previous time point",
     .accelerator = "Ctrl<Key>osfPageUp", .keys = "Ctrl+Page Up",
     .enabled = [](const Desk& d) { return canStepTime(d, -1); },
     .action = [](Desk& d) { d.actions.stepTime(-1); }},

    {.name = "contrast", .menu = Menu::View, .label = "Contrast and colours...", .mnemonic = 'C',
     .tip = "Set contrast and colour of each wavelength by hand",
     .accelerator = "<Key>c", .keys = "C", .newGroup = true, .inPopup = true,
     .action = [](Desk& d) { d.dialogues.showContrast(); }},
    {.name = "automaticContrast", .menu = Menu::View, .label = "Automatic contrast", .mnemonic = 'A',
     .tip = "Set the contrast from the image",
     .accelerator = "<Key>a", .keys = "A", .inPopup = true,
     .action = [](Desk& d) { d.actions.setAutomaticContrast(); }},

    {.name = "lineProfile", .menu = Menu::Tools, .label = "Line profile", .mnemonic = 'L',
     .tip = "Start the line profile tool, or bring it to the front",
     .accelerator = "Ctrl<Key>l", .keys = "Ctrl+L", .inPopup = true,
     .enabled = [](const Desk& d) { return d.shown.windowNumber > 0; }, // tools attach by it
     .action = [](Desk& d) { d.tools.startLineProfile(); }},

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
    case Menu::Tools:
        return "Tools";
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
