// SPDX-License-Identifier: MIT
// Packs and unpacks the records of the protocol: little-endian integers and IEEE floats without padding,
// whatever the machine. The reader never reads beyond its bytes: the first short read makes it fail for good.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace protocol {

class ByteWriter {
public:
    void u8(std::uint8_t value) { bytes.push_back(std::byte{value}); }
    void i32(std::int32_t value) { put(static_cast<std::uint32_t>(value)); }
    void u32(std::uint32_t value) { put(value); }
    void f32(float value) { put(std::bit_cast<std::uint32_t>(value)); }
    void f64(double value) { put(std::bit_cast<std::uint64_t>(value)); }
    // Length first, then the bytes.
    void text(std::string_view value)
    {
        u32(static_cast<std::uint32_t>(value.size()));
        for (char c : value)
            u8(static_cast<std::uint8_t>(c));
    }
    std::vector<std::byte> take() { return std::move(bytes); }

private:
    template<class Unsigned> void put(Unsigned value)
    {
        for (std::size_t i = 0; i < sizeof value; ++i)
            u8(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    std::vector<std::byte> bytes;
};

class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> source) : rest(source) {}

    std::uint8_t u8() { return get<std::uint8_t>(); }
    std::int32_t i32() { return static_cast<std::int32_t>(get<std::uint32_t>()); }
    std::uint32_t u32() { return get<std::uint32_t>(); }
    float f32() { return std::bit_cast<float>(get<std::uint32_t>()); }
    double f64() { return std::bit_cast<double>(get<std::uint64_t>()); }
    // Empty, and failed, when the stored length is above the limit.
    std::string text(std::size_t limit)
    {
        const std::size_t length = u32();
        if (length > limit || !enough(length))
            return fail(), std::string();
        std::string value(reinterpret_cast<const char*>(rest.data()), length);
        rest = rest.subspan(length);
        return value;
    }
    bool enough(std::size_t count) const { return !failed && rest.size() >= count; }
    // Everything was there and nothing is left over.
    bool complete() const { return !failed && rest.empty(); }

private:
    void fail() { failed = true; }
    template<class Unsigned> Unsigned get()
    {
        if (!enough(sizeof(Unsigned)))
            return fail(), Unsigned{0};
        Unsigned value = 0;
        for (std::size_t i = 0; i < sizeof value; ++i)
            value |= static_cast<Unsigned>(static_cast<Unsigned>(rest[i]) << (8 * i));
        rest = rest.subspan(sizeof value);
        return value;
    }
    std::span<const std::byte> rest;
    bool failed = false;
};

} // namespace protocol
