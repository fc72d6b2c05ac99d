// SPDX-License-Identifier: MIT
// What one image window shows: its image, how it is seen, and which parts of the window have yet to follow.
// One record for all that act on it or draw it; used from the window's thread. No X.
#pragma once

#include "platform/imagewindow/files/BarStyle.h"
#include "platform/imagewindow/files/ImageLife.h"
#include "platform/imagewindow/files/PlaySettings.h"
#include "platform/imagewindow/files/WindowParts.h"
#include "platform/imagewindow/render/Look.h"
#include "platform/imagewindow/render/Renderer.h"
#include "platform/imagewindow/state/Stale.h"
#include "platform/imagewindow/view/MessageLog.h"
#include "platform/imagewindow/view/Playback.h"
#include "platform/imagewindow/view/Status.h"
#include "platform/imagewindow/view/View.h"

#include <array>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

namespace viewer {

struct Shown {
    explicit Shown(ImageSource opened)
        : life(std::move(opened)), view(initialView(life.info())), renderer(life.file())
    {
        stale.mark(Part::Layout);
        life.beforeReplacing([this] { renderer.letGo(); });
    }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;

    ImageLife life;
    View view;
    Renderer renderer;
    int barThickness = scrollBarThickness; // of the scroll bars on this screen, screen pixels
    Size area;                             // that the window has for canvas and scroll bars, screen pixels
    Arrangement arrangement;               // of the view in the area
    std::vector<PanelContent> panels;      // as drawn last
    std::array<int, 2> singlePlace{};      // z and time point of before the panels
    bool scaleBar = false;
    BarStyle barStyle;
    bool linked = false;         // section and place follow those of other linked windows
    bool linkedContrast = false; // the limits of one wavelength are those of all
    PlaySettings play;
    Playback playback;
    WindowParts parts;
    int windowNumber = 0; // 0: none was free, tools cannot attach
    std::string problem;  // why a section is not shown, empty when all is well
    Notice notice;
    MessageLog log;
    Stale stale;

    Look look(int wavelength) const
    {
        return {view.colors[static_cast<std::size_t>(wavelength)], renderer.limitsByHand(wavelength),
                renderer.gamma(wavelength)};
    }
    const image::ImageInfo& info() const { return life.info(); }
    // To be called when the view has changed: marks all that follows it, and takes the sentence of the last
    // action away.
    void changed()
    {
        notice.clear();
        stale.mark(Part::Layout);
    }
    // What could not be done.
    void answer(const std::string& sentence)
    {
        log.add(sentence, std::time(nullptr));
        notice.answer(sentence);
        stale.mark(Part::Readout);
    }
    void tell(const std::string& sentence)
    {
        log.add(sentence, std::time(nullptr));
        notice.tell(sentence, Notice::Clock::now());
        stale.mark(Part::Readout);
    }
    // As drawn: until a projection is there, the sections.
    View drawnView() const
    {
        View drawn = view;
        drawn.projection = renderer.projection();
        return drawn;
    }
    void arrangeNow() { arrangement = arrange(info(), view, area, barThickness); }
};

// Whether there is a stack to project; not while sections still come.
inline bool canProject(const Shown& shown)
{
    return shown.info().sizeZ > 1 && !shown.life.growing();
}

} // namespace viewer
