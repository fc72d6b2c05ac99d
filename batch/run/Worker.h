// SPDX-License-Identifier: MIT
// Measures some lines of one section. Each job has a worker of its own.
#pragma once

#include "batch/results/Store.h"
#include "batch/results/Tables.h"
#include "batch/run/Plan.h"

#include <memory>
#include <mutex>
#include <span>
#include <string>

namespace batch {

// A section while its lines are measured, by several jobs perhaps.
class SectionWork {
public:
    SectionWork(image::ImageFile& file, const std::string& image, const image::SectionIndex& section,
                const Settings& settings)
        : file(file), facts(factsOf(file, image, section, settings))
    {
    }
    // Of the section, made by the first who asks. Throws MeasureError.
    SectionPixels& pixels();

    image::ImageFile& file;
    const SectionFacts facts;

private:
    std::once_flag once;
    std::unique_ptr<SectionPixels> made;
};

// The lines of a run and of one image, numbered one after the other.
struct LineSource {
    const LineList& run;
    const LineList& own;

    const LineList& listOf(std::uint32_t number) const { return number < run.lines.size() ? run : own; }
    const Line& at(std::uint32_t number) const
    {
        return number < run.lines.size() ? run.lines[number] : own.lines[number - run.lines.size()];
    }
};

class Worker {
public:
    explicit Worker(const Settings& settings) : settings(settings) {}

    // isFirst: of the section's lines; a section that cannot be read is one problem, not one for each line.
    Output measure(SectionWork& section, const LineSource& source, std::span<const std::uint32_t> lines,
                   bool isFirst);

private:
    void measureLine(SectionWork& section, SectionPixels& pixels, const Line& line, std::uint32_t number,
                     Output& output);

    const Settings& settings;
    Sampler sampler;
    Path path;
};

} // namespace batch
