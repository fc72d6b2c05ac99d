// SPDX-License-Identifier: MIT
#include "batch/run/Run.h"

#include "batch/lines/LineFile.h"
#include "batch/lines/OmeLines.h"
#include "batch/results/Join.h"
#include "batch/run/Runner.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace batch {

namespace {

constexpr int statusErrors = 2, statusInterrupted = 130;

LineList readLines(const Options& options)
{
    LineList list;
    for (const std::filesystem::path& path : options.lineFiles)
        readLineFile(path, list);
    return list;
}

// The first signal lets the jobs finish what they have begun; a second one ends the program.
void catchSignals()
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, [](int caught) {
            interrupted = true;
            std::signal(caught, SIG_DFL);
        });
    std::signal(SIGXFSZ, SIG_IGN); // a file size limit is then an ordinary write error
}

std::string counted(std::int64_t count, const std::string& thing)
{
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

void say(const Options& options, const std::string& text)
{
    if (!options.quiet)
        std::fprintf(stderr, "%s\n", text.c_str());
}

std::string settingsText(const Settings& settings)
{
    std::string text;
    for (const std::string& word : wordsOf(settings))
        text += (text.empty() ? "" : "\n") + word;
    return text;
}

// What the plan would measure, without measuring it.
int count(const Options& options, const Plan& plan)
{
    std::int64_t sections = 0, profiles = 0,
                 problems = static_cast<std::int64_t>(plan.lines().problems.size());
    for (std::size_t i = 0; i < plan.images().size() && !interrupted; ++i)
        try {
            const auto file = image::ImageFile::open(plan.images()[i]);
            LineList own;
            if (options.linesOfImages)
                readOmeLines(plan.images()[i], own);
            problems += static_cast<std::int64_t>(own.problems.size());
            const std::vector<Unit> units = plan.unitsOf(i, file->info(), own);
            for (std::size_t k = 0; k < units.size(); ++k)
                if (options.shard.holds(i, k)) {
                    ++sections;
                    profiles += static_cast<std::int64_t>(units[k].lines->size());
                }
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            ++problems;
        }
    std::printf("%s, %s, %s, %s\n", counted(static_cast<std::int64_t>(plan.images().size()), "image").c_str(),
                counted(sections, "section").c_str(), counted(profiles, "profile").c_str(),
                counted(problems, "problem").c_str());
    return problems > 0 ? statusErrors : 0;
}

// The problems of the lines themselves, before those of the images.
void storeLineProblems(const LineList& lines, Store& store)
{
    Output output;
    for (const LineProblem& problem : lines.problems)
        appendError(output.parts[ErrorsPart], "", problem.line, problem.sentence);
    output.problems = static_cast<std::int64_t>(lines.problems.size());
    if (output.problems > 0)
        store.append({0, 0}, output, true);
}

bool isFile(const std::filesystem::path& path)
{
    std::error_code error;
    return std::filesystem::exists(path, error);
}

// Whether a run of the same head is whole and its images are as they were.
bool isThere(const Options& options, const Plan& plan, const StorePaths& paths, const RunHead& head)
{
    if (!isFile(paths.finished))
        return false;
    const Journal journal = readJournal(paths.finished);
    bool same = journal.head == head && journal.done;
    for (const auto& [number, stamp] : journal.images)
        same = same && number >= 1 && number <= plan.images().size() &&
               base::stampOf(plan.images()[number - 1]) == stamp;
    for (const std::filesystem::path& file : resultFiles(options.out, options.settings))
        same = same && isFile(file);
    return same;
}

std::optional<Journal> earlierRun(const Options& options, const StorePaths& paths, const RunHead& head)
{
    if (!options.resume || !isFile(paths.journal))
        return std::nullopt;
    Journal journal = readJournal(paths.journal);
    if (journal.head != head)
        throw RunError("The run in " + paths.folder.string() +
                       " has other images, lines or options; without --resume it is begun anew.");
    return journal;
}

std::string outcomeText(const Options& options, const JoinOutcome& outcome, double seconds)
{
    std::string text = counted(outcome.profiles, "profile");
    char time[32];
    std::snprintf(time, sizeof time, " in %.1f s", seconds);
    text += time;
    if (outcome.problems > 0)
        text += "; " + counted(outcome.problems, "problem") + " in " + options.out.string() + ".errors.csv";
    return text;
}

// The number N of the shards PREFIX.I-of-N.parts. Throws RunError when there are none, or of several splits.
int shardCountOf(const std::filesystem::path& out)
{
    const std::filesystem::path folder = out.has_parent_path() ? out.parent_path() : ".";
    const std::regex form(R"(\.(\d{1,7})-of-(\d{1,7})\.parts)");
    const std::string prefix = out.filename().string();
    std::set<int> counts;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        std::smatch match;
        const std::string rest = name.starts_with(prefix) ? name.substr(prefix.size()) : "";
        if (std::regex_match(rest, match, form))
            counts.insert(std::stoi(match[2]));
    }
    if (counts.empty())
        throw RunError("There are no shards " + out.string() + ".I-of-N.parts to be joined.");
    if (counts.size() > 1)
        throw RunError("There are shards of several runs, of " + std::to_string(*counts.begin()) +
                       " and of " + std::to_string(*counts.rbegin()) + ": remove those that are not meant.");
    return *counts.begin();
}

// Checks that all shards are there and belong together.
JoinOutcome merge(const Options& options)
{
    const int count = shardCountOf(options.out);
    std::vector<StorePaths> stores;
    RunHead first;
    for (int number = 1; number <= count; ++number) {
        const StorePaths& store = stores.emplace_back(options.out, number, count);
        if (!isFile(store.journal))
            throw RunError("The shard " + store.folder.string() + " is not there.");
        RunHead head = readJournal(store.journal).head;
        head.shard = 1;
        if (number == 1)
            first = head;
        if (head != first)
            throw RunError(store.folder.string() + " belongs to a run with other images, lines or options.");
    }
    std::vector<std::string> words;
    std::istringstream text(first.settings);
    for (std::string word; std::getline(text, word);)
        words.push_back(word);
    return joinResults(options.out, stores, parseSettings(words), false);
}

int report(const Options& options, const JoinOutcome& outcome, std::chrono::steady_clock::time_point began)
{
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - began;
    say(options, outcomeText(options, outcome, seconds.count()));
    return outcome.problems > 0 ? statusErrors : 0;
}

} // namespace

int runBatch(const Options& options)
{
    catchSignals();
    const auto began = std::chrono::steady_clock::now();
    if (options.merge)
        return report(options, merge(options), began);
    const Plan plan(options, readLines(options));
    if (plan.images().empty())
        throw UsageError(
            "There are no images: name some, or lines that name theirs (--help lists the options)");
    if (options.dryRun)
        return count(options, plan);
    const RunHead head{plan.identity(), options.shard.number, options.shard.count, plan.images().size(),
                       settingsText(options.settings)};
    const StorePaths paths(options.out, options.shard.number, options.shard.count);
    if (options.resume && isThere(options, plan, paths, head)) {
        say(options, "All of it is there already.");
        return 0;
    }
    const std::optional<Journal> earlier = earlierRun(options, paths, head);
    Store store(paths, head, earlier ? &*earlier : nullptr);
    if (options.shard.number == 1)
        storeLineProblems(plan.lines(), store);
    Progress progress(options.quiet, plan.images().size());
    const bool whole = Runner(options, plan, store, progress).run();
    progress.clear();
    if (!whole) {
        say(options, "Interrupted: " + counted(store.profiles(), "profile") +
                         " measured so far; go on with --resume.");
        return statusInterrupted;
    }
    store.finish();
    JoinOutcome outcome{store.profiles(), store.problems()};
    if (options.shard.isWhole())
        outcome = joinResults(options.out, {paths}, options.settings, true);
    return report(options, outcome, began);
}

} // namespace batch
