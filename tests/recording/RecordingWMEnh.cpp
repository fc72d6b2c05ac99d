// SPDX-License-Identifier: MIT
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
#include <cstring>
#include <list>
#include <string>

using namespace recording;

namespace recording {
namespace {

Display* display;
Widget form;

} // namespace

Display* useDisplay()
{
    if (!display) {
        XtToolkitInitialize();
        int argc = 0;
        display = XtOpenDisplay(XtCreateApplicationContext(), nullptr, "lineprofile", "LineProfile", nullptr,
                                0, &argc, nullptr);
    }
    return display;
}

Widget makeToken(const std::string& name)
{
    static std::list<char> tokens;
    return widgets[name] = reinterpret_cast<Widget>(&tokens.emplace_back());
}

namespace {

Widget makeWidget(const std::string& name, WidgetClass widgetClass, ArgList args = nullptr,
                  Cardinal count = 0)
{
    return widgets[name] = XtCreateManagedWidget(name.c_str(), widgetClass, form, args, count);
}

Widget makeControl(const char* label, XtCallbackProc activated)
{
    actions[label] = activated;
    return makeWidget(label, xmLabelWidgetClass);
}

Widget makeArea(int width, int height)
{
    Arg size[] = {{const_cast<String>(XmNwidth), width}, {const_cast<String>(XmNheight), height}};
    return makeWidget("plotArea", xmDrawingAreaWidgetClass, size, XtNumber(size));
}

} // namespace

} // namespace recording

// The window and its controls.
RECORDED(void, WMSetShellResize, (int allow), , allow)
RECORDED(void, WMAdjustToFixedFont, (int on), , on)
RECORDED(void, WMNewRow, (void), )
RECORDED(void, WMSetOffset, (int left, int right, int top, int bottom), , left, right, top, bottom)
RECORDED(void, WMAttachRightSide, (void), )
RECORDED(void, WMDisplay, (void), XtRealizeWidget(widgets.at("shell")))
RECORDED(Widget, WMAddInfoButton, (const char* label, int reserved), makeControl(label, nullptr), label,
         reserved)
RECORDED(Widget, WMAddOptionMenu,
         (const WMMenuItem* items, int count, int* value, XtCallbackProc changed, XtPointer, int, int),
         makeControl("menu", changed), items[0].label, items[count - 1].label, *value)
RECORDED(Widget, WMAddToggleButton,
         (const char* label, int* value, XtCallbackProc changed, XtPointer, int, int),
         makeControl(label, changed), label, *value)
RECORDED(Widget, WMAddFuncButton, (const char* label, XtCallbackProc activated, XtPointer, int, int),
         makeControl(label, activated), label)
RECORDED(Widget, WMAddDoneButton, (const char* label, XtCallbackProc activated, XtPointer, int, int),
         makeControl(label, activated), label)
RECORDED(Widget, WMAddHelpButton, (const char* topic), makeControl("Help", nullptr), topic)
RECORDED(Widget, WMAddText, (char* buffer, int columns, XtCallbackProc),
         makeWidget("text", xmTextFieldWidgetClass), buffer, columns)
RECORDED(Widget, WMAddIntField,
         (int* value, int increment, int columns, int maxLength, int*, int*, int*, XtCallbackProc, XtPointer,
          int, int),
         makeWidget("counter", xmTextFieldWidgetClass), *value, increment, columns, maxLength)
RECORDED(Widget, WMAddCustom, (const char* name, WidgetClass widgetClass, ArgList args, Cardinal count),
         makeWidget(name, widgetClass, args, count), name, count)
RECORDED(Widget, WMAddDrawingArea, (int width, int height), makeArea(width, height), width, height)
RECORDED(void, WMAddToolTip, (const char* text), , text)
RECORDED(void, WMStartMainWindowMessageAreaForm, (Widget frame), , frame)
RECORDED(void, WMEndMainWindowMessageAreaForm, (void), )
RECORDED(void, WMDisableField, (Widget control), , control)
RECORDED(void, WMEnableField, (Widget control), , control)
RECORDED(void, WMUpdateField, (Widget control), , control)

Widget WMInitMainWindow(const char* title)
{
    note("WMInitMainWindow", title);
    Widget shell =
        XtVaAppCreateShell("lineprofile", "LineProfile", applicationShellWidgetClass, display, nullptr);
    Widget frame = XtVaCreateManagedWidget("frame", xmFrameWidgetClass, shell, nullptr);
    form = XtVaCreateManagedWidget("form", xmFormWidgetClass, frame, XmNwidth, 700, XmNheight, 500,
                                   XmNresizePolicy, XmRESIZE_NONE, nullptr);
    widgets.insert({{"shell", shell}, {"frame", frame}});
    return form;
}

// The image window.
RECORDED(void, WMEnableIWLEvent, (void), )
RECORDED(void, WMCancelEventHandler, (int slot, long mask), static_cast<void>(handlers.erase(mask)), slot,
         EventNames{mask})
RECORDED(void, WMProcDisplayChange, (int slot, WMDisplayChangeProc proc, void*), , slot,
         proc == ProcDisChange ? "ProcDisChange" : "another")
RECORDED(void, WMCancelDisplayChange, (int slot), , slot)
RECORDED(void, WMAttachToImageWindow, (Widget shell, int windowNumber), , shell, windowNumber)
RECORDED(void, WMReleaseMonitorLock, (int lockId), , lockId)

void WMAddEventHandler(int slot, long mask, WMEventProc handler, void*)
{
    note("WMAddEventHandler", slot, EventNames{mask});
    handlers[mask] = handler;
}

int WMRequestMonitorLock(const char* title, Window imageWindow, int kind, char** owner)
{
    note("WMRequestMonitorLock", title, imageWindow, kind);
    if (script.lock <= 0)
        *owner = strdup(script.lockOwner.c_str());
    return script.lock;
}

// Dialogues.
RECORDED(int, WMConfirm, (const char* text), script.confirm, text)
RECORDED(void, WMShowWarning, (const char* text), , text)
RECORDED(void, WMSetCenterOnScreen, (int on), , on)
RECORDED(void, WMSetGetFileSrc, (const char* directoryKey, const char* extensionKey), , directoryKey,
         extensionKey)

void WMConfirmError(const char* format, ...)
{
    char text[4096];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    note("WMConfirmError", text);
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

RECORDED(void, WMAppMainLoop, (void), script.mainLoop())

// The suite.
RECORDED(int, OrvelPositionNextToImage, (int windowNumber, Widget widget), 1, windowNumber, widget)
RECORDED(int, OrvelIsADatabaseURI, (const char* name), script.databaseURI, name)
RECORDED(const char*, OrvelGetVerifyDataDirectory, (void), script.dataDirectory.c_str())
RECORDED(int, KVRunRegisterPgm, (const char* title, Widget shell, XtCallbackProc), 1, title, shell)

int OrvelGenerateFileName(const char* source, const char* tag, const char* extension, char* name)
{
    note("OrvelGenerateFileName", source, tag, extension);
    std::snprintf(name, ORVEL_NAME_SIZE, "default_%s.%s", tag, extension);
    return 1;
}
