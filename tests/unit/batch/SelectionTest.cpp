// SPDX-License-Identifier: MIT
// Selections of ImageJ, made here byte by byte, alone and in archives: whole, cut off, and meant to do harm.
#include "batch/lines/LineFile.h"
#include "tests/Rows.h"
#include "tests/unit/image/TempFolder.h"

#include <gtest/gtest.h>
#include <minizip/zip.h>

#include <bit>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace batch;

class RoiMaker {
public:
    explicit RoiMaker(int type) : bytes(64, '\0')
    {
        bytes.replace(0, 4, "Iout");
        put(4, 228, 2);
        put(6, static_cast<std::uint32_t>(type), 1);
    }
    RoiMaker& put(std::size_t at, std::uint32_t value, std::size_t size)
    {
        if (bytes.size() < at + size)
            bytes.resize(at + size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[at + i] = static_cast<char>(value >> 8 * (size - 1 - i));
        return *this;
    }
    RoiMaker& real(std::size_t at, float value) { return put(at, std::bit_cast<std::uint32_t>(value), 4); }
    // Second header behind what is there.
    RoiMaker& second(int z, int t, const std::string& name)
    {
        const std::size_t at = bytes.size();
        put(60, static_cast<std::uint32_t>(at), 4);
        put(at + 8, static_cast<std::uint32_t>(z), 4).put(at + 12, static_cast<std::uint32_t>(t), 4);
        put(at + 16, static_cast<std::uint32_t>(at + 64), 4);
        put(at + 20, static_cast<std::uint32_t>(name.size()), 4);
        for (std::size_t i = 0; i < name.size(); ++i)
            put(at + 64 + 2 * i, static_cast<unsigned char>(name[i]), 2);
        return *this;
    }
    std::string bytes;
};

std::string straight()
{
    return RoiMaker(3)
        .real(18, 1.5f)
        .real(22, 2)
        .real(26, 30.25f)
        .real(30, 40)
        .put(34, 6, 2)
        .second(2, 3, "axon")
        .bytes;
}

// Three points from (10, 20): whole, and with halves as the exact ones.
std::string polyline(bool exact)
{
    RoiMaker roi(5);
    roi.put(8, 20, 2).put(10, 10, 2).put(16, 3, 2).put(50, exact ? 128 : 0, 2);
    for (std::size_t i = 0; i < 3; ++i)
        roi.put(64 + 2 * i, static_cast<std::uint32_t>(5 * i), 2)
            .put(70 + 2 * i, static_cast<std::uint32_t>(i), 2);
    for (std::size_t i = 0; exact && i < 3; ++i)
        roi.real(76 + 4 * i, 10.5f + 5 * static_cast<float>(i))
            .real(88 + 4 * i, 20.5f + static_cast<float>(i));
    return roi.bytes;
}

LineList readBytesAsLines(const std::string& bytes, const std::string& name = "a.roi")
{
    const TempFolder folder;
    writeBytes(folder / name, bytes);
    LineList list;
    readLineFile(folder / name, list);
    return list;
}

TEST(Selection, givesLineSectionNameAndStroke)
{
    const LineList list = readBytesAsLines(straight());
    ASSERT_EQ(list.lines.size(), 1U);
    const Line& line = list.lines[0];
    EXPECT_EQ(line.name, "axon");
    EXPECT_EQ(list.points, (std::vector<Point>{{1.5, 2}, {30.25, 40}}));
    EXPECT_EQ(line.section, (SectionChoice{2, 3, 0}));
    EXPECT_EQ(line.width, 6);
}

TEST(Selection, givesPolylinesWholeAndExact)
{
    EXPECT_EQ(readBytesAsLines(polyline(false)).points, (std::vector<Point>{{10, 20}, {15, 21}, {20, 22}}));
    EXPECT_EQ(readBytesAsLines(polyline(true)).points,
              (std::vector<Point>{{10.5, 20.5}, {15.5, 21.5}, {20.5, 22.5}}));
}

TEST(Selection, thatIsCutOffAnywhereIsOneProblem)
{
    for (const std::string& whole : {straight(), polyline(true)})
        for (std::size_t size = 4; size < whole.size(); ++size) {
            const LineList list = readBytesAsLines(whole.substr(0, size));
            ASSERT_EQ(list.lines.size() + list.problems.size(), 1U) << size << " bytes";
            EXPECT_TRUE(size >= 64 || !list.problems.empty()) << size << " bytes";
        }
}

TEST(Selection, thatClaimsTooMuchIsAProblem)
{
    EXPECT_EQ(readBytesAsLines(RoiMaker(1).bytes).problems.size(), 1U) << "a rectangle";
    EXPECT_EQ(readBytesAsLines(RoiMaker(5).put(16, 65535, 2).bytes).problems.size(), 1U) << "many points";
    EXPECT_EQ(readBytesAsLines(RoiMaker(3).put(60, 0xffffffff, 4).bytes).problems.size(), 1U) << "far header";
    EXPECT_EQ(readBytesAsLines(RoiMaker(3).real(18, NAN).bytes).problems.size(), 1U) << "no number";
}

struct Packed {
    std::string name, bytes;
};

std::string archiveOf(const std::vector<Packed>& files)
{
    const TempFolder folder;
    const std::string path = folder / "set.zip";
    zipFile zip = zipOpen(path.c_str(), APPEND_STATUS_CREATE);
    for (const Packed& file : files) {
        zipOpenNewFileInZip(zip, file.name.c_str(), nullptr, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED, 9);
        zipWriteInFileInZip(zip, file.bytes.data(), static_cast<unsigned>(file.bytes.size()));
        zipCloseFileInZip(zip);
    }
    zipClose(zip, nullptr);
    return readBytes(path);
}

TEST(SelectionSet, givesItsLinesInOrder)
{
    const LineList list = readBytesAsLines(
        archiveOf({{"b.roi", straight()}, {"readme.txt", "x"}, {"a.roi", polyline(false)}}), "set.zip");
    ASSERT_EQ(list.lines.size(), 2U);
    EXPECT_EQ(list.lines[0].name, "axon");
    EXPECT_EQ(list.lines[1].name, "a");
    EXPECT_TRUE(list.problems.empty());
}

TEST(SelectionSet, unpacksNoBomb)
{
    const std::string bomb(std::size_t{40} << 20, '\0');
    const LineList list = readBytesAsLines(archiveOf({{"bomb.roi", bomb}, {"b.roi", straight()}}), "set.zip");
    EXPECT_EQ(list.lines.size(), 1U);
    ASSERT_EQ(list.problems.size(), 1U);
    EXPECT_EQ(list.problems[0].line, "bomb.roi");
}

TEST(SelectionSet, thatIsDamagedAnywhereDoesNoHarm)
{
    const std::string whole = archiveOf({{"b.roi", straight()}, {"a.roi", polyline(true)}});
    for (std::size_t at = 4; at < whole.size(); ++at) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(~damaged[at]);
        for (const std::string& bytes : {damaged, whole.substr(0, at)}) {
            try {
                const LineList list = readBytesAsLines(bytes, "set.zip");
                EXPECT_LE(list.lines.size(), 2U);
            } catch (const LineFileError& error) {
                EXPECT_NE(std::string(error.what()).find("set.zip"), std::string::npos);
            }
        }
    }
}

} // namespace
