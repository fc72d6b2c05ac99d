// SPDX-License-Identifier: MIT
// The window that shows a help topic: a text file <topic>.txt in UTF-8.
#pragma once

#include <optional>
#include <string>

namespace wmenh {

// Text of a topic, nothing when there is none. Looked for in $KELVORA_HELP_DIR, in ../share/kelvora/help
// beside the program's own folder, and where the build has it.
std::optional<std::string> helpText(const std::string& topic);

// Shows the topic's window, or raises it when it is open.
void showHelp(const std::string& topic);

} // namespace wmenh
