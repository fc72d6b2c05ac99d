// SPDX-License-Identifier: MIT
// Line selections as ImageJ saves them: 64 bytes of header, big-endian, then coordinates; names and the
// section stand in a second header. A set of them is a ZIP archive.
#include "batch/lines/LineFile.h"
#include "batch/lines/ZipArchive.h"

#include <bit>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

namespace {

enum RoiType { Straight = 3, FreeLine = 4, Polyline = 5, Angle = 9 };
// Offsets in the first header, in bytes.
enum : std::size_t {
    VersionAt = 4,
    TypeAt = 6,
    TopAt = 8,
    LeftAt = 10,
    CountAt = 16,
    EndsAt = 18, // x1, y1, x2, y2
    StrokeAt = 34,
    OptionsAt = 50,
    SecondAt = 60,
    HeaderSize = 64
};
// Offsets in the second one.
enum : std::size_t { ZAt = 8, TimeAt = 12, NameAt = 16, NameLengthAt = 20, FloatStrokeAt = 36 };
constexpr int subPixels = 128, subPixelVersion = 222; // of the options, and since when

// Reads numbers; what lies beyond the end is a cut file.
class RoiBytes {
public:
    explicit RoiBytes(std::string_view bytes) : bytes(bytes) {}

    std::uint64_t number(std::size_t at, std::size_t size) const
    {
        if (at > bytes.size() || bytes.size() - at < size)
            throw std::runtime_error("The selection is cut off.");
        std::uint64_t value = 0;
        for (const char c : bytes.substr(at, size))
            value = value << 8 | static_cast<unsigned char>(c);
        return value;
    }
    int word(std::size_t at) const { return static_cast<std::int16_t>(number(at, 2)); }
    std::uint32_t offset(std::size_t at) const { return static_cast<std::uint32_t>(number(at, 4)); }
    double real(std::size_t at) const { return double{std::bit_cast<float>(offset(at))}; }
    bool reaches(std::size_t end) const { return end <= bytes.size(); }

private:
    std::string_view bytes;
};

std::vector<Point> pointsOf(const RoiBytes& roi, int type)
{
    if (type == Straight)
        return {{roi.real(EndsAt), roi.real(EndsAt + 4)}, {roi.real(EndsAt + 8), roi.real(EndsAt + 12)}};
    const auto count = static_cast<std::size_t>(roi.number(CountAt, 2));
    const bool exact = (roi.word(OptionsAt) & subPixels) != 0 && roi.word(VersionAt) >= subPixelVersion;
    const std::size_t reals = HeaderSize + 4 * count; // behind the whole coordinates
    std::vector<Point> points;
    for (std::size_t i = 0; i < count; ++i) {
        if (exact)
            points.push_back({roi.real(reals + 4 * i), roi.real(reals + 4 * (count + i))});
        else
            points.push_back({static_cast<double>(roi.word(LeftAt) + roi.word(HeaderSize + 2 * i)),
                              static_cast<double>(roi.word(TopAt) + roi.word(HeaderSize + 2 * (count + i)))});
    }
    return points;
}

// From UTF-16, of which everything beyond the first 65536 characters becomes question marks.
std::string nameIn(const RoiBytes& roi, std::size_t at, std::size_t length)
{
    std::string name;
    for (std::size_t i = 0; i < length; ++i) {
        const auto c = static_cast<unsigned>(roi.number(at + 2 * i, 2));
        if (c < 0x80) {
            name += static_cast<char>(c);
        } else if (c >= 0xd800 && c < 0xe000) {
            name += '?';
        } else if (c < 0x800) {
            name += static_cast<char>(0xc0 | c >> 6);
            name += static_cast<char>(0x80 | (c & 0x3f));
        } else {
            name += static_cast<char>(0xe0 | c >> 12);
            name += static_cast<char>(0x80 | (c >> 6 & 0x3f));
            name += static_cast<char>(0x80 | (c & 0x3f));
        }
    }
    return name;
}

void readSecondHeader(const RoiBytes& roi, Line& line)
{
    constexpr std::uint32_t maxName = 4096; // characters
    const std::size_t second = roi.offset(SecondAt);
    if (second == 0)
        return;
    line.section.z = static_cast<int>(roi.offset(second + ZAt));
    line.section.t = static_cast<int>(roi.offset(second + TimeAt));
    const std::uint32_t length = roi.offset(second + NameLengthAt);
    if (length > 0 && length <= maxName && roi.offset(second + NameAt) > 0)
        line.name = nameIn(roi, roi.offset(second + NameAt), length);
    const std::size_t stroke = second + FloatStrokeAt;
    if (roi.reaches(stroke + 4) && roi.real(stroke) > 0)
        line.width = static_cast<float>(roi.real(stroke));
}

void addRoi(std::string_view bytes, const std::string& source, LineList& list)
{
    Line line;
    line.name = source.ends_with(".roi") ? source.substr(0, source.size() - 4) : source;
    try {
        const RoiBytes roi(bytes);
        if (!bytes.starts_with("Iout"))
            throw std::runtime_error("It is no selection.");
        const auto type = static_cast<int>(roi.number(TypeAt, 1));
        if (type != Straight && type != FreeLine && type != Polyline && type != Angle)
            throw std::runtime_error("The selection is no line.");
        roi.number(HeaderSize - 1, 1);
        line.width = static_cast<float>(std::max(0, roi.word(StrokeAt)));
        readSecondHeader(roi, line);
        list.add(line, pointsOf(roi, type));
    } catch (const std::runtime_error& error) {
        list.problems.push_back({line.name, error.what()});
    }
}

} // namespace

void readRoiLines(std::string_view text, const std::string& source, LineList& list)
{
    addRoi(text, source, list);
}

void readRoiSet(std::string_view text, const std::string&, LineList& list)
{
    constexpr std::size_t maxRoiBytes = std::size_t{16} << 20;
    forEachZipEntry(text, maxRoiBytes, [&](const ZipEntry& entry) {
        if (!entry.problem.empty())
            list.problems.push_back({entry.name, entry.problem});
        else if (entry.name.ends_with(".roi"))
            addRoi(entry.bytes, entry.name, list);
    });
}

} // namespace batch
