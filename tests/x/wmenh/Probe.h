// A fake image window of the test's own, and the probe program beside it as a child process: the stage on
// which the tool-window library is tested.
#pragma once

// Before the X headers, whose macros it does not survive.
#include <gtest/gtest.h>

#include "platform/protocol/XProtocol.h"
#include "drive/Screen.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

// A top-level window with a canvas in it that is known as an image window.
class FakeImageWindow {
public:
    FakeImageWindow(Display* display, const std::string& imagePath, const drive::Rect& place);
    ~FakeImageWindow();
    FakeImageWindow(const FakeImageWindow&) = delete;
    FakeImageWindow& operator=(const FakeImageWindow&) = delete;

    // Publishes the record with another section.
    void show(int z);
    void destroy();

    int number = 0;
    Window top = None, canvas = None;
    protocol::DisplayRecord record;

private:
    Display* display;
};

class ProbeTest : public testing::Test {
protected:
    ProbeTest();
    ~ProbeTest() override;

    // Replaces the fake image window by one in another place.
    void showImage(const drive::Rect& area);
    // Starts the probe on the fake image window and waits until it is ready.
    void start(std::map<std::string, std::string> environment = {});
    // Starts it without waiting, and without an image window.
    void launch(std::map<std::string, std::string> environment, int windowNumber = 0);

    // Lines that the probe has said so far; those that begin with a word.
    std::vector<std::string> said() const;
    std::vector<std::string> said(const std::string& word) const;
    bool waitFor(const std::string& line);

    // A window of the probe that it told the id of: shell, rows, axis, plot, distance, area, text, counter,
    // number, menu, toggle, done, act, write, help.
    Window window(const std::string& name) const;
    drive::Rect place(const std::string& name);
    void press(const std::string& name);
    bool waitForFocus(Window window);
    // Types text in place of what the field with the focus holds.
    void replaceText(const std::string& text);
    // Windows on the screen whose title contains text.
    int countTitled(const std::string& text);
    // All windows on the screen, menus and the frames of window managers among them.
    int countTopLevels();

    std::filesystem::path folder;
    drive::Screen screen;
    std::unique_ptr<FakeImageWindow> image;
    std::unique_ptr<drive::Process> probe;
};
