// SPDX-License-Identifier: MIT
// The widgets of an image window: menu bar, wavelength toggles, canvas with scroll bars, scales and status
// lines. They show the state that they are told and call the actions of the desk. Destroying the object
// destroys the window.
#pragma once

#include "platform/base/Placement.h"
#include "platform/image/ImageFile.h"
#include "platform/imagewindow/canvas/CanvasKind.h"
#include "platform/imagewindow/controls/AreaInput.h"
#include "platform/imagewindow/controls/Menus.h"
#include "platform/imagewindow/controls/StatusLines.h"
#include "platform/imagewindow/controls/ToolBar.h"
#include "platform/imagewindow/controls/side/SidePanel.h"
#include "platform/imagewindow/view/Palette.h"
#include "platform/imagewindow/view/View.h"

#include <X11/Intrinsic.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace viewer {

struct Desk;

class Controls {
public:
    // area: room for the canvas at first; userGeometry: X geometry of the window or empty.
    // Puts shell and canvas on the desk.
    Controls(Desk& desk, Display* display, Size area, const std::string& userGeometry, CanvasKind canvas);
    ~Controls();
    Controls(const Controls&) = delete;
    Controls& operator=(const Controls&) = delete;

    void show(const std::string& title);
    void setTitle(const std::string& title);
    Window canvas() const { return XtWindow(canvasWidget); }
    // Where the pointer is, in canvas pixels; nothing when it is elsewhere. One round trip to the server.
    std::optional<XPoint> pointerOnCanvas() const;
    Size areaSize() const;
    // Corner of the window manager's frame, size without it; screen pixels. A few round trips to the server.
    std::optional<base::Rectangle> windowPlace() const;
    // Puts canvas and scroll bars in their places.
    void place(const Arrangement& arrangement);
    // Before place(): the rows that it shows and hides take room from the area, and so do the lines for the
    // widest texts.
    void showView(const View& view, const StatusTexts& widest);
    // The menus follow the window's state.
    void showCommands() { showEntries(menus, desk); }
    // Follows the image's numbers of sections, time points and positions.
    void showSizes();
    void showStatus(const StatusTexts& texts);
    // The side panel follows.
    void imageDrawn() { sidePanel->refresh(); }
    void showMessages() { sidePanel->showMessages(); }
    // The user has switched a wavelength's toggle.
    void toggled(Widget toggle, bool on);

    struct SectionScale {
        Widget row = nullptr, scale = nullptr, value = nullptr;
        int count = 0;
        bool present = false;
    };

private:
    const image::ImageInfo& info() const;
    void makeWidgets(Size area, CanvasKind canvas);
    Widget makeToggles(Widget parent);
    SectionScale makeScale(const char* name, const char* title, bool present);
    void makeArea(Size area, CanvasKind canvas);
    void showScale(SectionScale& scale, int index, int lastIndex, bool panelled);
    void showToggles(const View& view);
    void showSidePanel();
    int layOutAround(int width, int height);
    void layOut();

    Desk& desk;
    Widget topLevel = nullptr, form = nullptr, area = nullptr, port = nullptr, canvasWidget = nullptr;
    Widget channels = nullptr, horizontal = nullptr, vertical = nullptr;
    std::optional<StatusLines> status;
    Menus menus;
    std::optional<ToolBar> toolBar;
    std::optional<SidePanel> sidePanel;
    Size grown;        // what the window was made larger for it
    int sideWidth = 0; // that the window has for the side panel, screen pixels
    std::optional<AreaInput> input;
    std::vector<Widget> toggles;
    SectionScale zScale, tScale, pScale;
    std::array<Pixel, palette.size()> colorPixels{}, textPixels{};
    Pixel dimmedPixel = 0;
};

} // namespace viewer
