// SPDX-License-Identifier: MIT
#include "platform/image/PlaneMap.h"

#include <algorithm>

namespace image {

PlanePlace PlaneRun::at(std::uint32_t key) const
{
    PlanePlace result = place;
    const std::uint32_t index = key - first;
    result.page += bytesPerPlane ? 0 : index;
    result.firstByteShift += bytesPerPlane * index;
    return result;
}

PlaneMap::PlaneMap(std::span<const PlaneRun> wanted)
{
    Ranges taken;
    for (const PlaneRun& run : wanted)
        add(run, taken);
    std::ranges::sort(list, {}, &PlaneRun::first);
}

// Fills what is still free. Ranges that meet become one, so that each is passed over once only.
void PlaneMap::add(const PlaneRun& run, Ranges& taken)
{
    const std::uint32_t end = run.first + run.count;
    std::uint32_t first = run.first, last = end, at = run.first;
    auto range = taken.upper_bound(run.first);
    if (range != taken.begin() && std::prev(range)->second >= run.first)
        --range;
    while (range != taken.end() && range->first <= end) {
        addPart(run, at, std::min(range->first, end));
        at = std::max(at, range->second);
        first = std::min(first, range->first);
        last = std::max(last, range->second);
        range = taken.erase(range);
    }
    addPart(run, at, end);
    if (first < last)
        taken.emplace(first, last);
}

void PlaneMap::addPart(const PlaneRun& run, std::uint32_t first, std::uint32_t end)
{
    if (first < end)
        list.push_back({first, end - first, run.at(first), run.bytesPerPlane});
}

std::uint64_t PlaneMap::count() const
{
    std::uint64_t sum = 0;
    for (const PlaneRun& run : list)
        sum += run.count;
    return sum;
}

std::optional<PlanePlace> PlaneMap::find(std::uint32_t key) const
{
    const auto next = std::ranges::upper_bound(list, key, {}, &PlaneRun::first);
    if (next == list.begin() || key - std::prev(next)->first >= std::prev(next)->count)
        return std::nullopt;
    return std::prev(next)->at(key);
}

} // namespace image
