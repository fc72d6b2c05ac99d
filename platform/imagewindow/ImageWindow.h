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
#include "platform/imagewindow/controls/Tools.h"
#include "platform/imagewindow/state/Actions.h"
#include "platform/imagewindow/state/Reports.h"
#include "platform/imagewindow/state/Shown.h"

#include <X11/Intrinsic.h>

#include <optional>

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
    // A client's window was destroyed.
    void clientGone(Window client);

    void pointerAt(int x, int y) override;
    void pointerLeft() override;
    void overlayArrived(unsigned long serial) override;
    void toolsChanged() override;
    void exposed(Region region) override;
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
    void takeFile(const image::SectionIndex& newestBefore);
    Scene scene() const;

    XtAppContext context;
    Display* display;
    Shown shown;
    Actions actions{shown};
    Overlays overlays;
    Picture picture;
    protocol::DisplayRecord record;     // as published
    std::optional<CanvasPlace> pointer; // nothing: not on the canvas
    XtIntervalId rangesTimer = 0, fileTimer = 0;
    bool closeAsked = false, canvasSeen = false, announced = false;
    Desk desk;
    Tools tools{desk};
    std::optional<Controls> controls; // after all that its callbacks use
    Dialogues dialogues{desk};        // children of controls
};

} // namespace viewer
