// SPDX-License-Identifier: MIT
// The scale that the user has set for an image whose file does not tell it: recalled when the image is
// opened, kept as soon as it is set.
#pragma once

#include "platform/imagewindow/files/Scale.h"

#include <filesystem>
#include <optional>
#include <string>

namespace viewer {

class ChosenScale {
public:
    // Recalls what is kept for the path. place: empty for an image of which nothing is kept.
    ChosenScale(std::filesystem::path place, const image::ImageInfo& info);

    const std::optional<UserScale>& set() const { return user; }
    // One that was set for an earlier version of the file, until the user sets or removes the scale.
    const std::optional<UserScale>& former() const { return earlier; }

    // Both return a sentence when it could not be kept (forgotten), else an empty text; the scale in use
    // changes all the same.
    std::string choose(const UserScale& scale);
    std::string remove();

    // The file was opened anew with the same image in it. That of a growing file is kept for the file as it
    // has become.
    void follow(const image::ImageInfo& info, bool growing);

private:
    std::filesystem::path place;
    std::optional<UserScale> user, earlier;
};

} // namespace viewer
