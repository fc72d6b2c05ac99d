// SPDX-License-Identifier: MIT
// How a canvas shows an image: zoom, scroll origin and the grid of panels, and the one pair of functions that
// converts between canvas pixels and data coordinates. Viewer and client use the same pair. No X here.
//
// Frames: window coordinates are pixels of the canvas window with (0, 0) at its top left. Data coordinates
// are image pixels with (0, 0) at the top left corner of the top left pixel, so the integer part names the
// pixel. At zoom 1 and origin 0 window pixel (i, j) is data (i, j); at zoom s it is (i / s, j / s) plus the
// origin.
#pragma once

#include <optional>

namespace protocol {

// What the panels of a window differ in. The numbers are part of the protocol.
enum PanelStyle { SinglePanel = 0, ZPanels = 1, WavelengthPanels = 2, TimePanels = 3 };

struct Geometry {
    int imageWidth = 0, imageHeight = 0; // data pixels
    double zoom = 1.0;                   // window pixels per data pixel
    double originX = 0, originY = 0;     // data coordinate at the top left window pixel of every panel
    int style = SinglePanel;
    int columns = 1, rows = 1;           // panels across and down
    int panelCount = 1;                  // panels that show a section, 1 to columns * rows, row by row
    int panelWidth = 0, panelHeight = 0; // window pixels of one panel
    int gap = 0;                         // window pixels between two panels
    friend bool operator==(const Geometry&, const Geometry&) = default;
};

struct DataPosition {
    double x = 0, y = 0; // data coordinates
    int panel = 0;       // 0-based, row by row; 0 in a single-panel window
};

struct WindowPosition {
    double x = 0, y = 0;
};

// Nothing when (x, y) lies in no panel, in a panel without a section, or off the image.
std::optional<DataPosition> dataFromWindow(const Geometry& geometry, double x, double y);

// The window position of a data point in a panel; it may lie outside the panel when scrolled away.
WindowPosition windowFromData(const Geometry& geometry, const DataPosition& position);

} // namespace protocol
