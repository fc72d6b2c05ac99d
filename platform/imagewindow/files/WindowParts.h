// SPDX-License-Identifier: MIT
// Which parts a window has around the image. Kept as settings: the next window begins with them. No X.
#pragma once

#include <string>

namespace viewer {

enum class SideTab { Channels, Metadata, Messages };

struct WindowParts {
    bool toolBar = true, sidePanel = false, overview = true;
    SideTab tab = SideTab::Channels; // of the side panel
    int sideWidth = 0;               // of the side panel, pixels of 96 dots per inch; 0: as it likes
    friend bool operator==(const WindowParts&, const WindowParts&) = default;
};

WindowParts loadParts();
// A sentence when they could not be kept, else an empty text.
std::string keepParts(const WindowParts& parts);

} // namespace viewer
