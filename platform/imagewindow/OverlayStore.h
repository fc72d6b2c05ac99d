// The overlay graphics of one window: what clients have added and not yet removed, and where each one shows.
// Ids are per client; a client's graphics go when it dies. Bounded whatever clients send. Pure: the painter
// asks what to draw, the window feeds in the decoded commands.
#pragma once

#include "platform/protocol/Geometry.h"
#include "platform/protocol/OverlayRecord.h"

#include <map>
#include <optional>
#include <span>
#include <vector>

namespace viewer {

constexpr std::size_t maxGraphicsPerClient = 10000, maxGraphics = 20000;

class OverlayStore {
public:
    enum class Outcome { Ignored, Changed, RedrawAsked, Refused };

    // Applies one command. Adding under an id in use replaces that graphic; removing one that is gone is
    // Ignored; Refused: not a finite position, or too many graphics.
    Outcome apply(const protocol::OverlayCommand& command);

    // Forgets everything that a client drew; false when it drew nothing.
    bool dropClient(std::uint32_t client);

    std::size_t size() const { return graphics.size(); }

    // Calls draw(command) for every graphic, in the order of client and id.
    template<typename Draw> void forEach(Draw draw) const
    {
        for (const auto& [key, command] : graphics)
            draw(command);
    }

    // Graphics that came or went since the last call; nothing when there were too many to list.
    std::optional<std::vector<protocol::OverlayCommand>> takeTouched();

private:
    using Key = std::pair<std::uint32_t, std::int32_t>;
    void touch(const protocol::OverlayCommand& command);

    std::map<Key, protocol::OverlayCommand> graphics;
    std::map<std::uint32_t, std::size_t> perClient;
    std::vector<protocol::OverlayCommand> touched;
    bool touchedAll = false;
};

// Whether a graphic shows in a panel that shows section z at time point t.
bool showsIn(const protocol::OverlayCommand& command, int panel, int z, int t);

struct Segment {
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

// The part of a segment inside the rectangle (bounds inclusive); nothing when it misses it. X takes 16-bit
// coordinates, so everything is cut to the panel before it is drawn.
std::optional<Segment> clipSegment(Segment segment, double left, double top, double right, double bottom);

} // namespace viewer
