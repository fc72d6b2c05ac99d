// SPDX-License-Identifier: MIT
// What a run measures and writes. Everything here decides what the results are, so a run that is continued or
// joined must have the same.
#pragma once

#include "batch/measure/Sampler.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace batch {

// Indices from 1 on, as the user lists them: "all", or numbers and ranges such as "1,3-5".
class IndexList {
public:
    // Throws std::invalid_argument with a clause about the text.
    static IndexList parse(const std::string& text);

    bool isAll() const { return ranges.empty(); }
    // The indices in ascending order, each once, from 0 on; `count` of them for "all".
    std::vector<int> indices(int count) const;
    std::string text() const; // that parse() reads

private:
    std::vector<std::pair<int, int>> ranges; // 1-based, inclusive; empty: all
};

enum class SampleFormat { None, Csv, Slk, Hdf5 };
enum class PlotFormat { None, Svg, Pdf, Png };
enum class KymographAxis { None, Time, Z };

struct Settings {
    IndexList channels, z, time, position;
    Method method = Method::Digital;
    double width = 1; // of bands, pixels
    Reduce reduce = Reduce::Mean;
    SampleFormat samples = SampleFormat::None;
    PlotFormat plots = PlotFormat::None;
    bool logAxis = false; // of the plots
    KymographAxis kymograph = KymographAxis::None;

    // Whether there are results that are made of all profiles when they are measured.
    bool needsRecords() const
    {
        return samples == SampleFormat::Slk || samples == SampleFormat::Hdf5 || plots != PlotFormat::None ||
               kymograph != KymographAxis::None;
    }
};

// One of several equal parts of a run.
struct Shard {
    int number = 1, count = 1; // number: from 1 on
    bool isWhole() const { return count == 1; }
    // Whether it measures the image's section, both by their ordinals.
    bool holds(std::size_t image, std::size_t section) const
    {
        return (image + section) % static_cast<std::size_t>(count) == static_cast<std::size_t>(number - 1);
    }
};

struct Options {
    Settings settings;
    std::vector<std::string> images;
    std::vector<std::filesystem::path> lineFiles;
    bool linesOfImages = false; // also the lines in each image's own metadata
    std::filesystem::path out = "profiles";
    int jobs = 1;
    Shard shard;
    bool quiet = false, resume = false, dryRun = false;
    bool merge = false; // join the shards of `out`, measure nothing
};

// The names of the choices on the command line and in the files, by value.
extern const char* const methodNames[2];
extern const char* const reduceNames[4];
extern const char* const sampleFormatNames[4];
extern const char* const plotFormatNames[4];
extern const char* const kymographAxisNames[3];

// A wrong command line: one sentence for the user.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Of the words that wordsOf() made. Throws UsageError.
Settings parseSettings(const std::vector<std::string>& words);
std::vector<std::string> wordsOf(const Settings& settings);

// Parses the command line. Nothing when all is said (--help, --version); throws UsageError.
std::optional<Options> parseOptions(int argc, char** argv);

} // namespace batch
