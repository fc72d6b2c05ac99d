// SPDX-License-Identifier: MIT
// How one wavelength is shown: all that the user can set of it, in one record to be read, set and kept.
#pragma once

#include "platform/imagewindow/render/Composite.h"

#include <optional>

namespace viewer {

struct Look {
    int color = 0;                        // of base::displayColors
    std::optional<ContrastLimits> limits; // nothing: fitted to the image
    float gamma = 1;                      // minGamma to maxGamma
    friend bool operator==(const Look&, const Look&) = default;
};

} // namespace viewer
