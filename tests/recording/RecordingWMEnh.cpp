// libWMEnh, libOrUtils and libKVRunUtils, recorded.
#include "tests/recording/Note.h"

#include <KVRunUtils.h>
#include <OrUtils.h>

#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/TextF.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

using namespace recording;

namespace recording {

static XtAppContext application;
static Display* display;
static Widget form;

Display* useDisplay()
{
    if (!display) {
        XtToolkitInitialize();
        application = XtCreateApplicationContext();
        int argc = 0;
        display =
            XtOpenDisplay(application, nullptr, "lineprofile", "LineProfile", nullptr, 0, &argc, nullptr);
    }
    return display;
}

void processEvents()
{
    XSync(display, False);
    while (XtAppPending(application))
        XtAppProcessEvent(application, XtIMAll);
}

void processNextEvent()
{
    XtAppProcessEvent(application, XtIMAll);
}

Widget makeToken(const std::string& name)
{
    static std::vector<std::unique_ptr<char>> tokens;
    tokens.push_back(std::make_unique<char>());
    return widgets[name] = reinterpret_cast<Widget>(tokens.back().get());
}

// A second widget of the same name gets a number.
static Widget makeWidget(std::string name, WidgetClass widgetClass, ArgList args = nullptr,
                         Cardinal count = 0)
{
    if (widgets.contains(name))
        name += " 2";
    if (!display)
        return makeToken(name);
    return widgets[name] = XtCreateManagedWidget(name.c_str(), widgetClass, form, args, count);
}

static Widget makeControl(const char* label, XtCallbackProc activated)
{
    actions[label] = activated;
    return makeWidget(label, xmLabelWidgetClass);
}

std::string format(const char* format, va_list arguments)
{
    char buffer[4096];
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    return buffer;
}

} // namespace recording

void WMSetShellResize(int allow)
{
    note("WMSetShellResize", allow);
}

Widget WMInitMainWindow(const char* title)
{
    note("WMInitMainWindow", title);
    Widget shell =
        XtVaAppCreateShell("lineprofile", "LineProfile", applicationShellWidgetClass, display, nullptr);
    Widget frame = XtVaCreateManagedWidget("frame", xmFrameWidgetClass, shell, nullptr);
    form = XtVaCreateManagedWidget("form", xmFormWidgetClass, frame, XmNwidth, 700, XmNheight, 500,
                                   XmNresizePolicy, XmRESIZE_NONE, nullptr);
    widgets.insert({
        {"shell", shell},
        {"frame", frame},
        {"form",  form }
    });
    return form;
}

void WMAdjustToFixedFont(int on)
{
    note("WMAdjustToFixedFont", on);
}

void WMNewRow(void)
{
    note("WMNewRow");
}

void WMSetOffset(int left, int right, int top, int bottom)
{
    note("WMSetOffset", left, right, top, bottom);
}

void WMAttachRightSide(void)
{
    note("WMAttachRightSide");
}

void WMDisplay(void)
{
    note("WMDisplay");
    XtRealizeWidget(widgets.at("shell"));
}

Widget WMAddInfoButton(const char* label, int reserved)
{
    note("WMAddInfoButton", label, reserved);
    return makeControl(label, nullptr);
}

Widget WMAddOptionMenu(const WMMenuItem* items, int count, int* value, XtCallbackProc changed, XtPointer, int,
                       int)
{
    std::string labels;
    for (int i = 0; i < count; i++)
        labels += std::string(i > 0 ? "|" : "") + items[i].label;
    note("WMAddOptionMenu", labels.c_str(), *value);
    return makeControl("menu", changed);
}

Widget WMAddToggleButton(const char* label, int* value, XtCallbackProc changed, XtPointer, int, int)
{
    note("WMAddToggleButton", label, *value);
    return makeControl(label, changed);
}

Widget WMAddFuncButton(const char* label, XtCallbackProc activated, XtPointer, int, int)
{
    note("WMAddFuncButton", label);
    return makeControl(label, activated);
}

Widget WMAddDoneButton(const char* label, XtCallbackProc activated, XtPointer, int, int)
{
    note("WMAddDoneButton", label);
    return makeControl(label, activated);
}

Widget WMAddHelpButton(const char* topic)
{
    note("WMAddHelpButton", topic);
    return makeControl("Help", nullptr);
}

Widget WMAddText(char* buffer, int columns, XtCallbackProc)
{
    note("WMAddText", buffer, columns);
    return makeWidget("text", xmTextFieldWidgetClass);
}

Widget WMAddIntField(int* value, int increment, int columns, int maxLength, int*, int*, int*, XtCallbackProc,
                     XtPointer, int, int)
{
    note("WMAddIntField", *value, increment, columns, maxLength);
    return makeWidget("counter", xmTextFieldWidgetClass);
}

Widget WMAddCustom(const char* name, WidgetClass widgetClass, ArgList args, Cardinal count)
{
    note("WMAddCustom", name, count);
    return makeWidget(name, widgetClass, args, count);
}

Widget WMAddDrawingArea(int width, int height)
{
    note("WMAddDrawingArea", width, height);
    Arg size[] = {
        {const_cast<String>(XmNwidth),  width },
        {const_cast<String>(XmNheight), height}
    };
    return makeWidget("plotArea", xmDrawingAreaWidgetClass, size, XtNumber(size));
}

void WMAddToolTip(const char* text)
{
    note("WMAddToolTip", text);
}

void WMStartMainWindowMessageAreaForm(Widget frame)
{
    note("WMStartMainWindowMessageAreaForm", frame);
}

void WMEndMainWindowMessageAreaForm(void)
{
    note("WMEndMainWindowMessageAreaForm");
}

void WMDisableField(Widget control)
{
    note("WMDisableField", control);
}

void WMEnableField(Widget control)
{
    note("WMEnableField", control);
}

void WMUpdateField(Widget control)
{
    note("WMUpdateField", control);
}

void WMEnableIWLEvent(void)
{
    note("WMEnableIWLEvent");
}

void WMAddEventHandler(int slot, long mask, WMEventProc handler, void*)
{
    note("WMAddEventHandler", slot, mask);
    handlers[mask] = handler;
}

void WMCancelEventHandler(int slot, long mask)
{
    note("WMCancelEventHandler", slot, mask);
    handlers.erase(mask);
}

void WMProcDisplayChange(int slot, WMDisplayChangeProc proc, void*)
{
    note("WMProcDisplayChange", slot, proc == ProcDisChange ? "ProcDisChange" : "another");
}

void WMCancelDisplayChange(int slot)
{
    note("WMCancelDisplayChange", slot);
}

void WMAttachToImageWindow(Widget shell, int windowNumber)
{
    note("WMAttachToImageWindow", shell, windowNumber);
}

int WMRequestMonitorLock(const char* title, Window imageWindow, int kind, char** owner)
{
    note("WMRequestMonitorLock", title, imageWindow, kind);
    if (script.lock <= 0)
        *owner = strdup(script.lockOwner.c_str());
    return script.lock;
}

void WMReleaseMonitorLock(int lockId)
{
    note("WMReleaseMonitorLock", lockId);
}

void WMConfirmError(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    note("WMConfirmError", recording::format(format, arguments).c_str());
    va_end(arguments);
}

int WMConfirm(const char* text)
{
    note("WMConfirm", text);
    return script.confirm;
}

void WMShowWarning(const char* text)
{
    note("WMShowWarning", text);
}

void WMSetCenterOnScreen(int on)
{
    note("WMSetCenterOnScreen", on);
}

void WMSetGetFileSrc(const char* directoryKey, const char* extensionKey)
{
    note("WMSetGetFileSrc", directoryKey, extensionKey);
}

int WMInlineFileChooser(const char* title, char* directory, char* filter, int capacity, int mode,
                        char* defaultName, char* path, int, int, int)
{
    note("WMInlineFileChooser", title, directory, filter, capacity, mode, defaultName);
    if (script.chosenPath.empty())
        return 0;
    std::snprintf(path, static_cast<size_t>(capacity), "%s", script.chosenPath.c_str());
    return 1;
}

void WMAppMainLoop(void)
{
    note("WMAppMainLoop");
    if (script.mainLoop)
        script.mainLoop();
}

int OrvelPositionNextToImage(int windowNumber, Widget widget)
{
    note("OrvelPositionNextToImage", windowNumber, widget);
    return 1;
}

int OrvelGenerateFileName(const char* source, const char* tag, const char* extension, char* name)
{
    note("OrvelGenerateFileName", source, tag, extension);
    std::snprintf(name, ORVEL_NAME_SIZE, "default_%s.%s", tag, extension);
    return 1;
}

int OrvelIsADatabaseURI(const char* name)
{
    note("OrvelIsADatabaseURI", name);
    return script.databaseURI;
}

const char* OrvelGetVerifyDataDirectory(void)
{
    note("OrvelGetVerifyDataDirectory");
    return script.dataDirectory.c_str();
}

int KVRunRegisterPgm(const char* title, Widget shell, XtCallbackProc)
{
    note("KVRunRegisterPgm", title, shell);
    return 1;
}
