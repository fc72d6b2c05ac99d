// SPDX-License-Identifier: MIT
// Ranges: found in the background, kept between runs, never spoilt by not-a-number.
#include "platform/image/RangeScan.h"
#include "tests/unit/image/TestFiles.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <latch>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace image;
namespace fs = std::filesystem;

class Ranges : public ::testing::Test {
protected:
    void SetUp() override
    {
        setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
        image = writeAndOpen(folder / "r.tif", {.samples = 3, .pages = 4});
    }
    void TearDown() override { unsetenv("XDG_CACHE_HOME"); }
    static std::vector<ValueRange> scanned(ImageFile& image)
    {
        RangeScan scan(image);
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!scan.done() && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_TRUE(scan.done());
        EXPECT_EQ(scan.progress(), 1.0);
        return scan.ranges();
    }
    void expectTrueRanges()
    {
        const std::vector<ValueRange> ranges = scanned(*image);
        ASSERT_EQ(ranges.size(), 3u);
        for (int w = 0; w < 3; ++w) {
            std::vector<float> all;
            for (int z = 0; z < 4; ++z)
                std::ranges::copy(readWhole(*image, {z, w, 0, 0}), std::back_inserter(all));
            const ValueRange& range = ranges[static_cast<std::size_t>(w)];
            EXPECT_TRUE(range.known);
            EXPECT_EQ(range.min, std::ranges::min(all)) << w;
            EXPECT_EQ(range.max, std::ranges::max(all)) << w;
        }
    }
    // The only file in the cache.
    fs::path entry() const
    {
        const fs::directory_iterator files(folder / "cache/kelvora/ranges");
        EXPECT_EQ(std::distance(begin(files), end(files)), 1);
        return fs::directory_iterator(folder / "cache/kelvora/ranges")->path();
    }
    TempFolder folder;
    std::unique_ptr<ImageFile> image;
};

TEST_F(Ranges, CoverAllSectionsAndAreKeptUntilTheFileChanges)
{
    expectTrueRanges();
    writeBytes(entry(), "kelvora-ranges 1\n3\n1 5 6\n1 5 7\n1 5 8\n");
    EXPECT_EQ(scanned(*image)[2].max, 8) << "not from the cache";
    fs::last_write_time(folder / "r.tif", fs::file_time_type::clock::now() + std::chrono::seconds(5));
    image = ImageFile::open(folder / "r.tif");
    expectTrueRanges();
}

// The one that is open still has what was read of the file before.
TEST_F(Ranges, AScanOfWhatTheFileWasIsNotKeptForWhatItIs)
{
    writeTiff(folder / "next.tif", {.width = 41, .samples = 3, .pages = 4});
    fs::rename(folder / "next.tif", folder / "r.tif");
    scanned(*image);
    EXPECT_FALSE(fs::exists(folder / "cache/kelvora/ranges"));
    image = ImageFile::open(folder / "r.tif");
    expectTrueRanges();
}

TEST_F(Ranges, DamagedEntriesAreScannedAgain)
{
    for (const char* const text :
         {"", "kelvora-ranges 1\n3\n1 nonsense", "kelvora-ranges 1\n1\n1 5 6\n",
          "kelvora-ranges 0\n3\n1 5 6\n1 5 6\n1 5 6\n", "kelvora-ranges 1\n3\n1 5 6\n1 5 6\n1 6 5\n"}) {
        scanned(*image);
        writeBytes(entry(), text);
        expectTrueRanges();
    }
}

TEST_F(Ranges, UnwritableCacheIsNoError)
{
    writeBytes(folder / "cache", "a file where the folder should be");
    expectTrueRanges();
}

TEST_F(Ranges, NotANumberDoesNotCount)
{
    writeTiff(folder / "n.tif", {.kind = floatKind});
    std::string bytes = readBytes(folder / "n.tif");
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity()};
    // libtiff writes the first strip right behind the header.
    bytes.replace(8, sizeof odd, reinterpret_cast<const char*>(odd), sizeof odd);
    writeBytes(folder / "n.tif", bytes);
    const auto file = ImageFile::open(folder / "n.tif");
    ASSERT_TRUE(std::isnan(pixelAt(*file, {})));
    ASSERT_TRUE(std::isinf(pixelAt(*file, {}, 1)));
    const std::vector<ValueRange> ranges = scanned(*file);
    EXPECT_GE(ranges[0].min, -16.0f);
    EXPECT_LE(ranges[0].max, 16.0f);
    EXPECT_LT(ranges[0].min, ranges[0].max);
}

TEST_F(Ranges, TheSectionOnDisplayComesNextAndStoppingIsSoon)
{
    viewertest::FakeImage endless(1, 1);
    endless.description.sizeZ = 1 << 20;
    std::latch asked(1), reached(1);
    std::vector<int> seen;
    endless.value = [&](const SectionIndex& section, int, int) {
        asked.wait();
        seen.push_back(section.z);
        if (section.z == 77)
            reached.count_down();
        return 0.0f;
    };
    {
        RangeScan scan(endless);
        scan.prefer({77, 0, 0, 0});
        scan.prefer({1 << 20, 0, 0, 0}); // not there: ignored
        asked.count_down();
        reached.wait();
    }
    EXPECT_LE(std::ranges::find(seen, 77) - seen.begin(), 1);
    EXPECT_LT(seen.size(), std::size_t{1} << 20);
    EXPECT_FALSE(fs::exists(folder / "cache")) << "an unfinished scan is not kept";
}
