// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Commands.h"

#include "platform/imagewindow/ImageWindow.h"

namespace viewer {

namespace {

bool canStepZ(const ImageWindow& w, int step)
{
    const int wanted = w.currentView().z + step;
    return wanted >= 0 && wanted <= lastSection(w.image().info(), w.currentView()).z;
}

bool canStepTime(const ImageWindow& w, int step)
{
    const int wanted = w.currentView().t + step;
    return wanted >= 0 && wanted <= lastSection(w.image().info(), w.currentView()).t;
}

bool canZoom(const ImageWindow& w, int step)
{
    return steppedZoom(w.currentView().zoom, step) != w.currentView().zoom;
}

bool showsPanels(const ImageWindow& w, int style)
{
    return w.currentView().style == style;
}

// clang-format off
const Command table[] = {
    {.name = "open", .menu = Menu::File, .label = "Open...", .mnemonic = 'O',
     .tip = "Open another image in a window of its own",
     .accelerator = "Ctrl<Key>o", .keys = "Ctrl+O",
     .action = [](ImageWindow& w) { w.chooseAnother(); }},
    {.name = "close", .menu = Menu::File, .label = "Close", .mnemonic = 'C',
     .tip = "Close this window and the tools on it",
     .accelerator = "Ctrl<Key>w", .keys = "Ctrl+W", .newGroup = true,
     .action = [](ImageWindow& w) { w.close(); }},
    {.name = "quit", .menu = Menu::File, .label = "Quit", .mnemonic = 'Q',
     .tip = "Close all windows",
     .accelerator = "Ctrl<Key>q", .keys = "Ctrl+Q",
     .action = [](ImageWindow& w) { w.quitProgram(); }},

    {.name = "zoomIn", .menu = Menu::View, .label = "Zoom in", .mnemonic = 'i',
     .tip = "Show the image larger",
     .accelerator = "<Key>equal", .keys = "=", .inPopup = true,
     .enabled = [](const ImageWindow& w) { return canZoom(w, 1); },
     .action = [](ImageWindow& w) { w.zoomSteps(1); }},
    {.name = "zoomOut", .menu = Menu::View, .label = "Zoom out", .mnemonic = 'o',
     .tip = "Show the image smaller",
     .accelerator = "<Key>minus", .keys = "-", .inPopup = true,
     .enabled = [](const ImageWindow& w) { return canZoom(w, -1); },
     .action = [](ImageWindow& w) { w.zoomSteps(-1); }},
    {.name = "oneToOne", .menu = Menu::View, .label = "One to one", .mnemonic = 'e',
     .tip = "One screen pixel for each image pixel",
     .accelerator = "<Key>1", .keys = "1", .inPopup = true,
     .action = [](ImageWindow& w) { w.zoomTo(1.0); }},
    {.name = "fit", .menu = Menu::View, .label = "Fit to window", .mnemonic = 'F',
     .tip = "Show the whole image, as large as the window has room",
     .accelerator = "<Key>f", .keys = "F", .inPopup = true,
     .action = [](ImageWindow& w) { w.zoomToFit(); }},

    {.name = "singlePanel", .menu = Menu::View, .label = "Single panel", .mnemonic = 'S',
     .tip = "Show one section",
     .newGroup = true, .kind = EntryKind::OneOfSeveral,
     .on = [](const ImageWindow& w) { return showsPanels(w, protocol::SinglePanel); },
     .action = [](ImageWindow& w) { w.setPanels(protocol::SinglePanel); }},
    {.name = "zPanels", .menu = Menu::View, .label = "Z panels", .mnemonic = 'Z',
     .tip = "Show the z sections side by side",
     .kind = EntryKind::OneOfSeveral,
     .enabled = [](const ImageWindow& w) { return w.image().info().sizeZ > 1; },
     .on = [](const ImageWindow& w) { return showsPanels(w, protocol::ZPanels); },
     .action = [](ImageWindow& w) { w.setPanels(protocol::ZPanels); }},
    {.name = "wavelengthPanels", .menu = Menu::View, .label = "Wavelength panels", .mnemonic = 'W',
     .tip = "Show the wavelengths side by side",
     .kind = EntryKind::OneOfSeveral,
     .enabled = [](const ImageWindow& w) { return w.image().info().sizeW > 1; },
     .on = [](const ImageWindow& w) { return showsPanels(w, protocol::WavelengthPanels); },
     .action = [](ImageWindow& w) { w.setPanels(protocol::WavelengthPanels); }},
    {.name = "timePanels", .menu = Menu::View, .label = "Time panels", .mnemonic = 'T',
     .tip = "Show the time points side by side",
     .kind = EntryKind::OneOfSeveral,
     .enabled = [](const ImageWindow& w) { return w.image().info().sizeT > 1; },
     .on = [](const ImageWindow& w) { return showsPanels(w, protocol::TimePanels); },
     .action = [](ImageWindow& w) { w.setPanels(protocol::TimePanels); }},

    {.name = "scaleBar", .menu = Menu::View, .label = "Scale bar", .mnemonic = 'b',
     .tip = "Show or hide the scale bar",
     .accelerator = "<Key>s", .keys = "S", .newGroup = true, .kind = EntryKind::Switch,
     .enabled = [](const ImageWindow& w) { return w.scale().known; },
     .on = [](const ImageWindow& w) { return w.showsScaleBar(); },
     .action = [](ImageWindow& w) { w.toggleScaleBar(); }},

    {.name = "setScale", .menu = Menu::View, .label = "Set scale...", .mnemonic = 'l',
     .tip = "Set the scale of an image whose file does not tell it",
     .accelerator = "<Key>u", .keys = "U",
     .enabled = [](const ImageWindow& w) { return needsScale(w.image().info()); },
     .action = [](ImageWindow& w) { w.askScale(); }},

    {.name = "nextSection", .menu = Menu::View, .label = "Next section", .mnemonic = 'N',
     .tip = "Show the next z section",
     .accelerator = "<Key>osfPageDown", .keys = "Page Down", .newGroup = true,
     .enabled = [](const ImageWindow& w) { return canStepZ(w, 1); },
     .action = [](ImageWindow& w) { w.stepZ(1); }},
    {.name = "previousSection", .menu = Menu::View, .label = "Previous section", .mnemonic = 'P',
     .tip = "Show the previous z section",
     .accelerator = "<Key>osfPageUp", .keys = "Page Up",
     .enabled = [](const ImageWindow& w) { return canStepZ(w, -1); },
     .action = [](ImageWindow& w) { w.stepZ(-1); }},
    {.name = "nextTimePoint", .menu = Menu::View, .label = "Next time point", .mnemonic = 'x',
     .tip = "Show the next time point",
     .accelerator = "Ctrl<Key>osfPageDown", .keys = "Ctrl+Page Down",
     .enabled = [](const ImageWindow& w) { return canStepTime(w, 1); },
     .action = [](ImageWindow& w) { w.stepTime(1); }},
    {.name = "previousTimePoint", .menu = Menu::View, .label = "Previous time point", .mnemonic = 'v',
     .tip = "Show the previous time point",
     .accelerator = "Ctrl<Key>osfPageUp", .keys = "Ctrl+Page Up",
     .enabled = [](const ImageWindow& w) { return canStepTime(w, -1); },
     .action = [](ImageWindow& w) { w.stepTime(-1); }},

    {.name = "contrast", .menu = Menu::View, .label = "Contrast and colours...", .mnemonic = 'C',
     .tip = "Set contrast and colour of each wavelength by hand",
     .accelerator = "<Key>c", .keys = "C", .newGroup = true, .inPopup = true,
     .action = [](ImageWindow& w) { w.showContrast(); }},
    {.name = "automaticContrast", .menu = Menu::View, .label = "Automatic contrast", .mnemonic = 'A',
     .tip = "Set the contrast from the image",
     .accelerator = "<Key>a", .keys = "A", .inPopup = true,
     .action = [](ImageWindow& w) { w.setAutomaticContrast(); }},

    {.name = "lineProfile", .menu = Menu::Tools, .label = "Line profile", .mnemonic = 'L',
     .tip = "Start the line profile tool, or bring it to the front",
     .accelerator = "Ctrl<Key>l", .keys = "Ctrl+L", .inPopup = true,
     .enabled = [](const ImageWindow& w) { return w.windowNumber() > 0; }, // tools attach by it
     .action = [](ImageWindow& w) { w.startLineProfile(); }},

    {.name = "mouseAndKeys", .menu = Menu::Help, .label = "Mouse and keys", .mnemonic = 'M',
     .tip = "Show what mouse and keys do",
     .accelerator = "<Key>F1", .keys = "F1",
     .action = [](ImageWindow& w) { w.showHelp(); }},
    {.name = "about", .menu = Menu::Help, .label = "About", .mnemonic = 'A',
     .tip = "Show which program and version this is",
     .action = [](ImageWindow& w) { w.showAbout(); }},
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

bool isEnabled(const Command& command, const ImageWindow& window)
{
    return !command.enabled || command.enabled(window);
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
