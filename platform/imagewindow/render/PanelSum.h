// SPDX-License-Identifier: MIT
// The composite of one panel that is drawn again and again while the user moves the limits of one of its
// channels: the sum of the other channels is kept, so that only the one that moves is computed anew. No X.
#pragma once

#include "platform/imagewindow/render/Composite.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace viewer {

class PanelSum {
public:
    // Before compose(): what the panel shows now, count values of each channel. moving: the place of the
    // channel that the user changes, or any number beyond. Call forget() when values of the channels have
    // changed.
    void begin(std::vector<CompositeChannel> channels, std::size_t moving, std::size_t count);
    // Fills out with the pixels from first on. Several threads may do so at a time, each with its own pixels.
    void compose(std::size_t first, std::span<std::uint32_t> out);
    // The values of the channels have changed.
    void forget();

private:
    // Apart: there is no sum, all channels are composed together. Made: this picture computes the sum. Taken:
    // the sum of an earlier picture holds.
    enum class Others { Apart, Made, Taken };

    std::vector<CompositeChannel> all, others, moved;
    std::vector<std::uint32_t> sum; // of the others as they were when it was made
    Others use = Others::Apart;
};

} // namespace viewer
