// SPDX-License-Identifier: MIT
// What opening a file finds out: the image's description and which page of which file holds a section. Made
// once by one of the formats (OME, ImageJ, plain pages), read-only afterwards.
#pragma once

#include "platform/image/Colors.h"
#include "platform/image/FileSet.h"
#include "platform/image/ImageFile.h"
#include "platform/image/PlaneMap.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace image {

// A plane: all wavelengths that a page holds (three for RGB, otherwise one).
struct PlaneIndex {
    int z = 0, channel = 0, t = 0, p = 0;
};

// What is known of one plane: DeltaT in seconds, stage x, y, z in microns.
struct PlaneValues {
    std::uint32_t key = 0; // Dataset::key
    std::optional<double> deltaT;
    std::array<std::optional<double>, 3> position;
};

// Dimensions as their planes are stored, the fastest first: a permutation of Z, C and T.
using DimensionOrder = std::array<char, 3>;

// What is known of all planes of a position.
struct PositionValues {
    DimensionOrder order = {'C', 'Z', 'T'};
    std::optional<double> timeIncrement;     // seconds from a time point to the next
    std::vector<std::optional<double>> bias; // of each wavelength, or of each channel; may be shorter
};

struct Dataset {
    ImageInfo info;
    std::shared_ptr<FileSet> files;
    int samplesPerPlane = 1; // wavelength w is sample w % samplesPerPlane of channel w / samplesPerPlane
    std::optional<SampleType> declaredType; // what the metadata claims
    float valueOffset = 0;                  // added to every stored value
    PlaneMap places;                        // by key
    std::vector<PlaneValues> values;        // sorted by key, which no two share
    std::vector<PositionValues> positions;  // sizeP entries, or none

    int channels() const { return info.sizeW / samplesPerPlane; }
    std::uint32_t planesPerPosition() const;
    std::uint32_t key(const PlaneIndex& index) const; // numbers the planes in the order of the position
    PlaneIndex planeIndex(const SectionIndex& section) const;
    std::optional<double> time(const SectionIndex& section) const; // seconds
    std::optional<double> bias(const SectionIndex& section) const; // gray values
    const PlaneValues* valuesOf(const SectionIndex& section) const;
};

// Sets the sizes of the fourth to seventh dimension; throws FormatError when they are beyond any real image.
void setSizes(Dataset& dataset, std::int64_t z, std::int64_t wavelengths, std::int64_t t, std::int64_t p);

// Sets width, height and pixel type from a plane of the file.
void setGeometry(Dataset& dataset, const Plane& plane);

// Sets the pixel spacing and what is calibrated: where only one of x and y is given it counts for
// both; without either, z is not calibrated.
void setSpacing(ImageInfo& info, const std::array<std::optional<double>, 3>& microns);

// Whether the samples of a pixel are red, green and blue.
bool isRgb(const Plane& plane);

// The brightest colour of a page with a colour table: the values are the table's indices.
std::optional<Rgb> paletteColor(const Directory& directory);

// "1 page", "2 pages".
std::string counted(std::uint64_t count, const std::string& thing);

// Makes the list of wavelengths: names red, green and blue samples and colours all of them. hints has sizeW
// entries; channelNames has one for each channel or is empty.
void setWavelengths(Dataset& dataset, const Plane& plane, std::span<ColorHint> hints,
                    std::span<const std::string> channelNames = {});

// A file that is being opened. tiff is null for a metadata file that is no TIFF.
struct OpenedFile {
    std::filesystem::path path;
    std::shared_ptr<TiffFile> tiff;
    std::string description;
    std::vector<std::string> remarks = {}; // what of the file cannot be read
};

OpenedFile openForReading(const std::filesystem::path& path);

// The formats. Each throws FormatError.
Dataset readOmeDataset(OpenedFile opened);
Dataset readImageJDataset(OpenedFile opened);
Dataset readPlainDataset(OpenedFile opened);

} // namespace image
