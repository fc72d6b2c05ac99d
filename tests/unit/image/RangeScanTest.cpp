// Ranges: found in the background, kept between runs, never spoilt by what is no number.
#include "platform/image/RangeScan.h"
#include "tests/unit/image/TestFiles.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

using namespace image;
namespace fs = std::filesystem;

class Ranges : public ::testing::Test {
protected:
    void SetUp() override { setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1); }
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
    static fs::path onlyFile(const fs::path& directory)
    {
        std::vector<fs::path> files;
        for (const auto& entry : fs::directory_iterator(directory))
            files.push_back(entry.path());
        return files.size() == 1 ? files[0] : fs::path();
    }
    TempFolder folder;
};

// Pixels and sections counted; otherwise the image it wraps.
class CountingImage : public ImageFile {
public:
    explicit CountingImage(const fs::path& path) : image(ImageFile::open(path)) {}
    const ImageInfo& info() const override { return image->info(); }
    bool hasSection(const SectionIndex& s) const override { return image->hasSection(s); }
    bool read(const SectionIndex& s, const PixelRect& r, std::span<float> out) override
    {
        return image->read(s, r, out);
    }
    bool readLevel(const SectionIndex& s, int level, const PixelRect& r, std::span<float> out) override
    {
        return image->readLevel(s, level, r, out);
    }
    std::optional<double> extendedHeader(const SectionIndex&, int) const override { return std::nullopt; }
    std::string lastError() const override { return image->lastError(); }
    bool valueRange(const SectionIndex& s, const std::stop_token& stop, float& min, float& max) override
    {
        ++sections;
        return image->valueRange(s, stop, min, max);
    }
    std::atomic<int> sections = 0;

private:
    std::unique_ptr<ImageFile> image;
};

TEST_F(Ranges, OverAllSectionsAndKept)
{
    TiffSpec spec;
    spec.samples = 3;
    spec.pages = 4;
    writeTiff(folder / "r.tif", spec);
    double min[3] = {1e9, 1e9, 1e9}, max[3] = {-1, -1, -1};
    for (int i = 0; i < spec.width * spec.height * spec.pages * 3; ++i) {
        const int s = i % 3, x = i / 3 % spec.width, y = i / 3 / spec.width % spec.height;
        const double value = storedValue(spec, x, y, i / 3 / spec.width / spec.height, s);
        min[s] = std::min(min[s], value);
        max[s] = std::max(max[s], value);
    }
    for (const int expectedReads : {12, 0}) { // the second time from the cache
        CountingImage image(folder / "r.tif");
        const std::vector<ValueRange> ranges = scanned(image);
        ASSERT_EQ(ranges.size(), 3u);
        for (int w = 0; w < 3; ++w) {
            EXPECT_TRUE(ranges[static_cast<std::size_t>(w)].known);
            EXPECT_EQ(ranges[static_cast<std::size_t>(w)].min, min[w]);
            EXPECT_EQ(ranges[static_cast<std::size_t>(w)].max, max[w]);
        }
        EXPECT_EQ(image.sections, expectedReads);
    }
    EXPECT_LT(fs::file_size(onlyFile(folder / "cache/kelvora/ranges")), 300u);
}

TEST_F(Ranges, ChangedFileOrDamagedEntryIsScannedAgain)
{
    TiffSpec spec;
    writeTiff(folder / "r.tif", spec);
    CountingImage first(folder / "r.tif");
    scanned(first);
    writeBytes(onlyFile(folder / "cache/kelvora/ranges"), "kelvora-ranges 1\n1\n1 nonsense");
    CountingImage second(folder / "r.tif");
    scanned(second);
    EXPECT_EQ(second.sections, 1);
    fs::last_write_time(folder / "r.tif", fs::file_time_type::clock::now() + std::chrono::seconds(5));
    CountingImage third(folder / "r.tif");
    scanned(third);
    EXPECT_EQ(third.sections, 1);
}

TEST_F(Ranges, UnwritableCacheIsNoError)
{
    writeBytes(folder / "cache", "a file where the folder should be");
    TiffSpec spec;
    writeTiff(folder / "r.tif", spec);
    CountingImage image(folder / "r.tif");
    EXPECT_TRUE(scanned(image)[0].known);
}

TEST_F(Ranges, NotANumberDoesNotCount)
{
    TiffSpec spec;
    spec.kind = {"float", 32, 3, PixelType::Float32};
    writeTiff(folder / "n.tif", spec);
    std::string bytes = readBytes(folder / "n.tif");
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity()};
    // libtiff writes the first strip right behind the header.
    bytes.replace(8, sizeof odd, reinterpret_cast<const char*>(odd), sizeof odd);
    writeBytes(folder / "n.tif", bytes);
    const auto image = ImageFile::open(folder / "n.tif");
    const std::vector<float> pixels = readWhole(*image, {});
    ASSERT_TRUE(pixels[0] != pixels[0]);
    const std::vector<ValueRange> ranges = scanned(*image);
    EXPECT_GE(ranges[0].min, -16.0f);
    EXPECT_LE(ranges[0].max, 16.0f);
    EXPECT_LT(ranges[0].min, ranges[0].max);
}

TEST_F(Ranges, StopsSoonAndPrefersTheSectionOnDisplay)
{
    TiffSpec spec;
    spec.width = spec.height = 64;
    spec.pages = 400;
    writeTiff(folder / "s.tif", spec);
    CountingImage image(folder / "s.tif");
    {
        RangeScan scan(image);
        scan.prefer({399, 0, 0, 0});
        scan.prefer({400, 0, 0, 0}); // not there: ignored
    }
    EXPECT_LT(image.sections, 400);
    EXPECT_FALSE(fs::exists(folder / "cache/kelvora/ranges") &&
                 !onlyFile(folder / "cache/kelvora/ranges").empty());
}
