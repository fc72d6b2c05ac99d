// SPDX-License-Identifier: MIT
// The commands of an image window, each a row of one table. Menus, pop-up menu, accelerators, tool tips, the
// page of mouse and keys and the list in the manual page all come from it; a new command is a new row.
#pragma once

#include <X11/Intrinsic.h>

#include <span>
#include <string>
#include <vector>

namespace viewer {

struct Desk;

enum class Menu { File, View, Stack, Tools, Window, Help };

// What the entry in the menu looks like. A list is a menu of its own, made anew each time it opens.
enum class EntryKind { Push, OneOfSeveral, Switch, List };

struct Command {
    const char* name; // of the command and its widgets; no two are alike
    Menu menu;
    const char* label; // in the menus
    char mnemonic;
    const char* tip;              // one line: what it does
    const char* accelerator = ""; // a translation of the toolkit, empty: none
    const char* keys = "";        // the same as shown
    const char* icon = "";        // of the tool bar, empty: it has none there
    bool newGroup = false;        // a separator stands before it
    bool inPopup = false;         // also in the menu of button 3
    EntryKind kind = EntryKind::Push;
    bool (*enabled)(const Desk&) = nullptr; // null: always
    bool (*on)(const Desk&) = nullptr;      // of a choice or switch
    void (*action)(Desk&) = nullptr;        // of all but lists
    // Of a list: the texts, and what choosing one does.
    std::vector<std::string> (*items)(const Desk&) = nullptr;
    void (*itemAction)(Desk&, std::size_t item) = nullptr;
};

// In the order of the menus.
std::span<const Command> commands();

bool isEnabled(const Command& command, const Desk& desk);

// The menu's title in the menu bar.
const char* titleOf(Menu menu);

// What mouse and keys do, for the user to read.
struct InputRow {
    std::string input, meaning;
};
struct InputSection {
    std::string title;
    std::vector<InputRow> rows;
};
std::vector<InputSection> mouseAndKeys();

} // namespace viewer
