// Runs makesample in a folder of its own and reads the text that it wrote.
#pragma once

#include "tests/unit/image/TempFolder.h"

#include <pugixml.hpp>

#include <vector>

namespace sampletest {

struct Outcome {
    int status = -1;
    std::string output, errors;
};
// Through the shell, in the folder; `before` comes in front, such as "ulimit -f 8; ".
Outcome makeSample(const TempFolder& folder, const std::string& options, const std::string& before = "");

// Sorted, hidden files too.
std::vector<std::string> namesIn(const TempFolder& folder);

std::string readDescription(const std::filesystem::path& file);
// The OME element; fails the test when the text is not well-formed.
pugi::xml_node parseOme(const std::string& text, pugi::xml_document& document);

} // namespace sampletest
