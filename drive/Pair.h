// SPDX-License-Identifier: MIT
// Both programs side by side: imagewindow on image files and lineprofile on its first window, for end-to-end
// tests, benchmarks and the demonstration. Data coordinates are those of the image, as in
// platform/protocol/Geometry.h.
#pragma once

#include "drive/Screen.h"
#include "platform/protocol/DisplayRecord.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace drive {

struct PairOptions {
    std::vector<std::string> viewerArguments; // image files and options
    std::map<std::string, std::string> environment;
};

class Pair {
public:
    // Starts the programs in the folder bin and waits for both windows; throws std::runtime_error with what
    // the program said when one does not appear.
    Pair(Screen& screen, const std::filesystem::path& bin, const PairOptions& options);

    Screen& screen;
    Process viewer;
    int number = 0; // window number
    Window canvas = None;
    Window viewerWindow = None; // the toplevel around the canvas
    std::unique_ptr<Process> tool;
    Window toolWindow = None;
    Window plot = None; // the plot's drawing area

    // Starts another tool on the same window and waits for it; the present one must have ended.
    void restartTool();

    // Controls of the tool's settings row, and the intensity axis under it.
    enum Setting { ScalingLabel, ScalingMenu, FwhmToggle, IntensityAxis };
    Window setting(Setting which);
    // Controls of the tool's button row.
    enum Button { Done, Save, SavedLabel, SavedCount, Clear, Write, Help };
    Window button(Button which);
    // What the message line and the "Saved:" field show.
    std::string message();
    std::string savedCount();
    // The viewer's toggle of wavelength w, counted from 0.
    Window wavelengthToggle(int w);

    // Presses "Write To File...", types path into the chooser and confirms. Does not wait for the file.
    void writeToFile(const std::string& path);

    // Closes every image window of the display as the window manager's close button does.
    void closeImageWindows();

    // What the viewer publishes; throws when it cannot be read.
    protocol::DisplayRecord display();
    // Canvas pixel in the middle of the image pixel (x, y).
    protocol::WindowPosition canvasOf(double x, double y, int panel = 0);
    void dragSegment(double x0, double y0, double x1, double y1, int steps = 10);

private:
    std::filesystem::path bin;
    std::map<std::string, std::string> environment;
};

} // namespace drive
