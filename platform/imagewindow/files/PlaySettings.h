// SPDX-License-Identifier: MIT
// How sections or time points are played. Kept as settings: the next window begins with them. No X.
#pragma once

#include <string>

namespace viewer {

enum class PlayAxis { Z, Time };
enum class PlayEnd { Loop, Bounce }; // from the last to the first, or back the same way

constexpr double minPlayRate = 0.1, maxPlayRate = 100;

struct PlaySettings {
    PlayAxis axis = PlayAxis::Z;
    PlayEnd atEnd = PlayEnd::Loop;
    double rate = 10; // sections or time points a second, minPlayRate to maxPlayRate
    friend bool operator==(const PlaySettings&, const PlaySettings&) = default;
};

// "z 25 bounce", and back; what is missing or impossible is as usual.
std::string playText(const PlaySettings& play);
PlaySettings playOf(const std::string& text);

PlaySettings loadPlay();
// A sentence when they could not be kept, else an empty text.
std::string keepPlay(const PlaySettings& play);

} // namespace viewer
