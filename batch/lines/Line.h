// SPDX-License-Identifier: MIT
// Lines to be measured, as files list them. A list keeps the points of all its lines together, so that a line
// takes about a hundred bytes however many there are.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

namespace batch {

// Data coordinates: image pixels, (0, 0) the top left corner of the top left pixel, y down. Microns, where a
// line says so, count from the same corner.
struct Point {
    double x = 0, y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

// Sections of which a line is measured, from 1 on; 0: those that the command line chooses.
struct SectionChoice {
    int z = 0, t = 0, p = 0;
    friend auto operator<=>(const SectionChoice&, const SectionChoice&) = default;
};

struct Line {
    std::string name;
    std::uint32_t firstPoint = 0, pointCount = 0; // of LineList::points
    std::uint32_t image = 0;                      // of LineList::images; 0: every image
    SectionChoice section;
    float width = 0; // of a band, pixels; 0: as the command line says
    bool microns = false;
};

// What of a line file cannot be measured.
struct LineProblem {
    std::string line;     // its name, or where it stands
    std::string sentence; // for the user
};

// A whole file of lines that cannot be used; what() is a sentence that names the file.
struct LineFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct LineList {
    std::vector<Line> lines;
    std::vector<Point> points;
    std::vector<std::string> images = {""}; // as the files name them
    std::unordered_map<std::string, std::uint32_t> imageNumbers = {{"", 0}};
    std::vector<LineProblem> problems;

    std::span<const Point> pointsOf(const Line& line) const
    {
        return std::span(points).subspan(line.firstPoint, line.pointCount);
    }
    // Takes the line with these points, or notes why it cannot be measured: fewer than two points, a
    // coordinate that is no number or beyond any image, a section before the first.
    void add(Line line, std::span<const Point> its);
    // The number of an image's name in `images`; "" is 0.
    std::uint32_t imageNumber(const std::string& name);
};

// Of a list; more are refused.
constexpr std::size_t maxLines = 100'000'000, maxPoints = 400'000'000;

} // namespace batch
