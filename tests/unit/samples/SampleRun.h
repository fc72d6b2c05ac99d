// Runs makesample in a folder of its own and reads what it wrote with plain libtiff calls.
#pragma once

#include <pugixml.hpp>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace sampletest {

// An empty folder that goes when the test does.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    std::filesystem::path operator/(const std::string& name) const { return path / name; }
    std::vector<std::string> names() const; // sorted, hidden files too

    std::filesystem::path path;
};

struct Outcome {
    int status = -1;
    std::string output, errors;
};
// Through the shell, in the folder; `before` comes in front, such as "ulimit -f 8; ".
Outcome makeSample(const Folder& folder, const std::string& options, const std::string& before = "");

struct Pixels {
    int width = 0, height = 0, samples = 0;
    std::vector<double> values; // pixel by pixel, samples together
    double at(int x, int y, int sample = 0) const { return values[(y * width + x) * samples + sample]; }
};
// A directory of a file, or its SubIFD `level` (from 1). Fails the test when it can't be read.
Pixels readPixels(const std::filesystem::path& file, int directory, int level = 0);

std::string readDescription(const std::filesystem::path& file);
// The OME element; fails the test when the text is not well-formed.
pugi::xml_node parseOme(const std::string& text, pugi::xml_document& document);

std::string bytesOf(const std::filesystem::path& file);

} // namespace sampletest
