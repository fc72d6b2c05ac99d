// SPDX-License-Identifier: MIT
// The overlay graphics of one window: what clients have added and not yet removed, and where each one shows.
// Ids are per client; a client's graphics go when it dies. Bounded whatever clients send. Pure: the painter
// asks what to draw, the window feeds in the decoded commands.
#pragma once

#include "platform/imagewindow/view/View.h"
#include "platform/protocol/OverlayRecord.h"

#include <array>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace viewer {

constexpr std::size_t maxGraphicsPerClient = 10000, maxGraphics = 20000;

// What a graphic's panel meant when it came. In wavelength panels it stands for the panel's wavelength, which
// changes its place when others are shown or hidden; in all other displays for the place. In a display that
// differs in something else a graphic shows in every panel.
struct GraphicBinding {
    int style = protocol::SinglePanel;
    int wavelength = -1; // of wavelength panels; -1: that of all together
};

struct Graphic {
    protocol::OverlayCommand command;
    GraphicBinding binding;
};

class OverlayStore {
public:
    enum class Outcome { Ignored, Changed, RedrawAsked, Refused };

    // Applies one command. Adding under an id in use replaces that graphic; removing one that is gone is
    // Ignored; Refused: no valid position, or too many graphics.
    Outcome apply(const protocol::OverlayCommand& command, const GraphicBinding& binding = {});

    // Forgets everything that a client drew; false when it drew nothing.
    bool dropClient(std::uint32_t client);

    // Whether a client has graphics here.
    bool holdsOf(std::uint32_t client) const;

    std::size_t size() const { return graphics.size(); }

    // Calls draw(graphic) for every graphic, in the order of client and id.
    template<typename Draw> void forEach(Draw draw) const
    {
        for (const auto& [key, graphic] : graphics)
            draw(graphic);
    }

    // From start to end of the line that came last, in image pixels; nothing when it is gone or a point.
    std::optional<std::array<double, 2>> lastLine() const;
    // That line itself; nothing when there is none.
    const Graphic* newestSegment() const;

    // Graphics that came or went since the last call; nothing when there were too many to list.
    std::optional<std::vector<Graphic>> takeTouched();

private:
    using Key = std::pair<std::uint32_t, std::int32_t>;
    void touch(const Graphic& graphic);

    std::map<Key, Graphic> graphics;
    Key newestLine{};
    std::map<std::uint32_t, std::size_t> perClient;
    std::vector<Graphic> touched;
    bool touchedAll = false;
};

// The wavelength of one of the wavelength panels as a binding has it.
int boundWavelength(const PanelContent& content);

// Whether a graphic shows in a panel of a display of that style.
bool showsIn(const Graphic& graphic, int style, int panel, const PanelContent& content);

// Ends in one frame; without length where it stands for a point.
struct LinePart {
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

// What of a line is inside the rectangle (bounds inclusive); nothing when it misses it. X takes 16-bit
// coordinates, so everything is cut to the panel before it is drawn.
std::optional<LinePart> clipped(LinePart line, double left, double top, double right, double bottom);

} // namespace viewer
