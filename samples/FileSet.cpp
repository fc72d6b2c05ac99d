// SPDX-License-Identifier: MIT
#include "samples/FileSet.h"

#include <cstdio>

namespace sample {

namespace {

std::string uuidOf(const std::string& name, std::uint64_t seed)
{
    std::uint64_t hash = mixBits(seed);
    for (char c : name)
        hash = mixBits(hash ^ static_cast<unsigned char>(c));
    const std::uint64_t more = mixBits(hash);
    char text[64];
    std::snprintf(text, sizeof text, "urn:uuid:%08x-%04x-4%03x-%04x-%012llx",
                  static_cast<unsigned>(hash >> 32), static_cast<unsigned>(hash >> 16 & 0xffff),
                  static_cast<unsigned>(hash & 0xfff), static_cast<unsigned>(0x8000 | (more >> 48 & 0x3fff)),
                  static_cast<unsigned long long>(more & 0xffffffffffffu));
    return text;
}

// "cells.ome.tif" into "cells" and ".ome.tif".
std::pair<std::string, std::string> splitName(const std::filesystem::path& path)
{
    std::string stem = path.stem().string(), extension = path.extension().string();
    if (stem.size() > 4 && stem.ends_with(".ome")) {
        stem.resize(stem.size() - 4);
        extension = ".ome" + extension;
    }
    return {stem, extension};
}

std::vector<Plane> planesInOrder(const Options& o)
{
    const auto sizeOf = [&o](char axis) {
        return axis == 'Z' ? o.size.sizeZ : axis == 'C' ? o.pagesPerSection() : o.times;
    };
    const char fast = o.order[2], middle = o.order[3], slow = o.order[4];
    std::vector<Plane> planes;
    for (int p = 0; p < o.positions; ++p) {
        for (int i = 0; i < sizeOf(slow); ++i) {
            for (int j = 0; j < sizeOf(middle); ++j) {
                for (int k = 0; k < sizeOf(fast); ++k) {
                    const auto indexOf = [&](char axis) { return axis == fast ? k : axis == middle ? j : i; };
                    planes.push_back({indexOf('Z'), indexOf('C'), indexOf('T'), p});
                }
            }
        }
    }
    return planes;
}

struct SplitRow {
    char letter;
    int Plane::*index;
};

// In the order of Split, for those that divide along an axis.
constexpr SplitRow splitTable[] = {
    {'-', nullptr}, {'C', &Plane::c}, {'Z', &Plane::z}, {'T', &Plane::t}, {'P', &Plane::p},
};

} // namespace

FileSet planFiles(const Options& o)
{
    FileSet set;
    const std::filesystem::path output = o.output.empty() ? "sample.ome.tif" : o.output;
    const auto [stem, extension] = splitName(output);
    const std::vector<Plane> planes = planesInOrder(o);
    const auto fileAt = [&](const std::string& name) {
        return OutputFile{output.parent_path() / name, uuidOf(name, o.seed)};
    };
    std::vector<int> pagesIn;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        int file = 0;
        if (o.split == Split::Count)
            file = static_cast<int>(i * o.files / planes.size());
        else if (o.split != Split::None)
            file = planes[i].*splitTable[static_cast<int>(o.split)].index;
        if (file >= static_cast<int>(pagesIn.size()))
            pagesIn.resize(file + 1);
        set.pages.push_back({planes[i], file, pagesIn[file]++});
    }
    const char letter = o.split == Split::Count ? 'F' : splitTable[static_cast<int>(o.split)].letter;
    for (std::size_t i = 0; i < pagesIn.size(); ++i) {
        std::string name = stem + '_' + letter;
        name.append(std::to_string(i)).append(extension);
        set.files.push_back(fileAt(o.split == Split::None ? output.filename().string() : name));
    }
    if (o.companion)
        set.companion = fileAt(stem + ".companion.ome");
    return set;
}

} // namespace sample
