// SPDX-License-Identifier: MIT
#include "batch/run/Runner.h"

#include "batch/lines/OmeLines.h"
#include "platform/base/FileStamp.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace batch {

std::atomic<bool> interrupted = false;

namespace {

constexpr std::size_t itemsPerJob = 3; // taken and not stored yet

// Images count from 1 in the store: 0 is what concerns the whole run.
UnitKey keyOf(std::size_t image, std::size_t section)
{
    return {static_cast<std::uint32_t>(image + 1), static_cast<std::uint32_t>(section)};
}

} // namespace

Runner::Runner(const Options& chosen, const Plan& lines, Store& results, Progress& display)
    : options(chosen), plan(lines), store(results), progress(display),
      linesPerItem(chosen.settings.samples == SampleFormat::None && !chosen.settings.needsRecords() ? 1024
                                                                                                    : 128)
{
}

bool Runner::run()
{
    std::vector<std::jthread> jobs;
    for (int i = 1; i < options.jobs; ++i)
        jobs.emplace_back([this] { work(); });
    work();
    jobs.clear(); // waits for them
    if (failure)
        std::rethrow_exception(failure);
    return storedImage == plan.images().size();
}

void Runner::work()
{
    try {
        Worker worker(options.settings);
        Item item;
        for (std::unique_lock lock(mutex); take(lock, item); lock.lock()) {
            lock.unlock();
            if (!item.image) {
                open(item.number);
                continue;
            }
            OpenImage& image = *item.image;
            const Unit& unit = image.units[item.unit];
            const LineSource source{plan.lines(), image.own};
            const bool first = item.firstLine == 0, last = item.firstLine + item.lines == unit.lines->size();
            Done done{keyOf(item.number, image.ordinals[item.unit]),
                      {},
                      last,
                      last && item.unit + 1 == image.units.size()};
            done.output = worker.measure(*item.section, source,
                                         std::span(*unit.lines).subspan(item.firstLine, item.lines), first);
            if (first && image.ordinals[item.unit] == 0) {
                done.output.parts[ErrorsPart].insert(0, image.problems.parts[ErrorsPart]);
                done.output.problems += image.problems.problems;
            }
            item.section.reset();
            item.image.reset();
            putDone(item.number, item.order, std::move(done));
        }
    } catch (...) {
        const std::lock_guard lock(mutex);
        if (!failure)
            failure = std::current_exception();
        changed.notify_all();
    }
}

// The next item in order; waits while too many are not stored yet, but never with the very next one, for
// which all others wait. False when there is none left, or none is to be begun any more.
bool Runner::take(std::unique_lock<std::mutex>& lock, Item& item)
{
    const std::size_t limit = itemsPerJob * static_cast<std::size_t>(options.jobs);
    while (!failure && !interrupted) {
        const bool toOpen = nextImage < plan.images().size();
        const std::size_t image = active.empty() ? nextImage : active.begin()->first;
        const std::size_t order = active.empty() ? 0 : active.begin()->second->handed;
        const bool isNext = image == storedImage && order == storedOrder;
        if ((!active.empty() || toOpen) && (inFlight < limit || isNext))
            return handOut(item);
        if (active.empty() && !toOpen && inFlight == 0)
            break;
        changed.wait(lock);
    }
    changed.notify_all();
    return false;
}

bool Runner::handOut(Item& item)
{
    ++inFlight;
    if (active.empty()) {
        item = {};
        item.number = nextImage++;
        return true;
    }
    const std::shared_ptr<OpenImage> image = active.begin()->second;
    const Unit& unit = image->units[image->unit];
    if (image->line == 0)
        image->section = std::make_shared<SectionWork>(*image->file, plan.images()[image->number],
                                                       unit.section, options.settings);
    const std::size_t count = std::min(linesPerItem, unit.lines->size() - image->line);
    item = {image, image->number, image->unit, image->handed++, image->line, count, image->section};
    image->line += count;
    if (image->line == unit.lines->size()) {
        image->section.reset();
        image->line = 0;
        ++image->unit;
    }
    if (image->exhausted())
        active.erase(active.begin());
    return true;
}

// Whether any section of the image may be in this shard.
bool Runner::isOurs(std::size_t image) const
{
    const std::optional<std::size_t> count = plan.unitCount(image);
    if (!count)
        return true;
    for (std::size_t section = 0; section < std::min(*count, static_cast<std::size_t>(options.shard.count));
         ++section)
        if (options.shard.holds(image, section))
            return true;
    return options.shard.holds(image, 0);
}

// Opening is the image's first item; it stores nothing but an image that cannot be measured at all.
void Runner::open(std::size_t number)
{
    const bool ours = isOurs(number);
    std::shared_ptr<OpenImage> image = ours ? opened(number) : std::make_shared<OpenImage>();
    image->handed = 1;
    Done done{keyOf(number, 0), {}, true, image->units.empty()};
    if (image->units.empty() && options.shard.holds(number, 0))
        done.output = image->problems;
    const std::lock_guard lock(mutex);
    if (!image->units.empty())
        active[number] = image;
    waiting[{number, 0}] = std::move(done);
    changed.notify_all();
    // It is stored by who stores next; if nobody does, here.
    storeInOrder();
}

std::shared_ptr<Runner::OpenImage> Runner::opened(std::size_t number)
{
    auto image = std::make_shared<OpenImage>();
    const std::string& path = plan.images()[number];
    const auto fail = [&](const std::string& line, const std::string& sentence) {
        appendError(image->problems.parts[ErrorsPart], imageKey(path), line, sentence);
        ++image->problems.problems;
    };
    image->number = number;
    store.takeImage(keyOf(number, 0).image, base::stampOf(path));
    try {
        image->file = image::ImageFile::open(path);
        if (options.linesOfImages)
            readOmeLines(path, image->own);
        chooseUnits(*image);
    } catch (const std::exception& error) {
        fail("", error.what());
    }
    for (const LineProblem& problem : image->own.problems)
        fail(problem.line, problem.sentence);
    return image;
}

void Runner::chooseUnits(OpenImage& image)
{
    std::vector<Unit> all = plan.unitsOf(image.number, image.file->info(), image.own);
    for (std::size_t i = 0; i < all.size(); ++i)
        if (options.shard.holds(image.number, i) && !store.has(keyOf(image.number, i))) {
            image.units.push_back(std::move(all[i]));
            image.ordinals.push_back(static_cast<std::uint32_t>(i));
        }
}

void Runner::putDone(std::size_t image, std::size_t order, Done done)
{
    const std::lock_guard lock(mutex);
    waiting[{image, order}] = std::move(done);
    storeInOrder();
}

// Called with the lock held.
void Runner::storeInOrder()
{
    for (auto next = waiting.begin();
         next != waiting.end() && next->first == std::pair(storedImage, storedOrder);
         next = waiting.begin()) {
        const Done& done = next->second;
        const bool isOpening = storedOrder == 0;
        if (!isOpening || done.output.problems > 0)
            store.append(done.key, done.output, done.lastOfUnit);
        ++storedOrder;
        if (done.lastOfImage) {
            ++storedImage;
            storedOrder = 0;
        }
        waiting.erase(next);
        --inFlight;
        progress.show(static_cast<double>(storedImage), store.profiles());
    }
    changed.notify_all();
}

} // namespace batch
