// SPDX-License-Identifier: MIT
// Images that grow while they are shown.
#include "tests/Folders.h"
#include "tests/x/imagewindow/Viewer.h"

#include <array>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>

using namespace viewertest;
using protocol::DisplayRecord;

namespace {

constexpr int width = 40, height = 30;

// Appends a page whose pixels are value, or value + 50 in the right half.
void appendPage(const std::string& path, unsigned char value)
{
    TIFF* file = TIFFOpen(path.c_str(), "a");
    ASSERT_TRUE(file);
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, height);
    std::array<unsigned char, width * height> pixels;
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<unsigned char>(value + (i % width >= width / 2 ? 50 : 0));
    EXPECT_GT(TIFFWriteEncodedStrip(file, 0, pixels.data(), pixels.size()), 0);
    TIFFClose(file);
}

// The pipe from which a viewer reads its sections.
class Pipe {
public:
    Pipe()
    {
        fs::remove(path);
        mkfifo(path.c_str(), 0600);
        writer = open(path.c_str(), O_RDWR); // does not wait for the reader
    }
    ~Pipe() { close(); }
    void close()
    {
        if (writer >= 0)
            ::close(writer);
        writer = -1;
    }
    void send(const std::string& text) const
    {
        EXPECT_EQ(write(writer, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    const std::string path = scratchFolder() / "sections.pipe";

private:
    int writer = -1;
};

std::string section(char value)
{
    return "P5 40 30 255\n" + std::string(width * height, value);
}

} // namespace

TEST(Scratch, FollowsAGrowingFile)
{
    const std::string path = scratchFolder() / "growing.tif";
    appendPage(path, 10);
    Viewer viewer({"--scratch", path});
    auto record = viewer.record();
    ASSERT_TRUE(record);
    EXPECT_EQ(record->scratchSize, 1);
    EXPECT_EQ(record->wavelengths.at(0).topImage, 1);
    for (int pages = 2; pages <= 4; ++pages) {
        appendPage(path, static_cast<unsigned char>(10 * pages));
        const auto grown =
            viewer.waitForRecord([&](const DisplayRecord& r) { return r.scratchSize == pages; });
        EXPECT_EQ(grown.wavelengths.at(0).topImage, pages);
        EXPECT_EQ(grown.z, pages - 1); // the newest is shown
    }
    const auto ranged =
        viewer.waitForRecord([](const DisplayRecord& r) { return r.wavelengths.at(0).rangeMax == 90; });
    EXPECT_EQ(ranged.wavelengths.at(0).rangeMin, 10);
    EXPECT_EQ(ranged.wavelengths.at(0).rangeMax, 90);
    EXPECT_EQ(viewer.process.errors(), "");
}

TEST(Scratch, StaysWhereTheUserWent)
{
    const std::string path = scratchFolder() / "stay.tif";
    for (unsigned char page = 1; page <= 3; ++page)
        appendPage(path, page);
    Viewer viewer({"--scratch", "--section", "2", path});
    appendPage(path, 99);
    const auto grown = viewer.waitForRecord([](const DisplayRecord& r) { return r.scratchSize == 4; });
    EXPECT_EQ(grown.scratchSize, 4);
    EXPECT_EQ(grown.z, 1);
}

TEST(Scratch, WaitsForTheFirstSectionOfAFile)
{
    const std::string path = scratchFolder() / "late.tif";
    writeBytes(path, "");
    drive::Process process({BIN_DIR "/imagewindow", "--scratch", path});
    EXPECT_TRUE(drive::waitUntil([&] { return process.errors().find("waiting") != std::string::npos; }));
    EXPECT_TRUE(process.running());
    appendPage(path, 10);
    EXPECT_TRUE(drive::waitUntil([&] { return process.output().find("window 1") == 0; }));
    drive::Process missing({BIN_DIR "/imagewindow", "--scratch", path + ".missing"});
    EXPECT_EQ(missing.wait(), 1);
}

// The viewer's own copy of the sections goes with it.
TEST(Scratch, ReadsSectionsFromStandardInput)
{
    Pipe pipe;
    pipe.send(section(10));
    Viewer viewer({"--scratch", "-"}, pipe.path);
    const auto first = viewer.record();
    ASSERT_TRUE(first) << viewer.process.errors();
    EXPECT_EQ(first->scratchSize, 1);
    EXPECT_TRUE(fs::exists(first->path));
    pipe.send(section(20) + section(30).substr(0, 100));
    EXPECT_EQ(viewer.waitForRecord([](const auto& r) { return r.scratchSize == 2; }).z, 1);
    pipe.send(section(30).substr(100));
    EXPECT_EQ(viewer.waitForRecord([](const auto& r) { return r.scratchSize == 3; }).z, 2);
    pipe.close();
    viewer.process.signal(SIGTERM);
    viewer.process.wait();
    EXPECT_FALSE(fs::exists(first->path));
}

TEST(Scratch, RefusesAStreamThatIsNone)
{
    Pipe pipe;
    pipe.send("These are no sections.");
    Viewer viewer({"--scratch", "-"}, pipe.path);
    EXPECT_EQ(viewer.process.wait(), 1);
    EXPECT_NE(viewer.process.errors().find("PGM"), std::string::npos) << viewer.process.errors();
    EXPECT_TRUE(fs::is_empty(scratchFolder() / "cache/kelvora/scratch"));
}
