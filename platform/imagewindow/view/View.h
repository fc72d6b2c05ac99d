// SPDX-License-Identifier: MIT
// What a window shows of its image and how: section, displayed wavelengths, panels, zoom and scroll origin,
// and how these turn into the canvas geometry. Pure. Frames are those of Geometry.h: data pixels and canvas
// pixels. The scroll origin is kept at whole canvas pixels, so that scrolling never shifts an image by part
// of a pixel.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/files/PlaySettings.h"
#include "platform/protocol/Geometry.h"

#include <string>
#include <vector>

namespace viewer {

constexpr int maxDisplayed = 5;        // wavelengths shown at a time
constexpr int maxPanels = 20;          // panels shown at a time
constexpr int maxCells = 100;          // panels in a grid of the user's choice
constexpr int panelGap = 4;            // canvas pixels between panels
constexpr int scrollBarThickness = 15; // screen pixels at 96 dots per inch
constexpr double maxZoom = 32.0, minZoom = 1.0 / 16;

struct Size {
    int width = 0, height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

// What of a stack is shown: the section, or for each pixel one value over all sections.
enum class Projection { Section, Maximum, Mean, Sum };

// "maximum over z"; empty for the section.
std::string projectionName(Projection projection);

// The panels' columns and rows as the user wants them. 0: maxPanels at most, in the grid that shows them
// largest. Rows and columns that would stay empty are left out.
struct PanelGrid {
    int columns = 0, rows = 0;
    bool chosen() const { return columns > 0; }
    friend bool operator==(const PanelGrid&, const PanelGrid&) = default;
};

struct View {
    int z = 0, t = 0, p = 0;                     // of the first panel
    std::vector<bool> displayed;                 // one per wavelength, at most maxDisplayed true
    std::vector<int> colors;                     // palette index of each wavelength
    bool grey = false;                           // all are shown in white instead
    Projection projection = Projection::Section; // never where panels are of z
    bool labels = false; // a panel of one wavelength shows each of its numbers in another colour
    int style = protocol::SinglePanel;
    PanelGrid grid;     // of several panels
    bool merge = false; // one more panel shows the wavelengths together, after those of wavelengths
    double zoom = 1.0;
    double originX = 0, originY = 0;
    bool fit = false; // the zoom follows the window's size
};

// Shows the section in the middle of the stack, where most specimens are in focus, and the first maxDisplayed
// wavelengths.
View initialView(const image::ImageInfo& info);

std::vector<int> displayedWavelengths(const View& view);

// Shows or hides a wavelength. False (and no change) when it would be one too many or the last one to go.
bool showWavelength(View& view, int wavelength, bool shown);

// Whether the values can be labels, numbers of objects: whole ones.
bool canBeLabels(const image::ImageInfo& info);
// Whether the file's name, or the name of its only wavelength, says that they are.
bool saysLabels(const image::ImageInfo& info);

// How many panels the style gives: sections, wavelengths or time points, as many as the grid holds.
int panelCount(const image::ImageInfo& info, const View& view);

// Why panels of the view's style cannot be in such a grid in a visible area of that size, one sentence; empty
// when they can.
std::string gridProblem(const image::ImageInfo& info, const View& view, const PanelGrid& grid, Size visible);
// The grid of nearly as many columns as rows that shows all of the style, as far as there may be cells.
PanelGrid squareGrid(const image::ImageInfo& info, View view);

// What one panel shows.
struct PanelContent {
    int z = 0, t = 0, p = 0;
    std::vector<int> wavelengths;
    std::string caption;       // empty for a single panel of a section
    std::vector<int> colors{}; // palette index of each of the wavelengths
    bool labels = false;       // the values of its only wavelength are numbers of objects
    Projection projection = Projection::Section;
    friend bool operator==(const PanelContent&, const PanelContent&) = default;
};
std::vector<PanelContent> panelContents(const image::ImageInfo& info, const View& view);

// The view with the last section, time point and position that its first panel can show.
View lastSection(const image::ImageInfo& info, View view);

// Which of the two is played, the other one where an image or its panels have no run of it.
PlayAxis playedAxis(const image::ImageInfo& info, const View& view, PlayAxis wanted);
// The last index of the first panel along the axis; 0: there is nothing to play.
int lastAlong(const image::ImageInfo& info, const View& view, PlayAxis axis);
int& indexAlong(View& view, PlayAxis axis);

// After a growing image has grown: a view of the section that was the newest moves to the one that is the
// newest now. Panels stay as they are.
void followNewest(View& view, const image::SectionIndex& before, const image::SectionIndex& now);

// Puts section, time point, position and panel start inside the image.
void clampSection(const image::ImageInfo& info, View& view);

// The geometry in a visible area of that size, and view's zoom (when it fits the window) and origin put in
// order.
protocol::Geometry layOut(const image::ImageInfo& info, View& view, Size visible);

// As layOut(), with scroll bars of that thickness taken off the area where the image needs them.
struct Arrangement {
    protocol::Geometry geometry;
    Size visible;          // what the scroll bars leave
    Size canvas;           // of all panels and gaps, within visible
    int left = 0, top = 0; // where the canvas stands in the visible area: centred
    bool horizontalBar = false, verticalBar = false;
};
Arrangement arrange(const image::ImageInfo& info, View& view, Size area, int barThickness);

// Side of the whole image in canvas pixels; the last one still lies on the image.
int scaledSide(int pixels, double zoom);

// The zoom at which every panel shows the whole image.
double fitZoom(const image::ImageInfo& info, const View& view, Size visible);

// Zoom 1; a small image, or its panels, as many whole times larger as fill a useful part of a window.
double usefulZoom(const image::ImageInfo& info, View view);

// Next zoom in the list of zoom steps; steps > 0 zooms in. The result is within the limits.
double steppedZoom(double zoom, int steps);

// Changes the zoom so that the data point at (x, y) of the visible area (on the canvas or nearest to it)
// stays where it is on the screen, as far as the image's edges and whole canvas pixels let it. now: the
// present arrangement.
void zoomAround(const image::ImageInfo& info, View& view, const Arrangement& now, Size area, int barThickness,
                double zoom, int x, int y);

// "100 %", "33.3 %"
std::string zoomText(double zoom);

} // namespace viewer
