// SPDX-License-Identifier: MIT
// The projections that a window shows, made by a thread of their own so that the window stays alive. What is
// no longer wanted is given up. Used from the window's thread. No X.
#pragma once

#include "platform/imagewindow/render/Projection.h"

#include <memory>
#include <string>
#include <vector>

namespace viewer {

class Projections {
public:
    // The file must outlive the object.
    explicit Projections(image::ImageFile& file);
    ~Projections(); // stops the thread and waits for it (at most one block read)
    Projections(const Projections&) = delete;
    Projections& operator=(const Projections&) = delete;

    // From now on these and no others, in that order. A sentence when they are too large, and then none of
    // them is made; else an empty text.
    std::string want(const std::vector<ProjectionKey>& keys);
    // Null until it is there. It lives until another want().
    image::ImageFile* find(const ProjectionKey& key) const;
    // Whether some of those that are wanted have yet to come, and the share of all that is done.
    bool working() const;
    double progress() const;
    // Why one that is wanted could not be made; empty when none failed.
    std::string problem() const;

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace viewer
