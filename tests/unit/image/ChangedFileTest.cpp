// SPDX-License-Identifier: MIT
// Files that change, shrink or go away while they are open.
#include "tests/unit/image/TestFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

using namespace image;
using testing::HasSubstr;
namespace fs = std::filesystem;

// Of the first page one tile has been read, of the others nothing.
class ChangedFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        image = writeAndOpen(path, spec);
        ASSERT_EQ(pixelAt(*image, {}), storedValue(spec, 0, 0));
    }
    TempFolder folder;
    fs::path path = folder / "c.tif";
    const TiffSpec spec{.width = 80, .height = 80, .pages = 8, .tile = 16};
    std::unique_ptr<ImageFile> image;
};

TEST_F(ChangedFile, DeletedOrReplacedFileIsStillRead)
{
    fs::rename(path, folder / "old.tif");
    writeTiff(path, {});
    EXPECT_EQ(pixelAt(*image, {5, 0, 0, 0}), storedValue(spec, 0, 0, 5));
    fs::remove(folder / "old.tif");
    EXPECT_EQ(pixelAt(*image, {6, 0, 0, 0}), storedValue(spec, 0, 0, 6));
}

TEST_F(ChangedFile, TruncatedFileFailsWithASentence)
{
    for (const std::uintmax_t size : {fs::file_size(path) / 2, std::uintmax_t{100}, std::uintmax_t{0}}) {
        fs::resize_file(path, size);
        EXPECT_TRUE(readWhole(*image, {7, 0, 0, 0}).empty());
        EXPECT_THAT(image->lastError(), HasSubstr("changed"));
    }
}

TEST_F(ChangedFile, FileRewrittenInAnotherShapeIsNotReadAtOldOffsets)
{
    writeTiff(path, {.width = 300, .height = 20, .pages = 20});
    for (const int page : {0, 7}) {
        EXPECT_TRUE(readWhole(*image, {page, 0, 0, 0}).empty()) << page;
        EXPECT_NE(image->lastError(), "");
    }
}

TEST_F(ChangedFile, FileThatIsOnlyAppendedToStaysReadable)
{
    writeBytes(path, readBytes(path) + "more");
    EXPECT_EQ(pixelAt(*image, {7, 0, 0, 0}), storedValue(spec, 0, 0, 7));
}
