// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/ScaleStore.h"

#include "tests/unit/image/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <string>

using namespace viewer;
namespace fs = std::filesystem;

namespace {

class ScaleStore : public testing::Test {
protected:
    ScaleStore()
    {
        setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
        writeBytes(image, "an image");
    }
    fs::path entry() const { return fs::directory_iterator(folder / "data/kelvora/scales")->path(); }

    const TempFolder folder;
    const fs::path image = folder / "cells\n1.tif";
    const UserScale scale{0.5F, 1.0F / 3, 0.3F};
};

} // namespace

TEST_F(ScaleStore, KeepsAScaleForEachFileUntilItIsRemoved)
{
    EXPECT_FALSE(loadScale(image));
    EXPECT_EQ(keepScale(image, scale), "");
    const auto kept = loadScale(image);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->scale, scale);
    EXPECT_TRUE(kept->current);
    writeBytes(folder / "other.tif", "another");
    EXPECT_FALSE(loadScale(folder / "other.tif"));
    EXPECT_EQ(keepScale(image, {1, 2, {}}), "");
    EXPECT_EQ(loadScale(image)->scale, (UserScale{1, 2, {}}));
    EXPECT_EQ(forgetScale(image), "");
    EXPECT_EQ(forgetScale(image), ""); // gone already
    EXPECT_FALSE(loadScale(image));
}

TEST_F(ScaleStore, TellsAnotherVersionOfTheFile)
{
    keepScale(image, scale);
    writeBytes(image, "an image that has grown");
    ASSERT_TRUE(loadScale(image));
    EXPECT_FALSE(loadScale(image)->current);
    keepScale(image, scale);
    EXPECT_TRUE(loadScale(image)->current);
    fs::last_write_time(image, fs::last_write_time(image) + std::chrono::seconds(2));
    EXPECT_FALSE(loadScale(image)->current);
}

TEST_F(ScaleStore, DamagedEntriesAreNone)
{
    keepScale(image, scale);
    const std::string good = readBytes(entry());
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string text = good;
        return text.replace(text.find(from), from.size(), to);
    };
    for (const std::string& text :
         {std::string(), good.substr(0, 30), with("scale 1", "scale 2"), with("0.5 ", "0 "),
          with("0.5 ", "inf "), with("0.5 ", "-1 "), with("cells", "other"), with(" 0.3", " x")}) {
        writeBytes(entry(), text);
        EXPECT_FALSE(loadScale(image)) << text;
    }
    writeBytes(entry(), good);
    EXPECT_TRUE(loadScale(image));
}

TEST_F(ScaleStore, SaysWhatCannotBeKept)
{
    writeBytes(folder / "data", "a file where the folder should be");
    EXPECT_THAT(keepScale(image, scale), testing::HasSubstr("cannot be kept"));
    setenv("XDG_DATA_HOME", "relative", 1); // counts as not set
    setenv("HOME", (folder / "home").c_str(), 1);
    EXPECT_EQ(keepScale(image, scale), "");
    EXPECT_TRUE(fs::exists(folder / "home/.local/share/kelvora/scales"));
}
