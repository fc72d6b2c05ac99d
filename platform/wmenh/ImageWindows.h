// SPDX-License-Identifier: MIT
// The end of the attached image windows, for what must not outlive them.
#pragma once

namespace wmenh {

// From now on the end of each attached window is noticed, also before the program asks for events.
void watchImageWindows();

// True when there were attached windows and all of them have ended.
bool imageWindowsGone();

} // namespace wmenh
