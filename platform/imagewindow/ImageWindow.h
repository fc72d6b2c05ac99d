// SPDX-License-Identifier: MIT
// One image window: the image file, what of it is shown and how, the canvas with its overlay graphics, and
// the record that tells clients about all this. The controls call the actions below; nothing is drawn before
// the next update().
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/image/RangeScan.h"
#include "platform/imagewindow/Application.h"
#include "platform/imagewindow/canvas/CanvasBuffer.h"
#include "platform/imagewindow/canvas/OverlayPainter.h"
#include "platform/imagewindow/canvas/OverlayStore.h"
#include "platform/imagewindow/controls/ContrastDialogue.h"
#include "platform/imagewindow/controls/Controls.h"
#include "platform/imagewindow/controls/ScaleDialogue.h"
#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/files/Scratch.h"
#include "platform/imagewindow/render/Renderer.h"
#include "platform/imagewindow/view/View.h"
#include "platform/protocol/XProtocol.h"

#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace viewer {

class ImageWindow {
public:
    // Shows the window.
    ImageWindow(Application& application, ImageSource opened, const Options& options);
    ~ImageWindow();
    ImageWindow(const ImageWindow&) = delete;
    ImageWindow& operator=(const ImageWindow&) = delete;

    // Called by the event loop when no event waits: lays out, draws and publishes what has changed.
    void update();
    bool closing() const { return closeAsked; }
    void markClosing() { closeAsked = true; }
    // A client's window was destroyed.
    void clientGone(Window client);

    // Actions of the user.
    void showSection(int z, int t, int p);
    void stepZ(int steps) { showSection(view.z + steps, view.t, view.p); }
    void stepTime(int steps) { showSection(view.z, view.t + steps, view.p); }
    void setWavelengthShown(int wavelength, bool shown);
    void setPanels(int style);
    // Zoom around a position in the visible area, in steps as steppedZoom(), or around its middle.
    void zoomStepsAt(int steps, int x, int y) { zoomAt(steppedZoom(view.zoom, steps), x, y); }
    void zoomAt(double zoom, int x, int y);
    void zoomSteps(int steps);
    void zoomTo(double zoom);
    void zoomToFit();
    // Origin in canvas pixels from the image's edge.
    void scrollTo(int x, int y);
    void panBy(int dx, int dy);
    void setColor(int wavelength, int color);
    void toggleScaleBar();
    // Asks for the scale of an image whose file does not tell it.
    void askScale();
    // Keeps the scale for the file, or forgets it; a sentence when that could not be done, else empty.
    std::string setScale(const UserScale& scale);
    std::string removeScale();
    void setContrast(int wavelength, const ContrastLimits& limits);
    void setAutomaticContrast();
    void showContrast();
    void showHelp();
    void showAbout();
    // Asks for a file and opens it in a new window.
    void chooseAnother();
    // False when it cannot be opened; the user has been told.
    bool openAnother(const std::string& path);
    // Brings the one that is attached to the front.
    void startLineProfile();
    void close() { application.close(*this); }
    void quitProgram() { application.quit(); }

    // Events of the canvas.
    void pointerAt(int x, int y);
    void pointerLeft();
    // serial: of the notification.
    void overlayArrived(unsigned long serial);
    void toolsChanged();
    void exposed(Region region);
    void areaResized() { layoutStale = recordStale = true; }

    const image::ImageFile& image() const { return *source.file; }
    Scale scale() const { return scaleOf(image().info(), userScale); }
    const std::optional<UserScale>& setByUser() const { return userScale; }
    // One that was set for an earlier version of the file, until the user sets or removes the scale.
    const std::optional<UserScale>& formerScale() const { return former; }
    // Image pixels in x and y from one end to the other of the line that a tool has drawn last.
    std::optional<std::array<double, 2>> drawnSegment() const { return overlays.lastLine(); }
    bool growing() const { return source.growing; }
    const View& currentView() const { return view; }
    bool showsScaleBar() const { return scaleBarShown; }
    // Whether its pixels are whole numbers.
    bool holdsIntegers() const;
    ContrastLimits contrast(int wavelength) const { return renderer.limits(wavelength); }
    // Over the sections seen so far; 0 to 0 when that is unknown.
    ContrastLimits knownRange(int wavelength) const;
    std::vector<protocol::ToolEntry> tools() const;
    // What the status lines may come to show with the present view.
    StatusTexts widestTexts() const;
    int windowNumber() const { return record.windowNumber; }
    Display* display() const { return application.display(); }

private:
    void applyOptions(const Options& options);
    Size chooseZoom(const Options& options);
    void show();
    void drawStale();
    void layOutCanvas();
    void drawImage();
    void leavePanels();
    void paintOverlays();
    void publish();
    void updateStatus();
    void tellPointed(StatusTexts& texts) const;
    std::string remark() const;
    std::string sentence() const;
    std::vector<std::string> stateItems() const;
    void pollScan();
    void pollFile();
    void reopenFile();
    void adoptFile(std::unique_ptr<image::ImageFile> file);
    void gatherRanges();
    void recallScale();
    void followScale();
    void rescaled();
    void tell(const std::string& sentence);
    void changed();
    protocol::DisplayRecord currentRecord() const;
    bool watchClient(Window client);
    void forgetIdleClients();
    void tellRefusal(const char* reason);
    PanelBinding bindingOf(int panel) const;
    Scene scene() const;

    Application& application;
    ImageSource source;
    FileWatch watch;
    std::unique_ptr<image::RangeScan> scan; // after source: it must stop first
    std::vector<image::ValueRange> ranges;  // of everything seen so far, also before the file grew
    View view;
    Renderer renderer;
    OverlayStore overlays;
    OverlayPainter painter;
    std::unique_ptr<CanvasBuffer> buffer;
    Arrangement arrangement;
    std::vector<PanelContent> panels;
    protocol::DisplayRecord record;   // as published
    std::set<Window> clients;         // that have graphics here: watched for their end
    unsigned long drainedSerial = 0;  // of the request that last took the overlay commands
    std::optional<XPoint> pointer;    // canvas pixels
    std::array<int, 2> singlePlace{}; // z and time point of before the panels
    std::optional<UserScale> userScale, former;
    bool scaleBarShown = false;
    int fileVersion = 0;     // counts how often the file was opened anew
    std::string problem;     // why a section is not shown, empty when all is well
    std::string fileProblem; // what has become of the file, empty when all is well
    std::string notice;      // what the last action could not do, until the next one or the pointer moves
    std::chrono::steady_clock::time_point noticeUntil; // the pointer does not take it away before
    std::size_t toolCount = 0;                         // tools that were attached at the last look
    XtIntervalId scanTimer = 0, fileTimer = 0;
    bool receiving = true; // more sections may come
    bool closeAsked = false, canvasSeen = false, announced = false, refusalTold = false;
    bool layoutStale = true, imageStale = true, overlaysStale = false, statusStale = true,
         recordStale = false;
    bool pointerStale = false;          // the canvas or what is on it has changed under the pointer
    std::unique_ptr<Controls> controls; // after all that its callbacks use
    std::unique_ptr<ContrastDialogue> contrastDialogue; // a child of controls
    std::unique_ptr<ScaleDialogue> scaleDialogue;       // a child of controls
};

} // namespace viewer
