// SPDX-License-Identifier: MIT
// One image window: brings together what is shown, its picture on the canvas, the tools' graphics and the
// controls. It hears what happens and decides who draws anew; what the user can do is in state/Actions.h.
#pragma once

#include "platform/imagewindow/Options.h"
#include "platform/imagewindow/canvas/Overlays.h"
#include "platform/imagewindow/canvas/Picture.h"
#include "platform/imagewindow/controls/Controls.h"
#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Dialogues.h"
#include "platform/imagewindow/controls/Intake.h"
#include "platform/imagewindow/controls/Tools.h"
#include "platform/imagewindow/render/Overview.h"
#include "platform/imagewindow/state/Actions.h"
#include "platform/imagewindow/state/Link.h"
#include "platform/imagewindow/state/Memory.h"
#include "platform/imagewindow/state/Reports.h"
#include "platform/imagewindow/state/Shown.h"

#include <X11/Intrinsic.h>

#include <optional>
#include <string>
#include <vector>

namespace viewer {

class Application;

class ImageWindow final : public CanvasListener {
public:
    // Shows the window.
    ImageWindow(Application& application, ImageSource opened, const Options& options);
    ~ImageWindow();
    ImageWindow(const ImageWindow&) = delete;
    ImageWindow& operator=(const ImageWindow&) = delete;

    // Called by the event loop when no event waits: lays out, draws and publishes what is stale.
    void update();
    bool closing() const { return closeAsked; }
    void markClosing() { closeAsked = true; }
    // Linked windows: what has changed since settleLink(), and following the change of another.
    std::optional<LinkChange> linkChange() const;
    void followLink(const LinkChange& change);
    void settleLink() { settled = linkStateOf(shown); }
    // The image, and a sentence for the user.
    const ImageLife& life() const { return shown.life; }
    void tell(const std::string& sentence) { shown.tell(sentence); }
    bool hasTools() const { return !tools.running().empty(); }
    // X geometry; empty when it cannot be found out.
    std::string geometry() const;
    // A client's window was destroyed.
    void clientGone(Window client);

    void pointerAt(int x, int y) override;
    void pointerLeft() override;
    void overlayArrived(unsigned long serial) override;
    void toolsChanged() override;
    void exposed(const Box& box) override;
    void areaResized(Size size) override;

private:
    void show();
    void claimNumber();
    void drawStale();
    void layOut();
    void drawImage();
    void drawOverlays();
    void showStatus();
    void publish();
    void announce();
    void pollRanges();
    void pollFile();
    void awaitStep();
    static void projectionDue(XtPointer window, XtIntervalId*);
    void step();
    void remember();
    Memory memoryNow() const;
    std::optional<ShownNavigator> overviewNow();
    void loadOverviewSoon();
    void takeFile(const image::SectionIndex& newestBefore);
    Scene scene() const;

    XtAppContext context;
    Display* display;
    CanvasKind canvasKind;
    Shown shown;
    Actions actions{shown};
    Overlays overlays;
    Picture picture;
    Overview overview;
    std::vector<int> plotted;           // panels, as drawn last
    protocol::DisplayRecord record;     // as published
    std::optional<CanvasPlace> pointer; // nothing: not on the canvas
    XtIntervalId rangesTimer = 0, fileTimer = 0, playTimer = 0, projectTimer = 0, overviewTimer = 0;
    LinkState settled;
    std::optional<Memory> firstSeen; // nothing: not yet
    bool closeAsked = false, canvasSeen = false, announced = false;
    Desk desk;
    Tools tools{desk};
    std::optional<Controls> controls; // after all that its callbacks use
    Dialogues dialogues{desk};        // children of controls
    std::optional<Intake> intake;     // on their shell
};

} // namespace viewer
