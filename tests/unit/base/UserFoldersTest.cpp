// SPDX-License-Identifier: MIT
#include "platform/base/UserFolders.h"
#include "tests/Rows.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace {

void setOrUnset(const char* name, const char* value)
{
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

struct FolderCase {
    const char* name;
    const char *variable, *home; // null: not set
    std::string config, data;
};

class UserFolders : public testing::TestWithParam<FolderCase> {
protected:
    void SetUp() override
    {
        setOrUnset("XDG_CONFIG_HOME", GetParam().variable);
        setOrUnset("XDG_DATA_HOME", GetParam().variable);
        setOrUnset("HOME", GetParam().home);
    }
};

TEST_P(UserFolders, followTheVariablesThatAreAbsolute)
{
    EXPECT_EQ(base::configFolder(), GetParam().config);
    EXPECT_EQ(base::dataFolder(), GetParam().data);
}

std::string accountHome()
{
    return getpwuid(getuid())->pw_dir;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, UserFolders,
    testing::Values(
        FolderCase{"variable", "/x", "/home/a", "/x/kelvora", "/x/kelvora"},
        FolderCase{"home", nullptr, "/home/a", "/home/a/.config/kelvora", "/home/a/.local/share/kelvora"},
        FolderCase{"relativeVariable", "x", "/home/a", "/home/a/.config/kelvora",
                   "/home/a/.local/share/kelvora"},
        FolderCase{"emptyVariable", "", "/home/a", "/home/a/.config/kelvora", "/home/a/.local/share/kelvora"},
        FolderCase{"relativeHome", nullptr, "a", accountHome() + "/.config/kelvora",
                   accountHome() + "/.local/share/kelvora"},
        FolderCase{"noHome", nullptr, nullptr, accountHome() + "/.config/kelvora",
                   accountHome() + "/.local/share/kelvora"}),
    RowName{});

} // namespace
