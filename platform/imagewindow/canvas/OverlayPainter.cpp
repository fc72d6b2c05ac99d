// SPDX-License-Identifier: MIT
#include "platform/imagewindow/canvas/OverlayPainter.h"

#include "platform/imagewindow/view/Palette.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

using protocol::OverlayCommand;
using protocol::OverlayKind;

constexpr int pointArm = 7;                  // canvas pixels from a point's centre to the end of its cross
constexpr int pointGap = 2;                  // pixels left free around the point itself
constexpr int haloWidth = 2;                 // dark pixels on either side of a line, halved at each edge
constexpr int barHeight = 4, barMargin = 12; // of the scale bar, canvas pixels
constexpr int damagePieces = 16; // a line's damage is this many small boxes instead of one large box

// The square that a panel occupies on the canvas.
XRectangle panelRect(const protocol::Geometry& geometry, int panel)
{
    const int left = panel % geometry.columns * (geometry.panelWidth + geometry.gap);
    const int top = panel / geometry.columns * (geometry.panelHeight + geometry.gap);
    return {static_cast<short>(left), static_cast<short>(top),
            static_cast<unsigned short>(geometry.panelWidth),
            static_cast<unsigned short>(geometry.panelHeight)};
}

int reachOf(const OverlayCommand& command)
{
    const int line = std::max(1, command.width) / 2 + haloWidth + 1;
    return command.kind == OverlayKind::AddPoint ? line + pointArm : line;
}

// The part of a graphic that may show in a panel, in canvas pixels: a point is a segment without length. The
// cut is made beyond the graphic's own width, so that a cut end never shows.
std::optional<Segment> visiblePart(const protocol::Geometry& geometry, int panel,
                                   const OverlayCommand& command)
{
    const auto from = protocol::windowFromData(geometry, {command.x0, command.y0, panel});
    const auto to = command.kind == OverlayKind::AddLine
                        ? protocol::windowFromData(geometry, {command.x1, command.y1, panel})
                        : from;
    const XRectangle rect = panelRect(geometry, panel);
    const int reach = reachOf(command);
    return clipSegment({from.x, from.y, to.x, to.y}, rect.x - reach, rect.y - reach,
                       rect.x + rect.width + reach, rect.y + rect.height + reach);
}

int toPixel(double value)
{
    return static_cast<int>(std::floor(value + 1e-6));
}

void addBox(Region region, double x0, double y0, double x1, double y1, int reach)
{
    const int left = std::max(0, toPixel(std::min(x0, x1)) - reach),
              right = toPixel(std::max(x0, x1)) + reach;
    const int top = std::max(0, toPixel(std::min(y0, y1)) - reach),
              bottom = toPixel(std::max(y0, y1)) + reach;
    if (right < left || bottom < top)
        return;
    XRectangle box{static_cast<short>(left), static_cast<short>(top),
                   static_cast<unsigned short>(right - left + 1),
                   static_cast<unsigned short>(bottom - top + 1)};
    XUnionRectWithRegion(&box, region, region);
}

void addDamage(Region region, const Segment& part, const OverlayCommand& command)
{
    const int pieces = command.kind == OverlayKind::AddLine ? damagePieces : 1;
    const double dx = (part.x1 - part.x0) / pieces, dy = (part.y1 - part.y0) / pieces;
    for (int i = 0; i < pieces; ++i)
        addBox(region, part.x0 + i * dx, part.y0 + i * dy, part.x0 + (i + 1) * dx, part.y0 + (i + 1) * dy,
               reachOf(command) + 1);
}

bool shows(const Scene& scene, int panel, const Graphic& graphic)
{
    return showsIn(graphic, scene.geometry.style, panel, scene.panels[static_cast<std::size_t>(panel)]);
}

class OwnRegion {
public:
    OwnRegion() : region(XCreateRegion()) {}
    ~OwnRegion() { XDestroyRegion(region); }
    OwnRegion(const OwnRegion&) = delete;
    OwnRegion& operator=(const OwnRegion&) = delete;
    operator Region() const { return region; }

private:
    Region region;
};

XFontSet loadFont(Display* display)
{
    char** missing = nullptr;
    int missingCount = 0;
    char* standIn = nullptr;
    const XFontSet set = XCreateFontSet(display, "-misc-fixed-medium-r-normal--13-*,fixed,*", &missing,
                                        &missingCount, &standIn);
    if (missing)
        XFreeStringList(missing);
    return set;
}

} // namespace

OverlayPainter::OverlayPainter(Display* display, int screen) : display(display)
{
    const Window root = RootWindow(display, screen);
    XGCValues values{};
    values.graphics_exposures = False;
    values.cap_style = CapRound;
    values.join_style = JoinRound;
    const unsigned long mask = GCGraphicsExposures | GCCapStyle | GCJoinStyle;
    copyGC = XCreateGC(display, root, mask, &values);
    haloGC = XCreateGC(display, root, mask, &values);
    drawGC = XCreateGC(display, root, mask, &values);
    XSetForeground(display, haloGC, BlackPixel(display, screen));
    font = loadFont(display);
    for (std::size_t i = 0; i < palette.size(); ++i) {
        XColor color{};
        color.red = static_cast<unsigned short>(palette[i].red * 257);
        color.green = static_cast<unsigned short>(palette[i].green * 257);
        color.blue = static_cast<unsigned short>(palette[i].blue * 257);
        colors[i] = XAllocColor(display, DefaultColormap(display, screen), &color)
                        ? color.pixel
                        : WhitePixel(display, screen);
    }
}

OverlayPainter::~OverlayPainter()
{
    if (font)
        XFreeFontSet(display, font);
    for (GC gc : {copyGC, haloGC, drawGC})
        XFreeGC(display, gc);
}

void OverlayPainter::drawCaptions(CanvasBuffer& buffer, const Scene& scene)
{
    if (!font)
        return;
    XSetForeground(display, drawGC, colors[0]);
    for (int panel = 0; panel < static_cast<int>(scene.panels.size()); ++panel) {
        const std::string& caption = scene.panels[static_cast<std::size_t>(panel)].caption;
        if (caption.empty())
            continue;
        const XRectangle rect = panelRect(scene.geometry, panel);
        clipTo(rect);
        drawText(buffer.image(), rect.x + 6, rect.y + 16, caption);
    }
}

void OverlayPainter::clipTo(const XRectangle& rect)
{
    XRectangle clip = rect;
    for (GC gc : {haloGC, drawGC})
        XSetClipRectangles(display, gc, 0, 0, &clip, 1, Unsorted);
}

// (x, y): left end of the base line.
void OverlayPainter::drawText(Drawable target, int x, int y, const std::string& text)
{
    const auto put = [&](GC gc, int dx, int dy) {
        Xutf8DrawString(display, target, font, gc, x + dx, y + dy, text.c_str(),
                        static_cast<int>(text.size()));
    };
    for (const auto& [dx, dy] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 1}})
        put(haloGC, dx, dy);
    put(drawGC, 0, 0);
}

// The bar in the lower right corner, its label centred above.
void OverlayPainter::drawScaleBars(CanvasBuffer& buffer, const Scene& scene)
{
    if (!font || !scene.bar)
        return;
    const ScaleBar& bar = *scene.bar;
    XRectangle ink, logical;
    Xutf8TextExtents(font, bar.label.c_str(), static_cast<int>(bar.label.size()), &ink, &logical);
    XSetForeground(display, drawGC, colors[0]);
    for (int panel = 0; panel < static_cast<int>(scene.panels.size()); ++panel) {
        const XRectangle rect = panelRect(scene.geometry, panel);
        clipTo(rect);
        const int right = rect.x + rect.width - barMargin, top = rect.y + rect.height - barMargin - barHeight;
        const int room = std::max<int>(bar.width, logical.width), left = right - (room + bar.width) / 2;
        const auto width = static_cast<unsigned>(bar.width);
        XFillRectangle(display, buffer.image(), haloGC, left - 1, top - 1, width + 2, barHeight + 2);
        XFillRectangle(display, buffer.image(), drawGC, left, top, width, barHeight);
        drawText(buffer.image(), right - (room + logical.width) / 2, top - 5, bar.label);
    }
}

void OverlayPainter::paintAll(CanvasBuffer& buffer, Window canvas, const Scene& scene)
{
    const OwnRegion region;
    XRectangle whole{0, 0, static_cast<unsigned short>(buffer.size().width),
                     static_cast<unsigned short>(buffer.size().height)};
    XUnionRectWithRegion(&whole, region, region);
    paintRegion(buffer, canvas, scene, region);
}

void OverlayPainter::paintTouched(CanvasBuffer& buffer, Window canvas, const Scene& scene,
                                  const std::vector<Graphic>& touched)
{
    const OwnRegion region;
    for (const Graphic& graphic : touched)
        for (int panel = 0; panel < static_cast<int>(scene.panels.size()); ++panel) {
            if (!shows(scene, panel, graphic))
                continue;
            if (const auto part = visiblePart(scene.geometry, panel, graphic.command))
                addDamage(region, *part, graphic.command);
        }
    if (!XEmptyRegion(region))
        paintRegion(buffer, canvas, scene, region);
}

void OverlayPainter::paintRegion(CanvasBuffer& buffer, Window canvas, const Scene& scene, Region region)
{
    XRectangle box;
    XClipBox(region, &box);
    XSetRegion(display, copyGC, region);
    XCopyArea(display, buffer.image(), buffer.frame(), copyGC, box.x, box.y, box.width, box.height, box.x,
              box.y);
    for (int panel = 0; panel < static_cast<int>(scene.panels.size()); ++panel) {
        const OwnRegion clip;
        XRectangle rect = panelRect(scene.geometry, panel);
        XUnionRectWithRegion(&rect, clip, clip);
        XIntersectRegion(clip, region, clip);
        if (XEmptyRegion(clip))
            continue;
        for (GC gc : {haloGC, drawGC})
            XSetRegion(display, gc, clip);
        scene.store.forEach([&](const Graphic& graphic) {
            if (shows(scene, panel, graphic))
                drawGraphic(buffer.frame(), scene, panel, graphic.command);
        });
    }
    XCopyArea(display, buffer.frame(), canvas, copyGC, box.x, box.y, box.width, box.height, box.x, box.y);
}

void OverlayPainter::drawGraphic(Drawable target, const Scene& scene, int panel,
                                 const OverlayCommand& command)
{
    const auto part = visiblePart(scene.geometry, panel, command);
    if (!part)
        return;
    const int index = base::isGraphicsColor(command.color) ? command.color : base::annotationColor;
    XSetForeground(display, drawGC, colors[static_cast<std::size_t>(index)]);
    if (command.kind == OverlayKind::AddLine)
        strokeLine(target, *part, command);
    else
        strokePoint(target, part->x0, part->y0, command);
}

void OverlayPainter::strokeLine(Drawable target, const Segment& line, const OverlayCommand& command)
{
    const int width = std::max(1, command.width);
    const int style = command.dash > 0 ? LineOnOffDash : LineSolid;
    const int x0 = toPixel(line.x0), y0 = toPixel(line.y0), x1 = toPixel(line.x1), y1 = toPixel(line.y1);
    if (command.dash > 0)
        XSetDashes(display, drawGC, 0, std::array{static_cast<char>(std::min(command.dash, 127))}.data(), 1);
    XSetLineAttributes(display, haloGC, static_cast<unsigned>(width + haloWidth), LineSolid, CapRound,
                       JoinRound);
    XSetLineAttributes(display, drawGC, static_cast<unsigned>(width), style, CapRound, JoinRound);
    XDrawLine(display, target, haloGC, x0, y0, x1, y1);
    XDrawLine(display, target, drawGC, x0, y0, x1, y1);
}

// A cross whose middle stays free, so that the marked pixel is seen.
void OverlayPainter::strokePoint(Drawable target, double x, double y, const OverlayCommand& command)
{
    const int width = std::max(1, command.width), cx = toPixel(x), cy = toPixel(y);
    const auto segment = [&](int dx0, int dy0, int dx1, int dy1) {
        return XSegment{static_cast<short>(cx + dx0), static_cast<short>(cy + dy0),
                        static_cast<short>(cx + dx1), static_cast<short>(cy + dy1)};
    };
    std::array arms{segment(-pointArm, 0, -pointGap, 0), segment(pointGap, 0, pointArm, 0),
                    segment(0, -pointArm, 0, -pointGap), segment(0, pointGap, 0, pointArm)};
    XSetLineAttributes(display, haloGC, static_cast<unsigned>(width + haloWidth), LineSolid, CapButt,
                       JoinMiter);
    XSetLineAttributes(display, drawGC, static_cast<unsigned>(width), LineSolid, CapButt, JoinMiter);
    XDrawSegments(display, target, haloGC, arms.data(), static_cast<int>(arms.size()));
    XDrawSegments(display, target, drawGC, arms.data(), static_cast<int>(arms.size()));
}

void OverlayPainter::show(CanvasBuffer& buffer, Window canvas, Region region)
{
    XRectangle box;
    XClipBox(region, &box);
    XSetRegion(display, copyGC, region);
    XCopyArea(display, buffer.frame(), canvas, copyGC, box.x, box.y, box.width, box.height, box.x, box.y);
}

} // namespace viewer
