// A platform for tests of the tool's own code: implements every function of the four platform headers, notes
// each call with its arguments as one line of text, and answers from a script. Widgets are named by what they
// are
// ("Save", "plotArea"). Without a display they are opaque tokens, good for the platform's own functions only;
// after useDisplay() they are real Motif widgets.
#pragma once

#include <WMEnh.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace recording {

// What the platform answers. Start values: image window 3 shows wavelength 0 of a 100 x 80 image of one
// section.
struct Script {
    int window = 3; // the number that IWAttachWin accepts
    int nx = 100, ny = 80;
    int nz = 1, nt = 1, np = 1;
    std::vector<float> waves{528.0f};
    std::vector<int> displayed{1}; // flag of each wavelength
    std::vector<int> colors{0};
    std::map<int, std::pair<float, float>> ranges; // of a wavelength; absent: unknown
    float spacing[3] = {0.5f, 0.5f, 1.0f};
    std::map<int, double> header; // field to value; absent: the file does not tell
    std::function<float(int x, int y, int z, int w)> pixel = [](int x, int y, int, int) {
        return x + 1000.0f * y;
    };
    std::set<int> unpositionable;         // wavelengths
    std::set<int> unreadable;             // wavelengths
    std::function<bool(int)> readFails;   // by the number of the read, from 0
    int z = 0, w = 0, t = 0, p = 0;       // displayed section
    int columns = 1, rows = 1, style = 0; // multi-panel display
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
    std::function<void()> mainLoop;
};

extern Script script;
// The calls so far, as "Name(argument, ...)".
extern std::vector<std::string> calls;
// Handlers by event mask, and what else was registered.
extern std::map<long, WMEventProc> handlers;
extern std::map<std::string, Widget> widgets;         // by name
extern std::map<std::string, XtCallbackProc> actions; // of the controls, by label

// Back to the start script; forgets calls and graphics ids. Widgets and what was registered stay.
void reset();

// The calls whose text begins with one of the prefixes, in order.
std::vector<std::string> callsOf(const std::vector<std::string>& prefixes);
// Takes all calls so far away.
std::vector<std::string> takeCalls();

// A token widget for code that only hands it back to the platform.
Widget makeToken(const std::string& name);

// From now on widgets are real ones on $DISPLAY. The connection stays for the rest of the process.
Display* useDisplay();
// Handles what the server has sent; the other waits for one event.
void processEvents();
void processNextEvent();

} // namespace recording
