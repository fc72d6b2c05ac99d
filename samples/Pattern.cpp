// SPDX-License-Identifier: MIT
#include "samples/Pattern.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace sample {

namespace {

struct RampRow {
    std::int64_t modulus;
    double factor, shift;
};

// In the order of PixelType; the help text gives the same formulas.
constexpr RampRow rampTable[] = {
    {2, 1, 0},           {256, 1, 0},        {256, 1, -128},        {65536, 1, 0},         {32768, 1, -100},
    {1 << 20, 1, 70000}, {1 << 20, 1, -100}, {1 << 20, 0.25, -100}, {1 << 20, 0.25, -100},
};

std::int64_t rampOf(std::int64_t x, std::int64_t y, const Plane& plane)
{
    return x + 11 * y + std::int64_t{101} * plane.z + std::int64_t{1009} * plane.c +
           std::int64_t{10007} * plane.t + std::int64_t{20011} * plane.p;
}

double storedCounts(double counts, PixelType type)
{
    const double eight = std::clamp(std::floor((counts - cameraOffset) / 8), 0.0, 255.0);
    switch (type) {
    case PixelType::Bit:
        return counts > 300 ? 1 : 0;
    case PixelType::UInt8:
        return eight;
    case PixelType::Int8:
        return eight - 128;
    case PixelType::Int16:
        return std::min(counts, 32767.0);
    default:
        return counts;
    }
}

template<typename T> void appendRow(std::span<const double> values, std::vector<std::byte>& out)
{
    const std::size_t at = out.size();
    out.resize(at + values.size() * sizeof(T));
    std::byte* to = out.data() + at;
    for (double value : values) {
        const T stored = static_cast<T>(value);
        std::memcpy(to, &stored, sizeof(T));
        to += sizeof(T);
    }
}

void appendBits(std::span<const double> values, std::vector<std::byte>& out)
{
    const std::size_t at = out.size();
    out.resize(at + (values.size() + 7) / 8);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i] != 0)
            out[at + i / 8] |= std::byte{0x80} >> (i % 8);
    }
}

} // namespace

Pattern::Pattern(const Options& options) : options(options), field(options.seed, options.size) {}

std::vector<double> Pattern::values(const Plane& plane)
{
    const FieldSize& size = options.size;
    std::vector<double> out(static_cast<std::size_t>(size.width) * size.height);
    if (options.pattern == PatternKind::Field) {
        Plane source = plane;
        if (options.rgb !=
            RgbStorage::None) // the colours of the first three channels are blue, green and red
            source.c = 2 - plane.c;
        field.render(source, out);
        for (double& value : out)
            value = storedCounts(value, options.pixelType);
        return out;
    }
    const RampRow& row = rampTable[static_cast<int>(options.pixelType)];
    const std::int64_t slope = options.pattern == PatternKind::Ramp ? 1 : 0;
    std::size_t i = 0;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const std::int64_t v = rampOf(slope * x, slope * y, plane) % row.modulus;
            out[i++] = static_cast<double>(v) * row.factor + row.shift;
        }
    }
    return out;
}

std::vector<double> Pattern::reduced(const std::vector<double>& full, int level) const
{
    const int step = 1 << level, width = options.size.width >> level, height = options.size.height >> level;
    const int block = options.pattern == PatternKind::Field ? step : 1;
    const bool whole = options.pixelType != PixelType::Float && options.pixelType != PixelType::Double;
    std::vector<double> out;
    out.reserve(static_cast<std::size_t>(width) * height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            double sum = 0;
            for (int dy = 0; dy < block; ++dy) {
                const double* from = full.data() +
                                     static_cast<std::size_t>(y * step + dy) * options.size.width +
                                     std::ptrdiff_t{x} * step;
                for (int dx = 0; dx < block; ++dx)
                    sum += from[dx];
            }
            const double mean = sum / (block * block);
            out.push_back(whole ? std::floor(mean + 0.5) : mean);
        }
    }
    return out;
}

void encodeRow(std::span<const double> values, PixelType type, std::vector<std::byte>& out)
{
    switch (type) {
    case PixelType::Bit:
        return appendBits(values, out);
    case PixelType::UInt8:
        return appendRow<std::uint8_t>(values, out);
    case PixelType::Int8:
        return appendRow<std::int8_t>(values, out);
    case PixelType::UInt16:
        return appendRow<std::uint16_t>(values, out);
    case PixelType::Int16:
        return appendRow<std::int16_t>(values, out);
    case PixelType::UInt32:
        return appendRow<std::uint32_t>(values, out);
    case PixelType::Int32:
        return appendRow<std::int32_t>(values, out);
    case PixelType::Float:
        return appendRow<float>(values, out);
    case PixelType::Double:
        return appendRow<double>(values, out);
    }
}

} // namespace sample
