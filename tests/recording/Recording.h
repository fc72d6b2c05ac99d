// SPDX-License-Identifier: MIT
// A platform for tests of the tool's own code: implements what the tool calls of the four platform headers,
// notes each call with its arguments as one line of text, and answers from a script. Widgets are named by
// what they are ("Save", "plotArea"); without a display they are opaque tokens, good for the platform's own
// functions only, after useDisplay() real Motif widgets.
// Sites link the tool with platforms of their own and count on the order of its calls at start, at the end,
// in sampling and in saving: tests named after a "fixed order" keep it. Others look at results only.
#pragma once

#include <WMEnh.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace recording {

constexpr int imageWindowNumber = 3; // the one that IWAttachWin accepts
constexpr int imageWidth = 100, imageHeight = 80;

// What the platform answers. Start values: wavelength 0 of an image of one section is shown.
struct Script {
    int nt = 1;
    std::vector<float> waves{528.0f};
    std::vector<int> displayed{1}; // flag of each wavelength
    std::vector<int> colors{0};
    std::map<int, std::pair<float, float>> ranges; // of a wavelength; absent: unknown
    float spacing[3] = {0.5f, 0.5f, 1.0f};
    std::map<int, double> header; // field to value; absent: the file does not tell
    std::function<float(int x, int y, int z, int w)> pixel = [](int x, int y, int, int) {
        return x + 1000.0f * y;
    };
    std::set<int> unpositionable;                                        // wavelengths
    std::function<bool(int read)> readFails = [](int) { return false; }; // reads are counted from 0
    int z = 0, w = 0, t = 0;                                             // displayed section
    int columns = 1, rows = 1, style = 0;                                // multi-panel display
    int scratchSize = 0;
    std::vector<int> topImage;                      // of each wavelength
    std::string filename = "/images/cells.ome.tif"; // empty: cannot be told
    float stageOrigin[3] = {};                      // stage position of data (0, 0, 0)
    int onImage = 1;                                // whether pointer events lie on the image
    float fraction = 0.0f;                          // added to the x and y of an event
    float pressZ = 0.0f;
    int panel = 0, subPanel = 0;
    int lock = 7;          // what WMRequestMonitorLock returns
    std::string lockOwner; // given on refusal
    std::map<std::string, std::string> config;
    bool databaseURI = false;
    std::string dataDirectory = "/data";
    std::string chosenPath; // of the file chooser; empty: cancelled
    int confirm = 1;        // answer to WMConfirm
    std::function<void()> mainLoop = [] {};
};

extern Script script;
extern std::vector<std::string> calls; // so far, as "Name(argument, ...)"
// What was registered: handlers by event mask, callbacks by the control's label.
extern std::map<long, WMEventProc> handlers;
extern std::map<std::string, XtCallbackProc> actions;
extern std::map<std::string, Widget> widgets; // by name

// Back to the start script; forgets calls and graphics ids. Widgets and what was registered stay.
void reset();

// The calls whose text begins with one of the prefixes, in order.
std::vector<std::string> callsOf(const std::vector<std::string>& prefixes);

// A token widget for code that only hands it back to the platform.
Widget makeToken(const std::string& name);

// From now on widgets are real ones on $DISPLAY. The connection stays for the rest of the process.
Display* useDisplay();

} // namespace recording
