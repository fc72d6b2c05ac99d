// SPDX-License-Identifier: MIT
// Dialogues that only tell something. All are modeless for other windows of the process and own themselves.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

namespace viewer {

void showError(Widget parent, const std::string& title, const std::string& text);
// The program's own text; line feeds break its lines.
void showInformation(Widget parent, const std::string& title, const std::string& text);

} // namespace viewer
