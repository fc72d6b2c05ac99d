// SPDX-License-Identifier: MIT
// batchprofile: intensity profiles along many lines in many images, without a display. See --help.
#include "batch/lines/Line.h"
#include "batch/run/Run.h"

#include <cstdio>
#include <optional>

int main(int argc, char** argv)
{
    constexpr int statusUsage = 2, statusFailed = 1;
    try {
        const std::optional<batch::Options> options = batch::parseOptions(argc, argv);
        return options ? batch::runBatch(*options) : 0;
    } catch (const batch::UsageError& error) {
        std::fprintf(stderr, "batchprofile: %s\n", error.what());
        return statusUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "batchprofile: %s\n", error.what());
        return statusFailed;
    }
}
