// SPDX-License-Identifier: MIT
#include "batch/run/Worker.h"

#include "batch/results/Record.h"

#include <new>
#include <string>

namespace batch {

SectionPixels& SectionWork::pixels()
{
    std::call_once(once, [&] { made = std::make_unique<SectionPixels>(file, facts.index); });
    return *made;
}

Output Worker::measure(SectionWork& section, const LineSource& source, std::span<const std::uint32_t> lines,
                       bool isFirst)
{
    Output output;
    const auto fail = [&](const std::string& line, const char* sentence) {
        appendError(output.parts[ErrorsPart], section.facts.key, line, sentence);
        ++output.problems;
    };
    try {
        SectionPixels& pixels = section.pixels();
        for (const std::uint32_t number : lines) {
            const Line& line = source.at(number);
            try {
                setPoints(path, source.listOf(number).pointsOf(line), line.microns, section.file.info());
                measureLine(section, pixels, line, number, output);
            } catch (const MeasureError& error) {
                fail(line.name, error.what());
            } catch (const std::bad_alloc&) {
                fail(line.name, "There is not enough memory for the line.");
            }
        }
    } catch (const MeasureError& error) {
        if (isFirst)
            fail("", error.what());
    } catch (const std::bad_alloc&) {
        if (isFirst)
            fail("", "There is not enough memory for the section.");
    }
    return output;
}

void Worker::measureLine(SectionWork& section, SectionPixels& pixels, const Line& line, std::uint32_t number,
                         Output& output)
{
    const image::ImageInfo& info = section.file.info();
    const bool band = settings.method == Method::Band;
    path.width = line.width > 0 ? double{line.width} : settings.width;
    const Profile& profile =
        band ? sampler.band(pixels, path, settings.reduce) : sampler.digital(pixels, path);
    const float step = band ? info.spacing[0]
                            : digitalStep(path, info.spacing[0], static_cast<std::int32_t>(profile.size()));
    const Measured measured{section.facts, line.name,
                            path,          extentOf(path, section.facts.origin, info),
                            profile,       figuresOf(profile, step),
                            step};
    appendSummary(output.parts[SummaryPart], measured);
    if (settings.samples == SampleFormat::Csv)
        appendSamples(output.parts[SamplesPart], measured);
    if (settings.needsRecords())
        appendRecord(output.parts[RecordsPart], measured, number);
    ++output.profiles;
}

} // namespace batch
