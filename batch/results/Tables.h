// SPDX-License-Identifier: MIT
// The tables of a run: one row of figures for each profile, one for each of its samples, one for each
// problem. Their columns are described in batchprofile(1).
#pragma once

#include "batch/measure/Path.h"
#include "batch/measure/Profile.h"
#include "batch/run/Settings.h"

#include <string>
#include <string_view>

namespace batch {

extern const std::string_view summaryHeader, samplesHeader, errorsHeader; // with the line's end

// A section as the rows of its profiles tell it.
struct SectionFacts {
    const image::ImageFile* file = nullptr;
    image::SectionIndex index;
    StageOrigin origin;
    std::string image;         // its name, as the user gave it
    std::int64_t modified = 0; // of its file, nanoseconds since 1970
    std::string key;           // the fields that tell image and section, joined
    std::string context;       // the fields of the summary that all profiles of the section share, joined
};
SectionFacts factsOf(const image::ImageFile& file, const std::string& image,
                     const image::SectionIndex& section, const Settings& settings);

// One line in one section, measured.
struct Measured {
    const SectionFacts& section;
    const std::string& line; // name
    const Path& path;
    StageExtent extent;
    const Profile& profile;
    Figures figures;
    float step; // microns between samples

    const image::ImageInfo& info() const { return section.file->info(); }
    // Sample i, in pixels: of a digital line its pixel, of a band the middle of the bin.
    Point placeOf(std::size_t i) const;
    // From the start of the line to the sample, in pixels along it.
    double distanceOf(std::size_t i) const;
};

void appendSummary(std::string& table, const Measured& measured);
void appendSamples(std::string& table, const Measured& measured);

// key: as SectionFacts::key; "" for what belongs to no section. An empty line's name: all lines.
void appendError(std::string& table, std::string_view key, std::string_view line, std::string_view sentence);
// The key of what concerns a whole image.
std::string imageKey(const std::string& image);

} // namespace batch
