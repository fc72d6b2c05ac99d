// What opening a file finds out: the image's description and which page of which file holds a section. Made
// once by one of the formats (OME, ImageJ, plain pages), read-only afterwards.
#pragma once

#include "platform/image/Colors.h"
#include "platform/image/FileSet.h"
#include "platform/image/ImageFile.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace image {

// A plane: all wavelengths that a page holds (three for RGB, otherwise one).
struct PlaneIndex {
    int z = 0, channel = 0, t = 0, p = 0;
};

// Where a plane is stored.
struct PlanePlace {
    std::uint32_t file = 0; // of Dataset::files
    std::uint32_t page = 0;
    std::uint64_t firstByteShift = 0; // of planes that lie one behind the other after a single page
};

// What is known of one plane: DeltaT in seconds, stage x, y, z in microns.
struct PlaneValues {
    std::optional<double> deltaT;
    std::array<std::optional<double>, 3> position;
};

struct Dataset {
    ImageInfo info;
    std::shared_ptr<FileSet> files;
    int samplesPerPlane = 1; // wavelength w is sample w % samplesPerPlane of channel w / samplesPerPlane
    std::optional<SampleType> declaredType; // what the metadata claims
    float valueOffset = 0;                  // added to every stored value
    std::unordered_map<std::uint32_t, PlanePlace> places;
    std::unordered_map<std::uint32_t, PlaneValues> values;
    std::vector<std::optional<double>> bias; // of wavelength w at position p: [p * sizeW + w]; may be empty

    int channels() const { return info.sizeW / samplesPerPlane; }
    std::uint32_t key(const PlaneIndex& index) const;
    PlaneIndex planeIndex(const SectionIndex& section) const;
};

// Sets the sizes of the fourth to seventh dimension; throws FormatError when they are beyond any real image.
void setSizes(Dataset& dataset, std::int64_t z, std::int64_t wavelengths, std::int64_t t, std::int64_t p);

// Sets width, height and pixel type from a plane of the file.
void setGeometry(Dataset& dataset, const Plane& plane);

// Sets the pixel spacing and what is calibrated: x and y take each other's where one is not to be had; without
// both, z is none either.
void setSpacing(ImageInfo& info, const std::array<std::optional<double>, 3>& microns);

// Whether the samples of a pixel are red, green and blue.
bool isRgb(const Plane& plane);

// The brightest colour of a page with a colour table: the values are the table's indices.
std::optional<Rgb> paletteColor(const Directory& directory);

// Makes the list of wavelengths: names red, green and blue samples and colours all of them. hints has sizeW
// entries; channelNames has one for each channel or is empty.
void setWavelengths(Dataset& dataset, const Plane& plane, std::span<ColorHint> hints,
                    std::span<const std::string> channelNames = {});

// A file that is being opened. tiff is null for a metadata file that is no TIFF.
struct OpenedFile {
    std::filesystem::path path;
    std::shared_ptr<TiffFile> tiff;
    std::string description;
};

OpenedFile openForReading(const std::filesystem::path& path);

// The formats. Each throws FormatError.
Dataset readOmeDataset(const OpenedFile& opened);
Dataset readImageJDataset(const OpenedFile& opened);
Dataset readPlainDataset(const OpenedFile& opened);

} // namespace image
