// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Tile.h"

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

constexpr long bandValues = 1L << 19; // source values held at a time while averaging

// As the conversion of Geometry.h: a quotient a rounding error below a pixel boundary means the boundary.
int pixelAt(double data)
{
    const double boundary = std::round(data);
    return static_cast<int>(std::floor(std::fabs(data - boundary) < 1e-7 ? boundary : data));
}

// Source pixels (inclusive) that make one value of a reduced tile.
struct Box {
    int first = 0, last = 0;
};

std::vector<Box> boxes(int count, double origin, double zoom, double levelScale, int levelSide)
{
    std::vector<Box> list(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const double low = (origin + i / zoom) / levelScale, high = (origin + (i + 1) / zoom) / levelScale;
        const int first = std::clamp(pixelAt(low + 1e-6), 0, levelSide - 1);
        const int last = std::clamp(static_cast<int>(std::ceil(high - 1e-6)) - 1, first, levelSide - 1);
        list[static_cast<std::size_t>(i)] = {first, last};
    }
    return list;
}

std::optional<std::vector<float>> readMagnified(image::ImageFile& file, const image::SectionIndex& section,
                                                const TileFrame& frame)
{
    std::vector<float> values(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height));
    const image::PixelRect rect{frame.xFirst, frame.yFirst, frame.xFirst + frame.width - 1,
                                frame.yFirst + frame.height - 1};
    if (!file.read(section, rect, values))
        return std::nullopt;
    return values;
}

// Adds a row of source values to the sums of the boxes.
void addRow(const float* row, int xOffset, const std::vector<Box>& columns, std::vector<double>& sums)
{
    for (std::size_t i = 0; i < columns.size(); ++i) {
        double sum = 0;
        for (int x = columns[i].first; x <= columns[i].last; ++x)
            sum += row[x - xOffset];
        sums[i] += sum / (columns[i].last - columns[i].first + 1);
    }
}

std::optional<std::vector<float>> readReduced(image::ImageFile& file, const image::SectionIndex& section,
                                              const TileFrame& frame)
{
    const int level = levelFor(file, frame.zoom);
    const double scale = file.levelScale(level);
    const auto columns = boxes(frame.width, frame.originX, frame.zoom, scale, file.levelWidth(level));
    const auto rows = boxes(frame.height, frame.originY, frame.zoom, scale, file.levelHeight(level));
    const int xFirst = columns.front().first, xLast = columns.back().last;
    const long sourceWidth = xLast - xFirst + 1;
    const int bandRows = static_cast<int>(std::max(1L, bandValues / sourceWidth));
    std::vector<float> values, band;
    values.reserve(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height));
    int bandFirst = 0, bandLast = -1;
    for (const Box& row : rows) {
        std::vector<double> sums(static_cast<std::size_t>(frame.width), 0.0);
        for (int y = row.first; y <= row.last; ++y) {
            if (y < bandFirst || y > bandLast) {
                bandFirst = y;
                bandLast = std::min(y + bandRows - 1, rows.back().last);
                band.resize(static_cast<std::size_t>(sourceWidth * (bandLast - bandFirst + 1)));
                if (!file.readLevel(section, level, {xFirst, bandFirst, xLast, bandLast}, band))
                    return std::nullopt;
            }
            addRow(band.data() + sourceWidth * (y - bandFirst), xFirst, columns, sums);
        }
        const double count = row.last - row.first + 1;
        for (double sum : sums)
            values.push_back(static_cast<float>(sum / count));
    }
    return values;
}

// Row by row of the image itself: its reduced copies may have been averaged.
std::optional<std::vector<float>> readNearest(image::ImageFile& file, const image::SectionIndex& section,
                                              const TileFrame& frame)
{
    const image::ImageInfo& info = file.info();
    const auto middle = [&](double origin, int i, int side) {
        return std::clamp(static_cast<int>(std::floor(origin + (i + 0.5) / frame.zoom)), 0, side - 1);
    };
    const int xFirst = middle(frame.originX, 0, info.width);
    const int xLast = middle(frame.originX, frame.width - 1, info.width);
    std::vector<float> values, row(static_cast<std::size_t>(xLast - xFirst + 1));
    values.reserve(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height));
    for (int j = 0; j < frame.height; ++j) {
        const int y = middle(frame.originY, j, info.height);
        if (!file.read(section, {xFirst, y, xLast, y}, row))
            return std::nullopt;
        for (int i = 0; i < frame.width; ++i)
            values.push_back(row[static_cast<std::size_t>(middle(frame.originX, i, info.width) - xFirst)]);
    }
    return values;
}

std::vector<int> sources(int panelSide, double zoom, double origin, bool magnified, int first, int count)
{
    std::vector<int> list(static_cast<std::size_t>(panelSide));
    for (int i = 0; i < panelSide; ++i)
        list[static_cast<std::size_t>(i)] =
            magnified ? std::clamp(pixelAt(origin + i / zoom) - first, 0, count - 1) : i;
    return list;
}

} // namespace

int levelFor(const image::ImageFile& file, double zoom)
{
    int best = 0;
    for (int level = 1; level < file.levelCount(); ++level)
        if (file.levelScale(level) * zoom <= 1.0 + 1e-6 && file.levelScale(level) > file.levelScale(best))
            best = level;
    return best;
}

TileFrame tileFrame(const protocol::Geometry& geometry, bool nearest)
{
    TileFrame frame;
    frame.zoom = geometry.zoom;
    frame.originX = geometry.originX;
    frame.originY = geometry.originY;
    frame.magnified = geometry.zoom >= 1.0;
    frame.nearest = nearest && !frame.magnified;
    frame.width = geometry.panelWidth;
    frame.height = geometry.panelHeight;
    if (frame.magnified) {
        frame.xFirst = pixelAt(geometry.originX);
        frame.yFirst = pixelAt(geometry.originY);
        const int xLast = pixelAt(geometry.originX + (geometry.panelWidth - 1) / geometry.zoom);
        const int yLast = pixelAt(geometry.originY + (geometry.panelHeight - 1) / geometry.zoom);
        frame.width = std::min(xLast, geometry.imageWidth - 1) - frame.xFirst + 1;
        frame.height = std::min(yLast, geometry.imageHeight - 1) - frame.yFirst + 1;
    }
    return frame;
}

std::vector<int> tileColumns(const TileFrame& frame, int panelWidth)
{
    return sources(panelWidth, frame.zoom, frame.originX, frame.magnified, frame.xFirst, frame.width);
}

std::vector<int> tileRows(const TileFrame& frame, int panelHeight)
{
    return sources(panelHeight, frame.zoom, frame.originY, frame.magnified, frame.yFirst, frame.height);
}

std::optional<std::vector<float>> readTile(image::ImageFile& file, const image::SectionIndex& section,
                                           const TileFrame& frame, std::string& error)
{
    error.clear();
    if (!file.hasSection(section))
        return std::nullopt;
    const auto read = frame.magnified ? readMagnified : frame.nearest ? readNearest : readReduced;
    auto values = read(file, section, frame);
    if (!values)
        error = file.lastError();
    return values;
}

} // namespace viewer
