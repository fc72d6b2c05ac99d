// SPDX-License-Identifier: MIT
// OME-XML as the readers use it: the dimensions, where the planes are, and what is known of each channel and
// plane. Schemas of 2008 to 2016 and any namespace prefix. Values are already in microns, seconds and
// nanometres; what the document does not tell, or tells in units that are no length or time, is absent.
#pragma once

#include "platform/image/Colors.h"
#include "platform/image/TiffStructure.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace image {

struct OmeChannel {
    std::string name;
    int samples = 0; // SamplesPerPixel, 0 when not given
    ColorHint hint;
    std::optional<double> detectorOffset; // gray values
};

// A file as TiffData name it; both empty: the file itself.
struct OmeFile {
    std::string name, uuid;
    friend auto operator<=>(const OmeFile&, const OmeFile&) = default;
};

// Numbers beyond any image are kept at the ends of their type, which every check refuses.
struct OmeTiffData {
    std::optional<std::int32_t> page, planeCount;
    std::int32_t firstZ = 0, firstC = 0, firstT = 0;
    std::uint32_t file = 0; // of OmeDocument::files
};

struct OmePlane {
    std::int32_t z = 0, c = 0, t = 0;
    std::optional<double> deltaT;                  // seconds
    std::array<std::optional<double>, 3> position; // stage x, y, z in microns
};

struct OmeImage {
    std::int64_t sizeX = 0, sizeY = 0, sizeZ = 0, sizeC = 0, sizeT = 0;
    std::string dimensionOrder; // a permutation of XYZCT that begins with XY
    std::optional<SampleType> type;
    std::array<std::optional<double>, 3> spacing; // microns
    std::vector<OmeChannel> channels;
    std::vector<OmeTiffData> tiffData;
    std::vector<OmePlane> planes;        // that have a value
    std::optional<double> timeIncrement; // seconds
};

struct OmeDocument {
    std::string uuid;
    std::string metadataFile; // BinaryOnly: where the metadata is; nothing else is set then
    std::vector<OmeImage> images;
    std::vector<OmeFile> files; // that TiffData name
};

// Whether the text looks like OME-XML.
bool isOmeXml(std::string_view text);

// Throws FormatError when it is not well formed or has no usable image.
OmeDocument parseOme(std::string text);

// The root element's UUID without parsing the rest; empty when there is none.
std::string omeUuid(std::string_view text);

} // namespace image
