// SPDX-License-Identifier: MIT
// The widgets of an image window: menu bar, wavelength toggles, canvas with scroll bars, scales and status
// lines. They show the state that they are told and call the actions of the desk. Destroying the object
// destroys the window.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/controls/Menus.h"
#include "platform/imagewindow/controls/StatusLines.h"
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
    Controls(Desk& desk, Display* display, Size area, const std::string& userGeometry);
    ~Controls();
    Controls(const Controls&) = delete;
    Controls& operator=(const Controls&) = delete;

    void show(const std::string& title);
    void setTitle(const std::string& title);
    Window canvas() const { return XtWindow(canvasWidget); }
    // Where the pointer is, in canvas pixels; nothing when it is elsewhere. One round trip to the server.
    std::optional<XPoint> pointerOnCanvas() const;
    Size areaSize() const;
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
    // A button or motion event that no tool takes, in pixels of the area around the canvas.
    void handlePort(XEvent& event);
    // The user has switched a wavelength's toggle.
    void toggled(Widget toggle, bool on);

    struct SectionScale {
        Widget row = nullptr, scale = nullptr, value = nullptr;
        int count = 0;
        bool present = false;
    };

private:
    const image::ImageInfo& info() const;
    void makeWidgets(Size area);
    Widget makeToggles(Widget parent);
    SectionScale makeScale(const char* name, const char* title, bool present);
    void makeArea(Size area);
    void turnWheel(const XButtonEvent& event, int step);
    void showScale(SectionScale& scale, int index, int lastIndex, bool panelled);
    void showToggles(const View& view);
    int layOutAround(int width, int height);
    void layOut();
    void pressed(const XButtonEvent& press);
    void postMenu(bool held);
    void cancelMenu();

    Desk& desk;
    Widget topLevel = nullptr, form = nullptr, area = nullptr, port = nullptr, canvasWidget = nullptr;
    Widget channels = nullptr, horizontal = nullptr, vertical = nullptr;
    std::optional<StatusLines> status;
    Menus menus;
    std::vector<Widget> toggles;
    SectionScale zScale, tScale, pScale;
    std::array<Pixel, palette.size()> colorPixels{}, textPixels{};
    Pixel dimmedPixel = 0;
    int dragX = 0, dragY = 0; // where the pointer was last while it drags the image
    XButtonEvent menuPress{};
    XtIntervalId menuTimer = 0; // runs from the press of the menu's button until the menu is posted
};

} // namespace viewer
