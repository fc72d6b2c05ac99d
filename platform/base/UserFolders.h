// SPDX-License-Identifier: MIT
// Where the programs keep what belongs to the user, by the base directory convention: the folder that an XDG
// variable names when that is absolute, else the usual place in the home folder. Each path is empty when
// neither is known. Nothing is created.
#pragma once

#include <filesystem>

namespace base {

// $HOME when it is absolute, else the home folder of the user's account.
std::filesystem::path homeFolder();

// The base folders, which all programs share.
std::filesystem::path configBase(); // $XDG_CONFIG_HOME, else ~/.config
std::filesystem::path cacheBase();  // $XDG_CACHE_HOME, else ~/.cache
std::filesystem::path dataBase();   // $XDG_DATA_HOME, else ~/.local/share

// Our own folders in them.
std::filesystem::path configFolder(); // settings
std::filesystem::path cacheFolder();  // what can be computed anew
std::filesystem::path dataFolder();   // what the user has told about an image

} // namespace base
