// SPDX-License-Identifier: MIT
// The viewer program on made-up images, for its tests.
#pragma once

// Before the X headers, whose macros they do not survive.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/protocol/XProtocol.h"
#include "tests/x/support/Support.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace viewertest {

namespace fs = std::filesystem;

// For all tests of a run. The ranges and scales that a viewer keeps go there, too.
const TempFolder& scratchFolder();

// 40 x 30 pixels of 8-bit red, green and blue: shown as they are. Wavelength c of pixel (x, y) is
// (x + 11 y + 1009 c) mod 256.
std::string rgbImage();
drive::Pixel rgbPixel(int x, int y);

// An image with that name, made by makesample with these options when it is first asked for.
std::string madeOnce(const std::string& name, const std::string& options);

// 64 x 48, 4 sections, 3 wavelengths, 2 time points, 16 bit.
std::string stackImage();

// imagewindow with one image. Waits until it is shown.
class Viewer {
public:
    // standardInput: path of a file or pipe, empty: as the test's.
    explicit Viewer(std::vector<std::string> arguments, const std::string& standardInput = "");

    drive::Screen screen;
    drive::Process process;
    int number = 0; // 0: it did not show an image
    Window canvas = None;

    std::optional<protocol::DisplayRecord> record();
    // Waits until the published record is as asked, and tells the last one.
    protocol::DisplayRecord
    waitForRecord(const std::function<bool(const protocol::DisplayRecord&)>& condition);
    bool waitForPixel(int x, int y, const drive::Pixel& pixel);
    drive::Pixel pixelAt(int x, int y) { return screen.capture(canvas).at(x, y); }
    // Gives the window the keyboard.
    void focus();
    // The same, and presses a key with Control.
    void control(KeySym key);
    // A menu that is posted. None: there is none.
    Window waitForMenu();
};

} // namespace viewertest
