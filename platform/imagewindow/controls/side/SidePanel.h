// SPDX-License-Identifier: MIT
// The panel at the right of the image: tabs with the wavelengths, the metadata and the messages, and an edge
// that the user drags to make it wider. Its pages are made when they are first shown. Owned by the window's
// controls; the widgets go with their parent.
#pragma once

#include "platform/imagewindow/controls/side/ChannelsPage.h"
#include "platform/imagewindow/controls/side/MessagesPage.h"
#include "platform/imagewindow/controls/side/MetadataPage.h"
#include "platform/imagewindow/files/WindowParts.h"

#include <X11/Intrinsic.h>

#include <array>
#include <optional>

namespace viewer {

struct Desk;

class SidePanel {
public:
    SidePanel(Widget parent, Desk& desk);
    SidePanel(const SidePanel&) = delete;
    SidePanel& operator=(const SidePanel&) = delete;

    // What it takes from a window of that width, pixels; 0 when it is hidden.
    int widthIn(int windowWidth) const;
    void place(int x, int y, int width, int height);
    // Follows what is shown: the panel itself and the page in sight.
    void show();
    // The image was drawn anew.
    void refresh();
    void showMessages();

private:
    void make();
    void makeEdge();
    void makePage(SideTab tab);
    void tabChosen(Widget page);
    void dragged(const XEvent& event);

    Desk& desk;
    Widget parent, area = nullptr, edge = nullptr, tabs = nullptr;
    std::array<Widget, 3> holders{}; // by SideTab
    std::optional<ChannelsPage> channels;
    std::optional<MetadataPage> metadata;
    std::optional<MessagesPage> messages;
    int dragStart = 0, dragWidth = 0;
};

} // namespace viewer
