// SPDX-License-Identifier: MIT
// A fake image window of the test's own, and the probe program beside it as a child process: the stage on
// which the tool-window library is tested.
#pragma once

#include "tests/x/iwl/FakeViewer.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class ProbeTest : public testing::Test {
protected:
    ProbeTest();
    ~ProbeTest() override;

    // Replaces the fake image window by one in another place.
    void showImage(const drive::Rect& place);
    // Starts the probe on the fake image window and waits until it is ready.
    void start(std::map<std::string, std::string> environment = {});
    // Starts it without waiting, and without an image window.
    void launch(std::map<std::string, std::string> environment, int windowNumber = 0);

    // Lines that the probe has said so far; those that begin with a word.
    std::vector<std::string> said() const;
    std::vector<std::string> said(const std::string& word) const;
    bool waitFor(const std::string& line);

    // A window of the probe that it told the id of: shell, toggle, plot, text, act, counter, write, number.
    Window window(const std::string& name) const;
    drive::Rect place(const std::string& name);
    void press(const std::string& name);
    // Windows on the screen whose title contains text.
    int countTitled(const std::string& text);

    TempFolder folder;
    drive::Screen screen;
    std::unique_ptr<FakeViewer> image;
    std::unique_ptr<drive::Process> probe;
};
