// SPDX-License-Identifier: MIT
#include "batch/results/Store.h"

#include "batch/results/Tables.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>

namespace batch {

namespace {

constexpr std::string_view journalBeginning = "batchprofile journal 1";
constexpr const char* partNames[partCount] = {"summary.csv", "samples.csv", "errors.csv", "records"};

std::string withoutLineFeeds(std::string text)
{
    std::ranges::replace(text, '\n', '\t');
    return text;
}

std::string headText(const RunHead& head)
{
    std::ostringstream text;
    text << journalBeginning << "\nrun " << head.identity << ' ' << head.shard << ' ' << head.shards << ' '
         << head.images << "\nsettings " << withoutLineFeeds(head.settings) << '\n';
    return text.str();
}

std::string unitText(const UnitEntry& entry)
{
    std::ostringstream text;
    text << "unit " << entry.key.image << ' ' << entry.key.section << ' ' << entry.profiles << ' '
         << entry.problems;
    for (const ByteRange& range : entry.ranges)
        text << ' ' << range.begin << ' ' << range.end;
    text << '\n';
    return text.str();
}

// The units read so far, the last of each; those of an image whose file has changed do not count.
class JournalReader {
public:
    void take(const std::string& line)
    {
        std::istringstream words(line);
        std::string word;
        words >> word;
        if (word == "run") {
            words >> journal.head.identity >> journal.head.shard >> journal.head.shards >>
                journal.head.images;
        } else if (word == "settings") {
            journal.head.settings = line.substr(line.find(' ') + 1);
            std::ranges::replace(journal.head.settings, '\t', '\n');
        } else if (word == "image") {
            takeImage(words);
        } else if (word == "unit") {
            takeUnit(words);
        }
        journal.done = word == "done";
    }
    Journal finished()
    {
        for (auto& [key, entry] : units)
            journal.units.push_back(entry);
        return std::move(journal);
    }

private:
    void takeImage(std::istringstream& words)
    {
        std::uint32_t number = 0;
        base::FileStamp stamp;
        words >> number >> stamp.device >> stamp.inode >> stamp.size >> stamp.modified;
        const auto [place, isNew] = journal.images.try_emplace(number, stamp);
        if (!isNew && place->second != stamp)
            units.erase(units.lower_bound({number, 0}), units.lower_bound({number + 1, 0}));
        place->second = stamp;
    }
    void takeUnit(std::istringstream& words)
    {
        UnitEntry entry;
        words >> entry.key.image >> entry.key.section >> entry.profiles >> entry.problems;
        for (ByteRange& range : entry.ranges)
            words >> range.begin >> range.end;
        if (words)
            units[entry.key] = entry;
    }

    Journal journal;
    std::map<UnitKey, UnitEntry> units;
};

} // namespace

Journal readJournal(const std::filesystem::path& path)
{
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line) || line != journalBeginning)
        throw RunError(path.string() + " is no journal of a run.");
    JournalReader reader;
    while (std::getline(file, line) && !file.eof())
        reader.take(line);
    return reader.finished();
}

StorePaths::StorePaths(const std::filesystem::path& out, int shard, int shards)
{
    const std::string name =
        shards == 1 ? out.string()
                    : out.string() + "." + std::to_string(shard) + "-of-" + std::to_string(shards);
    folder = name + ".parts";
    journal = folder / "journal";
    finished = name + ".journal";
}

std::filesystem::path StorePaths::part(Part which) const
{
    return folder / partNames[which];
}

Store::Store(StorePaths where, const RunHead& head, const Journal* earlier) : paths(std::move(where))
{
    std::error_code error;
    std::filesystem::create_directories(paths.folder, error);
    if (error)
        throw RunError(paths.folder.string() + " cannot be made: " + error.message() + ".");
    journal = StoredFile(paths.journal, false);
    if (!journal.lock())
        throw RunError("Another run is writing to " + paths.folder.string() + ".");
    const std::string_view heads[partCount] = {summaryHeader, samplesHeader, errorsHeader, ""};
    const bool anew = earlier == nullptr;
    if (anew)
        std::filesystem::resize_file(paths.journal, 0);
    for (int part = 0; part < partCount; ++part) {
        files[static_cast<std::size_t>(part)] = StoredFile(paths.part(static_cast<Part>(part)), anew);
        if (anew)
            files[static_cast<std::size_t>(part)].append(heads[part]);
    }
    if (anew) {
        journal.append(headText(head));
        return;
    }
    journal.append("\n"); // ends a line that was cut off
    stamps = earlier->images;
    for (const UnitEntry& unit : earlier->units)
        if (unit.problems == 0)
            finished[unit.key] = unit.profiles;
}

bool Store::has(const UnitKey& key) const
{
    const std::lock_guard lock(mutex);
    return finished.contains(key);
}

void Store::forget(std::uint32_t image)
{
    finished.erase(finished.lower_bound({image, 0}), finished.lower_bound({image + 1, 0}));
}

void Store::takeImage(std::uint32_t image, const base::FileStamp& stamp)
{
    const std::lock_guard lock(mutex);
    const auto found = stamps.find(image);
    if (found != stamps.end() && found->second == stamp)
        return;
    forget(image);
    stamps[image] = stamp;
    std::ostringstream text;
    text << "image " << image << ' ' << stamp.device << ' ' << stamp.inode << ' ' << stamp.size << ' '
         << stamp.modified << '\n';
    journal.append(text.str());
}

void Store::note(std::string_view text)
{
    const std::lock_guard lock(mutex);
    journal.append(text);
}

void Store::append(const UnitKey& key, const Output& output, bool last)
{
    for (std::size_t part = 0; part < partCount; ++part) {
        ByteRange& range = present.ranges[part];
        if (!writing)
            range.begin = files[part].size();
        files[part].append(output.parts[part]);
        range.end = files[part].size();
    }
    writing = !last;
    present.profiles += output.profiles;
    present.problems += output.problems;
    if (!last)
        return;
    present.key = key;
    note(unitText(present));
    profileCount += present.profiles;
    problemCount += present.problems;
    present = {};
}

void Store::finish()
{
    note("done\n");
}

} // namespace batch
