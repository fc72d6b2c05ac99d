// SPDX-License-Identifier: MIT
#include "batch/results/Join.h"

#include "batch/results/Kymographs.h"
#include "batch/results/Modules.h"
#include "batch/results/Plots.h"
#include "batch/results/Sheet.h"
#include "batch/results/Tables.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <deque>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>

namespace batch {

namespace {

// The journals and open parts of several stores, and what they have finished.
class Sources {
public:
    explicit Sources(const std::vector<StorePaths>& stores)
    {
        for (const StorePaths& store : stores)
            open(store);
        std::ranges::sort(all, {}, &FinishedUnit::key);
    }
    ~Sources()
    {
        for (const auto& files : descriptors)
            for (const int file : files)
                close(file);
    }
    Sources(const Sources&) = delete;
    Sources& operator=(const Sources&) = delete;

    const std::vector<FinishedUnit>& units() const { return all; }
    const JoinOutcome& totals() const { return outcome; }

private:
    void open(const StorePaths& store)
    {
        const Journal journal = readJournal(store.journal);
        if (!journal.done)
            throw RunError(store.folder.string() + " is not finished: continue that run with --resume.");
        std::array<int, partCount>& files = descriptors.emplace_back();
        for (int part = 0; part < partCount; ++part) {
            const std::filesystem::path path = store.part(static_cast<Part>(part));
            files[static_cast<std::size_t>(part)] = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
            if (files[static_cast<std::size_t>(part)] < 0)
                throw RunError(path.string() + " cannot be read: " + std::strerror(errno) + ".");
        }
        for (const UnitEntry& unit : journal.units) {
            all.push_back({unit.key, unit.ranges, &files});
            outcome.profiles += unit.profiles;
            outcome.problems += unit.problems;
        }
    }

    std::deque<std::array<int, partCount>> descriptors;
    std::vector<FinishedUnit> all;
    JoinOutcome outcome;
};

struct TextPart {
    Part part;
    std::string_view head;
    const char* ending;
};
constexpr const char* summaryEnding = ".summary.csv";

std::vector<TextPart> textParts(const Settings& settings)
{
    std::vector<TextPart> parts = {{ErrorsPart, errorsHeader, ".errors.csv"}};
    if (settings.samples == SampleFormat::Csv)
        parts.push_back({SamplesPart, samplesHeader, ".samples.csv"});
    parts.push_back({SummaryPart, summaryHeader, summaryEnding});
    return parts;
}

std::filesystem::path named(const std::filesystem::path& out, const char* ending)
{
    return out.string() + ending;
}

// Whether the part holds the units in order and nothing else.
bool isInOrder(const std::vector<FinishedUnit>& units, Part part, std::uint64_t headBytes,
               const std::filesystem::path& file)
{
    std::uint64_t at = headBytes;
    for (const FinishedUnit& unit : units) {
        const ByteRange& range = unit.ranges[part];
        if (range.begin != at)
            return false;
        at = range.end;
    }
    return std::filesystem::file_size(file) == at;
}

void joinText(const std::filesystem::path& path, const TextPart& text, const std::vector<FinishedUnit>& units)
{
    StagedFile file(path);
    std::fwrite(text.head.data(), 1, text.head.size(), file.stream());
    for (const FinishedUnit& unit : units)
        file.copy((*unit.files)[text.part], unit.ranges[text.part].begin, unit.ranges[text.part].end);
    file.commit();
}

} // namespace

void forEachLineOf(std::span<const FinishedUnit> sections,
                   const std::function<void(const LineRecords&)>& take)
{
    std::vector<RecordCursor> cursors;
    for (const FinishedUnit& section : sections)
        cursors.emplace_back((*section.files)[RecordsPart], section.ranges[RecordsPart]).next();
    LineRecords records;
    while (true) {
        std::uint32_t line = UINT32_MAX;
        for (const RecordCursor& cursor : cursors)
            if (const Record* record = cursor.present())
                line = std::min(line, record->facts.line);
        records.clear();
        for (const RecordCursor& cursor : cursors)
            if (const Record* record = cursor.present(); record && record->facts.line == line)
                records.push_back(record);
        if (records.empty())
            return;
        take(records);
        for (RecordCursor& cursor : cursors)
            if (const Record* record = cursor.present(); record && record->facts.line == line)
                cursor.next();
    }
}

void forEachLine(std::span<const FinishedUnit> units,
                 const std::function<void(std::uint32_t image, const LineRecords&)>& take)
{
    std::vector<FinishedUnit> channels;
    std::tuple<std::uint32_t, int, int, int> section;
    const auto takeChannels = [&] {
        forEachLineOf(channels, [&](const LineRecords& records) { take(std::get<0>(section), records); });
        channels.clear();
    };
    for (const FinishedUnit& unit : units) {
        RecordCursor cursor((*unit.files)[RecordsPart], unit.ranges[RecordsPart]);
        const Record* const record = cursor.next();
        if (!record)
            continue;
        const std::tuple its(unit.key.image, record->facts.p, record->facts.t, record->facts.z);
        if (its != section)
            takeChannels();
        section = its;
        channels.push_back(unit);
    }
    takeChannels();
}

void makeFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw RunError(folder.string() + " cannot be made: " + error.message() + ".");
}

std::vector<std::filesystem::path> resultFiles(const std::filesystem::path& out, const Settings& settings)
{
    std::vector<std::filesystem::path> files;
    for (const TextPart& text : textParts(settings))
        files.push_back(named(out, text.ending));
    if (settings.samples == SampleFormat::Slk)
        files.push_back(named(out, ".samples.slk"));
    if (settings.samples == SampleFormat::Hdf5)
        files.push_back(named(out, ".samples.h5"));
    if (settings.plots != PlotFormat::None)
        files.push_back(named(out, ".plots"));
    if (settings.kymograph != KymographAxis::None)
        files.push_back(named(out, ".kymographs"));
    return files;
}

namespace {

// The results that are made of the records.
void joinRecords(const std::filesystem::path& out, const std::vector<FinishedUnit>& units,
                 const Settings& settings)
{
    if (settings.samples == SampleFormat::Slk)
        writeSheet(named(out, ".samples.slk"), units);
    if (settings.samples == SampleFormat::Hdf5)
        if (const std::string problem = hdf5Module()(named(out, ".samples.h5"), units); !problem.empty())
            throw RunError(problem);
    if (settings.plots != PlotFormat::None)
        writePlots(named(out, ".plots"), units, settings);
    if (settings.kymograph != KymographAxis::None)
        writeKymographs(named(out, ".kymographs"), units, settings.kymograph);
}

} // namespace

JoinOutcome joinResults(const std::filesystem::path& out, const std::vector<StorePaths>& stores,
                        const Settings& settings, bool consume)
{
    const Sources sources(stores);
    consume = consume && stores.size() == 1 && sources.totals().problems == 0;
    joinRecords(out, sources.units(), settings);
    for (const TextPart& text : textParts(settings)) {
        const std::filesystem::path path = named(out, text.ending), part = stores.front().part(text.part);
        if (consume && isInOrder(sources.units(), text.part, text.head.size(), part))
            std::filesystem::rename(part, path);
        else
            joinText(path, text, sources.units());
    }
    if (consume) {
        std::filesystem::rename(stores.front().journal, stores.front().finished);
        std::filesystem::remove_all(stores.front().folder);
    }
    return sources.totals();
}

} // namespace batch
