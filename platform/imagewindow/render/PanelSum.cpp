// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/PanelSum.h"

#include <algorithm>
#include <utility>

namespace viewer {

namespace {

bool isSame(const CompositeChannel& a, const CompositeChannel& b)
{
    return a.values.data() == b.values.data() && a.values.size() == b.values.size() && a.limits == b.limits &&
           a.color == b.color && a.gamma == b.gamma;
}

std::vector<CompositeChannel> sliced(std::vector<CompositeChannel> channels, std::size_t first,
                                     std::size_t count)
{
    for (CompositeChannel& channel : channels)
        channel.values = channel.values.subspan(first, count);
    return channels;
}

} // namespace

// Keeps a sum of the other channels only when these were the same in the picture before: then the user is
// moving the limits of one, and the next picture will need the sum again.
void PanelSum::begin(std::vector<CompositeChannel> channels, std::size_t moving, std::size_t count)
{
    std::vector<CompositeChannel> rest = channels;
    moved.clear();
    if (moving < channels.size() && channels.size() > 1) {
        moved.push_back(channels[moving]);
        rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(moving));
    }
    const bool stayed =
        !moved.empty() && std::equal(rest.begin(), rest.end(), others.begin(), others.end(), isSame);
    use = !stayed ? Others::Apart : sum.size() == count ? Others::Taken : Others::Made;
    if (use == Others::Apart)
        sum = {};
    else
        sum.resize(count);
    others = std::move(rest);
    all = std::move(channels);
}

void PanelSum::compose(std::size_t first, std::span<std::uint32_t> out)
{
    if (use == Others::Apart)
        return viewer::compose(sliced(all, first, out.size()), out);
    const std::span<std::uint32_t> base = std::span(sum).subspan(first, out.size());
    if (use == Others::Made)
        viewer::compose(sliced(others, first, out.size()), base);
    viewer::compose(sliced(moved, first, out.size()), base, out);
}

void PanelSum::forget()
{
    others.clear();
    sum = {};
}

} // namespace viewer
