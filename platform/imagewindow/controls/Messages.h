// SPDX-License-Identifier: MIT
// Dialogues that only tell something, and the one that asks for a file. All are modeless for other windows of
// the process and own themselves.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

namespace viewer {

struct Desk;

void showError(Widget parent, const std::string& title, const std::string& text);
// The program's own text; line feeds break its lines.
void showInformation(Widget parent, const std::string& title, const std::string& text);
// Asks for a file and opens it in a new window. Stays until one could be opened; the next time it starts in
// the same folder.
void chooseFile(Widget parent, Desk& desk);

} // namespace viewer
