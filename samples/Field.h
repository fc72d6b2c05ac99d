// SPDX-License-Identifier: MIT
// What the microscope makes of the specimen: sharp light on thin depth slices, defocus and point spread per
// section, illumination, bleaching, photon noise and the camera's offset.
//
// A section of the repeating field is rendered without noise once and kept; noise is drawn for every pixel of
// the whole image, so copies of the field differ as repeated exposures would.
#pragma once

#include "samples/Cells.h"
#include "samples/Channels.h"

#include <array>
#include <map>
#include <memory>
#include <span>
#include <vector>

namespace sample {

struct FieldSize {
    int width = 0, height = 0, sizeZ = 1; // pixels, sections
};

struct Plane {
    int z = 0, c = 0, t = 0, p = 0;
};

// A line in image pixels.
struct PixelLine {
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

class Field {
public:
    Field(std::uint64_t seed, FieldSize size);
    // Fills out (width * height, row by row) with camera counts, 0 to 65535, whole numbers.
    void render(const Plane& plane, std::span<double> out);
    // A line inside the image through two nuclei of position 0 that also meets bright spots of the first
    // `channels` channels in the middle section; for a small image its diagonal.
    PixelLine brightLine(int channels);

private:
    using Image = std::vector<float>;  // fieldPixels squared
    using Slices = std::vector<Image>; // by depth
    struct Footprint {
        int cell = 0;
        double x = 0, y = 0, depth = 0, height = 0, mottle = 0; // microns but for the mottle
    };
    PixelLine lineAcrossNuclei();
    double brightness(const PixelLine& line, int channels);
    const Specimen& specimen(int position);
    const std::vector<Image>& sections(int c, int t, int p);
    std::vector<Image> renderSections(int c, int t, int p);
    Slices sharpSlices(const Channel& channel, int t, int p);
    void mapCells(const Specimen& specimen, int time);
    void addVolume(const Channel& channel, const Specimen& specimen, Slices& slices) const;
    Image focus(const Slices& slices, int section, const Channel& channel) const;

    std::uint64_t seed;
    FieldSize size;
    int originX, originY; // of the image in the field
    int specimenPosition = -1;
    std::unique_ptr<Specimen> currentSpecimen;
    std::vector<Footprint> footprint;                          // per pixel of the field
    std::array<int, 2> footprintOf{-1, -1};                    // position and time
    std::map<std::array<int, 3>, std::vector<Image>> rendered; // by position, time, channel
};

} // namespace sample
