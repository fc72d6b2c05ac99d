// SPDX-License-Identifier: MIT
#include "platform/imagewindow/Start.h"

#include "platform/imagewindow/view/Readout.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace viewer {

namespace {

constexpr int toolRoom = 620;       // screen pixels that a tool window beside the image needs
constexpr int controlsHeight = 190; // of the window without the area, a generous estimate
constexpr int minAreaWidth = 420, minAreaHeight = 200;

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
    shown.singlePlace = {options.z.value_or(view.z), options.t};
    view.style = options.panels;
    if (shown.life.growing())
        view.z = shown.info().sizeZ - 1; // the newest
    else if (options.panels == protocol::ZPanels)
        view.z = 0;
    if (options.z)
        view.z = *options.z;
    view.t = options.t;
}

// Inside the image.
void settleSection(Shown& shown, const Options& options)
{
    View& view = shown.view;
    clampSection(shown.info(), view);
    const int wantedZ = options.z.value_or(view.z);
    if (options.panels == protocol::SinglePanel && (view.z != wantedZ || view.t != options.t))
        std::fprintf(stderr, "imagewindow: %s has no section %d,%d: showing %d,%d.\n", nameOf(shown).c_str(),
                     wantedZ + 1, options.t + 1, view.z + 1, view.t + 1);
}

} // namespace

void applyOptions(Shown& shown, const Options& options)
{
    View& view = shown.view;
    chooseSection(shown, options);
    if (!options.wavelengths.empty())
        chooseWavelengths(shown, options.wavelengths);
    std::copy_n(options.colors.begin(), std::min(options.colors.size(), view.colors.size()),
                view.colors.begin());
    shown.scaleBar = options.scaleBar && shown.life.scale().known;
    settleSection(shown, options);
}

Size chooseZoom(const image::ImageInfo& info, View& view, const Options& options, Size screen)
{
    const int widest = std::min(screen.width - toolRoom, screen.width * 8 / 10);
    const Size most{std::max(minAreaWidth, widest),
                    std::max(minAreaHeight, screen.height * 85 / 100 - controlsHeight)};
    view.zoom = options.zoom.value_or(1.0);
    if (!options.zoom)
        view.zoom = usefulZoom(info, view);
    const Arrangement natural = arrange(info, view, most, scrollBarThickness);
    view.fit = options.fit || (!options.zoom && (natural.horizontalBar || natural.verticalBar));
    const Arrangement chosen = view.fit ? arrange(info, view, most, scrollBarThickness) : natural;
    const auto room = [](int canvas, bool bar) { return canvas + (bar ? scrollBarThickness : 0); };
    return {std::max(minAreaWidth, room(chosen.canvas.width, chosen.verticalBar)),
            std::max(minAreaHeight, room(chosen.canvas.height, chosen.horizontalBar))};
}

} // namespace viewer
