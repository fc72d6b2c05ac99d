// SPDX-License-Identifier: MIT
#include "platform/image/RangeScan.h"

#include "platform/base/FileStamp.h"
#include "platform/image/RangeStore.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace image {

struct RangeScan::State {
    ImageFile& image;
    mutable std::mutex mutex; // guards what follows
    std::vector<ValueRange> ranges;
    std::int64_t seen = 0, total = 1;
    std::optional<SectionIndex> preferred;
    bool finished = false;
    std::jthread thread; // last: stops before the rest goes

    explicit State(ImageFile& scanned) : image(scanned) {}
    void run(const std::stop_token& stop);
    void scan(const std::stop_token& stop);
    bool see(const SectionIndex& section, const std::stop_token& stop);
    std::optional<SectionIndex> takePreferred();
    SectionIndex sectionAt(std::int64_t number) const;
    std::int64_t numberOf(const SectionIndex& section) const;
};

// Wavelengths run fastest: all of them get a range early, and the samples of an RGB page are read together.
SectionIndex RangeScan::State::sectionAt(std::int64_t number) const
{
    const ImageInfo& info = image.info();
    SectionIndex section;
    section.w = static_cast<int>(number % info.sizeW);
    section.z = static_cast<int>(number / info.sizeW % info.sizeZ);
    section.t = static_cast<int>(number / info.sizeW / info.sizeZ % info.sizeT);
    section.p = static_cast<int>(number / info.sizeW / info.sizeZ / info.sizeT);
    return section;
}

std::int64_t RangeScan::State::numberOf(const SectionIndex& s) const
{
    const ImageInfo& info = image.info();
    return ((std::int64_t{s.p} * info.sizeT + s.t) * info.sizeZ + s.z) * info.sizeW + s.w;
}

// Adds a section to the ranges; false when it is there but could not be read.
bool RangeScan::State::see(const SectionIndex& section, const std::stop_token& stop)
{
    float min = 0, max = 0;
    const bool there = image.hasSection(section);
    const bool good = there && image.valueRange(section, stop, min, max);
    const std::lock_guard lock(mutex);
    ++seen;
    if (good) {
        ValueRange& range = ranges[static_cast<std::size_t>(section.w)];
        range.min = range.known ? std::min(range.min, min) : min;
        range.max = range.known ? std::max(range.max, max) : max;
        range.known = true;
    }
    return good || !there;
}

std::optional<SectionIndex> RangeScan::State::takePreferred()
{
    const std::lock_guard lock(mutex);
    const std::optional<SectionIndex> result = preferred;
    preferred.reset();
    return result;
}

void RangeScan::State::scan(const std::stop_token& stop)
{
    const std::string identity = rangeIdentity(image, image.openedStamp());
    if (auto stored = loadRanges(identity, ranges.size())) {
        const std::lock_guard lock(mutex);
        ranges = std::move(*stored);
        seen = total;
        return;
    }
    std::vector<bool> done(static_cast<std::size_t>(total));
    bool complete = true;
    for (std::int64_t next = 0; next < total && !stop.stop_requested();) {
        const std::optional<SectionIndex> wanted = takePreferred();
        const std::int64_t number = wanted ? numberOf(*wanted) : next++;
        if (done[static_cast<std::size_t>(number)])
            continue;
        done[static_cast<std::size_t>(number)] = true;
        complete &= see(sectionAt(number), stop);
    }
    const bool unchanged = rangeIdentity(image, base::stampOf(image.info().path)) == identity;
    if (!stop.stop_requested() && complete && unchanged)
        storeRanges(identity, ranges);
}

void RangeScan::State::run(const std::stop_token& stop)
{
    constexpr int politeness = 10; // the viewer's own reads go first; on Linux the value is per thread
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), politeness);
    try {
        scan(stop);
    } catch (const std::exception&) {
        // Out of memory: what was seen so far stays.
    }
    const std::lock_guard lock(mutex);
    finished = true;
}

RangeScan::RangeScan(ImageFile& image) : state(std::make_unique<State>(image))
{
    const ImageInfo& info = image.info();
    state->ranges.resize(static_cast<std::size_t>(info.sizeW));
    state->total = std::int64_t{info.sizeW} * info.sizeZ * info.sizeT * info.sizeP;
    state->thread = std::jthread([s = state.get()](const std::stop_token& stop) { s->run(stop); });
}

RangeScan::~RangeScan() = default;

std::vector<ValueRange> RangeScan::ranges() const
{
    const std::lock_guard lock(state->mutex);
    return state->ranges;
}

double RangeScan::progress() const
{
    const std::lock_guard lock(state->mutex);
    return state->finished ? 1.0 : static_cast<double>(state->seen) / static_cast<double>(state->total);
}

bool RangeScan::done() const
{
    const std::lock_guard lock(state->mutex);
    return state->finished;
}

void RangeScan::prefer(const SectionIndex& section)
{
    if (!state->image.hasSection(section))
        return;
    const std::lock_guard lock(state->mutex);
    state->preferred = section;
}

} // namespace image
