// SPDX-License-Identifier: MIT
// What the user takes away: the view as a file and on the clipboard, a figure with the profile.
#pragma once

namespace viewer {

struct Desk;

// Asks where to save the view as it is then.
void savePicture(Desk& desk);
void copyPicture(Desk& desk);
// A page with the view and the profile along the segment that a tool has drawn last.
void saveFigure(Desk& desk);

} // namespace viewer
