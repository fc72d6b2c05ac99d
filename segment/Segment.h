// SPDX-License-Identifier: MIT
// The line that the user drags in the attached image window, along which the profile is taken. One instance,
// owned by the handlers in Handlers.cpp, which alone change it (start-up clears the two graphics ids); the
// profile and the saved profiles read it. Coordinates are data coordinates: image pixels, (0, 0) the top left
// corner, y down.
#pragma once

#include <cstdint>

// The image window slot, and stream of the image-file functions, that the tool attaches its one image to.
constexpr int imageSlot = 1;

struct SegmentPoint {
    int32_t markerId; // overlay marker drawn at this point in the image window; 0 = none
    float x, y;       // pixels, fractional, never rounded
    float z;          // section, as reported for the pointer position
};

// start and end lie next to each other: a saved profile copies both as one block.
struct Segment {
    SegmentPoint start;
    SegmentPoint end; // never marked: its markerId stays 0
    int32_t lineId;   // rubber-band line; 0 = none
};

struct PanelIndex {
    int32_t panel, subPanel;
};

extern Segment segment;
extern int32_t dragging;       // 1 from an accepted press until the release
extern int32_t segmentDefined; // 1 once the current drag has drawn a line; 0 after each accepted press
extern PanelIndex startPanel;  // panel of the press
extern PanelIndex endPanel;    // panel of the latest accepted motion
