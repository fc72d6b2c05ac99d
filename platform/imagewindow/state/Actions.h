// SPDX-License-Identifier: MIT
// What the user can do to the image of a window. Menus, keys, rows, wheel and dialogues all call these;
// nothing is drawn before the window's next update. No X.
#pragma once

#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/render/Contrast.h"
#include "platform/imagewindow/state/Shown.h"

#include <string>

namespace viewer {

class Actions {
public:
    explicit Actions(Shown& shown) : shown(shown) {}

    // Indices that the image does not have become the nearest that it has.
    void showSection(int z, int t, int p);
    void stepZ(int steps) { showSection(shown.view.z + steps, shown.view.t, shown.view.p); }
    void stepTime(int steps) { showSection(shown.view.z, shown.view.t + steps, shown.view.p); }
    void setWavelengthShown(int wavelength, bool on);
    // style: of protocol::Geometry.
    void setPanels(int style);
    // Zoom around a position in the visible area, in steps as steppedZoom(), or around its middle.
    void zoomStepsAt(int steps, int x, int y) { zoomAt(steppedZoom(shown.view.zoom, steps), x, y); }
    void zoomAt(double zoom, int x, int y);
    void zoomSteps(int steps) { zoomTo(steppedZoom(shown.view.zoom, steps)); }
    void zoomTo(double zoom);
    void zoomToFit();
    // Origin in canvas pixels from the image's edge.
    void scrollTo(int x, int y);
    void panBy(int dx, int dy);
    void setColor(int wavelength, int color);
    void setContrast(int wavelength, const ContrastLimits& limits);
    void setAutomaticContrast();
    void toggleScaleBar();
    // Keeps the scale for the file, or forgets it; a sentence when that could not be done, else empty.
    // toolsRun: tools are attached, which keep the scale that they started with.
    std::string setScale(const UserScale& scale, bool toolsRun);
    std::string removeScale(bool toolsRun);

private:
    void leavePanels();
    void rescaled(bool toolsRun);

    Shown& shown;
};

} // namespace viewer
