// SPDX-License-Identifier: MIT
#include "batch/measure/Band.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace batch {

namespace {

constexpr double half = 0.5; // a pixel's centre from its corner

struct Span {
    std::int32_t first, last; // inclusive; empty when last < first
};

// One straight piece. The tests are made of products alone, which are the same for an image that was turned
// by 90 degrees; with a length that is a rational number ties are exact.
struct Strip {
    Point from;
    double dx, dy, squared, length, reach; // reach: half the width times the length

    Strip(const Point& a, const Point& b, double width)
        : from(a), dx(b.x - a.x), dy(b.y - a.y), squared(dx * dx + dy * dy), length(std::sqrt(squared)),
          reach(width * half * length)
    {
    }

    double dot(double px, double py) const { return px * dx + py * dy; }
    double cross(double px, double py) const { return py * dx - px * dy; }
    bool holds(double px, double py) const
    {
        const double s = dot(px, py), d = cross(px, py);
        return s >= 0 && s < squared && d > -reach && d <= reach;
    }
    // Steps go along the axis that the line is nearer to; of a diagonal that is the axis on its left, so that
    // it turns with the image.
    bool alongX() const
    {
        return std::fabs(dx) > std::fabs(dy) || (std::fabs(dx) == std::fabs(dy) && dx * dy > 0);
    }
};

// A column (of a strip along x) or row of pixels through a strip: the pixels in it that the strip holds.
// major and minor are the coordinates along and across the steps.
class Slice {
public:
    Slice(const Strip& strip, std::int32_t major)
        : strip(strip), alongX(strip.alongX()), offset(major + half - (alongX ? strip.from.x : strip.from.y)),
          origin(alongX ? strip.from.y : strip.from.x), a(alongX ? strip.dx : strip.dy),
          b(alongX ? strip.dy : strip.dx)
    {
    }
    double px(std::int32_t minor) const { return alongX ? offset : minor + half - origin; }
    double py(std::int32_t minor) const { return alongX ? minor + half - origin : offset; }

    // The run of pixels inside [0, count).
    Span span(std::int32_t count) const
    {
        double low = -std::numeric_limits<double>::infinity(), high = -low;
        bound(a, -strip.reach, strip.reach, offset * b, low, high);
        bound(b, 0, strip.squared, -offset * a, low, high);
        const double shift = origin - half;
        Span span{static_cast<std::int32_t>(std::clamp<double>(std::floor(low + shift), 0, count)),
                  static_cast<std::int32_t>(std::clamp<double>(std::ceil(high + shift), -1, count - 1))};
        while (span.first <= span.last && !strip.holds(px(span.first), py(span.first)))
            ++span.first;
        while (span.last >= span.first && !strip.holds(px(span.last), py(span.last)))
            --span.last;
        return span;
    }

private:
    // Narrows low .. high to minor offsets v with from <= factor * v - shift <= to, about.
    static void bound(double factor, double from, double to, double shift, double& low, double& high)
    {
        if (factor == 0)
            return;
        const double one = (from + shift) / factor, other = (to + shift) / factor;
        low = std::max(low, std::min(one, other));
        high = std::min(high, std::max(one, other));
    }

    const Strip& strip;
    bool alongX;
    double offset, origin, a, b;
};

// Calls take(major, span) for each slice of the strip that holds pixels of the section, from the line's start
// to its end, after the section has been asked for them.
template<class Take> void forEachSlice(const Strip& strip, SectionPixels& section, Take take)
{
    const bool alongX = strip.alongX();
    const std::int32_t majors = alongX ? section.width() : section.height();
    const std::int32_t minors = alongX ? section.height() : section.width();
    const double from = alongX ? strip.from.x : strip.from.y, along = alongX ? strip.dx : strip.dy;
    const double across = strip.reach / strip.squared * std::fabs(alongX ? strip.dy : strip.dx);
    const double low = std::min(from, from + along) - across - 1,
                 high = std::max(from, from + along) + across + 1;
    const auto first = static_cast<std::int32_t>(std::clamp<double>(low, 0, majors));
    const auto last = static_cast<std::int32_t>(std::clamp<double>(high, -1, majors - 1));
    for (std::int32_t i = 0; i <= last - first; ++i) {
        const std::int32_t major = along > 0 ? first + i : last - i;
        const Slice slice(strip, major);
        const Span span = slice.span(minors);
        if (span.first > span.last)
            continue;
        section.require(alongX ? WalkRect{major, major, span.first, span.last}
                               : WalkRect{span.first, span.last, major, major});
        take(slice, major, span);
    }
}

// Calls take(x, y, px, py) for each pixel of a slice, from the line's left side to its right.
template<class Take>
void forEachPixel(const Strip& strip, const Slice& slice, std::int32_t major, Span span, Take take)
{
    const bool alongX = strip.alongX(), rising = alongX ? strip.dx > 0 : strip.dy < 0;
    for (std::int32_t i = 0; i <= span.last - span.first; ++i) {
        const std::int32_t minor = rising ? span.first + i : span.last - i;
        take(alongX ? major : minor, alongX ? minor : major, slice.px(minor), slice.py(minor));
    }
}

} // namespace

void BandCollector::collect(SectionPixels& section, const Path& path, Reduce reduce, Profile& profile)
{
    const double length = path.pixelLength();
    if (!(length > 0))
        throw MeasureError("The line has no length.");
    bins = static_cast<std::size_t>(std::ceil(length));
    work = 0;
    entries.clear();
    if (path.points.size() > 2) {
        collectPolyline(section, path);
    } else {
        const Strip strip(path.start(), path.end(), path.width);
        const auto last = static_cast<std::int32_t>(bins) - 1;
        forEachSlice(strip, section, [&](const Slice& slice, std::int32_t major, Span span) {
            forEachPixel(strip, slice, major, span,
                         [&](std::int32_t x, std::int32_t y, double px, double py) {
                             const auto bin = static_cast<std::int32_t>(strip.dot(px, py) / strip.length);
                             entries.push_back({std::min(bin, last), section.at(x, y)});
                         });
        });
    }
    reduceEntries(reduce, profile);
}

// Of a polyline's pieces. What a hostile file asks for beyond is refused, not worked off.
void BandCollector::spend(std::int64_t pixels)
{
    constexpr std::int64_t most = std::int64_t{1} << 30;
    constexpr std::size_t mostCandidates = std::size_t{1} << 24;
    work += pixels;
    if (work > most || candidates.size() > mostCandidates)
        throw MeasureError("The band is too wide for a line of so many pieces.");
}

// Pieces are told apart only where several claim a pixel.
void BandCollector::collectPolyline(SectionPixels& section, const Path& path)
{
    candidates.clear();
    double along = 0;
    for (std::size_t piece = 0; piece + 1 < path.points.size(); ++piece) {
        const Point &from = path.points[piece], &to = path.points[piece + 1];
        if (piece > 0)
            addWedge(section, path, piece, along);
        addPiece(section, path, piece, along);
        along += Strip(from, to, path.width).length;
    }
    std::ranges::sort(candidates, [](const Candidate& a, const Candidate& b) {
        return std::tie(a.pixel, a.distance, a.order) < std::tie(b.pixel, b.distance, b.order);
    });
    const auto same = [](const Candidate& a, const Candidate& b) { return a.pixel == b.pixel; };
    candidates.erase(std::unique(candidates.begin(), candidates.end(), same), candidates.end());
    std::ranges::sort(candidates, {}, &Candidate::order);
    for (const Candidate& candidate : candidates)
        entries.push_back({candidate.bin, section.data()[candidate.pixel]});
}

void BandCollector::addPiece(SectionPixels& section, const Path& path, std::size_t piece, double along)
{
    const Strip strip(path.points[piece], path.points[piece + 1], path.width);
    if (!(strip.length > 0))
        return;
    const auto last = static_cast<std::int32_t>(bins) - 1;
    forEachSlice(strip, section, [&](const Slice& slice, std::int32_t major, Span span) {
        spend(span.last - span.first + 1);
        forEachPixel(strip, slice, major, span, [&](std::int32_t x, std::int32_t y, double px, double py) {
            const double d = strip.cross(px, py);
            const auto bin = static_cast<std::int32_t>(along + strip.dot(px, py) / strip.length);
            candidates.push_back({std::int64_t{y} * section.width() + x, d * d / strip.squared,
                                  static_cast<std::int32_t>(candidates.size()), std::min(bin, last)});
        });
    });
}

// The pixels beyond the end of the piece before the vertex and before the start of the piece after it.
void BandCollector::addWedge(SectionPixels& section, const Path& path, std::size_t vertex, double along)
{
    const Point& corner = path.points[vertex];
    const Strip before(path.points[vertex - 1], corner, path.width),
        after(corner, path.points[vertex + 1], path.width);
    const double reach = path.width * half;
    const auto low = [&](double v) {
        return static_cast<std::int32_t>(std::max(0.0, std::floor(v - reach - 1)));
    };
    const auto high = [&](double v, int count) {
        return static_cast<std::int32_t>(std::min<double>(count - 1, v + reach + 1));
    };
    const WalkRect box{low(corner.x), high(corner.x, section.width()), low(corner.y),
                       high(corner.y, section.height())};
    const auto last = static_cast<std::int32_t>(bins) - 1;
    spend(box.xLast < box.xFirst || box.yLast < box.yFirst ? 0 : box.pixels());
    for (std::int32_t y = box.yFirst; y <= box.yLast; ++y)
        for (std::int32_t x = box.xFirst; x <= box.xLast; ++x) {
            const double px = x + half - corner.x, py = y + half - corner.y, distance = px * px + py * py;
            const bool between = before.dot(px, py) >= 0 && after.dot(px, py) < 0;
            const bool right = before.cross(px, py) > 0 || after.cross(px, py) > 0;
            if (!between || distance > reach * reach || (distance == reach * reach && !right))
                continue;
            section.require(WalkRect{x, x, y, y});
            candidates.push_back({std::int64_t{y} * section.width() + x, distance,
                                  static_cast<std::int32_t>(candidates.size()),
                                  std::min(static_cast<std::int32_t>(along), last)});
        }
}

namespace {

double medianOf(std::vector<float>::iterator first, std::vector<float>::iterator last)
{
    const auto count = last - first;
    const auto middle = first + count / 2;
    std::nth_element(first, middle, last);
    if (count % 2 != 0)
        return double{*middle};
    return (double{*middle} + double{*std::max_element(first, middle)}) / 2;
}

double reducedSorted(Reduce reduce, std::vector<float>::iterator first, std::vector<float>::iterator last)
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (first == last || std::any_of(first, last, [](float v) { return std::isnan(v); }))
        return none;
    return reduce == Reduce::Max ? double{*std::max_element(first, last)} : medianOf(first, last);
}

} // namespace

void BandCollector::reduceEntries(Reduce reduce, Profile& profile)
{
    profile.pixelCount = static_cast<std::int64_t>(entries.size());
    profile.counts.assign(bins, 0);
    profile.exact.resize(bins);
    sums.assign(bins, 0);
    for (const Entry& entry : entries) {
        const auto bin = static_cast<std::size_t>(entry.bin);
        ++profile.counts[bin];
        sums[bin] += double{entry.value};
    }
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (reduce == Reduce::Mean || reduce == Reduce::Sum) {
        for (std::size_t bin = 0; bin < bins; ++bin) {
            const double divisor = reduce == Reduce::Mean ? profile.counts[bin] : 1;
            profile.exact[bin] = profile.counts[bin] > 0 ? sums[bin] / divisor : none;
        }
    } else {
        firsts.assign(bins + 1, 0);
        for (std::size_t bin = 0; bin < bins; ++bin)
            firsts[bin + 1] = firsts[bin] + profile.counts[bin];
        sorted.resize(entries.size());
        std::vector<std::int32_t> next(firsts.begin(), firsts.end() - 1);
        for (const Entry& entry : entries)
            sorted[static_cast<std::size_t>(next[static_cast<std::size_t>(entry.bin)]++)] = entry.value;
        for (std::size_t bin = 0; bin < bins; ++bin)
            profile.exact[bin] =
                reducedSorted(reduce, sorted.begin() + firsts[bin], sorted.begin() + firsts[bin + 1]);
    }
    profile.values.assign(profile.exact.begin(), profile.exact.end());
}

} // namespace batch
