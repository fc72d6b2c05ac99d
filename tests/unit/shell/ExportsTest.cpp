// SPDX-License-Identifier: MIT
// What the linked tool shows to the libraries beside it, as nm and readelf tell it.
#include "tests/Folders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using ::testing::ElementsAre;

namespace {

using Words = std::vector<std::string>;

// The output lines of a command on the tool, in words.
std::vector<Words> linesOf(const std::string& command)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(
        popen((command + " " BIN_DIR "/lineprofile").c_str(), "r"), pclose);
    std::vector<Words> lines;
    char line[4096];
    while (pipe && std::fgets(line, sizeof line, pipe.get())) {
        std::istringstream words(line);
        lines.emplace_back(std::istream_iterator<std::string>(words), std::istream_iterator<std::string>());
    }
    return lines;
}

// The words of a line of readelf's table of symbols: number, value, size, type, binding, visibility, section,
// name.
enum Column { Visibility = 5, Name = 7 };

} // namespace

#ifndef __SANITIZE_ADDRESS__ // the sanitizers bring names of their own
namespace {

// Data of a shared library that the linker has placed in the program, such as a widget class: not ours.
std::set<std::string> copiedFromLibraries()
{
    std::set<std::string> names;
    for (const Words& words : linesOf("readelf --wide --relocs"))
        if (words.size() > 4 && words[2].ends_with("_COPY"))
            names.insert(words[4]);
    return names;
}

} // namespace

// Weak ones are templates of the standard library.
TEST(Exports, AreTheTwoCallbacksAlone)
{
    const std::set<std::string> copied = copiedFromLibraries();
    std::set<std::string> exported;
    for (const Words& words : linesOf("nm --dynamic --defined-only --format=posix")) {
        const bool fromLinker = words[0].starts_with("_") || words[0].find('@') != std::string::npos;
        const bool weak = words[1] == "W" || words[1] == "V";
        if (!weak && !fromLinker && !copied.contains(words[0]))
            exported.insert(words[0]);
    }
    EXPECT_THAT(exported, ElementsAre("EnterWindow", "ProcDisChange"));
}
#endif

// A library that a site links in may have these names too; the linker would then tie both together.
TEST(Exports, LeaveTheStateOfTheToolPrivate)
{
    std::map<std::string, std::string> visibility;
    for (const Words& words : linesOf("readelf --wide --symbols"))
        if (words.size() > Name)
            visibility[words[Name]] = words[Visibility];
    for (const char* name : {"plot", "profile", "segment", "settings", "toolWindow"})
        EXPECT_EQ(visibility[name], "HIDDEN") << name;
    EXPECT_EQ(visibility["ProcDisChange"], "DEFAULT");
}
