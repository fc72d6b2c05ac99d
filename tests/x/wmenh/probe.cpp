// A tool window like the line profile's, for the tests of the tool-window library: says on standard output
// what it is told, a line per call. Arguments: the image window's number (0: none), then what to do.
#include "gauge/XrtGauge.h"

#include <IWL.h>
#include <KVRunUtils.h>
#include <OrUtils.h>
#include <WMEnh.h>

#include <Xm/Form.h>
#include <Xm/TextF.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

// What the controls are bound to.
int mode = 1, flag = 0, count = 0, number = 5;
char message[50] = "";
Widget frame, axis, plot, distance, text, counter;
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
    const std::string name = static_cast<const char*>(what);
    printf("%s %d\n", name.c_str(), name == "mode" ? mode : name == "flag" ? flag : number);
}

void choose(Widget, XtPointer, XtPointer)
{
    static char directory[256] = "", filter[256] = "*.slk", name[256] = "cells_PRF.slk", path[256] = "";
    static bool first = true;
    const char* const lost = std::getenv("PROBE_LOST");
    if (first)
        snprintf(directory, sizeof directory, "%s%s", std::getenv("PROBE_DIR"), lost ? lost : "");
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
    static const WMMenuItem items[] = {{"Autoscale"}, {"Constant Min/Max"}};
    WMAddInfoButton("Intensity Scaling", 0);
    named["menu"] = WMAddOptionMenu(items, 2, &mode, changed, const_cast<char*>("mode"), 0, 0);
    WMSetOffset(10, 0, 0, 0);
    named["toggle"] = WMAddToggleButton("Show Peak FWHM", &flag, changed, const_cast<char*>("flag"), 0, 0);
    WMAddToolTip("Show the Full-Width Half-Max of the\nlargest peak in the view (microns)");
    WMSetOffset(0, 0, 0, 0);
    WMNewRow();
    axis = WMAddCustom("axis", xmXrtGaLinearGaugeWidgetClass, nullptr, 0);
    XtVaSetValues(axis, XmNwidth, 60, XmNheight, 200, XmNresizable, True, XtVaTypedArg, XmNbackground,
                  XmRString, "tan", 4, nullptr);
    plot = WMAddDrawingArea(500, 200);
    XtVaSetValues(plot, XtVaTypedArg, XmNbackground, XmRString, "black", 6, nullptr);
    WMAttachRightSide();
    WMNewRow();
    distance = WMAddCustom("distance", xmXrtGaLinearGaugeWidgetClass, nullptr, 0);
    XtVaSetValues(distance, XmNwidth, 500, XmNheight, 24, XmNresizable, False, XmNtopAttachment,
                  XmATTACH_NONE, XmNbottomAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                  XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, axis, XtVaTypedArg, XmNbackground,
                  XmRString, "tan", 4, nullptr);
}

void addMessageArea()
{
    static int spare = 0, low = 0, high = 9, step = 2;
    WMStartMainWindowMessageAreaForm(frame);
    text = WMAddText(message, 50, nullptr);
    WMAttachRightSide();
    WMNewRow();
    named["done"] = WMAddDoneButton("Done", quit, nullptr, 0, 0);
    WMAddToolTip("Close this tool");
    named["act"] = WMAddFuncButton("Save", act, nullptr, 0, 0);
    WMAddInfoButton("Saved:", 0);
    counter = WMAddIntField(&count, 1, 4, 20, &spare, &spare, &spare, nullptr, nullptr, 0, 0);
    XtVaSetValues(counter, XmNeditable, False, nullptr);
    WMAddFuncButton("Clear", nullptr, nullptr, 0, 0);
    named["write"] = WMAddFuncButton("Write To File...", choose, nullptr, 0, 0);
    named["number"] =
        WMAddIntField(&number, 1, 4, 20, &low, &high, &step, changed, const_cast<char*>("number"), 0, 0);
    named["help"] = WMAddHelpButton("LineProfile");
    WMEndMainWindowMessageAreaForm();
}

void sayWindows()
{
    named.insert({{"shell", XtParent(frame)},
                  {"axis", axis},
                  {"plot", plot},
                  {"distance", distance},
                  {"text", text},
                  {"counter", counter}});
    for (const auto& [name, widget] : named)
        printf("window %s %lu\n", name.c_str(), XtWindow(widget));
}

void completeAttachments()
{
    XtVaSetValues(distance, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, axis, nullptr);
    XtVaSetValues(axis, XmNbottomAttachment, XmATTACH_FORM, XmNbottomOffset, 24, nullptr);
    XtVaSetValues(plot, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, distance, nullptr);
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

int main(int argc, char** argv)
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
    completeAttachments();
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
