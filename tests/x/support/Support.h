// SPDX-License-Identifier: MIT
// What tests with real windows share: images made for them, the texts of programs, the keyboard.
#pragma once

#include "drive/Screen.h"
#include "tests/unit/image/TempFolder.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace support {

// Runs a program to its end. Empty when it ended with 0, else what it said.
std::string problemOf(const std::vector<std::string>& command,
                      const std::map<std::string, std::string>& environment = {});

// Writes an image with makesample; options are separated by single blanks. Throws std::runtime_error.
void makeSample(const std::filesystem::path& path, const std::string& options);

int lineCount(const std::string& text);

// True when the window got the keyboard.
bool waitForFocus(drive::Screen& screen, Window window);

// True when a program has (has not) grabbed the pointer, as it does while a menu of its is up or a button is
// held.
bool waitForPointerGrab(drive::Screen& screen, bool grabbed);

// Bottom to top; none when the window is gone.
std::vector<Window> childrenOf(drive::Screen& screen, Window window);

// A menu that a client shows: a window above all others without the window manager's doing. None: there is
// none. window: any of the client's.
Window postedMenu(drive::Screen& screen, Window window);

// Turns the wheel up over an image with a key held: Shift steps to the next section, Control in time.
void turnWheelWith(drive::Screen& screen, KeySym key, Window canvas);

} // namespace support
