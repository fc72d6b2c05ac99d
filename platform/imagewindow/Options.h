// The command line of the image window program. Pure.
#pragma once

#include "platform/protocol/Geometry.h"

#include <optional>
#include <string>
#include <vector>

namespace viewer {

struct Options {
    std::vector<std::string> files;
    std::optional<double> zoom;   // window pixels per data pixel
    bool fit = false;             // --zoom fit
    int z = 0, t = 0;             // 0-based; the command line counts from 1
    std::vector<int> wavelengths; // 0-based, empty: as the viewer chooses
    std::string geometry;         // X geometry of the window, empty: as the viewer chooses
    std::string display;          // X display, empty: $DISPLAY
    int panels = protocol::SinglePanel;
    bool scratch = false;
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
