// SPDX-License-Identifier: MIT
// How the viewer's widgets look: colours and fonts, as fallback resources that the user's own resources
// override.
#pragma once

#include <X11/Intrinsic.h>

namespace viewer {

// A null-terminated list that lives as long as the process. Scalable fonts are used where the locale is UTF-8
// and the server's machine has some, else the server's bitmap fonts. Call after the locale has been set.
String* fallbackResources(Display* display);

} // namespace viewer
