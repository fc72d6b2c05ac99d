// SPDX-License-Identifier: MIT
// What makesample was asked for: parsed and checked here, read by everything else.
#pragma once

#include "samples/Field.h"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace sample {

enum class PixelType { Bit, UInt8, Int8, UInt16, Int16, UInt32, Int32, Float, Double };
enum class PatternKind { Field, Ramp, Planes };
enum class Flavor { Ome, ImageJ, Plain };
enum class Split { None, Channel, Z, Time, Position, Count };
enum class RgbStorage { None, Interleaved, Planar };

struct Named {
    const char* name;
    double factor;      // how many of the unit make one micron (length) or one second (time)
    const char* symbol; // as OME writes it
};

struct Compression {
    const char* name;
    int scheme;          // libtiff's COMPRESSION_
    bool predictor;      // takes horizontal or floating-point differencing
    const char* refuses; // why a pixel type is refused, for types outside `only`
    int only;            // 0 any, 1 one bit, 8 eight bits unsigned
};

struct Options {
    std::string output;
    FieldSize size{fieldPixels, fieldPixels, 5};
    int channels = 4, times = 3, positions = 1;
    PatternKind pattern = PatternKind::Field;
    std::uint64_t seed = 10;
    PixelType pixelType = PixelType::UInt16;
    Flavor flavor = Flavor::Ome;
    RgbStorage rgb = RgbStorage::None;
    std::string order = "XYCZT";

    bool bigEndian = false, bigTiff = false;
    const Compression* compression = nullptr;
    bool noPredictor = false;
    int rowsPerStrip = 0; // 0: about 64 kB per strip
    int tile = 0;         // 0: strips
    int pyramidLevels = 0;

    Split split = Split::None;
    int files = 1; // with Split::Count
    bool companion = false;

    // Metadata that is left out.
    bool noCalibration = false, noWavelengths = false, noNames = false, noColors = false, noDate = false,
         noOffset = false, noTimes = false, noExposure = false, noStage = false, noPlanes = false,
         noTiffData = false;
    const Named* lengthUnit = nullptr;
    const Named* timeUnit = nullptr;
    bool describe = false;

    int samplesPerPixel() const { return rgb == RgbStorage::None ? 1 : 3; }
    int pagesPerSection() const { return channels / samplesPerPixel(); } // channels that have their own page
};

// The program and its version, as --version prints it and files name who wrote them.
extern const char* const programVersion;

// A wrong or impossible option: one sentence for the user.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Parses the command line. Returns false when all is said (--help, --version); throws UsageError.
bool parseOptions(int argc, char** argv, Options& options);

int bitsOf(PixelType type);
const char* omeNameOf(PixelType type);

} // namespace sample
