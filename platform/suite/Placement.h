// Where a tool window goes beside an image window. No X here. All rectangles are on the screen, in pixels,
// window manager's frames included.
#pragma once

namespace suite {

struct Rectangle {
    int x = 0, y = 0, width = 0, height = 0;
    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

// tool moved right of image, else left of it, else below it, at its top or left edge as far as the screen
// allows; where it fits nowhere, into the corner of the screen where it covers least of the image. The result
// lies on the screen; of a tool larger than the screen the top left corner does.
Rectangle placeBeside(const Rectangle& image, const Rectangle& tool, const Rectangle& screen);

} // namespace suite
