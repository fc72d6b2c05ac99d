// SPDX-License-Identifier: MIT
// The table of commands: nothing stands in it twice, and the manual page lists what it holds.
#include <gtest/gtest.h>

#include "platform/imagewindow/controls/Commands.h"
#include "tests/Folders.h"

#include <cctype>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

using namespace viewer;

TEST(Commands, NamesKeysAndMnemonicsAreNotTakenTwice)
{
    std::set<std::string> names, keys;
    std::map<Menu, std::set<char>> mnemonics;
    for (const Command& command : commands()) {
        SCOPED_TRACE(command.name);
        EXPECT_TRUE(names.insert(command.name).second);
        EXPECT_EQ(*command.keys == '\0', *command.accelerator == '\0');
        EXPECT_TRUE(!*command.keys || keys.insert(command.keys).second);
        const char mnemonic = command.mnemonic;
        EXPECT_NE(std::string(command.label).find(mnemonic), std::string::npos);
        EXPECT_TRUE(mnemonics[command.menu].insert(static_cast<char>(std::tolower(mnemonic))).second);
        const bool isList = command.kind == EntryKind::List;
        EXPECT_EQ(command.action == nullptr, isList);
        EXPECT_EQ(command.items != nullptr && command.itemAction != nullptr, isList);
        EXPECT_EQ(command.on != nullptr, command.kind != EntryKind::Push && !isList);
    }
}

namespace {

// As the manual page writes it.
std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text)
        result += c == '-' ? "\\-" : std::string(1, c);
    return result;
}

std::string listForManual()
{
    std::string list;
    for (const InputSection& section : mouseAndKeys())
        for (const InputRow& row : section.rows)
            list += escaped(row.input) + "|" + row.meaning + "\n";
    return list;
}

} // namespace

TEST(Commands, TheManualPageListsMouseAndKeys)
{
    std::ifstream file(MANUAL_DIR "/imagewindow.1");
    std::ostringstream manual;
    manual << file.rdbuf();
    const std::string text = std::move(manual).str(), head = ".SH MOUSE AND KEYS\n.TS\ntab(|);\nl l.\n";
    const std::size_t start = text.find(head), end = text.find("\n.TE\n", start);
    ASSERT_NE(start, std::string::npos);
    ASSERT_NE(end, std::string::npos);
    EXPECT_EQ(text.substr(start + head.size(), end + 1 - start - head.size()), listForManual());
}
