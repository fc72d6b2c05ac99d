// SPDX-License-Identifier: MIT
// What the status lines say. Pure.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/view/Readout.h"
#include "platform/imagewindow/view/View.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace viewer {

struct StatusTexts {
    std::string remark;             // about the file, above the rest
    std::string sentence;           // in the place of the pixel
    std::vector<std::string> pixel; // items that stay whole
    std::string stage;
    std::vector<std::string> state; // items that stay whole
    friend bool operator==(const StatusTexts&, const StatusTexts&) = default;
};

// What they tell of.
struct StatusFacts {
    const image::ImageFile& file;
    View view; // as drawn
    Scale scale;
    std::filesystem::path path; // of the file: its folder is left out of sentences
    std::string activity;       // what is going on with the file, empty: nothing
};

// The pixel under the pointer.
struct PointedPixel {
    const PanelContent& panel;
    double x = 0, y = 0;                 // data coordinates
    std::vector<WavelengthValue> values; // of the panel's wavelengths
};

// sentence: what went wrong, empty when nothing has. pointed: nothing when the pointer is on no pixel.
StatusTexts statusTexts(const StatusFacts& facts, const std::string& sentence,
                        const std::optional<PointedPixel>& pointed);

// The longest that the present view may come to show, an activity included: the image must not shrink when
// one begins.
StatusTexts widestTexts(const StatusFacts& facts);

// A sentence in the status lines that nobody has to close: the next action takes it away, and so does a
// motion of the pointer.
class Notice {
public:
    using Clock = std::chrono::steady_clock;
    // What the last action could not do.
    void answer(const std::string& sentence) { text = sentence; }
    // News that the user has not asked for: for a few seconds a motion of the pointer does not take it away.
    void tell(const std::string& sentence, Clock::time_point now);
    void pointerMoved(Clock::time_point now);
    void clear() { text.clear(); }
    const std::string& sentence() const { return text; }

private:
    std::string text;
    Clock::time_point keptUntil{};
};

} // namespace viewer
