// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/ChosenScale.h"

#include "platform/imagewindow/files/ScaleStore.h"

#include <utility>

namespace viewer {

ChosenScale::ChosenScale(std::filesystem::path place, const image::ImageInfo& info) : place(std::move(place))
{
    if (this->place.empty() || !needsScale(info))
        return;
    if (const std::optional<KeptScale> kept = loadScale(this->place))
        (kept->current ? user : earlier) = kept->scale;
}

std::string ChosenScale::choose(const UserScale& scale)
{
    user = scale;
    earlier.reset();
    return place.empty() ? "" : keepScale(place, scale);
}

std::string ChosenScale::remove()
{
    user.reset();
    earlier.reset();
    return place.empty() ? "" : forgetScale(place);
}

void ChosenScale::follow(const image::ImageInfo& info, bool growing)
{
    if (!needsScale(info))
        user.reset();
    else if (user && growing && !place.empty())
        keepScale(place, *user);
}

} // namespace viewer
