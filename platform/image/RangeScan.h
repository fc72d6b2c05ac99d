// SPDX-License-Identifier: MIT
// Minimum and maximum of every wavelength over all its sections: scanned by a background thread and kept in
// the user's cache directory ($XDG_CACHE_HOME/kelvora/ranges, else ~/.cache/kelvora/ranges) by the file's
// path, size and modification time, so that a file is scanned once.
#pragma once

#include "platform/image/ImageFile.h"

#include <functional>
#include <memory>
#include <vector>

namespace image {

struct ValueRange {
    float min = 0, max = 0;
    bool known = false; // false: no section of the wavelength has been read yet, min and max are 0
};

class RangeScan {
public:
    // Starts at once; the image must outlive the scan. A stored result is taken without reading pixels.
    explicit RangeScan(ImageFile& image);
    ~RangeScan(); // stops the thread and waits for it (at most one block read)
    RangeScan(const RangeScan&) = delete;
    RangeScan& operator=(const RangeScan&) = delete;

    // Over the sections seen so far, one entry per wavelength.
    std::vector<ValueRange> ranges() const;
    // Fraction of the sections seen, 0 to 1; 1 when done.
    double progress() const;
    bool done() const;
    // Reads this section next (the one on display), so that its range counts early.
    void prefer(const SectionIndex& section);

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace image
