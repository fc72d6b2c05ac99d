// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Appearance.h"

#include "platform/text/Fonts.h"

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
    "*channels*shadowThickness: 0",
    "*XmScrollBar.shadowThickness: 1",
    "*XmScale.highlightThickness: 0",
    "*XmScale*XmScrollBar.highlightThickness: 0",
    "*contrast*XmScale.highlightThickness: 2",
    "*contrast*XmScale*XmScrollBar.highlightThickness: 2",
    "*XmScale.background: #4a4e53",
    "*contrast*XmScale.background: #2b2e31",
    "*XmScrollBar.troughColor: #1d1f21",
    "*XmScrollBar.background: #4a4e53",
    "*XmText.background: #1d1f21",
    "*XmTextField.background: #1d1f21",
    "*XmList.background: #1d1f21",
    "*XmToggleButton.selectColor: #d9dbdd",
    "*port.background: #16181b",
    "*area.background: #16181b",
    "*helpPage*heading.foreground: #8fb4e6",
    "*helpPage*inputs.foreground: #ffffff",
    "*status.background: #232527",
    "*status*background: #232527",
};

} // namespace

String* fallbackResources(Display* display)
{
    static std::vector<const char*> list(std::begin(looks), std::end(looks));
    text::appendFontResources(display, list);
    list.push_back(nullptr);
    return const_cast<String*>(list.data());
}

} // namespace viewer
