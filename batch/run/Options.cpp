// SPDX-License-Identifier: MIT
#include "batch/run/Settings.h"

#include <CLI/CLI.hpp>

#include <fstream>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace batch {

const char* const methodNames[2] = {"digital", "band"};
const char* const reduceNames[4] = {"mean", "median", "max", "sum"};
const char* const sampleFormatNames[4] = {"none", "csv", "slk", "hdf5"};
const char* const plotFormatNames[4] = {"none", "svg", "pdf", "png"};
const char* const kymographAxisNames[3] = {"none", "t", "z"};

namespace {

constexpr const char* moreHelp = R"(
Writes PREFIX.summary.csv, a row for each image, section, channel and line, and as asked for PREFIX.samples.csv,
.slk or .h5, pictures in PREFIX.plots and images in PREFIX.kymographs; what could not be measured is in PREFIX.errors.csv.
"batchprofile merge --out PREFIX" joins the shards of a run. Columns are described in batchprofile(1).
Exit status: 0 when all was measured, 2 when there are errors in PREFIX.errors.csv or the command line is wrong,
1 when nothing could be done.)";

// An option whose value is one of the words; its place among them is the value.
template<class Choice, std::size_t count>
void addChoice(CLI::App& app, const std::string& name, Choice& choice, const char* const (&words)[count],
               const std::string& help)
{
    const std::vector<std::string> list(words, words + count);
    const auto take = [&choice, list](const std::string& word) {
        choice = static_cast<Choice>(std::ranges::find(list, word) - list.begin());
    };
    app.add_option_function<std::string>(name, take, help)
        ->check(CLI::IsMember(list))
        ->default_str(words[static_cast<std::size_t>(choice)]);
}

void addIndices(CLI::App& app, const std::string& name, IndexList& list, const std::string& help)
{
    const auto take = [&list, name](const std::string& text) {
        try {
            list = IndexList::parse(text);
        } catch (const std::invalid_argument& error) {
            throw CLI::ValidationError(name, error.what());
        }
    };
    app.add_option_function<std::string>(name, take, help)->default_str("all");
}

Shard shardIn(const std::string& text)
{
    constexpr int most = 1'000'000;
    Shard shard;
    const std::size_t slash = text.find('/');
    const bool numbers = slash != std::string::npos &&
                         CLI::detail::lexical_cast(text.substr(0, slash), shard.number) &&
                         CLI::detail::lexical_cast(text.substr(slash + 1), shard.count);
    if (!numbers || shard.count < 1 || shard.count > most || shard.number < 1 || shard.number > shard.count)
        throw CLI::ValidationError("--shard", "\"" + text + "\" is no shard such as 3/16");
    return shard;
}

// One path a line, "-" is standard input.
void addListedImages(const std::string& path, std::vector<std::string>& images)
{
    std::ifstream file;
    if (path != "-")
        file.open(path);
    std::istream& list = path == "-" ? std::cin : file;
    if (!list)
        throw CLI::ValidationError("--images", "\"" + path + "\" cannot be read");
    for (std::string line; std::getline(list, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        if (!line.empty())
            images.push_back(line);
    }
}

void addMeasuring(CLI::App& app, Options& options)
{
    Settings& settings = options.settings;
    const auto takeLines = [&options](const std::vector<std::string>& words) {
        for (const std::string& word : words)
            if (word == "image")
                options.linesOfImages = true;
            else
                options.lineFiles.emplace_back(word);
    };
    app.add_option_function<std::vector<std::string>>(
           "--lines", takeLines,
           "Lines: CSV, ImageJ .roi or RoiSet.zip, GeoJSON, a spreadsheet of the tool; image: those in each "
           "image's metadata")
        ->allow_extra_args(false)
        ->trigger_on_parse();
    addIndices(app, "--channels", settings.channels, "Channels, such as 1,3-4");
    addIndices(app, "--z", settings.z, "Z sections");
    addIndices(app, "--time", settings.time, "Time points");
    addIndices(app, "--position", settings.position, "Stage positions");
    addChoice(app, "--line", settings.method, methodNames,
              "digital: the pixels of the tool's line; band: all pixels within half the width");
    app.add_option("--width", settings.width, "Width of bands in pixels")
        ->check(CLI::Range(1e-3, 1e6))
        ->capture_default_str();
    addChoice(app, "--reduce", settings.reduce, reduceNames, "What a bin of a band becomes");
    addChoice(app, "--samples", settings.samples, sampleFormatNames, "A file of all samples");
    addChoice(app, "--plots", settings.plots, plotFormatNames, "A picture of each line's curves");
    app.add_flag("--log", settings.logAxis, "Logarithmic intensities in the pictures");
    addChoice(app, "--kymograph", settings.kymograph, kymographAxisNames,
              "Each line over time or z, as a TIFF image");
}

void addRunning(CLI::App& app, Options& options)
{
    app.add_option("--out", options.out, "Beginning of the names of the results")
        ->type_name("PREFIX")
        ->capture_default_str();
    app.add_flag("--quiet", options.quiet, "Say nothing but errors");
}

int run(CLI::App& app, int argc, char** argv)
{
    try {
        app.parse(argc, argv);
        return -1;
    } catch (const CLI::Success& done) {
        return app.exit(done);
    } catch (const CLI::ParseError& error) {
        throw UsageError(std::string(error.what()) + " (--help lists the options)");
    }
}

void check(const Options& options)
{
    if (options.lineFiles.empty() && !options.linesOfImages)
        throw UsageError("There are no lines: name a file of them with --lines (--help lists the options)");
}

} // namespace

std::vector<std::string> wordsOf(const Settings& settings)
{
    std::ostringstream width;
    width << std::setprecision(17) << settings.width;
    const auto word = [](const auto& names, auto choice) {
        return std::string(names[static_cast<int>(choice)]);
    };
    std::vector<std::string> words = {"--channels",  settings.channels.text(),
                                      "--z",         settings.z.text(),
                                      "--time",      settings.time.text(),
                                      "--position",  settings.position.text(),
                                      "--line",      word(methodNames, settings.method),
                                      "--width",     width.str(),
                                      "--reduce",    word(reduceNames, settings.reduce),
                                      "--samples",   word(sampleFormatNames, settings.samples),
                                      "--plots",     word(plotFormatNames, settings.plots),
                                      "--kymograph", word(kymographAxisNames, settings.kymograph)};
    if (settings.logAxis)
        words.push_back("--log");
    return words;
}

Settings parseSettings(const std::vector<std::string>& words)
{
    Options options;
    CLI::App app;
    addMeasuring(app, options);
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend())); // it takes them from the back
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    return options.settings;
}

namespace {

std::optional<Options> parseMerge(int argc, char** argv)
{
    Options options;
    options.merge = true;
    CLI::App app("Joins the shards of a run, PREFIX.I-of-N.parts, to the results of the whole.",
                 "batchprofile merge");
    addRunning(app, options);
    return run(app, argc, argv) >= 0 ? std::nullopt : std::optional(options);
}

} // namespace

std::optional<Options> parseOptions(int argc, char** argv)
{
    if (argc > 1 && std::string_view(argv[1]) == "merge")
        return parseMerge(argc - 1, argv + 1);
    Options options;
    options.jobs = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    CLI::App app("Measures intensity profiles along many lines in many images.", "batchprofile");
    app.set_version_flag("--version", "batchprofile " PROJECT_VERSION);
    app.footer(moreHelp);
    app.get_formatter()->column_width(26);
    app.add_option("IMAGE", options.images, "Images; those that the lines name when there is none");
    app.add_option_function<std::string>(
        "--images", [&](const std::string& path) { addListedImages(path, options.images); },
        "File with the path of an image in each line; - is standard input");
    addMeasuring(app, options);
    addRunning(app, options);
    app.add_option_function<std::string>(
           "--shard", [&](const std::string& text) { options.shard = shardIn(text); },
           "Measure the I-th of N equal parts, for \"batchprofile merge\"")
        ->type_name("I/N");
    app.add_option("--jobs", options.jobs, "Sections measured at the same time")
        ->check(CLI::Range(1, 1024))
        ->default_str("one for each processor");
    app.add_flag("--resume", options.resume, "Continue an interrupted run, repeat what had errors");
    app.add_flag("--dry-run", options.dryRun, "Count what would be measured");
    if (run(app, argc, argv) >= 0)
        return std::nullopt;
    check(options);
    return options;
}

} // namespace batch
