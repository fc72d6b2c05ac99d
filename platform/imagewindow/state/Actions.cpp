// SPDX-License-Identifier: MIT
#include "platform/imagewindow/state/Actions.h"

#include "platform/imagewindow/render/Enlarged.h"
#include "platform/imagewindow/state/LabelProposal.h"
#include "platform/imagewindow/state/Memory.h"

#include <string>

namespace viewer {

void Actions::showSection(int z, int t, int p)
{
    shown.playback.stop();
    shown.view.z = z;
    shown.view.t = t;
    shown.view.p = p;
    clampSection(shown.info(), shown.view);
    shown.changed();
}

void Actions::togglePlay()
{
    if (shown.playback.running())
        shown.playback.stop();
    else
        startPlaying();
    shown.changed();
}

void Actions::startPlaying()
{
    const PlayAxis axis = playedAxis(shown.info(), shown.view, shown.play.axis);
    if (lastAlong(shown.info(), shown.view, axis) > 0)
        shown.playback.start(shown.play, indexAlong(shown.view, axis), Playback::Clock::now());
}

void Actions::setPlay(const PlaySettings& play)
{
    shown.play = play;
    shown.changed();
    if (shown.playback.running())
        startPlaying();
    if (const std::string problem = keepPlay(play); !problem.empty())
        shown.tell(problem);
}

void Actions::playOn(Playback::Clock::time_point now)
{
    const PlayAxis axis = playedAxis(shown.info(), shown.view, shown.play.axis);
    const int last = lastAlong(shown.info(), shown.view, axis);
    if (last == 0)
        shown.playback.stop();
    else
        indexAlong(shown.view, axis) = shown.playback.indexAt(now, last);
    shown.changed();
}

void Actions::setWavelengthShown(int wavelength, bool on)
{
    shown.changed();
    if (!showWavelength(shown.view, wavelength, on))
        shown.answer(on ? "At most five wavelengths are shown at a time: hide another one first."
                        : "One wavelength has to stay.");
}

void Actions::setPanels(int style, const PanelGrid& grid)
{
    View& view = shown.view;
    shown.playback.stop();
    leavePanels();
    shown.singlePlace = {view.z, view.t};
    view.style = style;
    view.grid = grid;
    view.fit = true;
    clampSection(shown.info(), view);
    shown.changed();
}

std::string Actions::setMontage(int style, const PanelGrid& grid)
{
    View wanted = shown.view;
    wanted.style = style;
    if (std::string problem = gridProblem(shown.info(), wanted, grid, shown.area); !problem.empty())
        return problem;
    setPanels(style, grid);
    return "";
}

void Actions::toggleMerge()
{
    const bool panels = shown.view.style == protocol::WavelengthPanels;
    if (!panels)
        setPanels(protocol::WavelengthPanels);
    shown.view.merge = !panels || !shown.view.merge;
    shown.changed();
}

void Actions::setProjection(Projection projection)
{
    if (shown.view.style == protocol::ZPanels && projection != Projection::Section)
        setPanels(protocol::SinglePanel);
    shown.view.projection = projection;
    shown.changed();
}

// To fill all panels, the first one may have begun before the section or time point that was shown alone.
// That one comes back when the panels still show it.
void Actions::leavePanels()
{
    View& view = shown.view;
    const int count = panelCount(shown.info(), view);
    const auto restore = [&](int& index, int before) {
        if (before >= index && before < index + count)
            index = before;
    };
    if (view.style == protocol::ZPanels)
        restore(view.z, shown.singlePlace[0]);
    if (view.style == protocol::TimePanels)
        restore(view.t, shown.singlePlace[1]);
}

// Arranges at once: further events before the next drawing start from here. So does panBy().
void Actions::zoomAt(double zoom, int x, int y)
{
    zoomAround(shown.info(), shown.view, shown.arrangement, shown.area, shown.barThickness, zoom, x, y);
    shown.arrangeNow();
    shown.changed();
}

void Actions::zoomTo(double zoom)
{
    const Size visible = shown.arrangement.visible;
    zoomAt(zoom, visible.width / 2, visible.height / 2);
}

void Actions::zoomToFit()
{
    shown.view.fit = true;
    shown.changed();
}

void Actions::scrollTo(int x, int y)
{
    shown.view.originX = x / shown.view.zoom;
    shown.view.originY = y / shown.view.zoom;
    shown.changed();
}

void Actions::panBy(int dx, int dy)
{
    shown.view.originX += dx / shown.view.zoom;
    shown.view.originY += dy / shown.view.zoom;
    shown.arrangeNow();
    shown.changed();
}

void Actions::centreOn(double x, double y)
{
    const protocol::Geometry& g = shown.arrangement.geometry;
    shown.view.originX = x - g.panelWidth / g.zoom / 2;
    shown.view.originY = y - g.panelHeight / g.zoom / 2;
    shown.arrangeNow();
    shown.changed();
}

void Actions::setColor(int wavelength, int color)
{
    shown.view.colors[static_cast<std::size_t>(wavelength)] = color;
    shown.changed();
}

void Actions::setContrast(int wavelength, const ContrastLimits& limits)
{
    if (shown.linkedContrast)
        for (int w = 0; w < shown.info().sizeW; ++w)
            shown.renderer.setLimits(w, limits);
    shown.renderer.setLimits(wavelength, limits);
    shown.stale.mark(Part::Image);
}

void Actions::setGamma(int wavelength, float gamma)
{
    shown.renderer.setGamma(wavelength, gamma);
    shown.stale.mark(Part::Image);
}

void Actions::setAutomaticContrast(int wavelength)
{
    shown.renderer.setAutomatic(wavelength);
    shown.stale.mark(Part::Image);
}

void Actions::setFullRange(int wavelength)
{
    const bool sections = shown.renderer.projection() == Projection::Section;
    const image::ValueRange range = sections ? shown.life.range(wavelength) : image::ValueRange{};
    const ContrastLimits seen = shown.renderer.sample(wavelength)->range;
    ContrastLimits limits = range.known ? ContrastLimits{range.min, range.max} : seen;
    if (!(limits.low < limits.high))
        limits.high = limits.low + 1;
    setContrast(wavelength, limits);
}

void Actions::setLook(int wavelength, const Look& look)
{
    shown.view.colors[static_cast<std::size_t>(wavelength)] = look.color;
    shown.renderer.setGamma(wavelength, look.gamma);
    if (look.limits)
        shown.renderer.setLimits(wavelength, *look.limits);
    else
        shown.renderer.setAutomatic(wavelength);
    shown.changed();
}

void Actions::setContrastLinked(bool linked)
{
    shown.linkedContrast = linked;
    shown.changed();
}

void Actions::setGrey(bool grey)
{
    shown.view.grey = grey;
    shown.changed();
}

void Actions::setLabels(bool labels)
{
    const bool whole = canBeLabels(shown.info());
    const bool single =
        shown.view.style == protocol::WavelengthPanels || displayedWavelengths(shown.view).size() == 1;
    shown.view.labels = labels && whole && single;
    shown.changed();
    if (labels && !whole)
        shown.answer("Labels are whole numbers: the values of this image have fractions.");
    else if (labels && !single)
        shown.answer("Labels are shown for one wavelength: hide the others, or show wavelength panels.");
}

void Actions::setAutomaticContrast()
{
    shown.renderer.setAutomatic();
    shown.stale.mark(Part::Image);
}

void Actions::toggleScaleBar()
{
    shown.scaleBar = !shown.scaleBar && shown.life.scale().known;
    shown.changed();
    if (!shown.life.scale().known)
        shown.answer("The image has no scale for a bar: View, Set scale... sets one.");
}

void Actions::setBarStyle(const BarStyle& style)
{
    shown.barStyle = style;
    shown.scaleBar = shown.life.scale().known;
    shown.changed();
    if (const std::string problem = keepBarStyle(style); !problem.empty())
        shown.tell(problem);
}

void Actions::toggleLinked()
{
    shown.linked = !shown.linked;
    shown.changed();
}

void Actions::resetView()
{
    View& view = shown.view;
    view = initialView(shown.info());
    shown.playback.stop();
    shown.play = loadPlay();
    for (int w = 0; w < shown.info().sizeW; ++w)
        shown.renderer.setGamma(w, 1);
    shown.linkedContrast = false;
    proposeLabels(shown);
    view.zoom = usefulZoom(shown.info(), view);
    shown.renderer.forgetLimits();
    shown.scaleBar = shown.life.scale().known;
    shown.arrangeNow();
    view.fit = shown.arrangement.horizontalBar || shown.arrangement.verticalBar;
    shown.changed();
    if (const std::string problem = forgetMemory(shown.life.path()); !problem.empty())
        shown.tell(problem);
}

void Actions::toggleToolBar()
{
    WindowParts parts = shown.parts;
    parts.toolBar = !parts.toolBar;
    setParts(parts);
}

void Actions::toggleSidePanel()
{
    WindowParts parts = shown.parts;
    parts.sidePanel = !parts.sidePanel;
    setParts(parts);
}

void Actions::toggleOverview()
{
    WindowParts parts = shown.parts;
    parts.overview = !parts.overview;
    setParts(parts);
}

void Actions::showTab(SideTab tab)
{
    WindowParts parts = shown.parts;
    parts.sidePanel = true;
    parts.tab = tab;
    setParts(parts);
}

void Actions::setSideWidth(int width, bool keep)
{
    shown.parts.sideWidth = width;
    shown.changed();
    if (keep)
        setParts(shown.parts);
}

// The next window begins with what this one has.
void Actions::setParts(const WindowParts& parts)
{
    shown.parts = parts;
    shown.changed();
    if (const std::string problem = keepParts(parts); !problem.empty())
        shown.tell(problem);
}

std::string Actions::setScale(const UserScale& scale, bool toolsRun)
{
    std::string problem = shown.life.chosen().choose(scale);
    shown.scaleBar = true;
    rescaled(toolsRun);
    return problem;
}

std::string Actions::removeScale(bool toolsRun)
{
    std::string problem = shown.life.chosen().remove();
    shown.scaleBar = shown.scaleBar && shown.life.scale().known;
    rescaled(toolsRun);
    return problem;
}

void Actions::rescaled(bool toolsRun)
{
    shown.changed();
    if (toolsRun)
        shown.tell("Tools that run keep the scale that they started with: end them and start them again.");
}

std::vector<std::uint32_t> Actions::renderImage(int resolution)
{
    if (resolution > 1)
        shown.stale.mark(Part::Image);
    return renderEnlarged(shown.renderer, shown.arrangement.geometry, shown.panels, resolution);
}

} // namespace viewer
