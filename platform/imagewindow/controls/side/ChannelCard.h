// SPDX-License-Identifier: MIT
// What the side panel shows of one wavelength that is on display: name, colour, histogram with the limits of
// the contrast, their values and the gamma to be typed. Owned by the page; the widgets go with their parent.
#pragma once

#include "platform/imagewindow/controls/side/HistogramView.h"

#include <X11/Intrinsic.h>

#include <memory>
#include <string>

namespace viewer {

struct Desk;

class ChannelCard {
public:
    ChannelCard(Widget parent, Desk& desk);
    ChannelCard(const ChannelCard&) = delete;
    ChannelCard& operator=(const ChannelCard&) = delete;

    // Height of all cards, pixels.
    int height() const { return lowest; }
    void place(int y, int width);
    void hide();
    // sampleNow: count the section's values as they are now; otherwise the earlier histogram stays.
    void show(int wavelength, bool logarithmic, bool sampleNow);

private:
    struct Field {
        Widget label = nullptr, text = nullptr;
        std::string shown;
    };
    void makeHead();
    void makeFields();
    void layOut(int width);
    void layOutFields(int top, int width);
    void showName();
    void showColor();
    void showFields();
    void showField(Field& field, const std::string& text);
    void showHistogram(bool logarithmic, bool sampleNow);
    ContrastLimits wantedSpan(const ContrastLimits& limits) const;
    void typed(Field& field);
    void takeNumber(Field& field, float value);
    void moveLimit(bool low, float value);
    void colorChosen(int color);
    float smallestStep() const;
    bool holdsIntegers() const;
    std::string valueText(float value) const;

    Desk& desk;
    Widget card = nullptr, name = nullptr, color = nullptr, automatic = nullptr, full = nullptr;
    std::unique_ptr<HistogramView> histogram;
    Field black, white, gamma;
    int lowest = 0, lineHeight = 0, laidOutFor = 0;
    int wavelength = -1;
    ContrastLimits span{0, 0}; // of the histogram's axis
    SampleStore::Sample sample;
};

// "DAPI  461 nm" on a toggle of that width, pixels; a long name ends with dots.
void setRowName(Widget toggle, const Desk& desk, int wavelength, int width);

} // namespace viewer
