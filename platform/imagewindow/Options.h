// SPDX-License-Identifier: MIT
// The command line of the image window program. Pure.
#pragma once

#include "platform/imagewindow/canvas/CanvasKind.h"
#include "platform/protocol/Geometry.h"

#include <optional>
#include <string>
#include <vector>

namespace viewer {

struct Options {
    std::vector<std::string> files;
    std::optional<double> zoom;       // window pixels per data pixel
    bool fit = false;                 // --zoom fit
    std::optional<int> z;             // 0-based, none: as the viewer chooses; the command line counts from 1
    std::optional<int> t;             // the same
    std::vector<int> wavelengths;     // 0-based, empty: as the viewer chooses
    std::vector<int> colors;          // palette index of the first wavelengths, empty: as the file says
    std::string geometry;             // X geometry of the window, empty: as the viewer chooses
    std::string display;              // X display, empty: $DISPLAY
    std::optional<int> panels;        // of protocol::Geometry, none: as the viewer chooses
    std::optional<CanvasKind> canvas; // nothing: as the display can
    bool scratch = false;
    bool scaleBar = true;
};

// Options, or a text to print and the exit status: 0 for --help and --version (to standard output), 2 for a
// command line that cannot be understood (one sentence to standard error).
struct ParsedOptions {
    std::optional<Options> options;
    std::string text;
    int status = 0;
};

ParsedOptions parseOptions(const std::vector<std::string>& arguments);

} // namespace viewer
