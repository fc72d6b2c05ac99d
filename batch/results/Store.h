// SPDX-License-Identifier: MIT
// What a run has finished so far: a folder with the parts of the results, to which finished sections are only
// ever appended, and a journal that tells which bytes of the parts belong to which section. A section counts
// once the journal has its line, so a run that is killed at any moment leaves what it had finished.
#pragma once

#include "batch/results/StoredFile.h"
#include "platform/base/FileStamp.h"

#include <array>
#include <compare>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

// Rows of the three tables, and records of profiles (Record.h) for results that are made at the end.
enum Part { SummaryPart, SamplesPart, ErrorsPart, RecordsPart, partCount };

// A section of an image, by the ordinals of both in the run.
struct UnitKey {
    std::uint32_t image = 0, section = 0;
    friend auto operator<=>(const UnitKey&, const UnitKey&) = default;
};

// What has been made of a section, or of some of its lines.
struct Output {
    std::array<std::string, partCount> parts;
    std::int64_t profiles = 0, problems = 0;
};

struct ByteRange {
    std::uint64_t begin = 0, end = 0;
};

struct UnitEntry {
    UnitKey key;
    std::array<ByteRange, partCount> ranges;
    std::int64_t profiles = 0, problems = 0;
};

// The head of a journal: runs with different heads are different runs.
struct RunHead {
    std::string identity; // hash of the settings, the lines and the list of images
    int shard = 1, shards = 1;
    std::uint64_t images = 0;
    std::string settings; // as words of the command line, a line feed between them
    friend bool operator==(const RunHead&, const RunHead&) = default;
};

struct Journal {
    RunHead head;
    std::map<std::uint32_t, base::FileStamp> images; // as they were when they were measured
    std::vector<UnitEntry> units;                    // sorted by key
    bool done = false;                               // all of the run has been tried
};

// Throws RunError. A last line that was cut off does not count.
Journal readJournal(const std::filesystem::path& path);

// The names that a run or a shard of it gives to what it keeps.
struct StorePaths {
    StorePaths(const std::filesystem::path& out, int shard, int shards);
    std::filesystem::path folder;   // while there is something to be continued
    std::filesystem::path journal;  // in the folder
    std::filesystem::path finished; // the journal of a run whose results are whole
    std::filesystem::path part(Part which) const;
};

// Several threads may ask and take; one at a time may append.
class Store {
public:
    // Begins anew, or goes on with `earlier`, whose bytes are in the folder. Throws RunError, also when
    // another run is at work in the folder.
    Store(StorePaths paths, const RunHead& head, const Journal* earlier);

    // Whether the section was finished earlier, without problems, from a file that has not changed since.
    bool has(const UnitKey& key) const;
    // Has to come before an image's sections; forgets them where the file is another one than earlier.
    void takeImage(std::uint32_t image, const base::FileStamp& stamp);
    // Appends to the section that is being written; `last` ends it.
    void append(const UnitKey& key, const Output& output, bool last);
    void finish();

    // Of what was there before and of what has come since.
    std::int64_t problems() const { return problemCount; }
    std::int64_t profiles() const { return profileCount; }

private:
    void forget(std::uint32_t image);

    void note(std::string_view text);

    StorePaths paths;
    mutable std::mutex mutex; // guards the journal, `finished` and `stamps`
    StoredFile journal;
    std::array<StoredFile, partCount> files;
    std::map<UnitKey, std::int64_t> finished; // with the number of profiles
    std::map<std::uint32_t, base::FileStamp> stamps;
    UnitEntry present;
    bool writing = false;
    std::int64_t problemCount = 0, profileCount = 0;
};

} // namespace batch
