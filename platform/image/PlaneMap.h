// SPDX-License-Identifier: MIT
// Where the planes of an image are stored, described by runs of planes: an image may claim millions of
// planes, its file can name only as many runs as it has bytes for.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace image {

// Where a plane is stored.
struct PlanePlace {
    std::uint32_t file = 0; // of Dataset::files
    std::uint32_t page = 0;
    std::uint64_t firstByteShift = 0; // of planes that lie one behind the other after a single page
};

// Planes that follow each other in Dataset::key: a page each, or bytesPerPlane apart behind a single page.
struct PlaneRun {
    std::uint32_t first = 0, count = 0; // keys
    PlanePlace place;                   // of the first
    std::uint64_t bytesPerPlane = 0;    // 0: a page each

    PlanePlace at(std::uint32_t key) const;
};

class PlaneMap {
public:
    PlaneMap() = default;
    // Where several runs hold the same plane, the first of them counts.
    explicit PlaneMap(std::span<const PlaneRun> wanted);

    bool empty() const { return list.empty(); }
    std::uint64_t count() const; // planes
    std::optional<PlanePlace> find(std::uint32_t key) const;
    const std::vector<PlaneRun>& runs() const { return list; } // without overlaps, by key

private:
    using Ranges = std::map<std::uint32_t, std::uint32_t>; // first key and the one behind the last

    void add(const PlaneRun& run, Ranges& taken);
    void addPart(const PlaneRun& run, std::uint32_t first, std::uint32_t end);

    std::vector<PlaneRun> list;
};

} // namespace image
