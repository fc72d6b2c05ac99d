// SPDX-License-Identifier: MIT
// The page of the side panel with a row for each wavelength: those on display with their histogram, limits,
// gamma and colour, the others with their name alone. However many there are, only the rows in sight have
// widgets. Owned by the panel; the widgets go with their parent.
#pragma once

#include "platform/imagewindow/controls/side/ChannelCard.h"

#include <X11/Intrinsic.h>

#include <memory>
#include <vector>

namespace viewer {

struct Desk;

class ChannelsPage {
public:
    ChannelsPage(Widget parent, Desk& desk);
    ~ChannelsPage();
    ChannelsPage(const ChannelsPage&) = delete;
    ChannelsPage& operator=(const ChannelsPage&) = delete;

    Widget widget() const { return form; }
    // Follows what is shown; the histograms follow a moment later, when the picture stands still.
    void refresh();

private:
    void makeHead();
    Widget makeSwitch(const char* name, const char* text, const char* tip);
    void makeList();
    void switched(Widget which, bool on);
    void countLater();
    void showCards(bool sampleNow);
    void layOut();
    int listHeight() const;
    void scrollTo(int top);
    void placeBar(int viewHeight, int height);
    void showRow(std::size_t index, int wavelength, int y, int width);
    void chosen(Widget row);

    Desk& desk;
    Widget form = nullptr, head = nullptr, view = nullptr, bar = nullptr;
    Widget linked = nullptr, grey = nullptr, logarithmic = nullptr, count = nullptr;
    std::vector<std::unique_ptr<ChannelCard>> cards;
    struct Row {
        Widget widget;
        int wavelength;
    };
    std::vector<Row> rows; // for the wavelengths in sight that are not shown
    int rowHeight = 0, top = 0;
    bool logarithmicCounts = true;
    XtIntervalId countTimer = 0;
};

} // namespace viewer
