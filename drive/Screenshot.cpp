// SPDX-License-Identifier: MIT
// Saves what the screen, or the window with a title, shows as a PNG file.
#include "drive/Screen.h"

#include <cstdio>
#include <exception>

namespace {

// False, with a sentence on standard error, when there is no such window or the file can't be written.
bool takePicture(const char* path, const char* title)
{
    drive::Screen screen;
    drive::Picture picture;
    if (!title) {
        picture = screen.captureScreen();
    } else {
        const Window window = screen.findTitle(title, drive::Milliseconds{3000});
        if (window == None) {
            std::fprintf(stderr, "There is no window titled \"%s\".\n", title);
            return false;
        }
        picture = screen.capture(screen.frameGeometry(window));
    }
    if (!picture.save(path)) {
        std::fprintf(stderr, "%s can't be written.\n", path);
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "Usage: %s FILE.png [TITLE]\n", argv[0]);
        return 2;
    }
    try {
        return takePicture(argv[1], argc == 3 ? argv[2] : nullptr) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
