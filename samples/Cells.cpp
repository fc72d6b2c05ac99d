// SPDX-License-Identifier: MIT
#include "samples/Cells.h"

#include <algorithm>
#include <cmath>

namespace sample {

namespace {

enum Stream : std::uint64_t {
    CellStream = 1,
    TubuleStream,
    LabelStream,
    MitoStream,
    VesicleStream,
    FibreStream,
    OutlineStream,
    NucleusStream
};

constexpr double stepMicrons = 0.05; // along a filament, half a pixel

double length(double x, double y)
{
    return std::sqrt(x * x + y * y);
}

} // namespace

Specimen::Specimen(std::uint64_t seed) : seed(seed)
{
    placeCells();
    mapOutlines();
    addNuclei();
    growMicrotubules();
}

// Best-candidate sampling on the repeating field: every new cell takes the spot farthest from the others.
void Specimen::placeCells()
{
    constexpr int cellCount = 6, candidates = 30;
    Random random{seed, CellStream};
    for (int i = 0; i < cellCount; ++i) {
        Cell best;
        double bestDistance = -1;
        for (int k = 0; k < candidates; ++k) {
            const double x = random.uniform(0, fieldPeriod), y = random.uniform(0, fieldPeriod);
            double nearest = fieldPeriod;
            for (const Cell& other : all)
                nearest = std::min(nearest, length(wrapDistance(x - other.x), wrapDistance(y - other.y)));
            if (nearest > bestDistance) {
                bestDistance = nearest;
                best.x = x;
                best.y = y;
            }
        }
        best.radius = random.uniform(14, 17.5);
        for (int k = 0; k < 4; ++k) {
            const double amplitude = random.uniform(0.02, 0.16) / (1 + 0.4 * k), turn = random.uniform();
            best.lobeCosine[k] = amplitude * cosineOfTurns(turn);
            best.lobeSine[k] = amplitude * sineOfTurns(turn);
        }
        best.driftX = random.normal() * 0.22;
        best.driftY = random.normal() * 0.22;
        best.staining = random.uniform(0.75, 1.25);
        all.push_back(best);
    }
}

void Specimen::addNuclei()
{
    for (int cell = 0; cell < static_cast<int>(all.size()); ++cell) {
        Random random{seed, NucleusStream, static_cast<std::uint64_t>(cell)};
        Nucleus& n = all[cell].nucleus;
        n.a = random.uniform(5.9, 7.2);
        n.b = n.a * random.uniform(0.72, 0.9);
        n.c = random.uniform(1.7, 2.0);
        n.centre = {all[cell].x + random.normal() * 0.8, all[cell].y + random.normal() * 0.8, n.c + 0.3};
        const double turn = random.uniform();
        n.cosine = cosineOfTurns(turn);
        n.sine = sineOfTurns(turn);
        n.texture = random.bits();
        fitNucleus(cell);
        const int nucleolusCount = 2 + random.below(3);
        for (int k = 0; k < nucleolusCount; ++k) {
            const double where = random.uniform(), r = 0.6 * std::sqrt(random.uniform());
            const double x = n.a * r * cosineOfTurns(where), y = n.b * r * sineOfTurns(where);
            n.nucleoli.push_back({{x, y, random.uniform(-0.5, 0.5)}, random.uniform(0.7, 1.25)});
        }
        placeCentrosome(cell, random);
    }
}

// Shrinks the nucleus until it is inside its cell.
void Specimen::fitNucleus(int cell)
{
    constexpr int directions = 24;
    Nucleus& n = all[cell].nucleus;
    const auto clearance = [&] {
        double least = fieldPeriod;
        for (int i = 0; i < directions; ++i) {
            const double u = n.a * cosineOfTurns(i / double{directions});
            const double v = n.b * sineOfTurns(i / double{directions});
            least = std::min(least, depthInCell(cell, n.centre.x + u * n.cosine - v * n.sine,
                                                n.centre.y + u * n.sine + v * n.cosine));
        }
        return least;
    };
    while (n.a > 2.5 && clearance() < 0.6) {
        n.a *= 0.95;
        n.b *= 0.95;
    }
}

// Beside the nucleus, where the cell has room.
void Specimen::placeCentrosome(int cell, Random& random)
{
    constexpr int tries = 5;
    const Nucleus& n = all[cell].nucleus;
    double best = -fieldPeriod;
    for (int i = 0; i < tries; ++i) {
        const double side = random.uniform(), reach = n.a + 0.3;
        const Vec3 at{n.centre.x + reach * cosineOfTurns(side), n.centre.y + reach * sineOfTurns(side), 1.6};
        const double depth = depthInCell(cell, at.x, at.y);
        if (depth > best) {
            best = depth;
            all[cell].centrosome = at;
        }
    }
}

// Distance to the outline of a cell that has no neighbours.
double Specimen::depthAlone(const Cell& cell, double x, double y) const
{
    const double dx = wrapDistance(x - cell.x), dy = wrapDistance(y - cell.y);
    const double r = std::sqrt(dx * dx + dy * dy);
    const double c = r > 0 ? dx / r : 1, s = r > 0 ? dy / r : 0;
    double outline = 1, ck = c, sk = s;
    for (int k = 0; k < 4; ++k) {
        const double next = ck * c - sk * s; // (ck, sk) becomes the direction times k + 2
        sk = ck * s + sk * c;
        ck = next;
        outline += ck * cell.lobeCosine[k] + sk * cell.lobeSine[k];
    }
    return cell.radius * outline - r;
}

// Neighbours meet half way, with a narrow gap between the membranes; waves that repeat with the field keep
// the borders from being straight.
void Specimen::mapOutlines()
{
    struct Wave {
        double kx, ky, phase, microns;
    };
    Random random{seed, OutlineStream};
    std::array<std::vector<Wave>, 2> waves;
    for (std::vector<Wave>& axis : waves) {
        for (int k = 0; k < 5; ++k) {
            const double kx = 1 + random.below(6), ky = random.below(13) - 6;
            axis.push_back({kx, ky, random.uniform(), random.uniform(0.4, 1.1)});
        }
    }
    const auto shift = [&waves](int axis, double u, double v) {
        double sum = 0;
        for (const Wave& w : waves[axis])
            sum += w.microns * sineOfTurns(w.kx * u + w.ky * v + w.phase);
        return sum;
    };
    outlines.reserve(std::size_t{fieldPixels} * fieldPixels);
    for (int row = 0; row < fieldPixels; ++row)
        for (int column = 0; column < fieldPixels; ++column) {
            const double u = column / double{fieldPixels}, v = row / double{fieldPixels};
            outlines.push_back(
                placeAmongCells(u * fieldPeriod + shift(0, u, v), v * fieldPeriod + shift(1, u, v)));
        }
}

Specimen::Place Specimen::placeAmongCells(double x, double y) const
{
    int nearest = 0;
    double best = 1e9, second = 1e9;
    for (int i = 0; i < static_cast<int>(all.size()); ++i) {
        const double dx = wrapDistance(x - all[i].x), dy = wrapDistance(y - all[i].y);
        const double distance = std::sqrt(dx * dx + dy * dy);
        if (distance < best) {
            second = best;
            best = distance;
            nearest = i;
        } else {
            second = std::min(second, distance);
        }
    }
    return {nearest, std::min(depthAlone(all[nearest], x, y), (second - best) / 2 - 0.2)};
}

Specimen::Place Specimen::locate(double x, double y) const
{
    const auto pixel = [](double microns) {
        return static_cast<int>(std::floor(microns / pixelMicrons + 0.5)) & (fieldPixels - 1);
    };
    return outlines[pixel(y) * fieldPixels + pixel(x)];
}

double Specimen::depthInCell(int cell, double x, double y) const
{
    const Place place = locate(x, y);
    return place.cell == cell ? place.depth : -std::max(0.0, place.depth) - 0.2;
}

double Specimen::height(int index, double x, double y, double depth) const
{
    if (depth <= 0)
        return 0;
    const Nucleus& n = all[index].nucleus;
    const double r = length(wrapDistance(x - n.centre.x), wrapDistance(y - n.centre.y));
    return std::sqrt(std::min(1.0, depth / 2.5)) * (1.3 + (2 * n.c - 0.6) * gaussian(r, 5.5));
}

InNucleus inNucleus(const Nucleus& n, double x, double y, double z)
{
    const double dx = wrapDistance(x - n.centre.x), dy = wrapDistance(y - n.centre.y);
    InNucleus place;
    place.local = {dx * n.cosine + dy * n.sine, dy * n.cosine - dx * n.sine, z - n.centre.z};
    const double u = place.local.x / n.a, v = place.local.y / n.b, w = place.local.z / n.c;
    place.radius = std::sqrt(u * u + v * v + w * w);
    return place;
}

double nucleolusDensity(const Nucleus& n, const InNucleus& place)
{
    double density = 0;
    for (const Sphere& s : n.nucleoli) {
        const double dx = place.local.x - s.centre.x, dy = place.local.y - s.centre.y,
                     dz = place.local.z - s.centre.z;
        const double wobble = 0.25 * valueNoise(place.local.x * 1.5, place.local.y * 1.5, dz, n.texture + 5);
        density = std::max(density, 1 - smoothStep(s.radius * 0.85, s.radius * 1.15,
                                                   std::sqrt(dx * dx + dy * dy + dz * dz) + wobble));
    }
    return density;
}

double chromatinDensity(const Nucleus& n, const InNucleus& place)
{
    if (place.radius >= 1.05)
        return 0;
    const auto noise = [&](double perMicron, int octave) {
        return valueNoise(place.local.x * perMicron, place.local.y * perMicron, place.local.z * perMicron,
                          n.texture + octave);
    };
    const double coarse = noise(0.7, 0), middle = noise(1.6, 1), fine = noise(3.4, 2), foci = noise(0.95, 3);
    double density = 0.25 + 0.5 * coarse + 0.55 * middle * middle + 0.35 * fine;
    density += 1.6 * smoothStep(0.78, 0.93, foci);         // heterochromatin
    density += 0.35 * gaussian(place.radius - 0.95, 0.05); // under the envelope
    density *= 1 - 0.75 * nucleolusDensity(n, place);
    return density * (1 - smoothStep(0.96, 1.04, place.radius));
}

Vec3 Specimen::atTime(const Emitter& e, int time) const
{
    if (time == 0)
        return e.at;
    const auto sway = [&](int axis) {
        return 0.35 * (valueNoise(e.at.x / 3, e.at.y / 3, time * 0.8, seed + 100 + axis) - 0.5);
    };
    const Cell& cell = all[e.cell];
    return {e.at.x + time * (cell.driftX + e.velocity.x) + sway(0),
            e.at.y + time * (cell.driftY + e.velocity.y) + sway(1), e.at.z + time * e.velocity.z};
}

// A persistent random walk that keeps inside the cell, runs along its edge and passes over or under the
// nucleus.
Specimen::Path Specimen::grow(Random& random, int cell, PathPoint start) const
{
    auto [at, turns] = start;
    const Nucleus& nucleus = all[cell].nucleus;
    const double length = random.uniform(5, 26), level = random.uniform(0.1, 0.8);
    const bool over = random.uniform() < 0.35;
    const double margin = random.uniform(0.3, 2.2); // of the edge, where it turns
    double alongEdge = random.uniform(0, 5);        // how far it then goes on
    double curvature = random.normal() * 0.006;
    Path path;
    for (int step = 0; step * stepMicrons < length; ++step) {
        curvature += random.normal() * 0.0016 - curvature * stepMicrons / 8;
        turns += curvature * stepMicrons + random.normal() * 0.0008;
        const double c = cosineOfTurns(turns), s = sineOfTurns(turns);
        const double depth = depthInCell(cell, at.x + 0.6 * c, at.y + 0.6 * s);
        if (depth < margin) {
            alongEdge -= stepMicrons;
            const double left = depthInCell(cell, at.x - 0.6 * s, at.y + 0.6 * c);
            const double right = depthInCell(cell, at.x + 0.6 * s, at.y - 0.6 * c);
            turns += left > right ? 0.012 : -0.012;
        }
        at.x += c * stepMicrons;
        at.y += s * stepMicrons;
        const double here = depthInCell(cell, at.x, at.y);
        if (here < 0.12 || alongEdge < 0)
            break;
        const double flat = inNucleus(nucleus, at.x, at.y, nucleus.centre.z).radius;
        const double rise = nucleus.c * std::sqrt(std::max(0.0, 1.1 - flat * flat)) + 0.2;
        double target = level * height(cell, at.x, at.y, here);
        if (flat < 1.05)
            target = over ? nucleus.centre.z + rise : std::max(0.15, nucleus.centre.z - rise);
        at.z += (target - at.z) * stepMicrons / 0.7;
        path.push_back({at, turns});
    }
    return path;
}

// At the centrosome, or on the side of an older tubule.
Specimen::PathPoint Specimen::tubuleStart(Random& random, int cell, bool branch) const
{
    const std::vector<Path>& paths = tubules[cell];
    if (branch && !paths.empty()) {
        const Path& older = paths[random.below(static_cast<int>(paths.size()))];
        if (!older.empty()) {
            PathPoint start = older[random.below(static_cast<int>(older.size()))];
            start.turns += random.normal() * 0.06;
            return start;
        }
    }
    const auto near = [&](double v) { return v + random.normal() * 0.25; };
    const Vec3& c = all[cell].centrosome;
    const Vec3 at{near(c.x), near(c.y), near(c.z)};
    return {at, random.uniform()};
}

void Specimen::growMicrotubules()
{
    constexpr int perCell = 120;
    for (int cell = 0; cell < static_cast<int>(all.size()); ++cell) {
        Random random{seed, TubuleStream, static_cast<std::uint64_t>(cell)};
        tubules.emplace_back();
        for (int i = 0; i < perCell; ++i)
            tubules[cell].push_back(grow(random, cell, tubuleStart(random, cell, i % 3 == 2)));
    }
}

std::vector<Emitter> Specimen::emitters(Stain stain) const
{
    switch (stain) {
    case Stain::Microtubules:
        return microtubules();
    case Stain::Mitochondria:
        return mitochondria();
    case Stain::Vesicles:
        return vesicles();
    case Stain::Actin:
        return stressFibres();
    default:
        return {};
    }
}

std::vector<Emitter> Specimen::microtubules() const
{
    constexpr double photonsPerStep = 260;
    std::vector<Emitter> out;
    for (int cell = 0; cell < static_cast<int>(all.size()); ++cell) {
        Random random{seed, LabelStream, static_cast<std::uint64_t>(cell)};
        for (const Path& path : tubules[cell]) {
            double label = 1; // uneven antibody label along the tubule
            for (const auto& [at, turns] : path) {
                label += 0.25 * random.normal() - 0.15 * (label - 1);
                out.push_back({at, photonsPerStep * all[cell].staining * std::max(0.1, label), {}, cell});
            }
        }
    }
    return out;
}

// Tubes of 0.4 microns that follow pieces of microtubules outside the nucleus, denser near it.
std::vector<Emitter> Specimen::mitochondria() const
{
    constexpr int perCell = 70;
    std::vector<Emitter> out;
    for (int cell = 0; cell < static_cast<int>(all.size()); ++cell) {
        Random random{seed, MitoStream, static_cast<std::uint64_t>(cell)};
        for (int made = 0, tries = 0; made < perCell && tries < 2000; ++tries) {
            const Path& path = tubules[cell][random.below(static_cast<int>(tubules[cell].size()))];
            const double along = random.uniform();
            const int length = static_cast<int>(random.uniform(1.0, 6.5) / stepMicrons);
            const int first = static_cast<int>(along * along * static_cast<double>(path.size()));
            if (first + length > static_cast<int>(path.size()))
                continue;
            ++made;
            addMitochondrion(random, cell, path.data() + first, length, out);
        }
    }
    return out;
}

void Specimen::addMitochondrion(Random& random, int cell, const PathPoint* track, int length,
                                std::vector<Emitter>& out) const
{
    constexpr int pointsPerStep = 5;
    constexpr double photonsPerPoint = 100, tubeRadius = 0.2;
    const Nucleus& nucleus = all[cell].nucleus;
    const double phase = random.uniform(0, 1000), strength = random.uniform(0.6, 1.5);
    for (int k = 0; k < length; ++k) {
        const Vec3& at = track[k].at;
        if (inNucleus(nucleus, at.x, at.y, nucleus.centre.z).radius < 1.04)
            continue;
        const double along = k * stepMicrons;
        const double sideX = 1.2 * (valueNoise(phase + along / 0.9, 0, 0, seed) - 0.5);
        const double sideY = 1.2 * (valueNoise(phase + along / 0.9, 1, 0, seed) - 0.5);
        const double crista = 0.6 + 0.8 * valueNoise(phase, along / 0.25, 3, seed + 9);
        for (int n = 0; n < pointsPerStep; ++n) {
            const double turn = random.uniform(), r = tubeRadius * std::sqrt(random.uniform());
            const double z = at.z + random.uniform(-tubeRadius, tubeRadius);
            const Vec3 point{at.x + sideX + r * cosineOfTurns(turn), at.y + sideY + r * sineOfTurns(turn),
                             std::max(0.1, z)};
            out.push_back({point, photonsPerPoint * strength * crista, {}, cell});
        }
    }
}

// Spots below the resolution, most of them on microtubules, with a wide spread of brightness.
std::vector<Emitter> Specimen::vesicles() const
{
    constexpr int perCell = 130;
    std::vector<Emitter> out;
    for (int cell = 0; cell < static_cast<int>(all.size()); ++cell) {
        Random random{seed, VesicleStream, static_cast<std::uint64_t>(cell)};
        const Nucleus& nucleus = all[cell].nucleus;
        for (int made = 0, tries = 0; made < perCell && tries < 2000; ++tries) {
            const Path& path = tubules[cell][random.below(static_cast<int>(tubules[cell].size()))];
            if (path.empty())
                continue;
            Vec3 at = path[random.below(static_cast<int>(path.size()))].at;
            at.x += random.normal() * 0.3;
            at.y += random.normal() * 0.3;
            const bool above = at.z > nucleus.centre.z || at.z < 0.6;
            if (inNucleus(nucleus, at.x, at.y, nucleus.centre.z).radius < 1.0 && !above)
                continue;
            ++made;
            const double photons = 2600 * exponential(0.75 * random.normal());
            const Vec3 velocity{random.normal() * 0.3, random.normal() * 0.3, random.normal() * 0.05};
            const double size = random.uniform(0.02, 0.14);
            for (int n = 0; n < 5; ++n) {
                const Vec3 point{at.x + random.normal() * size, at.y + random.normal() * size, at.z};
                out.push_back({point, photons / 5, velocity, cell});
            }
        }
    }
    return out;
}

// Straight bundles close to the coverslip, nearly parallel within a cell.
std::vector<Emitter> Specimen::stressFibres() const
{
    constexpr int perCell = 34;
    std::vector<Emitter> out;
    for (int cell = 0; cell < static_cast<int>(all.size()); ++cell) {
        Random random{seed, FibreStream, static_cast<std::uint64_t>(cell)};
        const double direction = random.uniform();
        for (int i = 0; i < perCell; ++i) {
            const double turns = direction + 0.012 * random.normal(), photons = random.uniform(150, 420);
            const double c = cosineOfTurns(turns), s = sineOfTurns(turns);
            Vec3 at{all[cell].x + random.normal() * 6, all[cell].y + random.normal() * 6,
                    random.uniform(0.2, 0.5)};
            const double length = random.uniform(5, 22);
            for (int step = 0; step * stepMicrons < length; ++step) {
                const double done = step * stepMicrons;
                at.x += c * stepMicrons;
                at.y += s * stepMicrons;
                if (depthInCell(cell, at.x, at.y) < 0.1)
                    break;
                const double ends = std::min(1.0, std::min(done, length - done) / 1.5);
                out.push_back({at, photons * ends * random.uniform(0.5, 1.5), {}, cell});
            }
        }
    }
    return out;
}

} // namespace sample
