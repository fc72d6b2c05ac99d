// Saves what the screen, or the window with a title, shows as a PNG file.
#include "drive/Screen.h"

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "Usage: %s FILE.png [TITLE]\n", argv[0]);
        return 2;
    }
    drive::Screen screen;
    drive::Picture picture;
    if (argc == 2) {
        picture = screen.captureScreen();
    } else {
        const Window window = screen.findTitle(argv[2], drive::Milliseconds{3000});
        if (window == None) {
            std::fprintf(stderr, "%s: there is no window titled \"%s\".\n", argv[0], argv[2]);
            return 1;
        }
        picture = screen.capture(screen.frameGeometry(window));
    }
    return picture.save(argv[1]) ? 0 : 1;
}
