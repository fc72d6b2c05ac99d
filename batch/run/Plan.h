// SPDX-License-Identifier: MIT
// Which lines are measured in which sections of which images.
#pragma once

#include "batch/run/Settings.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace batch {

using LineNumbers = std::vector<std::uint32_t>;

// A section with the lines that are measured in it, in their order.
struct Unit {
    image::SectionIndex section;
    std::shared_ptr<const LineNumbers> lines;
};

class Plan {
public:
    // Finds the image of each line that names one: the image of the same path, else those of the same file
    // name. Lines whose image is not in the run are noted as problems of the list.
    Plan(const Options& options, LineList list);

    const LineList& lines() const { return all; }
    const std::vector<std::string>& images() const { return paths; }

    // The sections of an image in the order p, t, z, channel. own: lines that this image alone has, numbered
    // after those of lines(). Without an image only what the settings and the lines list by number counts;
    // nothing when that is not all.
    std::vector<Unit> unitsOf(std::size_t image, const image::ImageInfo& info, const LineList& own) const;
    std::optional<std::size_t> unitCount(std::size_t image) const;

    // What tells this run from others: of settings, lines and images.
    std::string identity() const;

private:
    using Groups = std::map<SectionChoice, LineNumbers>;

    void assign(const std::unordered_map<std::string, std::vector<std::size_t>>& byPath,
                const std::unordered_map<std::string, std::vector<std::size_t>>& byName);
    std::vector<const Groups*> groupsOf(std::size_t image) const;

    const Options& options;
    LineList all;
    std::vector<std::string> paths;
    Groups shared;                                   // of lines that name no image
    std::unordered_map<std::size_t, Groups> ofImage; // of lines that name it
};

} // namespace batch
