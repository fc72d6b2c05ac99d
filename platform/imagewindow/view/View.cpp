// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/View.h"

#include "platform/imagewindow/view/Palette.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>

namespace viewer {

namespace {

constexpr std::array zoomSteps{1.0 / 16, 1.0 / 12, 1.0 / 8, 1.0 / 6, 1.0 / 4, 1.0 / 3, 1.0 / 2,
                               2.0 / 3,  1.0,      1.5,     2.0,     3.0,     4.0,     6.0,
                               8.0,      12.0,     16.0,    24.0,    32.0};

struct Grid {
    int columns = 1, rows = 1;
    Size panel; // room for one panel, canvas pixels
};

Grid gridOf(int columns, int count, Size visible)
{
    const int rows = (count + columns - 1) / columns;
    return {columns, rows,
            Size{std::max(1, (visible.width - (columns - 1) * panelGap) / columns),
                 std::max(1, (visible.height - (rows - 1) * panelGap) / rows)}};
}

// The grid whose panels show the image largest.
Grid bestGrid(const image::ImageInfo& info, int count, Size visible)
{
    Grid best = gridOf(1, count, visible);
    double bestScale = 0;
    for (int columns = 1; columns <= count; ++columns) {
        const Grid grid = gridOf(columns, count, visible);
        const double scale = std::min(grid.panel.width / static_cast<double>(info.width),
                                      grid.panel.height / static_cast<double>(info.height));
        if (scale > bestScale) {
            best = grid;
            bestScale = scale;
        }
    }
    return best;
}

Grid gridFor(const image::ImageInfo& info, const View& view, Size visible)
{
    const int count = panelCount(info, view);
    return view.grid.chosen() && count > 1 ? gridOf(std::min(view.grid.columns, count), count, visible)
                                           : bestGrid(info, count, visible);
}

double clampedOrigin(double origin, int imageSide, int panelSide, double zoom)
{
    const double last = scaledSide(imageSide, zoom) - panelSide;
    return std::clamp(std::round(origin * zoom), 0.0, std::max(0.0, last)) / zoom;
}

std::string captionOf(const image::ImageInfo& info, int style, const PanelContent& content)
{
    if (style == protocol::ZPanels)
        return "z " + std::to_string(content.z + 1);
    if (style == protocol::TimePanels)
        return "t " + std::to_string(content.t + 1);
    if (content.wavelengths.size() > 1)
        return "merge";
    const int w = content.wavelengths.front();
    const std::string& name = info.wavelengths[static_cast<std::size_t>(w)].name;
    return name.empty() ? "w " + std::to_string(w + 1) : name;
}

// A word of its own: "cells_labels.tif", "Label image"; not "labelled" or "unlabeled".
bool hasLabelWord(const std::string& name)
{
    std::string word;
    for (const char c : name + " ") {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalpha(byte)) {
            word += static_cast<char>(std::tolower(byte));
            continue;
        }
        for (const char* wanted : {"label", "labels", "mask", "masks", "seg", "segmentation"})
            if (word == wanted)
                return true;
        word.clear();
    }
    return false;
}

} // namespace

std::string projectionName(Projection projection)
{
    switch (projection) {
    case Projection::Maximum:
        return "maximum over z";
    case Projection::Mean:
        return "mean over z";
    case Projection::Sum:
        return "sum over z";
    case Projection::Section:
        break;
    }
    return "";
}

View initialView(const image::ImageInfo& info)
{
    View view;
    view.displayed.assign(static_cast<std::size_t>(info.sizeW), false);
    std::fill_n(view.displayed.begin(), std::min(info.sizeW, maxDisplayed), true);
    for (const image::Wavelength& wave : info.wavelengths)
        view.colors.push_back(colorIndexOrWhite(wave.colorIndex));
    view.z = (info.sizeZ - 1) / 2;
    return view;
}

std::vector<int> displayedWavelengths(const View& view)
{
    std::vector<int> list;
    for (std::size_t w = 0; w < view.displayed.size(); ++w)
        if (view.displayed[w])
            list.push_back(static_cast<int>(w));
    return list;
}

bool showWavelength(View& view, int wavelength, bool shown)
{
    if (wavelength < 0 || wavelength >= static_cast<int>(view.displayed.size()))
        return false;
    const auto index = static_cast<std::size_t>(wavelength);
    if (view.displayed[index] == shown)
        return true;
    const auto count = std::count(view.displayed.begin(), view.displayed.end(), true);
    if (shown ? count >= maxDisplayed : count <= 1)
        return false;
    view.displayed[index] = shown;
    return true;
}

bool canBeLabels(const image::ImageInfo& info)
{
    return info.pixelType != image::PixelType::Float32 && info.pixelType != image::PixelType::Float64;
}

bool saysLabels(const image::ImageInfo& info)
{
    return info.sizeW == 1 && canBeLabels(info) &&
           (hasLabelWord(info.path.filename().string()) || hasLabelWord(info.wavelengths[0].name));
}

int panelCount(const image::ImageInfo& info, const View& view)
{
    const int most = view.grid.chosen() ? view.grid.columns * view.grid.rows : maxPanels;
    const auto waves = static_cast<int>(displayedWavelengths(view).size());
    switch (view.style) {
    case protocol::ZPanels:
        return std::min(info.sizeZ, most);
    case protocol::TimePanels:
        return std::min(info.sizeT, most);
    case protocol::WavelengthPanels:
        return view.merge && waves > 1 ? waves + 1 : waves;
    default:
        return 1;
    }
}

std::string gridProblem(const image::ImageInfo& info, const View& view, const PanelGrid& grid, Size visible)
{
    constexpr int leastSide = 8; // canvas pixels
    const std::string size = std::to_string(grid.columns) + " x " + std::to_string(grid.rows);
    if (grid.columns < 1 || grid.rows < 1)
        return "Columns and rows are whole numbers from 1 on.";
    if (grid.columns > maxCells || grid.rows > maxCells || grid.columns * grid.rows > maxCells)
        return "At most " + std::to_string(maxCells) + " panels are shown at a time: " + size + " are more.";
    const int count = panelCount(info, view);
    if (view.style == protocol::WavelengthPanels && count > grid.columns * grid.rows)
        return std::to_string(count) + " panels do not fit into " + size + ".";
    const Size room = gridOf(grid.columns, grid.columns * grid.rows, visible).panel;
    if (room.width < leastSide || room.height < leastSide)
        return "The window has no room for " + size + " panels.";
    return "";
}

PanelGrid squareGrid(const image::ImageInfo& info, View view)
{
    view.grid = {maxCells, 1};
    const int count = panelCount(info, view);
    const int columns = static_cast<int>(std::ceil(std::sqrt(count)));
    return {columns, (count + columns - 1) / columns};
}

std::vector<PanelContent> panelContents(const image::ImageInfo& info, const View& view)
{
    const std::vector<int> waves = displayedWavelengths(view);
    std::vector<PanelContent> contents;
    for (int i = 0; i < panelCount(info, view); ++i) {
        PanelContent content{view.z, view.t, view.p, waves, ""};
        if (view.style == protocol::ZPanels)
            content.z += i;
        if (view.style == protocol::TimePanels)
            content.t += i;
        if (view.style == protocol::WavelengthPanels)
            content.wavelengths =
                i < static_cast<int>(waves.size()) ? std::vector{waves[static_cast<std::size_t>(i)]} : waves;
        if (view.style != protocol::SinglePanel)
            content.caption = captionOf(info, view.style, content);
        content.projection = view.projection;
        if (const std::string name = projectionName(view.projection); !name.empty())
            content.caption += (content.caption.empty() ? "" : ", ") + name;
        for (int w : content.wavelengths)
            content.colors.push_back(view.grey ? static_cast<int>(base::White)
                                               : view.colors[static_cast<std::size_t>(w)]);
        const bool named = view.projection == Projection::Section || view.projection == Projection::Maximum;
        content.labels = view.labels && named && canBeLabels(info) && content.wavelengths.size() == 1;
        contents.push_back(content);
    }
    return contents;
}

View lastSection(const image::ImageInfo& info, View view)
{
    const int panels = panelCount(info, view);
    view.z = info.sizeZ - (view.style == protocol::ZPanels ? panels : 1);
    view.t = info.sizeT - (view.style == protocol::TimePanels ? panels : 1);
    view.p = info.sizeP - 1;
    return view;
}

int lastAlong(const image::ImageInfo& info, const View& view, PlayAxis axis)
{
    View last = lastSection(info, view);
    return indexAlong(last, axis);
}

int& indexAlong(View& view, PlayAxis axis)
{
    return axis == PlayAxis::Z ? view.z : view.t;
}

PlayAxis playedAxis(const image::ImageInfo& info, const View& view, PlayAxis wanted)
{
    const PlayAxis other = wanted == PlayAxis::Z ? PlayAxis::Time : PlayAxis::Z;
    return lastAlong(info, view, wanted) == 0 && lastAlong(info, view, other) > 0 ? other : wanted;
}

void followNewest(View& view, const image::SectionIndex& before, const image::SectionIndex& now)
{
    if (view.style != protocol::SinglePanel || view.z != before.z || view.t != before.t)
        return;
    view.z = now.z;
    view.t = now.t;
}

void clampSection(const image::ImageInfo& info, View& view)
{
    if (view.style == protocol::ZPanels || info.sizeZ < 2)
        view.projection = Projection::Section;
    const View last = lastSection(info, view);
    view.z = std::clamp(view.z, 0, last.z);
    view.t = std::clamp(view.t, 0, last.t);
    view.p = std::clamp(view.p, 0, last.p);
}

protocol::Geometry layOut(const image::ImageInfo& info, View& view, Size visible)
{
    const int count = panelCount(info, view);
    const Grid grid = gridFor(info, view, visible);
    if (view.fit)
        view.zoom = fitZoom(info, view, visible);
    protocol::Geometry geometry;
    geometry.imageWidth = info.width;
    geometry.imageHeight = info.height;
    geometry.zoom = view.zoom;
    geometry.style = view.style;
    geometry.columns = grid.columns;
    geometry.rows = grid.rows;
    geometry.panelCount = count;
    geometry.panelWidth = std::min(grid.panel.width, scaledSide(info.width, view.zoom));
    geometry.panelHeight = std::min(grid.panel.height, scaledSide(info.height, view.zoom));
    geometry.gap = count > 1 ? panelGap : 0;
    view.originX = clampedOrigin(view.originX, info.width, geometry.panelWidth, view.zoom);
    view.originY = clampedOrigin(view.originY, info.height, geometry.panelHeight, view.zoom);
    geometry.originX = view.originX;
    geometry.originY = view.originY;
    return geometry;
}

Arrangement arrange(const image::ImageInfo& info, View& view, Size area, int barThickness)
{
    Arrangement result;
    result.visible = area;
    const double wantedX = view.originX, wantedY = view.originY;
    // A bar takes room, which may make the other one necessary: the second pass sees to that. The first
    // one, without bars, ends scrolling before the image's end.
    for (int pass = 0; pass < 3; ++pass) {
        view.originX = wantedX;
        view.originY = wantedY;
        result.visible = {std::max(1, area.width - (result.verticalBar ? barThickness : 0)),
                          std::max(1, area.height - (result.horizontalBar ? barThickness : 0))};
        result.geometry = layOut(info, view, result.visible);
        result.horizontalBar |= !view.fit && scaledSide(info.width, view.zoom) > result.geometry.panelWidth;
        result.verticalBar |= !view.fit && scaledSide(info.height, view.zoom) > result.geometry.panelHeight;
    }
    const protocol::Geometry& g = result.geometry;
    result.canvas = {g.columns * g.panelWidth + (g.columns - 1) * g.gap,
                     g.rows * g.panelHeight + (g.rows - 1) * g.gap};
    result.left = std::max(0, (result.visible.width - result.canvas.width) / 2);
    result.top = std::max(0, (result.visible.height - result.canvas.height) / 2);
    return result;
}

int scaledSide(int pixels, double zoom)
{
    return std::max(1, static_cast<int>(std::ceil(pixels * zoom - 1e-9)));
}

double fitZoom(const image::ImageInfo& info, const View& view, Size visible)
{
    const Grid grid = gridFor(info, view, visible);
    const double scale = std::min(grid.panel.width / static_cast<double>(info.width),
                                  grid.panel.height / static_cast<double>(info.height));
    return std::min(scale, maxZoom);
}

double usefulZoom(const image::ImageInfo& info, View view)
{
    constexpr int usefulSide = 600; // canvas pixels
    double useful = 1.0;
    for (const double zoom : zoomSteps) {
        if (zoom < 1 || zoom != std::floor(zoom))
            continue;
        view.zoom = zoom;
        view.fit = false;
        const Arrangement shown = arrange(info, view, {usefulSide, usefulSide}, 0);
        if (!shown.horizontalBar && !shown.verticalBar)
            useful = zoom;
    }
    return useful;
}

double steppedZoom(double zoom, int steps)
{
    constexpr double slack = 1e-6;
    for (; steps > 0; --steps) {
        const auto next = std::upper_bound(zoomSteps.begin(), zoomSteps.end(), zoom * (1 + slack));
        zoom = next == zoomSteps.end() ? maxZoom : *next;
    }
    for (; steps < 0; ++steps) {
        const auto next = std::lower_bound(zoomSteps.begin(), zoomSteps.end(), zoom * (1 - slack));
        // A large image may be fitted below the list: there, zooming out halves.
        zoom = next == zoomSteps.begin() ? std::min(zoom, minZoom) : *(next - 1);
    }
    return zoom;
}

void zoomAround(const image::ImageInfo& info, View& view, const Arrangement& now, Size area, int barThickness,
                double zoom, int x, int y)
{
    const protocol::Geometry& old = now.geometry;
    const int canvasX = std::clamp(x - now.left, 0, now.canvas.width - 1);
    const int canvasY = std::clamp(y - now.top, 0, now.canvas.height - 1);
    const int column = canvasX / (old.panelWidth + old.gap), row = canvasY / (old.panelHeight + old.gap);
    const double dataX = old.originX + (canvasX - column * (old.panelWidth + old.gap)) / old.zoom;
    const double dataY = old.originY + (canvasY - row * (old.panelHeight + old.gap)) / old.zoom;
    view.zoom = zoom;
    view.fit = false;
    // The new zoom may move the canvas and its panels in the visible area; the origin does not.
    const Arrangement next = arrange(info, view, area, barThickness);
    const protocol::Geometry& g = next.geometry;
    const int nextX = now.left + canvasX - next.left - column * (g.panelWidth + g.gap);
    const int nextY = now.top + canvasY - next.top - row * (g.panelHeight + g.gap);
    view.originX = dataX - nextX / zoom;
    view.originY = dataY - nextY / zoom;
}

std::string zoomText(double zoom)
{
    char text[32];
    const double percent = zoom * 100;
    std::snprintf(text, sizeof text, percent < 100 ? "%.3g %%" : "%.0f %%", percent);
    return text;
}

} // namespace viewer
