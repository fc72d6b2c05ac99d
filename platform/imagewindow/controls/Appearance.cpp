// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Appearance.h"

#include "platform/text/Fonts.h"
#include "widgets/Scale.h"

#include <string>
#include <vector>

namespace viewer {

namespace {

constexpr const char* looks[] = {
    "*background: #2b2e31",
    "*foreground: #d9dbdd",
    "*topShadowColor: #44494e",
    "*bottomShadowColor: #17191b",
    "*armColor: #3a3f45",
    "*highlightColor: #6c8ebf",
    "*borderWidth: 0",
    "*menuBar.shadowThickness: 0",
    "*XmForm.shadowThickness: 0",
    "*XmLabel.highlightThickness: 0",
    "*XmToggleButton.shadowThickness: 0",
    "*XmScale.shadowThickness: 0",
    "*XmScale.highlightThickness: 0",
    "*XmScale*XmScrollBar.highlightThickness: 0",
    "*XmScale.background: #4a4e53",
    "*XmScrollBar.troughColor: #1d1f21",
    "*XmScrollBar.background: #4a4e53",
    "*XmText.background: #1d1f21",
    "*XmTextField.background: #1d1f21",
    "*XmList.background: #1d1f21",
    "*XmList.selectColor: #3d5a80",
    // Motif shows the armed item of a menu by its shadow alone, unless menus are etched in; and it draws the
    // text of an item that can't be chosen in the colour of the lower shadow, which here is as dark as the
    // background.
    "*enableEtchedInMenu: True",
    "*XmMenuShell*armColor: #3d5a80",
    "*XmMenuShell*XmPushButton.bottomShadowColor: #8a8f94",
    "*XmMenuShell*XmToggleButton.bottomShadowColor: #8a8f94",
    "*XmToggleButton.selectColor: #d9dbdd",
    "*commandBar.background: #232527",
    "*commandBar*background: #232527",
    // Almost the colour of the background: in exactly that colour Motif would draw dotted shadows.
    "*commandBar*XmToggleButton.topShadowColor: #242628",
    "*commandBar*XmToggleButton.bottomShadowColor: #242628",
    "*commandBar*XmToggleButton.selectColor: #47505c",
    "*commandBar.kvMore.traversalOn: False",
    "*commandBar.kvMore.highlightThickness: 0",
    "*sidePanel*XmKvPushButton.background: #3a3f45",
    "*sidePanel*card.background: #232527",
    "*sidePanel*card.XmLabel.background: #232527",
    "*sidePanel*card.XmToggleButton.background: #232527",
    "*sidePanel*card.color.background: #3a3f45",
    "*sidePanel*row.foreground: #9a9ea2",
    "*sidePanel*count.foreground: #9a9ea2",
    "*sidePanel*XmKvOutliner.background: #1d1f21",
    "*sideEdge.background: #16181b",
    "*port.background: #16181b",
    "*area.background: #16181b",
    "*emptyPage*heading.foreground: #8fb4e6",
    "*helpPage*heading.foreground: #8fb4e6",
    "*helpPage*inputs.foreground: #ffffff",
    "*status.background: #232527",
    "*status*background: #232527",
};

// What differs from widgets::scaledResources or is not in it; pixels at 96 dots per inch.
constexpr struct {
    const char* resource;
    int pixels;
} sizes[] = {
    {"*menuBar.XmCascadeButton.shadowThickness", 2},    {"*XmScale.sliderSize", 30},
    {"*XmMenuShell*XmPushButton.marginWidth", 4},       {"*XmMenuShell*XmToggleButton.marginWidth", 4},
    {"*XmMenuShell*XmToggleButton.shadowThickness", 1}, {"*commandBar*XmToggleButton.shadowThickness", 1},
    {"*XmMenuShell*XmPushButton.marginHeight", 2},      {"*XmMenuShell*XmToggleButton.marginHeight", 2},
};

std::vector<std::string> sizesOn(Display* display)
{
    std::vector<std::string> lines = widgets::scaledResources(display);
    for (const auto& size : sizes)
        lines.push_back(std::string(size.resource) + ": " +
                        std::to_string(widgets::scaled(display, size.pixels)));
    return lines;
}

} // namespace

String* fallbackResources(Display* display)
{
    static const std::vector<std::string> scaled = sizesOn(display);
    static std::vector<const char*> list;
    for (const std::string& line : scaled)
        list.push_back(line.c_str());
    list.insert(list.end(), std::begin(looks), std::end(looks));
    text::appendFontResources(display, list);
    list.push_back(nullptr);
    return const_cast<String*>(list.data());
}

} // namespace viewer
