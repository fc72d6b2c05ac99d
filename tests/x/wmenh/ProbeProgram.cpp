// SPDX-License-Identifier: MIT
// A small tool window for the tests of the tool-window library: says on standard output what it is told, a
// line per call. Argument: the image window's number, 0 for none. What else it does is in its environment.
#include <IWL.h>
#include <KVRunUtils.h>
#include <OrUtils.h>
#include <WMEnh.h>

#include <Xm/Form.h>
#include <Xm/TextF.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

// What the controls are bound to.
int flag = 0, count = 0, number = 5;
char message[50] = "";
Widget frame, plot, text, counter;
// Windows that the test wants to find, by name.
std::map<std::string, Widget> named;

int moved(XEvent* event, void*)
{
    static bool slow = std::getenv("PROBE_SLOW") != nullptr;
    printf("motion %d %d\n", event->xmotion.x, event->xmotion.y);
    if (slow)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return 0;
}

int released(XEvent* event, void*)
{
    printf("release %u\n", event->xbutton.button);
    WMCancelEventHandler(1, PointerMotionMask);
    WMCancelEventHandler(1, ButtonReleaseMask);
    return 0;
}

int pressed(XEvent* event, void*)
{
    printf("press %u\n", event->xbutton.button);
    WMAddEventHandler(1, PointerMotionMask, moved, nullptr);
    WMAddEventHandler(1, ButtonReleaseMask, released, nullptr);
    if (event->xbutton.button == 3)
        WMCancelEventHandler(1, ButtonPressMask);
    return 0;
}

// The bytes that a text field shows.
void sayText(const char* what, Widget field)
{
    char* const shown = XmTextFieldGetString(field);
    printf("%s %s\n", what, shown);
    XtFree(shown);
}

void quit(Widget, XtPointer, XtPointer)
{
    printf("quit\n");
    exit(0);
}

void changed(Widget, XtPointer what, XtPointer)
{
    const int value = what == &flag ? flag : number;
    printf("%s %d\n", what == &flag ? "flag" : "number", value);
}

void choose(Widget, XtPointer, XtPointer)
{
    static char directory[256] = "", filter[256] = "*.slk", name[256] = "cells_PRF.slk", path[256] = "";
    static bool first = true;
    const char *const lost = std::getenv("PROBE_LOST"), *const proposed = std::getenv("PROBE_NAME");
    if (first)
        snprintf(directory, sizeof directory, "%s%s", std::getenv("PROBE_DIR"), lost ? lost : "");
    if (first && proposed)
        snprintf(name, sizeof name, "%s", proposed);
    first = false;
    WMSetGetFileSrc("ZVE_DEF_DIR:", "SYLK_EXT:");
    WMSetCenterOnScreen(1);
    const int result =
        WMInlineFileChooser("Save as SYLK Spreadsheet", directory, filter, 256, 12, name, path, 0, 0, 0);
    printf("chosen %d [%s] [%s] [%s] [%s]\n", result, path, directory, name, filter);
}

void act(Widget, XtPointer, XtPointer)
{
    static const char* const what = std::getenv("PROBE_ACTION");
    const std::string action = what ? what : "warn";
    if (action == "warn") {
        WMShowWarning("Error positioning to read image");
        WMShowWarning("Error positioning to read image");
    } else if (action == "many") {
        for (int i = 0; i < 20; ++i)
            WMShowWarning(("Warning " + std::to_string(i)).c_str());
    } else if (action == "confirm") {
        WMSetCenterOnScreen(1);
        printf("confirmed %d\n", WMConfirm("File already exists.\nDo you want to Overwrite it?"));
    } else if (action == "count") {
        count = 123456;
        WMUpdateField(counter);
        sayText("counter", counter);
    }
    printf("acted\n");
}

void addRows()
{
    named["toggle"] = WMAddToggleButton("Show Peak FWHM", &flag, changed, &flag, 0, 0);
    WMNewRow();
    named["plot"] = plot = WMAddDrawingArea(500, 200);
    WMAttachRightSide();
}

void addMessageArea()
{
    static int spare = 0, low = 0, high = 9, step = 2;
    WMStartMainWindowMessageAreaForm(frame);
    named["text"] = text = WMAddText(message, 50, nullptr);
    WMAttachRightSide();
    WMNewRow();
    WMAddDoneButton("Done", quit, nullptr, 0, 0);
    named["act"] = WMAddFuncButton("Save", act, nullptr, 0, 0);
    counter = WMAddIntField(&count, 1, 4, 20, &spare, &spare, &spare, nullptr, nullptr, 0, 0);
    named["counter"] = counter;
    XtVaSetValues(counter, XmNeditable, False, nullptr);
    named["write"] = WMAddFuncButton("Write To File...", choose, nullptr, 0, 0);
    named["number"] = WMAddIntField(&number, 1, 4, 20, &low, &high, &step, changed, &number, 0, 0);
    WMEndMainWindowMessageAreaForm();
}

void sayWindows()
{
    named["shell"] = XtParent(frame);
    for (const auto& [name, widget] : named)
        printf("window %s %lu\n", name.c_str(), XtWindow(widget));
}

} // namespace

int ProcDisChange(int slot, WMDisplayChange* change, void*)
{
    printf("change %d %d\n", slot, change->code);
    if (change->code == WM_DISPLAY_CLOSED)
        exit(0);
    return 0;
}

int EnterWindow(XEvent*, void*)
{
    printf("enter\n");
    return 0;
}

namespace {

int run(int argc, char** argv)
{
    setvbuf(stdout, nullptr, _IOLBF, 0);
    IWAttach(argc, argv);
    const int window = argc > 1 ? atoi(argv[1]) : 0;
    if (const char* const error = std::getenv("PROBE_ERROR")) {
        WMConfirmError("%s", error);
        return 3;
    }
    if (window > 0 && IWAttachWin(1, window, "ro") != 1)
        return 2;
    if (const char* const file = std::getenv("PROBE_HOLD")) {
        printf("attached\n");
        while (access(file, F_OK) != 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (window > 0) {
        char* owner = nullptr;
        const int lock = WMRequestMonitorLock("Arbitray Line Profile", IWRtWID(1), 12, &owner);
        printf("lock %d %s\n", lock, owner ? owner : "-");
        free(owner);
    }
    WMSetShellResize(1);
    frame = XtParent(WMInitMainWindow("Probe Window"));
    addRows();
    addMessageArea();
    WMEnableIWLEvent();
    WMProcDisplayChange(1, ProcDisChange, nullptr);
    WMAddEventHandler(1, ButtonPressMask, pressed, nullptr);
    WMAddEventHandler(1, EnterWindowMask, EnterWindow, nullptr);
    OrvelPositionNextToImage(window, frame);
    WMDisplay();
    XtVaSetValues(plot, XmNbottomAttachment, XmATTACH_FORM, nullptr); // it grows with the window
    WMAttachToImageWindow(nullptr, window);
    KVRunRegisterPgm("Probe", nullptr, quit);
    const char* const given = std::getenv("PROBE_MESSAGE");
    snprintf(message, sizeof message, "%s", given ? given : "Line length 12.500 \xB5m, angle -30.25 degrees");
    WMUpdateField(text);
    sayText("text", text);
    sayWindows();
    printf("ready\n");
    WMAppMainLoop();
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        fprintf(stderr, "wmenh_probe: %s\n", error.what());
        return 4;
    }
}
