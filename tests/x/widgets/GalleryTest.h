// SPDX-License-Identifier: MIT
// A page of the gallery on the screen, worked as a user would.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/x/support/Support.h"

#include "platform/protocol/XProtocol.h"
#include "tests/Folders.h"

#include <X11/keysym.h>

#include <memory>
#include <string>
#include <vector>

class GalleryTest : public testing::Test {
protected:
    void open(const std::string& page)
    {
        process = std::make_unique<drive::Process>(
            std::vector<std::string>{BIN_DIR "/../tests/widgets_gallery", page});
        window = screen.findTitle("Gallery: " + page);
        ASSERT_NE(window, Window{}) << process->errors();
    }

    // True when the gallery has told the line, as often as times.
    bool told(const std::string& line, int times = 1)
    {
        return drive::waitUntil([&] { return count(line) >= times; });
    }
    int count(const std::string& line)
    {
        const std::string all = "\n" + process->output();
        int found = 0;
        for (std::size_t at = 0; (at = all.find("\n" + line + "\n", at)) != std::string::npos; ++at)
            ++found;
        return found;
    }
    std::string output() { return process->output(); }

    // Resizes as the window manager does, and waits until the window has that width.
    bool widen(int width)
    {
        const drive::Rect present = screen.geometry(window);
        XResizeWindow(screen.x(), window, static_cast<unsigned>(width),
                      static_cast<unsigned>(present.height));
        return drive::waitUntil([&] { return screen.geometry(window).width == width; });
    }

    // The topmost menu, list or tip: a window of the gallery that the window manager leaves alone; None now.
    Window popupNow()
    {
        constexpr int clientBits = 21; // of a window's number, below those that name the client
        const std::vector<Window> tops = support::childrenOf(screen, screen.root());
        const protocol::ErrorTrap trap(screen.x());
        for (auto top = tops.rbegin(); top != tops.rend(); ++top) {
            XWindowAttributes attributes;
            if (*top >> clientBits == window >> clientBits &&
                XGetWindowAttributes(screen.x(), *top, &attributes) && attributes.override_redirect &&
                attributes.map_state == IsViewable)
                return *top;
        }
        return 0;
    }
    Window popup()
    {
        Window found = 0;
        drive::waitUntil([&] { return (found = popupNow()) != 0; });
        return found;
    }

    drive::Screen screen;
    std::unique_ptr<drive::Process> process;
    Window window = 0;
};
