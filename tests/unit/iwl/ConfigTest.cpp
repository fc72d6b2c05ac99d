// The C interface to the configuration, as one process after another sees it: each call of inProcess() is a
// program start of its own, since the library reads the file once.
#include <gmock/gmock.h> // before Xlib, whose macros None and Bool it cannot stand
#include <gtest/gtest.h>

#include <IWL.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// Exit status of a child that runs work; its standard error goes to the file said.
int inProcess(const std::function<bool()>& work, const fs::path& said = "/dev/null")
{
    const pid_t child = fork();
    if (child == 0) {
        if (!freopen(said.c_str(), "w", stderr))
            _exit(2);
        const bool good = work();
        fflush(stderr); // buffered since it is a file
        _exit(good ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool holds(const char* key, const std::string& value)
{
    const char* stored = IWGetConfig(key);
    return stored && stored == value;
}

std::string lines(const fs::path& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

class Config : public ::testing::Test {
protected:
    Config() : folder(fs::path(::testing::TempDir()) / ("user" + std::to_string(getpid())))
    {
        fs::create_directories(folder / "kelvora");
        setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    }
    ~Config() override { fs::remove_all(folder); }

    void write(const std::string& text) { std::ofstream(folder / "kelvora" / "config") << text; }

    fs::path folder;
};

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
    for (const char* locale : {"C", "C.UTF-8"})
        for (const auto& value : values) {
            EXPECT_EQ(inProcess([&] {
                          IWSetConfig("ZVE_DEF_DIR:", value.c_str());
                          return IWSaveUserConfig() == 1 && holds("ZVE_DEF_DIR", value);
                      }),
                      0);
            EXPECT_EQ(inProcess([&] {
                          setlocale(LC_ALL, locale);
                          return holds("ZVE_DEF_DIR:", value) && !IWGetConfig("OTHER");
                      }),
                      0)
                << locale << ": " << value;
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
        EXPECT_EQ(inProcess([&] {
                      int value = 9;
                      return IWGetConfigBoolean("KEY", &value) == row.found && value == row.value;
                  }),
                  0)
            << row.text;
    }
}

TEST_F(Config, ChangesCountAtOnceAndReachTheFileWhenSaved)
{
    write("FWHM: true\nFONT: fixed\n");
    EXPECT_EQ(inProcess([] {
                  int value = 9;
                  IWSetConfigBoolean("FWHM", 0);
                  IWSetConfig("FONT", nullptr);
                  return IWGetConfigBoolean("FWHM", &value) == 1 && value == 0 && !IWGetConfig("FONT");
              }),
              0);
    EXPECT_EQ(lines(folder / "kelvora" / "config"), "FWHM: true\nFONT: fixed\n") << "not saved";
    EXPECT_EQ(inProcess([&] {
                  IWGetConfig("FWHM");
                  write("FWHM: true\nFONT: fixed\nOTHER: 5\n"); // another program's change
                  IWSetConfigBoolean("FWHM", 0);
                  return IWSaveUserConfig() == 1 && holds("OTHER", "5");
              }),
              0);
    EXPECT_EQ(lines(folder / "kelvora" / "config"), "FWHM:\tfalse\nFONT: fixed\nOTHER: 5\n");
}

TEST_F(Config, TroubleIsToldAndTheDefaultsHold)
{
    const fs::path said = folder / "said";
    const auto sentences = [&] {
        const std::string text = lines(said);
        return std::count(text.begin(), text.end(), '\n');
    };
    write(std::string("KEY: 1\n\0", 8));
    EXPECT_EQ(inProcess([] { return !IWGetConfig("KEY") && !IWGetConfig("KEY"); }, said), 0);
    EXPECT_EQ(sentences(), 1) << "told once";
    EXPECT_EQ(inProcess([] { return IWSetConfig("bad key", "1"), IWSaveUserConfig() == 1; }, said), 0);
    fs::remove_all(folder / "kelvora");
    std::ofstream(folder / "kelvora") << "a file where the folder belongs";
    EXPECT_EQ(inProcess(
                  [] {
                      IWSetConfig("KEY", "1");
                      return IWSaveUserConfig() == 0 && holds("KEY", "1");
                  },
                  said),
              0)
        << "the value still holds in this process";
    EXPECT_EQ(sentences(), 2) << "reading and saving: " << lines(said);
}

TEST_F(Config, WithoutADisplayAttachingEndsTheProcess)
{
    const fs::path said = folder / "said";
    EXPECT_EQ(inProcess(
                  [] {
                      char name[] = "/opt/bin/lineprofile";
                      char* arguments[] = {name, nullptr};
                      setenv("DISPLAY", ":nowhere", 1);
                      return IWAttach(1, arguments) == 1;
                  },
                  said),
              255);
    EXPECT_EQ(lines(said), "lineprofile: cannot open the X display \":nowhere\"\n");
}
