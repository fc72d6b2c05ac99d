// SPDX-License-Identifier: MIT
// Measures all sections of a plan on several jobs and stores them in order.
#pragma once

#include "batch/results/Store.h"
#include "batch/run/Plan.h"
#include "batch/run/Progress.h"
#include "batch/run/Worker.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace batch {

// Set by a signal: jobs finish what they have begun, and no more is begun.
extern std::atomic<bool> interrupted;

// Work is handed out in the order of the images, their sections and lines, an item of some lines at a time.
// What comes back is stored in that order, so results do not depend on the number of jobs. Only a few items
// are between the two, so memory does not grow with the run.
class Runner {
public:
    Runner(const Options& options, const Plan& plan, Store& store, Progress& progress);

    // Returns false when it was interrupted. Throws what stops the run, such as a full disk.
    bool run();

private:
    struct OpenImage {
        std::size_t number = 0;
        std::unique_ptr<image::ImageFile> file;
        LineList own;
        std::vector<Unit> units;              // that are to be measured
        std::vector<std::uint32_t> ordinals;  // of these units in the image
        std::shared_ptr<SectionWork> section; // of the unit that is handed out
        std::size_t unit = 0, line = 0;       // the next item
        std::size_t handed = 0;               // items
        Output problems;                      // of the image as a whole
        bool exhausted() const { return unit == units.size(); }
    };
    struct Item {
        std::shared_ptr<OpenImage> image; // null: the image itself is to be opened
        std::size_t number = 0;           // of the image
        std::size_t unit = 0, order = 0;  // order: among the image's items
        std::size_t firstLine = 0, lines = 0;
        std::shared_ptr<SectionWork> section;
    };
    struct Done {
        UnitKey key;
        Output output;
        bool lastOfUnit = true, lastOfImage = false;
    };

    void work();
    bool take(std::unique_lock<std::mutex>& lock, Item& item);
    bool handOut(Item& item);
    void open(std::size_t number);
    std::shared_ptr<OpenImage> opened(std::size_t number);
    void chooseUnits(OpenImage& image);
    bool isOurs(std::size_t image) const;
    void putDone(std::size_t image, std::size_t order, Done done);
    void storeInOrder();

    const Options& options;
    const Plan& plan;
    Store& store;
    Progress& progress;
    const std::size_t linesPerItem;

    std::mutex mutex; // guards what follows
    std::condition_variable changed;
    std::size_t nextImage = 0;                                   // to be opened
    std::map<std::size_t, std::shared_ptr<OpenImage>> active;    // opened, with items to hand out
    std::map<std::pair<std::size_t, std::size_t>, Done> waiting; // by image and order
    std::size_t storedImage = 0, storedOrder = 0;                // the next to be stored
    std::size_t inFlight = 0;                                    // taken and not stored
    std::exception_ptr failure;
};

} // namespace batch
