// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Projections.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>

namespace viewer {

namespace {

constexpr long mostValues = 1L << 27; // of all that are wanted: half a gigabyte
constexpr long mostKept = 1L << 25;   // with those that were wanted before
constexpr long mostFolded = 1L << 26; // of one, which takes twice the memory while it is made

} // namespace

struct Projections::State {
    // One that is done; without an image it failed.
    struct Done {
        std::unique_ptr<image::ImageFile> image;
        std::string problem;
    };

    image::ImageFile& file;
    mutable std::mutex mutex; // guards what follows
    std::condition_variable_any changed;
    std::vector<ProjectionKey> wanted;
    std::map<ProjectionKey, Done> done;
    double share = 0;    // of the one that is being made
    std::jthread thread; // last: stops before the rest goes

    explicit State(image::ImageFile& projected) : file(projected) {}
    long values() const { return static_cast<long>(file.info().width) * file.info().height; }
    bool isWanted(const ProjectionKey& key) const
    {
        return std::find(wanted.begin(), wanted.end(), key) != wanted.end();
    }
    std::optional<ProjectionKey> next() const;
    void makeRoom();
    void run(const std::stop_token& stop);
    void make(const ProjectionKey& key, const std::stop_token& stop);
};

// Of what is wanted the first that is not there.
std::optional<ProjectionKey> Projections::State::next() const
{
    const auto missing = std::find_if(wanted.begin(), wanted.end(),
                                      [&](const ProjectionKey& key) { return !done.contains(key); });
    return missing == wanted.end() ? std::nullopt : std::optional(*missing);
}

void Projections::State::makeRoom()
{
    long room = mostKept / std::max(1L, values()) - static_cast<long>(wanted.size());
    std::erase_if(done, [&](const auto& entry) { return !isWanted(entry.first) && room-- <= 0; });
}

void Projections::State::make(const ProjectionKey& key, const std::stop_token& stop)
{
    Done made;
    bool givenUp = false;
    const auto proceed = [&](double now) {
        const std::lock_guard lock(mutex);
        share = now;
        givenUp = stop.stop_requested() || !isWanted(key);
        return !givenUp;
    };
    std::vector<float> all = project(file, key, proceed, made.problem);
    if (!all.empty())
        made.image = asImage(std::move(all), file.info().width, file.info().height);
    const std::lock_guard lock(mutex);
    share = 0;
    if (!givenUp)
        done[key] = std::move(made);
}

void Projections::State::run(const std::stop_token& stop)
{
    while (!stop.stop_requested()) {
        std::unique_lock lock(mutex);
        changed.wait(lock, stop, [&] { return next().has_value(); });
        const std::optional<ProjectionKey> key = next();
        lock.unlock();
        if (!key || stop.stop_requested())
            return;
        try {
            make(*key, stop);
        } catch (const std::bad_alloc&) {
            lock.lock();
            done[*key] = {nullptr, "There is not enough memory for the projection."};
        }
    }
}

Projections::Projections(image::ImageFile& file) : state(std::make_unique<State>(file)) {}

Projections::~Projections() = default;

std::string Projections::want(const std::vector<ProjectionKey>& keys)
{
    const long values = state->values();
    const bool fits = values <= mostFolded && static_cast<long>(keys.size()) * values <= mostValues;
    {
        const std::lock_guard lock(state->mutex);
        state->wanted = fits ? keys : std::vector<ProjectionKey>{};
        state->makeRoom();
    }
    if (!keys.empty() && fits && !state->thread.joinable())
        state->thread = std::jthread([s = state.get()](const std::stop_token& stop) { s->run(stop); });
    state->changed.notify_all();
    return fits || keys.empty() ? ""
                                : "The image is too large for a projection over z: the section is shown.";
}

image::ImageFile* Projections::find(const ProjectionKey& key) const
{
    const std::lock_guard lock(state->mutex);
    const auto found = state->done.find(key);
    return found == state->done.end() ? nullptr : found->second.image.get();
}

bool Projections::working() const
{
    const std::lock_guard lock(state->mutex);
    return state->next().has_value();
}

double Projections::progress() const
{
    const std::lock_guard lock(state->mutex);
    if (state->wanted.empty())
        return 1;
    const auto there = std::count_if(state->wanted.begin(), state->wanted.end(),
                                     [&](const auto& key) { return state->done.contains(key); });
    const bool all = there == static_cast<std::ptrdiff_t>(state->wanted.size());
    return (static_cast<double>(there) + (all ? 0 : state->share)) /
           static_cast<double>(state->wanted.size());
}

std::string Projections::problem() const
{
    const std::lock_guard lock(state->mutex);
    for (const ProjectionKey& key : state->wanted)
        if (const auto found = state->done.find(key); found != state->done.end() && !found->second.image)
            return found->second.problem;
    return "";
}

} // namespace viewer
