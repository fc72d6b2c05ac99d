// SPDX-License-Identifier: MIT
#include "samples/Field.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace sample {

//  name           fluorophore         stain                emission, excitation, colour, exposure, bleaching,
//  autofluorescence, background
const std::array<Channel, maxChannels> channelTable{{
    {"DAPI", "DAPI", Stain::Chromatin, 461, 358, 0x2858ff, 0.05, 0.015, 4, 9},
    {"Tubulin", "Alexa Fluor 488", Stain::Microtubules, 525, 488, 0x00ff00, 0.10, 0.05, 9, 10},
    {"Mitochondria", "MitoTracker Red", Stain::Mitochondria, 599, 579, 0xff0000, 0.08, 0.08, 6, 8},
    {"Vesicles", "Alexa Fluor 680", Stain::Vesicles, 702, 679, 0xffffff, 0.20, 0.03, 3, 7},
    {"Actin", "Alexa Fluor 750", Stain::Actin, 775, 749, 0xff00ff, 0.15, 0.04, 12, 8},
    {"Cytosol", "mTurquoise2", Stain::Cytosol, 474, 434, 0x00ffff, 0.10, 0.02, 70, 9},
    {"Nucleoli", "mVenus", Stain::Nucleoli, 528, 515, 0xffff00, 0.10, 0.04, 6, 9},
    {"Transmitted", "", Stain::Transmitted, 0, 0, 0xffffff, 0.01, 0, -14, 900},
}};

namespace {

constexpr int sliceCount = 17;
constexpr double sliceMicrons = sectionMicrons / 2; // every section lies on a slice
constexpr double firstSlice = 0.1;                  // depth of slice 0 above the coverslip
constexpr int middleSlice = 5;                      // the middle section is focused here
constexpr int fieldArea = fieldPixels * fieldPixels;
constexpr std::size_t maxKeptPixels = 64u << 20;

int sliceOfSection(int section, int sizeZ)
{
    return middleSlice + 2 * section - (sizeZ - 1);
}

int wrapPixel(int i)
{
    return i & (fieldPixels - 1);
}

// A row of a field's image.
template<class Image> auto* rowOf(Image& image, int y)
{
    return image.data() + static_cast<std::ptrdiff_t>(y) * fieldPixels;
}

// Adds light at a point, shared among the eight nearest pixels of the slices.
void splat(std::vector<std::vector<float>>& slices, const Vec3& at, double photons)
{
    const double px = at.x / pixelMicrons, py = at.y / pixelMicrons;
    const double pz = std::clamp((at.z - firstSlice) / sliceMicrons, 0.0, sliceCount - 1.001);
    const double fx = std::floor(px), fy = std::floor(py), fz = std::floor(pz);
    const double tx = px - fx, ty = py - fy, tz = pz - fz;
    const int x = wrapPixel(static_cast<int>(fx)), x1 = wrapPixel(x + 1);
    const int y = wrapPixel(static_cast<int>(fy)) * fieldPixels;
    const int y1 = wrapPixel(static_cast<int>(fy) + 1) * fieldPixels;
    for (int k = 0; k < 2; ++k) {
        std::vector<float>& slice = slices[static_cast<int>(fz) + k];
        const double share = photons * (k ? tz : 1 - tz);
        slice[y + x] += static_cast<float>(share * (1 - tx) * (1 - ty));
        slice[y + x1] += static_cast<float>(share * tx * (1 - ty));
        slice[y1 + x] += static_cast<float>(share * (1 - tx) * ty);
        slice[y1 + x1] += static_cast<float>(share * tx * ty);
    }
}

std::vector<float> gaussianKernel(double sigma)
{
    const int radius = std::max(1, static_cast<int>(std::floor(3 * sigma + 0.5)));
    std::vector<float> kernel(2 * radius + 1);
    double sum = 0;
    for (int i = -radius; i <= radius; ++i)
        sum += gaussian(i, sigma);
    for (int i = -radius; i <= radius; ++i)
        kernel[i + radius] = static_cast<float>(gaussian(i, sigma) / sum);
    return kernel;
}

void blurRows(std::vector<float>& image, const std::vector<float>& kernel)
{
    const int radius = static_cast<int>(kernel.size() / 2);
    std::vector<float> padded(fieldPixels + 2 * radius), sum(fieldPixels);
    for (int y = 0; y < fieldPixels; ++y) {
        float* row = rowOf(image, y);
        for (int i = 0; i < static_cast<int>(padded.size()); ++i)
            padded[i] = row[wrapPixel(i - radius)];
        std::fill(sum.begin(), sum.end(), 0.0f);
        for (int k = 0; k < static_cast<int>(kernel.size()); ++k) {
            const float weight = kernel[k];
            const float* from = padded.data() + k;
            for (int x = 0; x < fieldPixels; ++x)
                sum[x] += weight * from[x];
        }
        std::copy(sum.begin(), sum.end(), row);
    }
}

void blurColumns(std::vector<float>& image, const std::vector<float>& kernel)
{
    const int radius = static_cast<int>(kernel.size() / 2);
    std::vector<float> out(fieldArea, 0.0f);
    for (int y = 0; y < fieldPixels; ++y) {
        float* sum = rowOf(out, y);
        for (int k = 0; k < static_cast<int>(kernel.size()); ++k) {
            const float weight = kernel[k];
            const float* from = rowOf(image, wrapPixel(y + k - radius));
            for (int x = 0; x < fieldPixels; ++x)
                sum[x] += weight * from[x];
        }
    }
    image.swap(out);
}

// Wide gaussians in several steps would cost more; variance is in pixels squared.
void blur(std::vector<float>& image, double variance)
{
    const std::vector<float> kernel = gaussianKernel(std::sqrt(variance));
    blurRows(image, kernel);
    blurColumns(image, kernel);
}

// Variance of the point spread in pixels squared, for light from `microns` above or below the focus.
double spreadVariance(double microns, double emission)
{
    const double wavelength = emission > 0 ? emission / 1000 : 0.55;
    const double focus = 0.21 * wavelength / numericalAperture, cone = 0.33 * microns;
    return (focus * focus + cone * cone) / (pixelMicrons * pixelMicrons);
}

// What the pinholes of the spinning disk pass of light from outside the focus.
double pinholeShare(double microns, double emission)
{
    const double range = 0.75 * (emission > 0 ? emission / 525 : 1);
    return 1 / (1 + (microns / range) * (microns / range));
}

// A little darker towards the corners.
double illumination(double x, double y, const FieldSize& size)
{
    const double u = (x / size.width - 0.47) * 2, v = (y / size.height - 0.52) * 2;
    return 1 - 0.09 * (u * u + v * v);
}

// Counts of a pixel that `photons` reach on average: Poisson and read noise in one draw, by the expansion of
// Cornish and Fisher to third order, which is close to exact for the ten and more photons of any pixel here.
double exposedCounts(double photons, Random& random)
{
    const double normal = random.normal();
    const double variance = photons + cameraReadNoise * cameraReadNoise;
    const double skew = photons / variance * (normal * normal - 1) / 6;
    const double counts = cameraOffset + countsPerElectron * (photons + std::sqrt(variance) * normal + skew);
    return std::clamp(std::floor(counts + 0.5), 0.0, 65535.0);
}

// Photons per micron where the nucleus may be; `cytoplasm` is the light of the cell outside it.
double nuclearLight(const Channel& channel, const Cell& cell, const InNucleus& place, double cytoplasm)
{
    constexpr double chromatinPhotons = 300, nucleolusPhotons = 420;
    const double light = cytoplasm * (0.55 + 0.45 * smoothStep(0.97, 1.03, place.radius));
    if (channel.stain == Stain::Chromatin)
        return light + chromatinPhotons * cell.staining * chromatinDensity(cell.nucleus, place);
    if (channel.stain == Stain::Nucleoli && place.radius < 1)
        return light + nucleolusPhotons * nucleolusDensity(cell.nucleus, place);
    return light;
}

} // namespace

Field::Field(std::uint64_t seed, FieldSize size)
    : seed(seed), size(size), originX(std::max(0, (fieldPixels - size.width) / 2)),
      originY(std::max(0, (fieldPixels - size.height) / 2))
{
}

const Specimen& Field::specimen(int position)
{
    if (position != specimenPosition) {
        currentSpecimen = std::make_unique<Specimen>(mixBits(seed) + static_cast<std::uint64_t>(position));
        specimenPosition = position;
    }
    return *currentSpecimen;
}

void Field::render(const Plane& plane, std::span<double> out)
{
    const std::vector<float>& clean = sections(plane.c, plane.t, plane.p)[plane.z];
    const auto key = [](int i) { return static_cast<std::uint64_t>(i); };
    Random random{seed, 77, key(plane.p), key(plane.t), key(plane.c), key(plane.z)};
    const Channel& channel = channelTable[plane.c];
    const double fading = exponential(plane.t * logarithm(1 - channel.bleaching));
    std::size_t i = 0;
    for (int y = 0; y < size.height; ++y) {
        const float* row = rowOf(clean, wrapPixel(y + originY));
        for (int x = 0; x < size.width; ++x) {
            const double light = row[wrapPixel(x + originX)] * fading + channel.background;
            out[i++] = exposedCounts(std::max(1.0, light) * illumination(x, y, size), random);
        }
    }
}

const std::vector<Field::Image>& Field::sections(int c, int t, int p)
{
    const std::array<int, 3> key{p, t, c};
    const auto found = rendered.find(key);
    if (found != rendered.end())
        return found->second;
    if ((rendered.size() + 1) * static_cast<std::size_t>(size.sizeZ) * fieldArea > maxKeptPixels)
        rendered.clear();
    return rendered[key] = renderSections(c, t, p);
}

std::vector<Field::Image> Field::renderSections(int c, int t, int p)
{
    const Slices slices = sharpSlices(channelTable[c], t, p);
    std::vector<Image> out;
    out.reserve(static_cast<std::size_t>(size.sizeZ));
    for (int z = 0; z < size.sizeZ; ++z)
        out.push_back(focus(slices, z, channelTable[c]));
    return out;
}

Field::Slices Field::sharpSlices(const Channel& channel, int t, int p)
{
    const Specimen& cells = specimen(p);
    if (footprintOf != std::array{p, t}) {
        mapCells(cells, t);
        footprintOf = {p, t};
    }
    Slices slices(sliceCount, Image(fieldArea, 0.0f));
    for (const Emitter& emitter : cells.emitters(channel.stain))
        splat(slices, cells.atTime(emitter, t), emitter.photons);
    addVolume(channel, cells, slices);
    return slices;
}

// The cell over each pixel, its height and where the pixel is in the cell as it was at time 0.
void Field::mapCells(const Specimen& specimen, int time)
{
    footprint.resize(fieldArea);
    for (int i = 0; i < fieldArea; ++i) {
        Footprint& at = footprint[i];
        const int column = i % fieldPixels, row = i / fieldPixels;
        const double x = column * pixelMicrons, y = row * pixelMicrons;
        at.cell = specimen.locate(x, y).cell;
        const Cell& cell = specimen.cells()[at.cell];
        at.x = x - time * cell.driftX;
        at.y = y - time * cell.driftY;
        at.depth = specimen.depthInCell(at.cell, at.x, at.y);
        at.height = specimen.height(at.cell, at.x, at.y, at.depth);
        at.mottle = 0.7 + 0.6 * valueNoise(at.x / 0.9, at.y / 0.9, 0, 31);
    }
}

// Light of everything that fills a volume: chromatin, nucleoli, the faint glow of the whole cell.
void Field::addVolume(const Channel& channel, const Specimen& specimen, Slices& slices) const
{
    constexpr double cortexPhotons = 110; // per micron
    for (int i = 0; i < fieldArea; ++i) {
        const Footprint& at = footprint[i];
        if (at.depth <= 0)
            continue;
        const Cell& cell = specimen.cells()[at.cell];
        const bool overNucleus = inNucleus(cell.nucleus, at.x, at.y, cell.nucleus.centre.z).radius < 1.05;
        double glow = channel.autofluorescence * at.mottle;
        if (channel.stain == Stain::Actin)
            glow += cortexPhotons * gaussian(at.depth - 0.2, 0.14);
        for (int k = 0; k < sliceCount; ++k) {
            const double z = firstSlice + k * sliceMicrons;
            double photons = glow * std::clamp((at.height - z) / sliceMicrons + 0.5, 0.0, 1.0);
            if (overNucleus)
                photons = nuclearLight(channel, cell, inNucleus(cell.nucleus, at.x, at.y, z), photons);
            slices[k][i] += static_cast<float>(photons * sliceMicrons);
        }
    }
}

// Light far from the focus is blurred together with the light that is less far, step by step towards the
// focus: gaussians compose, so each slice ends with its own spread at the price of short kernels.
Field::Image Field::focus(const Slices& slices, int section, const Channel& channel) const
{
    const int centre = sliceOfSection(section, size.sizeZ);
    const int farthest = std::max(std::abs(centre), std::abs(sliceCount - 1 - centre));
    Image sum(fieldArea, 0.0f);
    bool any = false;
    double pending = 0;
    for (int step = farthest; step >= 0; --step) {
        const double microns = step * sliceMicrons;
        const float share = static_cast<float>(pinholeShare(microns, channel.emission));
        for (int side = step ? -1 : 1; side <= 1; side += 2) {
            const int k = centre + side * step;
            if (k < 0 || k >= sliceCount)
                continue;
            for (int i = 0; i < fieldArea; ++i)
                sum[i] += share * slices[k][i];
            any = true;
        }
        const double nearer = step > 0 ? spreadVariance(microns - sliceMicrons, channel.emission) : 0;
        pending = any ? pending + spreadVariance(microns, channel.emission) - nearer : 0;
        const bool more = centre - step + 1 < sliceCount && centre + step - 1 >= 0;
        if (any && (more || step == 0)) {
            blur(sum, pending);
            pending = 0;
        }
    }
    return sum;
}

// The sum over the channels of the logarithm of the brightest pixel.
double Field::brightness(const PixelLine& line, int channels)
{
    const int steps = std::max({1, std::abs(line.x1 - line.x0), std::abs(line.y1 - line.y0)});
    double sum = 0;
    for (int c = 0; c < channels; ++c) {
        const Image& image = sections(c, 0, 0)[size.sizeZ / 2];
        float peak = 1;
        for (int i = 0; i <= steps; ++i) {
            const int x = line.x0 + (line.x1 - line.x0) * i / steps + originX;
            const int y = line.y0 + (line.y1 - line.y0) * i / steps + originY;
            peak = std::max(peak, rowOf(image, wrapPixel(y))[wrapPixel(x)]);
        }
        sum += logarithm(peak);
    }
    return sum;
}

PixelLine Field::brightLine(int channels)
{
    constexpr int shift = 16, step = 2; // of the end points, in pixels
    const PixelLine middle = lineAcrossNuclei();
    PixelLine best = middle;
    double brightest = 0;
    for (int dy0 = -shift; dy0 <= shift; dy0 += step) {
        for (int dy1 = -shift; dy1 <= shift; dy1 += step) {
            PixelLine line = middle;
            line.y0 = std::clamp(line.y0 + dy0, 0, size.height - 1);
            line.y1 = std::clamp(line.y1 + dy1, 0, size.height - 1);
            const double value = brightness(line, channels);
            if (value > brightest) {
                brightest = value;
                best = line;
            }
        }
    }
    return best;
}

// The pair of nuclei whose middle is nearest to that of the image.
PixelLine Field::lineAcrossNuclei()
{
    constexpr double beyond = 9; // microns past both centres, so that the line ends outside the nuclei
    constexpr int margin = 8;
    PixelLine best{size.width / 8, size.height / 8, size.width * 7 / 8, size.height * 7 / 8};
    double nearest = 1e9; // of the line's middle to the image's
    const auto pixel = [](double microns, int origin) {
        return static_cast<int>(std::floor(microns / pixelMicrons + 0.5)) - origin;
    };
    const auto inside = [this](int x, int y) {
        return x >= margin && y >= margin && x < size.width - margin && y < size.height - margin;
    };
    for (const Cell& a : specimen(0).cells()) {
        for (const Cell& b : specimen(0).cells()) {
            const Vec3 &from = a.nucleus.centre, &to = b.nucleus.centre;
            const double dx = to.x - from.x, dy = to.y - from.y, length = std::sqrt(dx * dx + dy * dy);
            if (dx <= 0 || length < 12 || length > 30)
                continue;
            const double ux = dx / length * beyond, uy = dy / length * beyond;
            const PixelLine line{pixel(from.x - ux, originX), pixel(from.y - uy, originY),
                                 pixel(to.x + ux, originX), pixel(to.y + uy, originY)};
            const double offX = (line.x0 + line.x1 - size.width) / 2.0;
            const double offY = (line.y0 + line.y1 - size.height) / 2.0;
            const double distance = std::sqrt(offX * offX + offY * offY);
            if (inside(line.x0, line.y0) && inside(line.x1, line.y1) && distance < nearest) {
                nearest = distance;
                best = line;
            }
        }
    }
    return best;
}

} // namespace sample
