// SPDX-License-Identifier: MIT
// Compiled with -O3: the loops below must be vectorised (see CMakeLists.txt).
#include "platform/image/Convert.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>

namespace image {
namespace {

// The bits of an IEEE half as a float. Subnormal halves are scaled; infinity and NaN keep their mantissa.
float fromHalf(std::uint16_t half)
{
    const std::uint32_t sign = (half & 0x8000u) << 16, exponent = (half >> 10) & 0x1fu,
                        mantissa = half & 0x3ffu;
    if (exponent == 0) {
        const float magnitude = static_cast<float>(mantissa) * 0x1p-24f;
        return sign ? -magnitude : magnitude;
    }
    const std::uint32_t biased = exponent == 31 ? 255 : exponent + 112;
    return std::bit_cast<float>(sign | (biased << 23) | (mantissa << 13));
}

struct Half {
    std::uint16_t bits;
};

struct Triple {
    std::uint8_t bytes[3];
};

template<class T> inline float toFloat(T value)
{
    return static_cast<float>(value);
}

inline float toFloat(Half value)
{
    return fromHalf(value.bits);
}

inline float toFloat(Triple value)
{
    constexpr bool little = std::endian::native == std::endian::little;
    const unsigned low = value.bytes[little ? 0 : 2], high = value.bytes[little ? 2 : 0];
    return static_cast<float>(low | (value.bytes[1] << 8) | (high << 16));
}

template<class T> void convertSamples(const SampleSource& s, float* __restrict out, std::size_t outStride)
{
    const auto samples = static_cast<std::size_t>(s.samples), width = static_cast<std::size_t>(s.width);
    for (int row = 0; row < s.height; ++row, out += outStride) {
        const std::byte* start = s.first + static_cast<std::size_t>(s.y + row) * s.rowBytes;
        const T* __restrict in =
            reinterpret_cast<const T*>(start) + static_cast<std::size_t>(s.x) * samples + s.sample;
        if (samples == 1)
            for (std::size_t i = 0; i < width; ++i)
                out[i] = toFloat(in[i]);
        else
            for (std::size_t i = 0; i < width; ++i)
                out[i] = toFloat(in[i * samples]);
    }
}

// One sample of up to 15 bits that starts at any bit of the row.
unsigned bitsAt(const std::byte* row, std::size_t bit, int count)
{
    unsigned value = 0;
    for (int taken = 0; taken < count;) {
        const int inByte = static_cast<int>(bit % 8), take = std::min(8 - inByte, count - taken);
        const unsigned byte = std::to_integer<unsigned>(row[bit / 8]);
        value = (value << take) | ((byte >> (8 - inByte - take)) & ((1u << take) - 1));
        taken += take;
        bit += static_cast<std::size_t>(take);
    }
    return value;
}

void convertBits(const SampleSource& s, float* out, std::size_t outStride)
{
    for (int row = 0; row < s.height; ++row, out += outStride) {
        const std::byte* start = s.first + static_cast<std::size_t>(s.y + row) * s.rowBytes;
        for (int i = 0; i < s.width; ++i) {
            const std::size_t index = static_cast<std::size_t>(s.x + i) * s.samples + s.sample;
            out[i] = static_cast<float>(bitsAt(start, index * s.bits, s.bits));
        }
    }
}

struct TypeRow {
    SampleType type;
    int bytes;
    Converter converter;
};

constexpr TypeRow types[] = {
    {SampleType::Bits, 0, convertBits},
    {SampleType::U8, 1, convertSamples<std::uint8_t>},
    {SampleType::I8, 1, convertSamples<std::int8_t>},
    {SampleType::U16, 2, convertSamples<std::uint16_t>},
    {SampleType::I16, 2, convertSamples<std::int16_t>},
    {SampleType::F16, 2, convertSamples<Half>},
    {SampleType::U24, 3, convertSamples<Triple>},
    {SampleType::U32, 4, convertSamples<std::uint32_t>},
    {SampleType::I32, 4, convertSamples<std::int32_t>},
    {SampleType::F32, 4, convertSamples<float>},
    {SampleType::U64, 8, convertSamples<std::uint64_t>},
    {SampleType::I64, 8, convertSamples<std::int64_t>},
    {SampleType::F64, 8, convertSamples<double>},
};

const TypeRow& rowOf(SampleType type)
{
    return types[static_cast<std::size_t>(type)];
}

} // namespace

Converter converterOf(SampleType type)
{
    return rowOf(type).converter;
}

int bytesOf(SampleType type)
{
    return rowOf(type).bytes;
}

namespace {

template<class T> T reversed(T value)
{
    T result = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        result =
            static_cast<T>(result | static_cast<T>(((value >> (8 * i)) & 0xff) << (8 * (sizeof(T) - 1 - i))));
    return result;
}

template<class T> void swapAll(std::span<std::byte> data)
{
    T* values = reinterpret_cast<T*>(data.data());
    for (std::size_t i = 0, count = data.size() / sizeof(T); i < count; ++i)
        values[i] = reversed(values[i]);
}

} // namespace

void swapSamples(std::span<std::byte> data, SampleType type)
{
    switch (bytesOf(type)) {
    case 2:
        swapAll<std::uint16_t>(data);
        break;
    case 4:
        swapAll<std::uint32_t>(data);
        break;
    case 8:
        swapAll<std::uint64_t>(data);
        break;
    case 3:
        for (std::size_t i = 0; i + 2 < data.size(); i += 3)
            std::swap(data[i], data[i + 2]);
        break;
    default:
        break;
    }
}

void rescale(std::span<float> values, float gain, float offset)
{
    for (float& value : values)
        value = value * gain + offset;
}

bool finiteRange(std::span<const float> values, float& min, float& max)
{
    constexpr float limit = std::numeric_limits<float>::max();
    float low = limit, high = -limit;
    bool any = false;
    for (const float value : values) {
        // NaN and infinity compare false with the limits and take the neutral element.
        const bool finite = value >= -limit && value <= limit;
        low = std::min(low, finite ? value : limit);
        high = std::max(high, finite ? value : -limit);
        any |= finite;
    }
    min = low;
    max = high;
    return any;
}

} // namespace image
