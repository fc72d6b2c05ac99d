// SPDX-License-Identifier: MIT
#include "platform/protocol/DisplayRecord.h"

#include "platform/base/Limits.h"

#include "platform/protocol/ByteStream.h"

#include <climits>
#include <cmath>

namespace protocol {
namespace {

constexpr std::uint32_t version = 2;
constexpr std::size_t wavelengthBytes = 16;
constexpr int maxExtent = 1 << 30; // sections or pixels along one axis
constexpr int maxPanels = 10000;
constexpr int maxWindowPixels = 65535;
constexpr double minZoom = 1e-6, maxZoom = 1e6;
constexpr double maxOrigin = 1e10;
constexpr double minSpacing = 1e-12, maxSpacing = 1e12; // microns: squares of lengths stay floats

bool within(double value, double low, double high)
{
    return value >= low && value <= high;
}

bool validRange(const WavelengthDisplay& wavelength)
{
    return std::isfinite(wavelength.rangeMin) && std::isfinite(wavelength.rangeMax) &&
           wavelength.rangeMin <= wavelength.rangeMax;
}

void putSpacing(ByteWriter& out, const std::optional<Spacing>& spacing)
{
    out.u32(spacing.has_value());
    for (const float value : spacing.value_or(Spacing{}))
        out.f32(value);
}

// Reads a spacing that may be absent; returns false when the bytes hold neither a spacing nor its absence.
bool getSpacing(ByteReader& in, std::optional<Spacing>& spacing)
{
    const std::uint32_t set = in.u32();
    Spacing values{};
    bool plausible = set <= 1;
    for (float& value : values) {
        value = in.f32();
        plausible = plausible && (set ? within(value, minSpacing, maxSpacing) : value == 0);
    }
    if (set)
        spacing = values;
    return plausible;
}

void putGeometry(ByteWriter& out, const Geometry& geometry)
{
    out.i32(geometry.imageWidth);
    out.i32(geometry.imageHeight);
    out.f64(geometry.zoom);
    out.f64(geometry.originX);
    out.f64(geometry.originY);
    for (int value : {geometry.style, geometry.columns, geometry.rows, geometry.panelCount,
                      geometry.panelWidth, geometry.panelHeight, geometry.gap})
        out.i32(value);
}

Geometry getGeometry(ByteReader& in)
{
    Geometry geometry;
    geometry.imageWidth = in.i32();
    geometry.imageHeight = in.i32();
    geometry.zoom = in.f64();
    geometry.originX = in.f64();
    geometry.originY = in.f64();
    for (int* value : {&geometry.style, &geometry.columns, &geometry.rows, &geometry.panelCount,
                       &geometry.panelWidth, &geometry.panelHeight, &geometry.gap})
        *value = in.i32();
    return geometry;
}

// A range that says nothing (not a number, infinite, reversed) travels as unknown.
void putWavelength(ByteWriter& out, const WavelengthDisplay& wavelength)
{
    const bool known = wavelength.rangeKnown && validRange(wavelength);
    out.u8(wavelength.displayed);
    out.u8(known);
    out.u8(static_cast<std::uint8_t>(wavelength.colorIndex));
    out.u8(0);
    out.f32(known ? wavelength.rangeMin : 0);
    out.f32(known ? wavelength.rangeMax : 0);
    out.i32(wavelength.topImage);
}

std::optional<WavelengthDisplay> getWavelength(ByteReader& in)
{
    WavelengthDisplay wavelength;
    const int displayed = in.u8(), known = in.u8();
    wavelength.displayed = displayed != 0;
    wavelength.rangeKnown = known != 0;
    wavelength.colorIndex = in.u8();
    const int reserved = in.u8();
    wavelength.rangeMin = in.f32();
    wavelength.rangeMax = in.f32();
    wavelength.topImage = in.i32();
    if (!wavelength.rangeKnown)
        wavelength.rangeMin = wavelength.rangeMax = 0;
    const bool good = displayed <= 1 && known <= 1 && reserved == 0 && wavelength.colorIndex <= 6 &&
                      validRange(wavelength) && within(wavelength.topImage, 0, maxExtent);
    return good ? std::optional(wavelength) : std::nullopt;
}

bool validPanels(const Geometry& geometry)
{
    if (!within(geometry.columns, 1, maxPanels) || !within(geometry.rows, 1, maxPanels))
        return false;
    const int places = geometry.columns * geometry.rows;
    return places <= maxPanels && within(geometry.panelCount, 1, places) &&
           within(geometry.style, SinglePanel, TimePanels) && (geometry.style != SinglePanel || places == 1);
}

bool valid(const Geometry& geometry)
{
    return within(geometry.imageWidth, 1, maxExtent) && within(geometry.imageHeight, 1, maxExtent) &&
           within(geometry.zoom, minZoom, maxZoom) && within(geometry.originX, -maxOrigin, maxOrigin) &&
           within(geometry.originY, -maxOrigin, maxOrigin) && validPanels(geometry) &&
           within(geometry.panelWidth, 0, maxWindowPixels) &&
           within(geometry.panelHeight, 0, maxWindowPixels) && within(geometry.gap, 0, maxWindowPixels);
}

bool valid(const DisplayRecord& record)
{
    for (int index : {record.z, record.w, record.t, record.p, record.scratchSize, record.fileVersion})
        if (!within(index, 0, maxExtent))
            return false;
    const bool path =
        !record.path.empty() && record.path[0] == '/' && record.path.find('\0') == std::string::npos;
    return within(record.windowNumber, 1, maxWindowNumber) && path && valid(record.geometry) &&
           static_cast<std::size_t>(record.w) < record.wavelengths.size();
}

} // namespace

std::vector<std::byte> encodeDisplay(const DisplayRecord& record)
{
    ByteWriter out;
    out.u32(version);
    for (int value : {record.windowNumber, record.z, record.w, record.t, record.p, record.scratchSize,
                      record.fileVersion})
        out.i32(value);
    putSpacing(out, record.spacing);
    putGeometry(out, record.geometry);
    out.text(record.path);
    out.u32(static_cast<std::uint32_t>(record.wavelengths.size()));
    for (const WavelengthDisplay& wavelength : record.wavelengths)
        putWavelength(out, wavelength);
    return out.take();
}

std::optional<DisplayRecord> decodeDisplay(std::span<const std::byte> bytes)
{
    ByteReader in(bytes);
    if (in.u32() != version)
        return std::nullopt;
    DisplayRecord record;
    for (int* value : {&record.windowNumber, &record.z, &record.w, &record.t, &record.p, &record.scratchSize,
                       &record.fileVersion})
        *value = in.i32();
    if (!getSpacing(in, record.spacing))
        return std::nullopt;
    record.geometry = getGeometry(in);
    record.path = in.text(PATH_MAX);
    const std::size_t count = in.u32();
    if (count > base::maxWavelengths || !in.enough(count * wavelengthBytes))
        return std::nullopt;
    record.wavelengths.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto wavelength = getWavelength(in);
        if (!wavelength)
            return std::nullopt;
        record.wavelengths.push_back(*wavelength);
    }
    return in.complete() && valid(record) ? std::optional(record) : std::nullopt;
}

} // namespace protocol
