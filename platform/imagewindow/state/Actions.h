// SPDX-License-Identifier: MIT
// What the user can do to the image of a window. Menus, keys, rows, wheel and dialogues all call these;
// nothing is drawn before the window's next update. No X.
#pragma once

#include "platform/imagewindow/figure/SegmentProfile.h"
#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/render/Contrast.h"
#include "platform/imagewindow/state/Shown.h"

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace viewer {

class Actions {
public:
    explicit Actions(Shown& shown) : shown(shown) {}

    // Indices that the image does not have become the nearest that it has.
    void showSection(int z, int t, int p);
    void stepZ(int steps) { showSection(shown.view.z + steps, shown.view.t, shown.view.p); }
    void stepTime(int steps) { showSection(shown.view.z, shown.view.t + steps, shown.view.p); }
    // Playing ends with the next step by hand.
    void togglePlay();
    // For this window and those to come; playing goes on with it.
    void setPlay(const PlaySettings& play);
    // Shows what is due.
    void playOn(Playback::Clock::time_point now);
    void setWavelengthShown(int wavelength, bool on);
    // style: of protocol::Geometry.
    void setPanels(int style, const PanelGrid& grid = {});
    // The same in a grid of the user's choice; a sentence when that cannot be, else empty.
    std::string setMontage(int style, const PanelGrid& grid);
    // Shows all wavelengths together beside the panels of each, or no longer.
    void toggleMerge();
    // Projections are shown in all panels but those of z, which give way to a single one.
    void setProjection(Projection projection);
    // Zoom around a position in the visible area, in steps as steppedZoom(), or around its middle.
    void zoomStepsAt(int steps, int x, int y) { zoomAt(steppedZoom(shown.view.zoom, steps), x, y); }
    void zoomAt(double zoom, int x, int y);
    void zoomSteps(int steps) { zoomTo(steppedZoom(shown.view.zoom, steps)); }
    void zoomTo(double zoom);
    void zoomToFit();
    // Origin in canvas pixels from the image's edge.
    void scrollTo(int x, int y);
    void panBy(int dx, int dy);
    // Puts that place of the image, in data coordinates, into the middle of the panels, as far as its edges
    // let it.
    void centreOn(double x, double y);
    void setColor(int wavelength, int color);
    // Of all wavelengths when they are linked.
    void setContrast(int wavelength, const ContrastLimits& limits);
    void setGamma(int wavelength, float gamma);
    void setAutomaticContrast();
    void setAutomaticContrast(int wavelength);
    // From the smallest to the largest value, of the whole image as far as they are known.
    void setFullRange(int wavelength);
    void setLook(int wavelength, const Look& look);
    // Tells what could not be done.
    void refuse(const std::string& sentence) { shown.answer(sentence); }
    // For the list of messages alone, where the user has been told already.
    void note(const std::string& sentence)
    {
        shown.log.add(sentence, std::time(nullptr));
        shown.stale.mark(Part::Readout);
    }
    void setContrastLinked(bool linked);
    void setGrey(bool grey);
    // Each number of a label image in another colour; refused, with a sentence, where that means nothing.
    void setLabels(bool labels);
    void toggleScaleBar();
    // Shows the bar as well, where there is a scale. The next window begins with the style.
    void setBarStyle(const BarStyle& style);
    void toggleLinked();
    // Shows the image as if it were opened for the first time, and forgets what is kept for the file.
    void resetView();
    void toggleToolBar();
    void toggleSidePanel();
    void toggleOverview();
    void showTab(SideTab tab);
    // Pixels of 96 dots per inch. keep: for the windows to come, not while the user still drags.
    void setSideWidth(int width, bool keep);
    // Keeps the scale for the file, or forgets it; a sentence when that could not be done, else empty.
    // toolsRun: tools are attached, which keep the scale that they started with.
    std::string setScale(const UserScale& scale, bool toolsRun);
    std::string removeScale(bool toolsRun);
    // The pixels of the canvas, resolution times as many each way, without captions and graphics; 0x00RRGGBB.
    // A resolution above 1 reads the image anew for them and for the window.
    std::vector<std::uint32_t> renderImage(int resolution);
    // Along a segment in a panel; throws std::runtime_error as the function does.
    SegmentProfile profileAlong(const PanelContent& panel, const SegmentEnds& ends)
    {
        return readProfile(shown.life.file(), panel, ends, shown.life.scale());
    }
    // One sentence in the status lines, until something else happens.
    void tell(const std::string& sentence) { shown.tell(sentence); }

private:
    void leavePanels();
    void startPlaying();
    void rescaled(bool toolsRun);
    void setParts(const WindowParts& parts);

    Shown& shown;
};

} // namespace viewer
