// SPDX-License-Identifier: MIT
#include "widgets/Scale.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace widgets {

namespace {

// Pixels at 96 dots per inch of what Motif does not derive from a font.
constexpr struct {
    const char* resource;
    int pixels;
} sizes[] = {
    {"*shadowThickness", 1},           {"*highlightThickness", 2},
    {"*VertScrollBar.width", 15},      {"*VertScrollBar.shadowThickness", 1},
    {"*HorScrollBar.height", 15},      {"*vertScrollBar.width", 15},
    {"*horScrollBar.height", 15},      {"*XmScrollBar.minimumThumbSize", 12},
    {"*XmScale.scaleHeight", 15},      {"*XmToggleButton.indicatorSize", 13},
    {"*XmToggleButton.spacing", 4},    {"*XmComboBox.arrowSize", 15},
    {"*XmKvComboBox.arrowSize", 15},   {"*XmComboBox.arrowSpacing", 3},
    {"*XmKvComboBox.arrowSpacing", 3}, {"*XmArrowButton.width", 17},
    {"*XmArrowButton.height", 17},     {"*XmText.marginHeight", 3},
    {"*XmText.marginWidth", 4},        {"*XmTextField.marginHeight", 3},
    {"*XmTextField.marginWidth", 4},   {"*XmPushButton.marginWidth", 6},
    {"*XmPushButton.marginHeight", 3},
};

} // namespace

double screenScale(Display* display)
{
    constexpr double usual = 96, least = 0.5, most = 8;
    const char* const given = XGetDefault(display, "Xft", "dpi");
    const double scale = given ? std::strtod(given, nullptr) / usual : 1;
    return scale > 0 ? std::clamp(scale, least, most) : 1;
}

int scaled(Display* display, int pixels)
{
    return pixels <= 0 ? pixels : std::max(1, static_cast<int>(std::lround(pixels * screenScale(display))));
}

int scaled(Widget widget, int pixels)
{
    return scaled(XtDisplayOfObject(widget), pixels);
}

std::vector<std::string> scaledResources(Display* display)
{
    std::vector<std::string> lines;
    for (const auto& size : sizes)
        lines.push_back(std::string(size.resource) + ": " + std::to_string(scaled(display, size.pixels)));
    return lines;
}

} // namespace widgets
