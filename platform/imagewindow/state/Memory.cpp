// SPDX-License-Identifier: MIT
#include "platform/imagewindow/state/Memory.h"

#include "platform/imagewindow/files/ImageNotes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string_view>
#include <vector>

namespace viewer {

namespace {

constexpr NoteKind viewNotes{"views", "kelvora-view 1", 500};
constexpr int largestSide = 32767; // of a window

bool recallSection(std::istream& values, Shown& shown)
{
    View& view = shown.view;
    return static_cast<bool>(values >> view.z >> view.t >> view.p);
}

bool recallWavelengths(std::istream& values, Shown& shown)
{
    std::vector<bool> displayed(shown.view.displayed.size(), false);
    for (int w = 0; values >> w;)
        if (w >= 0 && w < static_cast<int>(displayed.size()))
            displayed[static_cast<std::size_t>(w)] = true;
    const auto count = std::count(displayed.begin(), displayed.end(), true);
    if (count < 1 || count > maxDisplayed)
        return false;
    shown.view.displayed = displayed;
    return true;
}

bool recallColors(std::istream& values, Shown& shown)
{
    int color = 0;
    for (std::size_t w = 0; w < shown.view.colors.size() && values >> color; ++w)
        shown.view.colors[w] = colorIndexOrWhite(color);
    return true;
}

std::optional<Projection> projectionOf(int kind)
{
    return kind >= 0 && kind <= static_cast<int>(Projection::Sum)
               ? std::optional(static_cast<Projection>(kind))
               : std::nullopt;
}

bool recallProjection(std::istream& values, Shown& shown)
{
    int kind = 0;
    values >> kind;
    const auto projection = projectionOf(kind);
    if (projection && canProject(shown))
        shown.view.projection = *projection;
    return true;
}

bool recallLimits(std::istream& values, Shown& shown)
{
    int wavelength = 0;
    ContrastLimits limits;
    if (!(values >> wavelength >> limits.low >> limits.high) || wavelength < 0 ||
        wavelength >= shown.info().sizeW || !(limits.low <= limits.high))
        return false;
    int kind = 0; // missing: of the section
    values >> kind;
    if (const auto projection = projectionOf(kind))
        shown.renderer.setLimits(wavelength, limits, *projection);
    return true;
}

bool recallGamma(std::istream& values, Shown& shown)
{
    int wavelength = 0;
    float gamma = 1;
    if (!(values >> wavelength >> gamma) || wavelength < 0 || wavelength >= shown.info().sizeW)
        return false;
    shown.renderer.setGamma(wavelength, gamma);
    return true;
}

bool recallGrey(std::istream& values, Shown& shown)
{
    return static_cast<bool>(values >> shown.view.grey);
}

bool recallLabels(std::istream& values, Shown& shown)
{
    return static_cast<bool>(values >> shown.view.labels);
}

bool recallPanels(std::istream& values, Shown& shown)
{
    int style = 0;
    std::array<int, 2> place{};
    if (!(values >> style >> place[0] >> place[1]) || style < protocol::SinglePanel ||
        style > protocol::TimePanels)
        return false;
    shown.view.style = style;
    shown.singlePlace = {std::clamp(place[0], 0, shown.info().sizeZ - 1),
                         std::clamp(place[1], 0, shown.info().sizeT - 1)};
    return true;
}

bool recallGrid(std::istream& values, Shown& shown)
{
    PanelGrid grid;
    const auto side = [](int cells) { return cells > 0 && cells <= maxCells; };
    if (!(values >> grid.columns >> grid.rows) || !side(grid.columns) || !side(grid.rows) ||
        grid.columns * grid.rows > maxCells)
        return false;
    shown.view.grid = grid;
    return true;
}

bool recallMerge(std::istream& values, Shown& shown)
{
    return static_cast<bool>(values >> shown.view.merge);
}

bool recallZoom(std::istream& values, Shown& shown)
{
    View view;
    if (!(values >> view.fit >> view.zoom >> view.originX >> view.originY) ||
        !(view.zoom > 0 && view.zoom <= maxZoom) || !std::isfinite(view.originX + view.originY))
        return false;
    shown.view.fit = view.fit;
    shown.view.zoom = view.fit ? shown.view.zoom : std::max(view.zoom, minZoom);
    shown.view.originX = view.originX;
    shown.view.originY = view.originY;
    return true;
}

bool recallScaleBar(std::istream& values, Shown& shown)
{
    bool bar = false;
    values >> bar;
    shown.scaleBar = bar && shown.life.scale().known;
    return true;
}

bool recallPlay(std::istream& values, Shown& shown)
{
    std::string text;
    std::getline(values, text);
    shown.play = playOf(text);
    return true;
}

constexpr const char *zoomName = "zoom", *windowName = "window";

constexpr struct {
    std::string_view name;
    bool (*recall)(std::istream& values, Shown& shown);
} lines[] = {
    {"section", recallSection},   {"wavelengths", recallWavelengths},
    {"colors", recallColors},     {"limits", recallLimits},
    {"panels", recallPanels},     {zoomName, recallZoom},
    {"scaleBar", recallScaleBar}, {"gamma", recallGamma},
    {"grey", recallGrey},         {"labels", recallLabels},
    {"play", recallPlay},         {"projection", recallProjection},
    {"grid", recallGrid},         {"merge", recallMerge},
};

std::optional<base::Rectangle> placeOf(std::istream& values)
{
    base::Rectangle r;
    const auto side = [](int pixels) { return pixels > 0 && pixels <= largestSide; };
    const auto start = [](int pixels) { return std::abs(pixels) <= largestSide; };
    if (!(values >> r.x >> r.y >> r.width >> r.height) || !side(r.width) || !side(r.height) || !start(r.x) ||
        !start(r.y))
        return std::nullopt;
    return r;
}

} // namespace

Memory memoryOf(const Shown& shown)
{
    const View& view = shown.view;
    std::ostringstream text;
    text << std::setprecision(std::numeric_limits<double>::max_digits10);
    text << "section " << view.z << ' ' << view.t << ' ' << view.p << "\nwavelengths";
    for (const int w : displayedWavelengths(view))
        text << ' ' << w;
    text << "\ncolors";
    for (const int color : view.colors)
        text << ' ' << color;
    for (const Projection each :
         {Projection::Section, Projection::Maximum, Projection::Mean, Projection::Sum})
        for (int w = 0; w < shown.info().sizeW; ++w)
            if (const auto limits = shown.renderer.limitsByHand(w, each))
                text << "\nlimits " << w << ' ' << limits->low << ' ' << limits->high << ' '
                     << static_cast<int>(each);
    text << "\ngrid " << view.grid.columns << ' ' << view.grid.rows << "\nmerge " << view.merge;
    text << "\nprojection " << static_cast<int>(view.projection);
    for (int w = 0; w < shown.info().sizeW; ++w)
        if (const float gamma = shown.renderer.gamma(w); gamma != 1)
            text << "\ngamma " << w << ' ' << gamma;
    text << "\ngrey " << view.grey << "\nlabels " << view.labels;
    text << "\npanels " << view.style << ' ' << shown.singlePlace[0] << ' ' << shown.singlePlace[1];
    text << '\n'
         << zoomName << ' ' << view.fit << ' ' << (view.fit ? 1 : view.zoom) << ' '
         << (view.fit ? 0 : view.originX) << ' ' << (view.fit ? 0 : view.originY);
    text << "\nscaleBar " << shown.scaleBar << "\nplay " << playText(shown.play);
    return {text.str(), std::nullopt};
}

bool recall(const Memory& memory, Shown& shown)
{
    bool zoomed = false;
    std::istringstream text(memory.view);
    for (std::string line; std::getline(text, line);) {
        std::istringstream values(line);
        std::string name;
        values >> name;
        const auto* const found = std::find_if(std::begin(lines), std::end(lines),
                                               [&](const auto& each) { return each.name == name; });
        if (found != std::end(lines) && found->recall(values, shown))
            zoomed |= name == zoomName;
    }
    clampSection(shown.info(), shown.view);
    return zoomed;
}

std::optional<Memory> loadMemory(const std::filesystem::path& image)
{
    const std::optional<ImageNote> note = loadNote(viewNotes, image);
    if (!note || !note->current)
        return std::nullopt;
    Memory memory{note->text, std::nullopt};
    const std::size_t start = memory.view.rfind(std::string("\n") + windowName + " ");
    if (start != std::string::npos) {
        std::istringstream values(memory.view.substr(start + 2 + std::string_view(windowName).size()));
        memory.place = placeOf(values);
        memory.view.resize(start);
    }
    return memory;
}

std::string keepMemory(const std::filesystem::path& image, const Memory& memory)
{
    std::ostringstream text;
    text << memory.view;
    if (const auto& p = memory.place)
        text << '\n' << windowName << ' ' << p->x << ' ' << p->y << ' ' << p->width << ' ' << p->height;
    const int problem = keepNote(viewNotes, image, text.str());
    return problem == 0 ? "" : "How the image was seen cannot be kept: " + noteProblem(problem) + ".";
}

std::string forgetMemory(const std::filesystem::path& image)
{
    const int problem = forgetNote(viewNotes, image);
    return problem == 0 ? "" : "How the image was seen is kept on: " + noteProblem(problem) + ".";
}

} // namespace viewer
