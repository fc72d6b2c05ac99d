// SPDX-License-Identifier: MIT
// Which files a run writes and which plane stands where in them.
#pragma once

#include "samples/Options.h"

#include <filesystem>
#include <string>
#include <vector>

namespace sample {

struct OutputFile {
    std::filesystem::path path;
    std::string uuid; // urn:uuid:..., made from the seed and the file's name
};

struct Page {
    Plane plane; // for RGB, c is 0 and stands for all three channels
    int file = 0;
    int directory = 0; // index among the main directories of the file
};

struct FileSet {
    std::vector<OutputFile> files;
    std::vector<Page> pages; // in the order of writing
    OutputFile companion;    // its path is empty unless there is one
};

FileSet planFiles(const Options& options);

} // namespace sample
