// SPDX-License-Identifier: MIT
// Where a window goes beside another one. No X here. All rectangles are on the screen, in pixels, window
// manager's frames included.
#pragma once

namespace base {

struct Rectangle {
    int x = 0, y = 0, width = 0, height = 0;
    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

// moving put right of fixed, else left of it, else below it, at its top or left edge as far as the screen
// allows; where it fits nowhere, into the corner of the screen where it covers least. The result lies on the
// screen; of a window larger than the screen the top left corner does.
Rectangle placeBeside(const Rectangle& fixed, const Rectangle& moving, const Rectangle& screen);

// window moved as little as it takes to lie on the screen; of one that is larger the top left corner does.
Rectangle keptOnScreen(const Rectangle& window, const Rectangle& screen);

} // namespace base
