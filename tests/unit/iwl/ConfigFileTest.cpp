// SPDX-License-Identifier: MIT
#include "platform/iwl/ConfigFile.h"

#include "tests/unit/image/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace fs = std::filesystem;
using iwl::ConfigChanges;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class ConfigFile : public ::testing::Test {
protected:
    TempFolder folder;
    fs::path path = folder / "kelvora/config";
};

TEST(ConfigKey, LosesItsColonAndIsAPlainWord)
{
    EXPECT_EQ(iwl::configKeyName("KV_APROF_FWHM"), "KV_APROF_FWHM");
    EXPECT_EQ(iwl::configKeyName("ZVE_DEF_DIR:"), "ZVE_DEF_DIR");
    for (const char* const none : {"a::", "", ":", "a b", "*loose", "a.b", "a\nb", "\xB5m"})
        EXPECT_EQ(iwl::configKeyName(none), "") << none;
}

TEST(ConfigMerge, ReplacesTheEntryAndKeepsEverythingElse)
{
    const ConfigChanges set{{"KEY", "new"}}, removed{{"KEY", std::nullopt}};
    const struct {
        const char* what;
        const char* text;
        ConfigChanges changes;
        const char* merged;
    } rows[] = {
        {"empty", "", set, "KEY:\tnew\n"},
        {"new key", "A: 1\n", set, "A: 1\nKEY:\tnew\n"},
        {"in place", "A: 1\nKEY: old\nB: 2\n", set, "A: 1\nKEY:\tnew\nB: 2\n"},
        {"spaces", "  KEY \t:  old\n", set, "KEY:\tnew\n"},
        {"twice", "KEY: 1\nA: 1\nKEY: 2\n", set, "KEY:\tnew\nA: 1\n"},
        {"comments", "! KEY: x\n# KEY: y\n\nKEY: 1", set, "! KEY: x\n# KEY: y\n\nKEY:\tnew\n"},
        {"longer names", "KEYS: 1\nMY_KEY: 2\n*KEY: 3\n", set, "KEYS: 1\nMY_KEY: 2\n*KEY: 3\nKEY:\tnew\n"},
        {"continued", "KEY: a\\\n  KEY: b\nA: 1\n", set, "KEY:\tnew\nA: 1\n"},
        {"inside a value", "A: a\\\nKEY: b\n", set, "A: a\\\nKEY: b\nKEY:\tnew\n"},
        {"escaped slash", "A: a\\\\\nKEY: b\n", set, "A: a\\\\\nKEY:\tnew\n"},
        {"comment and slash", "! a\\\nKEY: b\n", set, "! a\\\nKEY:\tnew\n"},
        {"no last newline", "A: 1", set, "A: 1\nKEY:\tnew\n"},
        {"dangling slash", "A: 1\\", set, "A: 1\\\n\nKEY:\tnew\n"},
        {"foreign lines", "what is this\nKEY: 1\n", set, "what is this\nKEY:\tnew\n"},
        {"removed", "A: 1\nKEY: 1\nKEY: 2\n", removed, "A: 1\n"},
        {"removed, absent", "A: 1\n", removed, "A: 1\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(iwl::mergeConfig(row.text, row.changes), row.merged) << row.what;
}

TEST_F(ConfigFile, SavingMergesKeepsTheModeAndLeavesNoScraps)
{
    writeBytes(path, "! mine\nA: 1\n");
    chmod(path.c_str(), 0640);
    EXPECT_THAT(iwl::saveConfig(path, {{"B", "2"}}).problem, IsEmpty());
    EXPECT_EQ(readBytes(path), "! mine\nA: 1\nB:\t2\n");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
    for (const auto& entry : fs::directory_iterator(path.parent_path()))
        EXPECT_TRUE(entry.path() == path || entry.path() == path.string() + ".lock") << entry.path();
}

TEST_F(ConfigFile, ALinkStaysALink)
{
    writeBytes(folder / "dotfiles/config", "A: 1\n");
    fs::create_directories(path.parent_path());
    fs::create_symlink(folder / "dotfiles/config", path);
    EXPECT_THAT(iwl::saveConfig(path, {{"A", "2"}}).problem, IsEmpty());
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(readBytes(folder / "dotfiles/config"), "A:\t2\n");
}

TEST_F(ConfigFile, WhatCannotBeReadOrWrittenIsToldInOneSentence)
{
    const ConfigChanges change{{"A", "1"}};
    writeBytes(folder / "file", "");
    EXPECT_THAT(iwl::saveConfig(folder / "file/kelvora/config", change).problem, HasSubstr("file"));
    EXPECT_THAT(iwl::saveConfig("/proc/kelvora/config", change).problem, HasSubstr("/proc"));
    fs::create_directories(path);
    EXPECT_THAT(iwl::saveConfig(path, change).problem, HasSubstr("not a regular file"));
    EXPECT_THAT(iwl::readConfig(path).problem, HasSubstr("not a regular file"));
    fs::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_THAT(iwl::readConfig(path).problem, HasSubstr("not a regular file"))
        << "and does not wait for a writer";
    EXPECT_THAT(iwl::readConfig(folder / "none").problem, IsEmpty());
}

TEST_F(ConfigFile, GarbageIsNoSettingAndIsMovedAsideWhenSaving)
{
    writeBytes(path, "A: 1\nnonsense\nmore nonsense\n");
    EXPECT_THAT(iwl::readConfig(path).problem, HasSubstr("2 lines"));
    for (const std::string& garbage : {std::string("A: 1\n\0\1\2", 8), std::string(2 << 20, 'x')}) {
        writeBytes(path, garbage);
        const auto read = iwl::readConfig(path);
        EXPECT_TRUE(read.damaged);
        EXPECT_THAT(read.problem, HasSubstr("not a text file"));
        EXPECT_THAT(iwl::saveConfig(path, {{"A", "2"}}).problem, IsEmpty());
        EXPECT_EQ(readBytes(path), "A:\t2\n");
        EXPECT_EQ(readBytes(path.string() + ".damaged"), garbage) << "nothing is lost";
    }
}

// As programs do: each writer opens the lock for itself.
TEST_F(ConfigFile, ConcurrentWritersOfOtherKeysLoseNothing)
{
    constexpr int writers = 4, rounds = 25;
    {
        std::vector<std::jthread> threads;
        for (int writer = 0; writer < writers; ++writer)
            threads.emplace_back([this, writer] {
                for (int i = 0; i < rounds; ++i) {
                    const std::string key = "K" + std::to_string(writer) + "_" + std::to_string(i);
                    EXPECT_EQ(iwl::saveConfig(path, {{key, "1"}}).problem, "");
                }
            });
    }
    const std::string text = readBytes(path);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), writers * rounds);
}
