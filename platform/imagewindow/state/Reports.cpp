// SPDX-License-Identifier: MIT
#include "platform/imagewindow/state/Reports.h"

#include <string>

namespace viewer {

namespace {

// Of the user's own wish first.
std::string activityOf(const Shown& shown)
{
    if (!shown.renderer.projecting())
        return shown.life.activity();
    return projectionName(shown.view.projection) + ": " +
           std::to_string(static_cast<int>(shown.renderer.projected() * 100)) + " %";
}

StatusFacts factsOf(const Shown& shown, const View& view)
{
    const ImageLife& life = shown.life;
    return {life.file(), view, life.scale(), life.path(), activityOf(shown)};
}

const std::string& sentenceOf(const Shown& shown)
{
    const std::string& notice = shown.notice.sentence();
    return notice.empty() ? problemOf(shown) : notice;
}

std::optional<PointedPixel> pixelAt(const Shown& shown, const CanvasPlace& pointer)
{
    const auto place = protocol::dataFromWindow(shown.arrangement.geometry, pointer.x, pointer.y);
    if (!place)
        return std::nullopt;
    PointedPixel pointed{shown.panels[static_cast<std::size_t>(place->panel)], place->x, place->y, {}};
    for (int w : pointed.panel.wavelengths)
        pointed.values.push_back(
            {valueName(shown.info(), pointed.panel, w),
             shown.renderer.valueAt(place->panel, w, static_cast<int>(place->x), static_cast<int>(place->y)),
             pointed.panel.labels});
    return pointed;
}

protocol::WavelengthDisplay displayOf(const Shown& shown, std::size_t wavelength)
{
    const auto w = static_cast<int>(wavelength);
    protocol::WavelengthDisplay wave;
    wave.displayed = shown.view.displayed[wavelength];
    wave.colorIndex = shown.view.colors[wavelength];
    wave.topImage = shown.life.growing() ? topImage(shown.life.file(), w, shown.view.t, shown.view.p) : 0;
    if (const image::ValueRange range = shown.life.range(w); range.known) {
        wave.rangeKnown = true;
        wave.rangeMin = range.min;
        wave.rangeMax = range.max;
    }
    return wave;
}

} // namespace

const std::string& problemOf(const Shown& shown)
{
    return shown.life.problem().empty() ? shown.problem : shown.life.problem();
}

StatusTexts statusOf(const Shown& shown, const std::optional<CanvasPlace>& pointer)
{
    return statusTexts(factsOf(shown, shown.drawnView()), sentenceOf(shown),
                       pointer ? pixelAt(shown, *pointer) : std::nullopt);
}

StatusTexts widestStatus(const Shown& shown)
{
    return widestTexts(factsOf(shown, shown.view)); // with what is to come
}

protocol::DisplayRecord recordOf(const Shown& shown)
{
    const ImageLife& life = shown.life;
    protocol::DisplayRecord record;
    record.windowNumber = shown.windowNumber;
    record.path = life.path().string();
    record.z = shown.view.z;
    record.t = shown.view.t;
    record.p = shown.view.p;
    record.w = displayedWavelengths(shown.view).front();
    if (life.chosen().set())
        record.spacing = life.scale().spacing;
    record.geometry = shown.arrangement.geometry;
    record.scratchSize = life.growing() ? life.info().sizeZ : 0;
    record.fileVersion = life.version();
    for (std::size_t w = 0; w < shown.view.displayed.size(); ++w)
        record.wavelengths.push_back(displayOf(shown, w));
    return record;
}

std::vector<int> plottedPanels(const Shown& shown, const OverlayStore& overlays)
{
    const View& view = shown.view;
    const Graphic* const segment = overlays.newestSegment();
    std::vector<int> plotted;
    if (!segment || view.style == protocol::SinglePanel)
        return plotted;
    const int z = view.style == protocol::ZPanels ? static_cast<int>(segment->command.z0) : view.z;
    for (std::size_t i = 0; i < shown.panels.size(); ++i) {
        const PanelContent& panel = shown.panels[i];
        if (panel.z == z && panel.t == view.t && panel.p == view.p)
            plotted.push_back(static_cast<int>(i));
    }
    return plotted;
}

Scene sceneOf(const Shown& shown, const OverlayStore& overlays, double screenScale)
{
    const protocol::Geometry& geometry = shown.arrangement.geometry;
    Scene scene{geometry, shown.panels, overlays, std::nullopt, screenScale};
    scene.plotted = plottedPanels(shown, overlays);
    if (shown.scaleBar)
        scene.bar = scaleBar(shown.barStyle, shown.life.scale().spacing[0], geometry, screenScale);
    return scene;
}

std::optional<Navigator> navigatorNow(const Shown& shown, double screenScale)
{
    if (!shown.parts.overview)
        return std::nullopt;
    const bool taken = shown.scaleBar && shown.barStyle.corner == BarCorner::UpperRight;
    return navigatorOf(shown.arrangement.geometry, taken, screenScale);
}

} // namespace viewer
