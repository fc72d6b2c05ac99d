// SPDX-License-Identifier: MIT
// What is kept for the windows to come: the file of settings, and the parts around the image in it.
#include "platform/imagewindow/files/Settings.h"
#include "platform/imagewindow/files/BarStyle.h"
#include "platform/imagewindow/files/WindowParts.h"

#include "tests/unit/image/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

using namespace viewer;
namespace fs = std::filesystem;

namespace {

class SettingsTest : public testing::Test {
protected:
    SettingsTest() { setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1); }
    void write(const std::string& text) const
    {
        fs::create_directories(file.parent_path());
        writeBytes(file, text);
    }

    const TempFolder folder;
    const fs::path file = folder / "config/kelvora/imagewindow";
};

} // namespace

TEST_F(SettingsTest, KeepsWhatOthersHaveKept)
{
    EXPECT_EQ(setting("rate"), "");
    EXPECT_EQ(keepSettings({{"rate", "25"}, {"loop", "bounce: to and fro"}}), "");
    EXPECT_EQ(keepSettings({{"rate", "12"}}), "");
    EXPECT_EQ(setting("rate"), "12");
    EXPECT_EQ(setting("loop"), "bounce: to and fro");
    for (const auto& entry : fs::directory_iterator(file.parent_path()))
        EXPECT_EQ(entry.path(), file); // nothing temporary stays
}

TEST_F(SettingsTest, TellsThatItCannotKeep)
{
    writeBytes(folder / "config", "no folder");
    const std::string sentence = keepSettings({{"rate", "12"}});
    EXPECT_EQ(sentence.find("The settings of the windows cannot be kept: "), 0U) << sentence;
    EXPECT_EQ(setting("rate"), "");
}

TEST_F(SettingsTest, PartsComeBackAndDamagedOnesAreTheUsual)
{
    const WindowParts parts{false, true, false, SideTab::Messages, 480};
    EXPECT_EQ(keepParts(parts), "");
    EXPECT_EQ(loadParts(), parts);
    for (const char* damaged :
         {"toolBar: maybe\nsidePanel\nsideTab: none\nsideWidth: wide\n", "\0\xff", ""}) {
        write(damaged);
        EXPECT_EQ(loadParts(), WindowParts{}) << damaged;
    }
    write("sideWidth: 99999999\n");
    EXPECT_EQ(loadParts().sideWidth, 4000);
}

TEST_F(SettingsTest, ScaleBarsComeBackAndDamagedOnesAreTheUsual)
{
    const BarStyle style{0.25, BarCorner::UpperLeft, barColors.size() - 1};
    EXPECT_EQ(keepBarStyle(style), "");
    EXPECT_EQ(loadBarStyle(), style);
    EXPECT_EQ(keepBarStyle({}), "");
    EXPECT_EQ(loadBarStyle(), BarStyle{});
    for (const char* damaged : {"scaleBarLength: -3\nscaleBarCorner: middle\nscaleBarColor: puce\n",
                                "scaleBarLength: nan\n", "scaleBarLength: 1e99 km\n", ""}) {
        write(damaged);
        EXPECT_EQ(loadBarStyle(), BarStyle{}) << damaged;
    }
}
