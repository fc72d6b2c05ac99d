// SPDX-License-Identifier: MIT
/* libWMEnh: the tool-window library. Builds a tool's main window row by row on one XmForm, binds controls to
 * plain variables, shows modal dialogues and a file chooser, and delivers the events and display changes of
 * an image window. Uses the X connection that IWAttach (libIWL) made. All calls are made from one thread.
 *
 * A program that links this library exports ProcDisChange and EnterWindow. */
#ifndef WMENH_H
#define WMENH_H

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

/* One item of an option menu: its label; the bound value is the item's index. */
typedef struct {
    const char* label;
} WMMenuItem;

/* What a display-change notification carries. */
typedef struct {
    short code; /* WM_DISPLAY_... */
    short slot;
} WMDisplayChange;
#define WM_DISPLAY_CHANGED 680 /* section, wavelengths, colours, zoom or any other part of the display */
#define WM_DISPLAY_CLOSED 681  /* the image window is going away */

typedef int (*WMDisplayChangeProc)(int slot, WMDisplayChange* change, void* clientData);
/* Handler of image-window events; its result is ignored. */
typedef int (*WMEventProc)(XEvent* event, void* clientData);

/* Main window. WMInitMainWindow makes the shell, a frame in it and the form, and returns the form: the rows
 * go into it, its parent is the frame, and the frame's parent is the shell. Nothing is shown before
 * WMDisplay, which realises the window; it appears when events are handled next, so that attachments that are
 * changed until then count. Whatever the program attaches to the form lines up with the rows: the margin is
 * outside the form. Drawing areas and custom widgets touch their left neighbour when that is one too; other
 * controls are spaced out and centred on the row's tallest. */
void WMSetShellResize(int allow);
Widget WMInitMainWindow(const char* title);
void WMAdjustToFixedFont(int on);
void WMNewRow(void);
void WMSetOffset(int left, int right, int top, int bottom);
void WMAttachRightSide(void);
void WMDisplay(void);

/* Controls of the current row, left to right; each returns its widget. The three trailing arguments of the
 * menu, toggle and buttons are client data of the callback, and two reserved words that are 0. */
Widget WMAddInfoButton(const char* label, int reserved);
Widget WMAddOptionMenu(const WMMenuItem* items, int count, int* value, XtCallbackProc changed,
                       XtPointer clientData, int reserved1, int reserved2);
Widget WMAddToggleButton(const char* label, int* value, XtCallbackProc changed, XtPointer clientData,
                         int reserved1, int reserved2);
Widget WMAddFuncButton(const char* label, XtCallbackProc activated, XtPointer clientData, int reserved1,
                       int reserved2);
Widget WMAddDoneButton(const char* label, XtCallbackProc activated, XtPointer clientData, int reserved1,
                       int reserved2);
Widget WMAddHelpButton(const char* topic);
/* A text field of columns characters that shows buffer, read-only for the user: ISO 8859-1 bytes; well-formed
 * UTF-8 sequences among them (a file name) are shown as what they mean. */
Widget WMAddText(char* buffer, int columns, XtCallbackProc changed);
/* An integer field bound to value: the up and down keys change it by increment, it is columns wide (wider
 * when the number needs it) and takes at most maxLength characters. minimum and maximum limit what the user
 * enters when they are two different ints, *minimum below *maximum; step replaces increment when it is a
 * third int and positive: with the same spare int three times there are no limits. Callback, client data and
 * two reserved words. */
Widget WMAddIntField(int* value, int increment, int columns, int maxLength, int* minimum, int* maximum,
                     int* step, XtCallbackProc changed, XtPointer clientData, int reserved1, int reserved2);
/* A widget of any class (its args and their count, or 0, 0). */
Widget WMAddCustom(const char* name, WidgetClass widgetClass, ArgList args, Cardinal count);
Widget WMAddDrawingArea(int width, int height);
/* Tool tip of the control added last. */
void WMAddToolTip(const char* text);
/* The area below the rows: message line and button row. */
void WMStartMainWindowMessageAreaForm(Widget frame);
void WMEndMainWindowMessageAreaForm(void);

void WMDisableField(Widget control);
void WMEnableField(Widget control);
/* Shows the bound variable's present value. */
void WMUpdateField(Widget control);

/* Image window events. WMEnableIWLEvent selects them for every attached slot; handlers hear the events of
 * their mask from then on. One handler per slot and mask: a second registration replaces the first. Queued
 * motion events are compressed to the newest. */
void WMEnableIWLEvent(void);
void WMAddEventHandler(int slot, long mask, WMEventProc handler, void* clientData);
void WMCancelEventHandler(int slot, long mask);
void WMProcDisplayChange(int slot, WMDisplayChangeProc proc, void* clientData);
void WMCancelDisplayChange(int slot);
/* Keeps the tool window above an image window, whose transient window it becomes. shell 0 is the main window.
 */
void WMAttachToImageWindow(Widget shell, int windowNumber);

/* Exclusive input of an image window. Returns an id > 0 when granted. Otherwise a negative value, and *owner
 * is a malloc'ed string naming the tool that holds the lock; the caller frees it. kind is 12, pointer input.
 */
int WMRequestMonitorLock(const char* title, Window imageWindow, int kind, char** owner);
void WMReleaseMonitorLock(int lockId);

/* Modal dialogues, titled "Error", "Question" and "Warning". They work before there is a main window. Escape
 * and the window manager's close button answer no; the default button of WMConfirm, for Return, is No. An
 * error also counts as confirmed when the attached image windows have ended. */
void WMConfirmError(const char* format, ...) __attribute__((format(printf, 1, 2)));
int WMConfirm(const char* text); /* 1 yes, 0 no */
/* Not modal, at most five at once. Equal ones are one dialogue; once the user has closed it, it stays away
 * until the warning has not been raised for a second. */
void WMShowWarning(const char* text);
void WMSetCenterOnScreen(int on); /* the next dialogue is centred on the screen */

/* Names of the configuration keys under which the next file chooser remembers its directory and its
 * extension. */
void WMSetGetFileSrc(const char* directoryKey, const char* extensionKey);
/* Modal file chooser for a file to write (mode 12, the only one). directory, filter and defaultName are
 * in-out, path is out; each has capacity bytes and is changed only when a file was chosen. It starts in
 * directory when files can be written there, else in the remembered one, else in the nearest folder above
 * directory that exists. A name without an extension gets that of the filter, else the remembered one. A
 * choice that does not fit, or that lies in no folder that can be written to, is refused with a sentence in
 * the dialogue, never cut. Returns 1, 0 when cancelled. */
int WMInlineFileChooser(const char* title, char* directory, char* filter, int capacity, int mode,
                        char* defaultName, char* path, int reserved1, int reserved2, int reserved3);

/* The toolkit main loop; returns when the last window has been closed by other means than exit(). */
void WMAppMainLoop(void);

/* Exported by the program. */
int ProcDisChange(int slot, WMDisplayChange* change, void* clientData);
int EnterWindow(XEvent* event, void* clientData);

#ifdef __cplusplus
}
#endif
#endif
