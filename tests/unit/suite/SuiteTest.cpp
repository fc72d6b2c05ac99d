// SPDX-License-Identifier: MIT
// File names, folders and placing: what libOrUtils decides without a display.
#include <gtest/gtest.h>

#include "platform/base/Placement.h"
#include "tests/unit/image/TempFolder.h"

#include <IWL.h>
#include <OrUtils.h>

#include <filesystem>
#include <string>

using base::placeBeside;
using base::Rectangle;
namespace fs = std::filesystem;

namespace {

std::string generated(const std::string& source, const char* tag = "PRF", const char* extension = "slk")
{
    char name[ORVEL_NAME_SIZE];
    EXPECT_EQ(OrvelGenerateFileName(source.c_str(), tag, extension, name), 1);
    return name;
}

} // namespace

TEST(GenerateFileName, leavesOutFolderAndImageExtension)
{
    const std::pair<const char*, const char*> cases[] = {
        {"cells.ome.tif", "cells_PRF.slk"},
        {"/data/a.b/cells.ome.tiff", "cells_PRF.slk"},
        {"CELLS.OME.TIF", "CELLS_PRF.slk"},
        {"day 1/run.companion.ome", "run_PRF.slk"},
        {"scan.v2.tif", "scan.v2_PRF.slk"},
        {"notes.dv", "notes_PRF.slk"},
        {"noextension", "noextension_PRF.slk"},
        {".hidden", ".hidden_PRF.slk"},
        {".tif", ".tif_PRF.slk"},
        {"db://server/exp/7/cells.tif", "cells_PRF.slk"},
        {"", "_PRF.slk"},
        {"/", "_PRF.slk"},
        {"folder/", "folder_PRF.slk"},
        {"caf\xE9.tif", "caf\xE9_PRF.slk"}, // no UTF-8
    };
    for (const auto& [source, name] : cases)
        EXPECT_EQ(generated(source), name) << source;
}

TEST(GenerateFileName, keepsWithinTheBufferAndWholeCharacters)
{
    // 'ö' has two bytes: 300 of them are cut between two, never within one.
    std::string umlauts;
    for (int i = 0; i < 300; ++i)
        umlauts += "\xC3\xB6";
    for (const std::string& stem : {std::string(5000, 'x'), umlauts, "a" + umlauts}) {
        const std::string name = generated(stem + ".tif");
        EXPECT_GE(name.size(), ORVEL_NAME_SIZE - 2u);
        EXPECT_LT(name.size(), size_t{ORVEL_NAME_SIZE});
        EXPECT_TRUE(name.ends_with("_PRF.slk"));
        EXPECT_TRUE(stem.starts_with(name.substr(0, name.size() - 8)));
        EXPECT_NE(static_cast<unsigned char>(name[name.size() - 9]), 0xC3);
    }
}

TEST(DatabaseUri, isASchemeBeforeTwoSlashes)
{
    for (const char* const uri : {"db://server/7", "omero+ssl://host/x", "h2://"})
        EXPECT_NE(OrvelIsADatabaseURI(uri), 0) << uri;
    for (const char* const path : {"/data/cells.tif", "", "://x", "a b://x", "7up://x", "data/x://y", "c:/x"})
        EXPECT_EQ(OrvelIsADatabaseURI(path), 0) << path;
}

// Each source in turn names a folder; the one that counts most comes last.
TEST(DataDirectory, isTheFirstThatExists)
{
    const TempFolder home;
    const auto verified = [] { return fs::path(OrvelGetVerifyDataDirectory()); };
    for (const char* const folder : {"Papers", "given", "config", "configured"})
        fs::create_directories(home / folder);
    setenv("HOME", home.path.c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
    unsetenv("KELVORA_DATA_DIR");
    EXPECT_EQ(verified(), home.path);
    writeBytes(home / "config/user-dirs.dirs", "# folders\nXDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
    EXPECT_EQ(verified(), home / "Papers");
    // A relative folder counts as unset, in the file as well as in the variable.
    const fs::path before = fs::current_path();
    fs::current_path(home.path);
    setenv("XDG_CONFIG_HOME", "config", 1);
    EXPECT_EQ(verified(), home.path);
    setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
    writeBytes(home / "config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"Papers\"\n");
    EXPECT_EQ(verified(), home.path);
    fs::current_path(before);
    IWSetConfig("KV_DATA_DIR", (home / "configured").c_str());
    EXPECT_EQ(verified(), home / "configured");
    setenv("KELVORA_DATA_DIR", (home / "given").c_str(), 1);
    EXPECT_EQ(verified(), home / "given");
    // What does not exist is passed over.
    setenv("KELVORA_DATA_DIR", "/nowhere/at/all", 1);
    fs::remove(home / "configured");
    fs::remove(home / "Papers");
    EXPECT_EQ(verified(), home.path);
    setenv("HOME", "/nowhere", 1);
    EXPECT_EQ(verified(), fs::current_path());
}

TEST(PlaceBeside, takesTheFirstSideWithRoom)
{
    const Rectangle screen{0, 0, 1600, 1200}, tool{0, 0, 600, 380};
    const struct {
        Rectangle image;
        int x, y;
    } cases[] = {
        {{0, 0, 500, 500}, 504, 0},       // right
        {{300, 100, 600, 600}, 904, 100}, // right, at its top
        {{0, 1000, 500, 300}, 504, 820},  // right, moved up onto the screen
        {{0, -50, 500, 500}, 504, 0},     // right, the image reaches above the screen
        {{1000, 20, 600, 600}, 396, 20},  // left
        {{200, 10, 1200, 700}, 200, 714}, // below
        {{1300, 10, 1200, 700}, 696, 10}, // left of an image that reaches off the screen
        {{100, 0, 1400, 1200}, 1000, 0},  // no room at all: the corner that covers least
    };
    for (const auto& c : cases)
        EXPECT_EQ(placeBeside(c.image, tool, screen), (Rectangle{c.x, c.y, 600, 380}))
            << c.image.x << ", " << c.image.y;
    // Of a tool larger than the screen the controls at its top left are to be seen.
    EXPECT_EQ(placeBeside({0, 0, 500, 500}, {0, 0, 2000, 1300}, screen), (Rectangle{0, 0, 2000, 1300}));
}
