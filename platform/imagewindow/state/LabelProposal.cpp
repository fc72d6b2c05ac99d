// SPDX-License-Identifier: MIT
#include "platform/imagewindow/state/LabelProposal.h"

#include "platform/imagewindow/render/Contrast.h"

#include <algorithm>
#include <vector>

namespace viewer {

namespace {

constexpr long sampleSize = 1L << 16;

// A mask of one object has nothing to tell apart.
bool holdsSeveral(const std::vector<float>& values)
{
    const auto first = std::find_if(values.begin(), values.end(), [](float value) { return value != 0; });
    return std::any_of(first, values.end(), [&](float value) { return value != 0 && value != *first; });
}

} // namespace

void proposeLabels(Shown& shown)
{
    if (!saysLabels(shown.info()))
        return;
    const View& view = shown.view;
    const auto values = sampleSection(shown.life.file(), {view.z, 0, view.t, view.p}, sampleSize);
    if (!hasFlatAreas(values, 0) || !holdsSeveral(values))
        return;
    shown.view.labels = true;
    shown.tell("Shown as labels, each number in a colour of its own: L changes that.");
}

} // namespace viewer
