// SPDX-License-Identifier: MIT
// The user's configuration file: an X resource file that people may edit and several programs change. Saving
// merges the changed keys into what the file holds at that moment and replaces the file whole; comments and
// foreign lines stay as they are. No X connection here.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace iwl {

// Changed keys and their new values; a key without a value is removed.
using ConfigChanges = std::map<std::string, std::optional<std::string>>;

// The name under which a key is stored: without a trailing colon. Empty when it is no valid key (letters,
// digits,
// '_' and '-').
std::string configKeyName(std::string_view key);

// $XDG_CONFIG_HOME/kelvora/config, else ~/.config/kelvora/config.
std::string configPath();

struct ConfigText {
    std::string text;     // empty when there is no file or it cannot be used
    std::string problem;  // why it cannot be used, or what in it is not understood: one sentence, or empty
    bool damaged = false; // the file is no text or far too large
};
ConfigText readConfig(const std::string& path);

// text with every changed key set to its value, once.
std::string mergeConfig(std::string_view text, const ConfigChanges& changes);

struct ConfigSaved {
    std::string text;    // what the file holds now
    std::string problem; // one sentence, empty on success
};
// Merges the changes into the file under a lock against other programs. The old file stays when it fails.
ConfigSaved saveConfig(const std::string& path, const ConfigChanges& changes);

} // namespace iwl
