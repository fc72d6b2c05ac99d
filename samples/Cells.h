// SPDX-License-Identifier: MIT
// The model of the specimen: flat adherent cells on a coverslip, with their nuclei and the light sources of
// every stained structure. No optics and no pixels here.
//
// Frame: microns, x to the right, y downwards, z upwards from the coverslip. The field repeats with
// fieldPeriod in x and y, so that an image larger than the field is made of seamless copies.
#pragma once

#include "samples/PortableMath.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace sample {

constexpr int fieldPixels = 512;          // period of the field in pixels
constexpr double pixelMicrons = 6.5 / 60; // camera pixel of 6.5 microns behind a 60x objective
constexpr double fieldPeriod = fieldPixels * pixelMicrons;
constexpr double secondsPerTime = 30; // between time points

struct Vec3 {
    double x = 0, y = 0, z = 0;
};

struct Sphere {
    Vec3 centre;
    double radius = 0;
};

struct Nucleus {
    Vec3 centre;
    double a = 6.5, b = 5, c = 2.2; // semi-axes; c is vertical
    double cosine = 1, sine = 0;    // direction of a
    std::uint64_t texture = 0;      // seed of the chromatin
    std::vector<Sphere> nucleoli;   // centres in the nucleus' own frame
};

struct Cell {
    double x = 0, y = 0, radius = 15;
    std::array<double, 4> lobeCosine{}, lobeSine{}; // outline: 2..5 lobes relative to the radius
    Nucleus nucleus;
    Vec3 centrosome;
    double driftX = 0, driftY = 0; // microns per time point
    double staining = 1;           // brightness relative to other cells
};

// A point that emits `photons` per exposure when it is in focus.
struct Emitter {
    Vec3 at;
    double photons = 0;
    Vec3 velocity; // microns per time point, beside the drift of its cell
    int cell = 0;
};

enum class Stain { Chromatin, Microtubules, Mitochondria, Vesicles, Actin, Cytosol, Nucleoli, Transmitted };

// The signed distance of a coordinate across the repeating field, -period/2 to period/2.
inline double wrapDistance(double d)
{
    return d - fieldPeriod * std::floor(d / fieldPeriod + 0.5);
}

class Specimen {
public:
    explicit Specimen(std::uint64_t seed);

    const std::vector<Cell>& cells() const { return all; }
    // The cell that owns (x, y), and the distance to its outline in microns: positive inside, negative
    // outside. To the nearest pixel.
    struct Place {
        int cell = 0;
        double depth = 0;
    };
    Place locate(double x, double y) const;
    double depthInCell(int cell, double x, double y) const;
    // Height of the cell's upper membrane over (x, y); 0 outside.
    double height(int cell, double x, double y, double depth) const;

    // The light sources of a stain at time 0; empty for the stains that fill a volume.
    std::vector<Emitter> emitters(Stain stain) const;
    // Where an emitter is at a time point.
    Vec3 atTime(const Emitter& emitter, int time) const;

private:
    struct PathPoint {
        Vec3 at;
        double turns = 0; // direction in the plane, in full turns
    };
    using Path = std::vector<PathPoint>;
    void placeCells();
    double depthAlone(const Cell& cell, double x, double y) const;
    void mapOutlines();
    Place placeAmongCells(double x, double y) const;
    void addNuclei();
    void fitNucleus(int cell);
    void placeCentrosome(int cell, Random& random);
    void growMicrotubules();
    Path grow(Random& random, int cell, PathPoint start) const;
    PathPoint tubuleStart(Random& random, int cell, bool branch) const;
    std::vector<Emitter> microtubules() const;
    std::vector<Emitter> mitochondria() const;
    void addMitochondrion(Random& random, int cell, const PathPoint* track, int length,
                          std::vector<Emitter>& out) const;
    std::vector<Emitter> vesicles() const;
    std::vector<Emitter> stressFibres() const;

    std::uint64_t seed;
    std::vector<Cell> all;
    std::vector<Place> outlines;            // per pixel of the field
    std::vector<std::vector<Path>> tubules; // per cell
};

// Position inside the nucleus in units of its semi-axes (1 is its surface), and in its own frame in microns.
struct InNucleus {
    double radius = 0;
    Vec3 local;
};
InNucleus inNucleus(const Nucleus& nucleus, double x, double y, double z);

// Density of DNA, about 1 on average inside and 0 outside.
double chromatinDensity(const Nucleus& nucleus, const InNucleus& place);
// Density of the nucleoli, 0 to 1.
double nucleolusDensity(const Nucleus& nucleus, const InNucleus& place);

} // namespace sample
