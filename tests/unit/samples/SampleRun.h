// SPDX-License-Identifier: MIT
// Runs makesample in a folder of its own and reads the text that it wrote.
#pragma once

#include "tests/Folders.h"
#include "tests/unit/image/TestFiles.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>
#include <tiffio.h>

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace sampletest {

struct Outcome {
    int status = -1;
    std::string output, errors;
};

// Through the shell, in the folder; `before` comes in front, such as "ulimit -f 8; ".
inline Outcome makeSample(const TempFolder& folder, const std::string& options,
                          const std::string& before = "")
{
    const TempFolder scratch;
    const std::filesystem::path out = scratch / "out", err = scratch / "err";
    const std::string command = "cd " + folder.path.string() + " && (" + before + BIN_DIR "/makesample " +
                                options + ") >" + out.string() + " 2>" + err.string();
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readBytes(out), readBytes(err)};
}

// A sample of its own: "a.ome.tif" with these options.
struct Sample {
    explicit Sample(const std::string& options) : made(makeSample(folder, "a.ome.tif " + options))
    {
        EXPECT_EQ(made.status, 0) << options << ": " << made.errors;
    }
    std::unique_ptr<image::ImageFile> open() const { return image::ImageFile::open(file); }

    TempFolder folder;
    std::filesystem::path file = folder / "a.ome.tif";
    Outcome made;
};

// Sorted, hidden files too.
inline std::vector<std::string> namesIn(const TempFolder& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

inline std::string readDescription(const std::filesystem::path& file)
{
    TIFFSetWarningHandler(nullptr); // it warns of ImageJ's tags
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(file.c_str(), "r"), TIFFClose);
    const char* text = nullptr;
    return tiff && TIFFGetField(tiff.get(), TIFFTAG_IMAGEDESCRIPTION, &text) ? text : "";
}

// The OME element; fails the test when the text is not well-formed.
inline pugi::xml_node parseOme(const std::string& text, pugi::xml_document& document)
{
    const pugi::xml_parse_result result = document.load_string(text.c_str());
    EXPECT_TRUE(result) << result.description();
    return document.child("OME");
}

} // namespace sampletest
