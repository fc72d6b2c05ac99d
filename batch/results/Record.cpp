// SPDX-License-Identifier: MIT
#include "batch/results/Record.h"

#include "platform/base/FileStamp.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace batch {

namespace {

void put(std::string& bytes, const void* from, std::size_t count)
{
    bytes.append(static_cast<const char*>(from), count);
}

// A count and the elements.
template<class Value> void putAll(std::string& bytes, const Value& values)
{
    const std::uint64_t count = values.size();
    put(bytes, &count, sizeof count);
    put(bytes, values.data(), count * sizeof *values.data());
}

Record::Facts factsOf(const Measured& measured, std::uint32_t line)
{
    const image::ImageInfo& info = measured.info();
    const image::SectionIndex& section = measured.section.index;
    const image::Wavelength& wavelength = info.wavelengths[static_cast<std::size_t>(section.w)];
    const auto header = [&](int field) {
        return static_cast<float>(measured.section.file->extendedHeader(section, field).value_or(0));
    };
    Record::Facts facts{section.z, section.t, section.p, section.w, info.sizeT, wavelength.nanometres};
    facts.colorIndex = wavelength.colorIndex;
    facts.calibrated = info.calibrated;
    facts.length = measured.extent.length;
    facts.angle = measured.extent.angle;
    facts.fwhm = measured.figures.fwhm;
    facts.timeSeconds = header(image::TimeStampSeconds);
    facts.zSpacing = info.spacing[2];
    facts.bias = header(image::KnownBias);
    facts.pixelSize = info.spacing[0];
    facts.pixelLength = measured.path.pixelLength();
    facts.imageSeconds = measured.section.modified / 1'000'000'000;
    facts.line = line;
    facts.band = measured.profile.isBand();
    return facts;
}

} // namespace

void appendRecord(std::string& bytes, const Measured& measured, std::uint32_t line)
{
    const Record::Facts facts = factsOf(measured, line);
    const Profile& profile = measured.profile;
    std::vector<float> columns[4];
    for (std::size_t i = 0; i < profile.size(); ++i) {
        const Point place = measured.placeOf(i);
        const StagePoint stage = stageOf(place, measured.section.origin, measured.info());
        columns[0].push_back(static_cast<float>(place.x));
        columns[1].push_back(static_cast<float>(place.y));
        columns[2].push_back(stage.x);
        columns[3].push_back(stage.y);
    }
    put(bytes, &facts, sizeof facts);
    putAll(bytes, measured.section.image);
    putAll(bytes, measured.line);
    putAll(bytes, measured.info().wavelengths[static_cast<std::size_t>(facts.w)].name);
    putAll(bytes, profile.values);
    putAll(bytes, profile.exact);
    putAll(bytes, profile.counts);
    for (const std::vector<float>& column : columns)
        putAll(bytes, column);
}

void RecordCursor::take(void* to, std::size_t bytes)
{
    constexpr std::size_t ahead = 1u << 18;
    if (buffer.size() - used < bytes) {
        buffer.erase(0, used);
        used = 0;
        const std::size_t had = buffer.size();
        const std::uint64_t wanted = std::min<std::uint64_t>(range.end - range.begin, std::max(bytes, ahead));
        buffer.resize(had + wanted);
        const ssize_t count = pread(descriptor, buffer.data() + had, wanted, static_cast<off_t>(range.begin));
        buffer.resize(had + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        range.begin += static_cast<std::uint64_t>(std::max<ssize_t>(count, 0));
    }
    if (buffer.size() - used < bytes)
        throw RunError("The records of what was measured have been cut off.");
    std::memcpy(to, buffer.data() + used, bytes);
    used += bytes;
}

template<class Value> void RecordCursor::takeAll(Value& values)
{
    std::uint64_t count = 0;
    take(&count, sizeof count);
    if (count > (range.end - range.begin + buffer.size() - used) / sizeof *values.data())
        throw RunError("The records of what was measured are damaged.");
    values.resize(count);
    take(values.data(), count * sizeof *values.data());
}

const Record* RecordCursor::next()
{
    there = used < buffer.size() || range.begin < range.end;
    if (!there)
        return nullptr;
    take(&record.facts, sizeof record.facts);
    for (std::string* text : {&record.image, &record.line, &record.channel})
        takeAll(*text);
    takeAll(record.values);
    takeAll(record.exact);
    takeAll(record.counts);
    for (std::vector<float>* column : {&record.xPixels, &record.yPixels, &record.xStage, &record.yStage})
        takeAll(*column);
    return &record;
}

} // namespace batch
