// SPDX-License-Identifier: MIT
#include "platform/imagewindow/Options.h"

#include "platform/base/DisplayColors.h"
#include "platform/base/Limits.h"
#include "platform/imagewindow/view/View.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <regex>
#include <stdexcept>

namespace viewer {

namespace {

constexpr const char* keys = R"(
Without a FILE, a window that takes files: dropped, pasted as paths, or chosen.
One window and one window number each; "window N: FILE" is written to standard output when a window is shown.
In the image: the wheel zooms around the pointer, Shift+wheel steps through z, Control+wheel through time,
dragging moves the image while no tool holds the pointer, button 3 opens the menu.
Exit status: 0 after the last window closed, 1 when no file could be opened, 2 for a wrong command line, 255
without a display.)";

// "2", "0.5", "1/4", "50%"; nothing when it is no zoom within the limits.
std::optional<double> parseZoom(const std::string& text)
{
    static const std::regex form(R"((\d*\.?\d+)(?:/(\d*\.?\d+)|(%))?)");
    std::smatch match;
    if (text.size() > 32 || !std::regex_match(text, match, form))
        return std::nullopt;
    double zoom = std::stod(match[1]);
    if (match[2].matched)
        zoom /= std::stod(match[2]);
    if (match[3].matched)
        zoom /= 100;
    constexpr double slack = 1e-9;
    return zoom >= minZoom * (1 - slack) && zoom <= maxZoom * (1 + slack) ? std::optional(zoom)
                                                                          : std::nullopt;
}

std::string checkZoom(const std::string& text)
{
    return text == "fit" || parseZoom(text)
               ? ""
               : "\"" + text + "\" is no zoom between 1/16 and 32, and not \"fit\"";
}

// These two throw a sentence when the text is no colour or no index.
int colorOf(const std::string& text)
{
    for (std::size_t i = 0; i < base::displayColors.size(); ++i)
        if (text == base::displayColors[i].name || text == std::to_string(i))
            return static_cast<int>(i);
    throw std::invalid_argument("\"" + text + "\" is no colour: 0 to 6, or a name like magenta");
}

int indexOf(const std::string& text)
{
    int number = 0;
    if (!CLI::detail::lexical_cast(text, number) || number < 1)
        throw std::invalid_argument("\"" + text + "\" is no number from 1 on");
    return number - 1;
}

// An option that takes one word, a list with commas. CLI11 would take the words after it too, which are
// files.
void addList(CLI::App& app, const std::string& name, std::vector<int>& list, std::size_t most,
             int (*item)(const std::string&), const std::string& help, const char* typeName)
{
    const auto take = [&list, name, most, item](const std::string& word) {
        try {
            list.clear();
            for (const std::string& text : CLI::detail::split(word, ','))
                list.push_back(item(text));
        } catch (const std::invalid_argument& error) {
            throw CLI::ValidationError(name, error.what());
        }
        if (list.size() > most)
            throw CLI::ValidationError(name, "takes at most " + std::to_string(most) + " values");
    };
    app.add_option_function<std::string>(name, take, help)->type_name(typeName);
}

std::string checkGeometry(const std::string& text)
{
    static const std::regex form(R"(=?(\d{1,5}x\d{1,5})?([+-]-?\d{1,5}[+-]-?\d{1,5})?)");
    return !text.empty() && std::regex_match(text, form)
               ? ""
               : "\"" + text + "\" is no geometry like 800x600+20+30";
}

std::string oneLine(std::string text)
{
    for (char& c : text)
        if (c == '\n')
            c = ' ';
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

// As typed, before it becomes options.
struct Typed {
    std::string zoom, panels, canvas = "auto";
    std::vector<int> section;
    bool noScaleBar = false;
};

void declare(CLI::App& app, Options& options, Typed& typed)
{
    app.add_option("FILE", options.files, "Image files: OME-TIFF, TIFF, PNG, JPEG, GIF")->type_name("");
    app.add_option("--zoom", typed.zoom, "Screen pixels per image pixel: 1/16 to 32, or fit")
        ->check(checkZoom, "")
        ->type_name("ZOOM");
    addList(app, "--section", typed.section, 2, indexOf,
            "Section to show first: z, or z and time point, counted from 1", "Z,T");
    addList(app, "--wavelengths", options.wavelengths, maxDisplayed, indexOf,
            "Wavelengths to show, at most five, counted from 1: 1,3", "LIST");
    addList(app, "--colors", options.colors, base::maxWavelengths, colorOf,
            "Display colours of the wavelengths, by name or number: " + base::listOfDisplayColors(), "LIST");
    app.add_option("--panels", typed.panels, "Panels side by side: z, wavelength, time or single")
        ->check(CLI::IsMember({"single", "z", "wavelength", "time"}))
        ->type_name("KIND");
    app.add_option("--geometry", options.geometry, "Size and place of the window: WIDTHxHEIGHT+X+Y")
        ->check(checkGeometry, "")
        ->type_name("GEOMETRY");
    app.add_option("--display", options.display, "X server to use instead of $DISPLAY")->type_name("NAME");
    app.add_option("--canvas", typed.canvas,
                   "How the image reaches the screen: shm, x11, gl, or auto, gl where hardware draws it")
        ->check(CLI::IsMember({"auto", "shm", "x11", "gl"}))
        ->type_name("KIND");
    app.add_flag("--no-scale-bar", typed.noScaleBar, "Show no scale bar at first");
    app.add_flag(
        "--scratch", options.scratch,
        "The one FILE is still being written: show its sections as they arrive; - reads standard input");
}

std::optional<CanvasKind> canvasKind(const std::string& name)
{
    if (name == "shm")
        return CanvasKind::Shared;
    if (name == "x11")
        return CanvasKind::Plain;
    return name == "gl" ? std::optional(CanvasKind::OpenGl) : std::nullopt;
}

void convert(const Typed& typed, Options& options)
{
    options.canvas = canvasKind(typed.canvas);
    options.fit = typed.zoom == "fit";
    options.scaleBar = !typed.noScaleBar;
    if (!typed.zoom.empty() && !options.fit)
        options.zoom = parseZoom(typed.zoom);
    if (!typed.section.empty())
        options.z = typed.section[0];
    if (!typed.section.empty())
        options.t = typed.section.size() > 1 ? typed.section[1] : 0;
    const std::vector<std::string> kinds{"single", "z", "wavelength", "time"}; // in the order of PanelStyle
    if (!typed.panels.empty())
        options.panels =
            static_cast<int>(std::find(kinds.begin(), kinds.end(), typed.panels) - kinds.begin());
}

} // namespace

ParsedOptions parseOptions(const std::vector<std::string>& arguments)
{
    CLI::App app("Shows microscope images, one window each.", "imagewindow");
    Options options;
    Typed typed;
    declare(app, options, typed);
    app.set_version_flag("--version", "imagewindow " PROJECT_VERSION);
    app.footer(keys);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        app.parse(reversed);
        if (options.scratch && options.files.size() != 1)
            throw CLI::ValidationError("--scratch takes exactly one file");
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, app.help(), 0};
    } catch (const CLI::CallForVersion& version) {
        return {std::nullopt, std::string(version.what()) + "\n", 0};
    } catch (const CLI::ParseError& error) {
        return {std::nullopt, "imagewindow: " + oneLine(error.what()) + ". Try imagewindow --help.\n", 2};
    }
    convert(typed, options);
    return {options, "", 0};
}

} // namespace viewer
