// SPDX-License-Identifier: MIT
// What the user has chosen for all windows to come: lines "name: value" in the file imagewindow of the user's
// folder of settings, $XDG_CONFIG_HOME/kelvora, else ~/.config/kelvora. Read anew at each call, so that
// several programs at a time lose nothing of each other's. No X.
#pragma once

#include <map>
#include <string>

namespace viewer {

using Settings = std::map<std::string, std::string>; // values by name

// Empty when nothing is kept under that name.
std::string setting(const std::string& name);

// Names are letters, values one line each. A sentence when they could not be kept, else an empty text.
std::string keepSettings(const Settings& changed);

} // namespace viewer
