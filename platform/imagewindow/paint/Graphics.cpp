// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/Graphics.h"

#include "platform/imagewindow/paint/Panels.h"
#include "platform/imagewindow/view/Palette.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace viewer {

namespace {

using protocol::OverlayCommand;
using protocol::OverlayKind;

// At 96 dots per inch, canvas pixels.
constexpr double pointArm = 7; // from a point's centre to the end of its cross
constexpr double pointGap = 2; // left free around the point itself

constexpr int haloWidth = 2;       // dark pixels on either side of a line, halved at each edge
constexpr double pieceLength = 32; // of a line: its damage is small boxes instead of one large box

int widthOf(const OverlayCommand& command)
{
    return std::max(1, command.width);
}

int reachOf(const OverlayCommand& command, double screenScale)
{
    const int line = widthOf(command) / 2 + haloWidth + 1;
    return command.kind == OverlayKind::AddPoint ? line + static_cast<int>(std::ceil(pointArm * screenScale))
                                                 : line;
}

// The part of a graphic that may show in a panel, in canvas pixels: a point is a segment without length. The
// cut is made beyond the graphic's own width, so that a cut end never shows.
std::optional<LinePart> visiblePart(const Scene& scene, int panel, const OverlayCommand& command)
{
    const auto from = protocol::windowFromData(scene.geometry, {command.x0, command.y0, panel});
    const auto to = command.kind == OverlayKind::AddLine
                        ? protocol::windowFromData(scene.geometry, {command.x1, command.y1, panel})
                        : from;
    const Box box = panelBox(scene.geometry, panel);
    const int reach = reachOf(command, scene.screenScale);
    return clipped({from.x, from.y, to.x, to.y}, box.x - reach, box.y - reach, box.x + box.width + reach,
                   box.y + box.height + reach);
}

int toPixel(double value)
{
    return static_cast<int>(std::floor(value + 1e-6));
}

Box boxAround(const LinePart& part, int reach)
{
    const int left = toPixel(std::min(part.x0, part.x1)) - reach;
    const int top = toPixel(std::min(part.y0, part.y1)) - reach;
    return {left, top, toPixel(std::max(part.x0, part.x1)) + reach - left + 1,
            toPixel(std::max(part.y0, part.y1)) + reach - top + 1};
}

void addPieces(std::vector<Box>& boxes, const LinePart& part, int reach)
{
    const double dx = part.x1 - part.x0, dy = part.y1 - part.y0;
    const int pieces = std::max(1, static_cast<int>(std::max(std::abs(dx), std::abs(dy)) / pieceLength));
    for (int i = 0; i < pieces; ++i) {
        const double from = static_cast<double>(i) / pieces, to = static_cast<double>(i + 1) / pieces;
        boxes.push_back(boxAround(
            {part.x0 + from * dx, part.y0 + from * dy, part.x0 + to * dx, part.y0 + to * dy}, reach));
    }
}

bool shows(const Scene& scene, int panel, const Graphic& graphic)
{
    return showsIn(graphic, scene.geometry.style, panel, scene.panels[static_cast<std::size_t>(panel)]);
}

// Each path twice: dark and a little wider, then in its colour.
void stroke(cairo_t* cairo, const OverlayCommand& command)
{
    const int index = base::isGraphicsColor(command.color) ? command.color : base::annotationColor;
    const Rgb& color = palette[static_cast<std::size_t>(index)];
    cairo_set_source_rgb(cairo, 0, 0, 0);
    cairo_set_line_width(cairo, widthOf(command) + haloWidth);
    cairo_stroke_preserve(cairo);
    constexpr double full = 255;
    cairo_set_source_rgb(cairo, color.red / full, color.green / full, color.blue / full);
    cairo_set_line_width(cairo, widthOf(command));
    if (const double dash = command.dash; dash > 0)
        cairo_set_dash(cairo, &dash, 1, 0);
    cairo_stroke(cairo);
    cairo_set_dash(cairo, nullptr, 0, 0);
}

// From the middle of a pixel to the middle of a pixel.
void strokeLine(cairo_t* cairo, const LinePart& line, const OverlayCommand& command)
{
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
    cairo_move_to(cairo, toPixel(line.x0) + 0.5, toPixel(line.y0) + 0.5);
    cairo_line_to(cairo, toPixel(line.x1) + 0.5, toPixel(line.y1) + 0.5);
    stroke(cairo, command);
}

// A cross whose middle stays free, so that the marked pixel is seen.
void strokePoint(cairo_t* cairo, const LinePart& point, const OverlayCommand& command, double screenScale)
{
    const double x = toPixel(point.x0) + 0.5, y = toPixel(point.y0) + 0.5;
    const double arm = std::round(pointArm * screenScale), gap = std::round(pointGap * screenScale);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_BUTT);
    for (const int side : {-1, 1}) {
        cairo_move_to(cairo, x + side * gap, y);
        cairo_line_to(cairo, x + side * arm, y);
        cairo_move_to(cairo, x, y + side * gap);
        cairo_line_to(cairo, x, y + side * arm);
    }
    stroke(cairo, command);
}

void paintPanel(cairo_t* cairo, const Scene& scene, int panel, const Damage& damage)
{
    scene.store.forEach([&](const Graphic& graphic) {
        const OverlayCommand& command = graphic.command;
        if (!shows(scene, panel, graphic))
            return;
        const auto part = visiblePart(scene, panel, command);
        if (!part || !damage.touches(boxAround(*part, reachOf(command, scene.screenScale))))
            return;
        if (command.kind == OverlayKind::AddLine)
            strokeLine(cairo, *part, command);
        else
            strokePoint(cairo, *part, command, scene.screenScale);
    });
}

Size canvasOf(const protocol::Geometry& geometry)
{
    const Box last = panelBox(geometry, geometry.columns * geometry.rows - 1);
    return {last.x + last.width, last.y + last.height};
}

void paintPanels(cairo_t* cairo, const Scene& scene, const Damage& damage)
{
    for (int panel = 0; panel < static_cast<int>(scene.panels.size()); ++panel) {
        const Box box = panelBox(scene.geometry, panel);
        if (!damage.touches(box))
            continue;
        cairo_save(cairo);
        cairo_rectangle(cairo, box.x, box.y, box.width, box.height);
        cairo_clip(cairo);
        paintPanel(cairo, scene, panel, damage);
        cairo_restore(cairo);
    }
}

} // namespace

void paintGraphics(cairo_t* cairo, const Scene& scene, Edges edges)
{
    cairo_save(cairo);
    cairo_set_antialias(cairo, edges == Edges::Crisp ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT);
    paintPanels(cairo, scene, Damage(canvasOf(scene.geometry)));
    cairo_restore(cairo);
}

// A few graphics are drawn without a clip: they give the same pixels again, and a clip of many boxes takes
// longer.
void repairGraphics(cairo_t* cairo, const Scene& scene, const Damage& damage)
{
    constexpr std::size_t few = 4;
    if (scene.store.size() <= few)
        return paintGraphics(cairo, scene, Edges::Crisp);
    cairo_save(cairo);
    damage.clip(cairo);
    cairo_set_antialias(cairo, CAIRO_ANTIALIAS_NONE);
    paintPanels(cairo, scene, damage);
    cairo_restore(cairo);
}

Damage damageOf(const Scene& scene, const std::vector<Graphic>& graphics)
{
    std::vector<Box> boxes;
    for (const Graphic& graphic : graphics)
        for (int panel = 0; panel < static_cast<int>(scene.panels.size()); ++panel) {
            if (!shows(scene, panel, graphic))
                continue;
            if (const auto part = visiblePart(scene, panel, graphic.command))
                addPieces(boxes, *part, reachOf(graphic.command, scene.screenScale) + 1);
        }
    Damage damage(boxes);
    damage.cutTo(canvasOf(scene.geometry));
    return damage;
}

} // namespace viewer
