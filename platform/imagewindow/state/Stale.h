// SPDX-License-Identifier: MIT
// Which parts of an image window no longer show its state. Whoever changes the state marks the part that it
// touches; what follows from that stands in one table here. The window takes the parts in the order of the
// list when it next updates. Pure.
#pragma once

#include <array>
#include <utility>

namespace viewer {

enum class Part {
    Layout,   // rows, area, arrangement of the panels
    Image,    // pixels, captions and scale bars, with the overlay graphics over them
    Overlays, // the graphics alone
    Pointer,  // what is under the pointer, though it has not moved
    Readout,  // the lines under the image
    Record,   // what clients are told
};

class Stale {
public:
    void mark(Part part) { parts |= withFollowers(part); }
    bool has(Part part) const { return (parts & bit(part)) != 0; }
    // Whether the part is stale; from now on it no longer is.
    bool take(Part part) { return (std::exchange(parts, parts & ~bit(part)) & bit(part)) != 0; }

private:
    static constexpr unsigned bit(Part part) { return 1U << static_cast<unsigned>(part); }
    template<typename... Parts> static constexpr unsigned all(Parts... which) { return (bit(which) | ...); }

    // The part itself and all that has to follow it. While a tool drags, it gets the pointer's motions and
    // the viewer does not; so new graphics count as a motion.
    static constexpr unsigned withFollowers(Part part)
    {
        constexpr std::array byPart{
            all(Part::Layout, Part::Image, Part::Pointer, Part::Readout, Part::Record),
            all(Part::Image, Part::Readout),
            all(Part::Overlays, Part::Pointer, Part::Readout),
            all(Part::Pointer, Part::Readout),
            all(Part::Readout),
            all(Part::Record),
        };
        return byPart[static_cast<std::size_t>(part)];
    }

    unsigned parts = 0;
};

} // namespace viewer
