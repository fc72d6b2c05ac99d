// SPDX-License-Identifier: MIT
// The C interface to the configuration, as one process after another sees it: each call of inProcess() is a
// program start of its own, since the library reads the file once.
#include <gmock/gmock.h> // before the headers of X, whose macros break it
#include <gtest/gtest.h>

#include "tests/unit/image/TempFolder.h"

#include <IWL.h>

#include <clocale>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

class Config : public ::testing::Test {
protected:
    Config() { setenv("XDG_CONFIG_HOME", folder.path.c_str(), 1); }

    void write(const std::string& text) { writeBytes(config, text); }

    // Whether work succeeds in a process of its own; what it says is in the file said.
    bool inProcess(const std::function<bool()>& work)
    {
        const pid_t child = fork();
        if (child == 0) {
            const bool good = freopen(said.c_str(), "w", stderr) && work();
            fflush(stderr); // buffered since it is a file
            _exit(good ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        return status == 0;
    }
    std::ptrdiff_t sentences() const
    {
        const std::string text = readBytes(said);
        return std::count(text.begin(), text.end(), '\n');
    }

    TempFolder folder;
    fs::path config = folder / "kelvora/config", said = folder / "said";
};

namespace {

bool holds(const char* key, const std::string& value)
{
    const char* stored = IWGetConfig(key);
    return stored && stored == value;
}

} // namespace

TEST_F(Config, AnyValueComesBackInTheNextProcessInAnyLocale)
{
    const std::string values[] = {
        "plain",
        "",
        "/data/my images/",
        "  leading and trailing  ",
        "\ttabs\t",
        "two\nlines\n",
        "back\\slash \\n \\040",
        "ends with \\",
        "\xB5m in one byte, \xC2\xB5m in two",
        "! no comment: a value",
        "\x01\x7F\xFF",
        std::string(5000, 'x'),
    };
    for (const auto& value : values) {
        EXPECT_TRUE(inProcess([&] {
            IWSetConfig("ZVE_DEF_DIR:", value.c_str());
            return IWSaveUserConfig() == 1 && holds("ZVE_DEF_DIR", value);
        })) << value;
        for (const char* locale : {"C", "C.UTF-8"})
            EXPECT_TRUE(inProcess([&] {
                setlocale(LC_ALL, locale);
                return holds("ZVE_DEF_DIR:", value) && !IWGetConfig("OTHER");
            })) << locale
                << ": " << value;
    }
}

TEST_F(Config, BooleansInEverySpelling)
{
    const struct {
        const char* text;
        int found, value;
    } rows[] = {
        {"true", 1, 1},  {"True", 1, 1},  {"ON", 1, 1},      {"yes", 1, 1}, {"1", 1, 1},
        {"false", 1, 0}, {"FALSE", 1, 0}, {"off", 1, 0},     {"No", 1, 0},  {"0 \t", 1, 0},
        {"2", 0, 9},     {"", 0, 9},      {"trueish", 0, 9},
    };
    for (const auto& row : rows) {
        write(std::string("KEY: ") + row.text + "\n");
        EXPECT_TRUE(inProcess([&] {
            int value = 9;
            return IWGetConfigBoolean("KEY", &value) == row.found && value == row.value;
        })) << row.text;
    }
}

TEST_F(Config, ChangesCountAtOnceAndReachTheFileWhenSaved)
{
    write("FWHM: true\nFONT: fixed\n");
    EXPECT_TRUE(inProcess([] {
        int value = 9;
        IWSetConfigBoolean("FWHM", 0);
        IWSetConfig("FONT", nullptr);
        return IWGetConfigBoolean("FWHM", &value) == 1 && value == 0 && !IWGetConfig("FONT");
    }));
    EXPECT_EQ(readBytes(config), "FWHM: true\nFONT: fixed\n") << "not saved";
    EXPECT_TRUE(inProcess([&] {
        IWGetConfig("FWHM");
        write("FWHM: true\nFONT: fixed\nOTHER: 5\n"); // another program's change
        IWSetConfigBoolean("FWHM", 0);
        return IWSaveUserConfig() == 1 && holds("OTHER", "5");
    }));
    EXPECT_EQ(readBytes(config), "FWHM:\tfalse\nFONT: fixed\nOTHER: 5\n");
}

TEST_F(Config, TroubleIsToldAndTheDefaultsHold)
{
    write(std::string("KEY: 1\n\0", 8));
    EXPECT_TRUE(inProcess([] { return !IWGetConfig("KEY") && !IWGetConfig("KEY"); }));
    EXPECT_EQ(sentences(), 1) << "told once";
    EXPECT_TRUE(inProcess([] { return IWSetConfig("bad key", "1"), IWSaveUserConfig() == 1; }));
    fs::remove_all(folder / "kelvora");
    writeBytes(folder / "kelvora", "a file where the folder belongs");
    EXPECT_TRUE(inProcess([] {
        IWSetConfig("KEY", "1");
        return IWSaveUserConfig() == 0 && holds("KEY", "1");
    })) << "the value still holds in this process";
    EXPECT_EQ(sentences(), 2) << "reading and saving: " << readBytes(said);
}
