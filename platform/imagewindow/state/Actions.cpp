// SPDX-License-Identifier: MIT
#include "platform/imagewindow/state/Actions.h"

#include <string>

namespace viewer {

void Actions::showSection(int z, int t, int p)
{
    shown.view.z = z;
    shown.view.t = t;
    shown.view.p = p;
    clampSection(shown.info(), shown.view);
    shown.changed();
}

void Actions::setWavelengthShown(int wavelength, bool on)
{
    shown.changed();
    if (!showWavelength(shown.view, wavelength, on))
        shown.notice.answer(on ? "At most five wavelengths are shown at a time: hide another one first."
                               : "One wavelength has to stay.");
}

void Actions::setPanels(int style)
{
    View& view = shown.view;
    leavePanels();
    shown.singlePlace = {view.z, view.t};
    view.style = style;
    view.fit = true;
    clampSection(shown.info(), view);
    shown.changed();
}

// Panels begin where all of them have something to show; the section and time point from before come back
// unless the user has scrolled the panels away from them.
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

// Events that come before the next drawing go on from the new arrangement; so in panBy().
void Actions::zoomAt(double zoom, int x, int y)
{
    zoomAround(shown.info(), shown.view, shown.arrangement, shown.area, scrollBarThickness, zoom, x, y);
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

void Actions::setColor(int wavelength, int color)
{
    shown.view.colors[static_cast<std::size_t>(wavelength)] = color;
    shown.changed();
}

void Actions::setContrast(int wavelength, const ContrastLimits& limits)
{
    shown.renderer.setLimits(wavelength, limits);
    shown.stale.mark(Part::Image);
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

} // namespace viewer
