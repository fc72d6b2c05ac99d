// SPDX-License-Identifier: MIT
#include "platform/imagewindow/Start.h"

#include "platform/imagewindow/state/LabelProposal.h"
#include "platform/imagewindow/view/Readout.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace viewer {

namespace {

constexpr int minAreaHeight = 200;

// Screen pixels. Texts grow with the resolution, pictures and plots do not.
struct Needs {
    int tool;     // width of a tool window beside the image
    int controls; // height of the window without the area, a generous estimate
};
Needs needsAt(double screenScale)
{
    const auto grown = [&](int fixed, int text) { return fixed + static_cast<int>(text * screenScale); };
    return {grown(410, 230), grown(90, 135)};
}

// Less where a screen of 1024 pixels has to hold a tool's window, too.
int minAreaWidth(Size screen, const Needs& needs)
{
    return std::clamp(screen.width - needs.tool, 320, 420);
}

std::string nameOf(const Shown& shown)
{
    return onOneLine(shown.life.path().string());
}

void chooseWavelengths(Shown& shown, const std::vector<int>& wavelengths)
{
    const int count = shown.info().sizeW;
    std::vector<bool> chosen(shown.view.displayed.size(), false);
    for (int w : wavelengths)
        if (w < count)
            chosen[static_cast<std::size_t>(w)] = true;
        else
            std::fprintf(stderr, "imagewindow: %s has %d wavelengths: there is no wavelength %d.\n",
                         nameOf(shown).c_str(), count, w + 1);
    if (std::count(chosen.begin(), chosen.end(), true) > 0)
        shown.view.displayed = chosen;
}

void chooseSection(Shown& shown, const Options& options)
{
    View& view = shown.view;
    const bool newPanels = options.panels && *options.panels != view.style;
    view.t = options.t.value_or(view.t);
    if (newPanels || view.style == protocol::SinglePanel)
        shown.singlePlace = {options.z.value_or(view.z), view.t};
    view.style = options.panels.value_or(view.style);
    if (newPanels)
        view.grid = {};
    if (shown.life.growing())
        view.z = shown.info().sizeZ - 1; // the newest
    else if (newPanels && options.panels == protocol::ZPanels)
        view.z = 0;
    if (options.z)
        view.z = *options.z;
}

// Inside the image.
void settleSection(Shown& shown, const Options& options)
{
    View& view = shown.view;
    clampSection(shown.info(), view);
    const int wantedZ = options.z.value_or(view.z), wantedT = options.t.value_or(view.t);
    if (view.style == protocol::SinglePanel && (view.z != wantedZ || view.t != wantedT))
        std::fprintf(stderr, "imagewindow: %s has no section %d,%d: showing %d,%d.\n", nameOf(shown).c_str(),
                     wantedZ + 1, wantedT + 1, view.z + 1, view.t + 1);
}

} // namespace

std::optional<Memory> rememberedOf(const Shown& shown)
{
    return shown.life.growing() ? std::nullopt : loadMemory(shown.life.path());
}

bool applyOptions(Shown& shown, const Options& options, const std::optional<Memory>& memory)
{
    View& view = shown.view;
    shown.scaleBar = true;
    const bool zoomed = memory && recall(*memory, shown);
    if (!memory && !shown.life.growing())
        proposeLabels(shown);
    chooseSection(shown, options);
    if (!options.wavelengths.empty())
        chooseWavelengths(shown, options.wavelengths);
    std::copy_n(options.colors.begin(), std::min(options.colors.size(), view.colors.size()),
                view.colors.begin());
    shown.scaleBar = options.scaleBar && shown.scaleBar && shown.life.scale().known;
    settleSection(shown, options);
    return zoomed;
}

std::string geometryText(const base::Rectangle& place)
{
    return std::to_string(place.width) + "x" + std::to_string(place.height) + "+" + std::to_string(place.x) +
           "+" + std::to_string(place.y);
}

std::string geometryOf(const Options& options, const std::optional<Memory>& memory, Size screen)
{
    if (!options.geometry.empty() || !memory || !memory->place)
        return options.geometry;
    const base::Rectangle place = base::keptOnScreen(*memory->place, {0, 0, screen.width, screen.height});
    return geometryText(place);
}

Size chooseZoom(Shown& shown, const Options& options, Size screen, bool zoomRemembered)
{
    const image::ImageInfo& info = shown.info();
    View& view = shown.view;
    const int bar = shown.barThickness;
    const Needs needs = needsAt(static_cast<double>(bar) / scrollBarThickness);
    const int least = minAreaWidth(screen, needs);
    const int widest = std::min(screen.width - needs.tool, screen.width * 8 / 10);
    const Size most{std::max(least, widest),
                    std::max(minAreaHeight, screen.height * 85 / 100 - needs.controls)};
    const View remembered = view;
    const bool asRemembered = zoomRemembered && !options.zoom && !options.fit;
    view.fit = false;
    view.zoom = options.zoom.value_or(usefulZoom(info, view));
    const Arrangement natural = arrange(info, view, most, bar);
    view.fit = options.fit || (!options.zoom && (natural.horizontalBar || natural.verticalBar));
    if (asRemembered)
        view = remembered;
    View tried = view; // the window's own size is not known yet
    const Arrangement chosen = arrange(info, tried, most, bar);
    if (!asRemembered)
        view = tried;
    const auto room = [bar](int canvas, bool hasBar) { return canvas + (hasBar ? bar : 0); };
    return {std::max(least, room(chosen.canvas.width, chosen.verticalBar)),
            std::max(minAreaHeight, room(chosen.canvas.height, chosen.horizontalBar))};
}

} // namespace viewer
