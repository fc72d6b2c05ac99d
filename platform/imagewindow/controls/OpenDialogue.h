// SPDX-License-Identifier: MIT
// The dialogue that asks for images to open. Modeless for other windows of the process; owns itself.
#pragma once

#include "platform/imagewindow/controls/Intake.h"

#include <filesystem>

namespace viewer {

// Opens what is chosen, several files at a time if they are. Stays until all could be opened; the next time
// it starts in the same folder. folder: where it starts the first time, empty: the process's.
void chooseFiles(const Entrance& entrance, const std::filesystem::path& folder);

} // namespace viewer
