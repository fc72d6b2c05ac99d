// SPDX-License-Identifier: MIT
// Works X programs as a user would: finds their windows, moves the pointer and types through XTEST, takes
// screenshots.
#pragma once

#include "drive/Process.h"

#include <X11/Xlib.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace drive {

struct Rect {
    int x = 0, y = 0, width = 0, height = 0;
};

struct Pixel {
    unsigned char red = 0, green = 0, blue = 0;
    friend bool operator==(const Pixel&, const Pixel&) = default;
};

// A picture of a part of the screen.
struct Picture {
    int width = 0, height = 0;
    std::vector<Pixel> pixels; // row by row
    const Pixel& at(int x, int y) const { return pixels[static_cast<size_t>(y) * width + x]; }
    // Writes a PNG file; false when it cannot.
    bool save(const std::string& path) const;
};

class Screen {
public:
    Screen(); // opens $DISPLAY; throws std::runtime_error
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    Display* x() { return display; }
    Window root() const;

    // A viewable window whose title (_NET_WM_NAME, else WM_NAME) contains text; None when there is none in
    // time.
    Window findTitle(const std::string& text, Milliseconds timeout = patience);
    Window findTitleNow(const std::string& text);
    // The owner of the selection IMAGE_WINDOW_<number>.
    Window findImageWindow(int number, Milliseconds timeout = patience);
    std::string title(Window window);
    bool viewable(Window window);
    // Position on the screen and size, without the window manager's frame.
    Rect geometry(Window window);
    // As geometry(), with the window manager's frame.
    Rect frameGeometry(Window window);

    // The viewable windows without children below window, top to bottom and left to right: the controls of a
    // Motif window, label by label and button by button.
    std::vector<Window> leaves(Window window);

    // The managed window that holds window, None when there is none.
    Window toplevel(Window window);

    // Bytes of a property, empty when it has none.
    std::string property(Window window, const char* name);

    // Pointer and keys by XTEST, in pixels of window (root: of the screen). Each waits until the server has
    // taken it.
    void moveTo(Window window, int x, int y);
    void press(unsigned button = 1);
    void release(unsigned button = 1);
    void click(Window window, int x, int y, unsigned button = 1);
    void clickCentre(Window window, unsigned button = 1);
    // Asks the window to close as the window manager's close button does (WM_DELETE_WINDOW).
    void requestClose(Window window);
    void doubleClick(Window window, int x, int y);
    // Press, motion in steps, release.
    void drag(Window window, int x0, int y0, int x1, int y1, int steps = 10, unsigned button = 1);
    void keyDown(KeySym key);
    void keyUp(KeySym key);
    void key(KeySym key);
    void keyWith(KeySym modifier, KeySym key);
    // Types ASCII text with Shift where needed.
    void type(const std::string& text);
    // Puts text in place of what the Motif text field with the focus holds.
    void replaceText(const std::string& text);
    // What a Motif text field shows: selects it with the pointer and asks for the selection.
    std::string textIn(Window field);

    Picture capture(const Rect& area);
    Picture capture(Window window); // what the screen shows where the window is
    Picture captureScreen();

private:
    Display* display;
    Window asker; // never shown; owns and asks for selections
    std::chrono::steady_clock::time_point lastSelected;
    std::optional<std::string> selection(Window notOwner);
    void awaitPointer(const std::function<bool(int x, int y, unsigned buttons)>& condition);
};

// Waits until the screen stays the same for a tenth of a second: the programs have drawn all they had to.
// False when it never does. Where a window, a property or a text tells the same, wait for that.
bool waitUntilCalm(Screen& screen);

} // namespace drive
