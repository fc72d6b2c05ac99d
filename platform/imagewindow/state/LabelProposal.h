// SPDX-License-Identifier: MIT
// Images that are seen for the first time and hold labels. No X.
#pragma once

#include "platform/imagewindow/state/Shown.h"

namespace viewer {

// Shows labels in their colours, and says so, where the file's name or metadata call them labels and the
// section has areas of several whole numbers. Reads a part of the section in the first case alone.
void proposeLabels(Shown& shown);

} // namespace viewer
