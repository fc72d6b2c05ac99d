// SPDX-License-Identifier: MIT
// makesample: writes the demo image and its variants for tests and benchmarks. See --help.
#include "samples/FileSet.h"
#include "samples/Options.h"
#include "samples/Pattern.h"
#include "samples/TiffWriter.h"

#include <csignal>
#include <iostream>

namespace {

void describe(const sample::Options& o, const sample::FileSet& set, sample::Pattern& pattern)
{
    std::cout << "size " << o.size.width << ' ' << o.size.height << '\n'
              << "sections " << o.size.sizeZ << '\n'
              << "channels " << o.channels << '\n'
              << "times " << o.times << '\n'
              << "positions " << o.positions << '\n';
    for (const sample::OutputFile& file : set.files)
        std::cout << "file " << file.path.string() << '\n';
    if (o.companion)
        std::cout << "companion " << set.companion.path.string() << '\n';
    const sample::PixelLine line = pattern.segment();
    std::cout << "segment " << line.x0 << ' ' << line.y0 << ' ' << line.x1 << ' ' << line.y1 << '\n';
}

int run(int argc, char** argv)
{
    sample::Options options;
    if (!sample::parseOptions(argc, argv, options))
        return 0;
    const sample::FileSet set = sample::planFiles(options);
    sample::Pattern pattern(options);
    if (!options.output.empty())
        sample::writeFiles(options, set, pattern);
    if (options.describe)
        describe(options, set, pattern);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGXFSZ, SIG_IGN); // a file size limit is then an ordinary write error
    try {
        return run(argc, argv);
    } catch (const sample::UsageError& error) {
        std::cerr << "makesample: " << error.what() << '\n';
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "makesample: " << error.what() << '\n';
        return 1;
    }
}
