// SPDX-License-Identifier: MIT
#include "platform/wmenh/Toolkit.h"

#include "platform/iwl/Session.h"
#include "platform/protocol/XProtocol.h"
#include "platform/text/Fonts.h"
#include "platform/text/Locale.h"
#include "widgets/Scale.h"

#include <X11/Shell.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <Xm/Text.h>

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace wmenh {
namespace {

// What holds unless the user's resources say otherwise.
const char* const looks[] = {
    "*background: #dcdcd9",
    "*foreground: #101010",
    "*shadowThickness: 1",
    "*XmForm.shadowThickness: 0",
    // A blue that stands out against the background as well as against a dark plot.
    "*highlightColor: #2f74d0",
    // Motif shows the armed item of a menu by its shadow alone, unless menus are etched in.
    "*enableEtchedInMenu: True",
    "*choices*armColor: #bcd0e8",
    "*XmToggleButton.shadowThickness: 0",
    "*XmToggleButton.selectColor: #2a5a9a",
    "*XmText.background: #ffffff",
    "*XmTextField.background: #ffffff",
    "*XmText.marginHeight: 3",
    "*XmTextField.marginHeight: 3",
    "*XmList.background: #ffffff",
    "*XmList.selectColor: #bcd0e8",
    "*complaint.foreground: #a00000",
};
// The list is Xt's for the life of the process.
String* fallbackResources(Display* display)
{
    static std::vector<const char*> list(std::begin(looks), std::end(looks));
    text::appendFontResources(display, list);
    static const std::string focus = "*highlightThickness: " + std::to_string(focusThickness(display));
    list.push_back(focus.c_str());
    list.push_back(nullptr);
    return const_cast<String*>(list.data());
}

// Xt asks for the language that its resource files are looked up by.
String tellLanguage(Display*, String, XtPointer)
{
    return setlocale(LC_CTYPE, nullptr);
}

std::string className(std::string name)
{
    if (!name.empty())
        name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    return name;
}

Toolkit start()
{
    Toolkit kit;
    kit.display = iwl::display();
    if (!kit.display) {
        fprintf(stderr, "The program has no connection to an X server.\n");
        std::exit(-1);
    }
    const std::string name = iwl::programName();
    const std::string klass = className(name);
    XtToolkitInitialize();
    XtSetLanguageProc(nullptr, tellLanguage, nullptr);
    kit.context = XtCreateApplicationContext();
    if (!text::adoptLocale())
        fprintf(stderr, "%s: the locale is not supported, using C\n", name.c_str());
    XtAppSetFallbackResources(kit.context, fallbackResources(kit.display));
    int argc = 0;
    String argv[] = {nullptr};
    XtDisplayInitialize(kit.context, kit.display, name.c_str(), klass.c_str(), nullptr, 0, &argc,
                        const_cast<char**>(argv));
    kit.shell = XtVaAppCreateShell(name.c_str(), klass.c_str(), applicationShellWidgetClass, kit.display,
                                   XmNmappedWhenManaged, False, XmNdeleteResponse, XmDO_NOTHING,
                                   XmNallowShellResize, True, nullptr);
    return kit;
}

bool hasProperty(Display* display, Window window, Atom property)
{
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    const int result = XGetWindowProperty(display, window, property, 0, 0, False, AnyPropertyType, &type,
                                          &format, &count, &left, &data);
    if (data)
        XFree(data);
    return result == Success && type != None;
}

Rectangle areaOf(Display* display, Window window)
{
    Window root = None, child = None;
    int x = 0, y = 0;
    unsigned width = 0, height = 0, border = 0, depth = 0;
    if (!XGetGeometry(display, window, &root, &x, &y, &width, &height, &border, &depth))
        return {};
    XTranslateCoordinates(display, window, root, 0, 0, &x, &y, &child);
    const int edge = static_cast<int>(border);
    return {x - edge, y - edge, static_cast<int>(width) + 2 * edge, static_cast<int>(height) + 2 * edge};
}

} // namespace

const Toolkit& toolkit()
{
    static const Toolkit kit = start();
    return kit;
}

void runUntil(const std::function<bool()>& done)
{
    while (!done())
        XtAppProcessEvent(toolkit().context, XtIMAll);
}

int focusThickness(Display* display)
{
    return std::clamp(widgets::scaled(display, 2), 2, 12);
}

Widget makeScrolledText(Widget parent, const std::string& text, int rows, int columns)
{
    Arg args[] = {
        {const_cast<char*>(XmNeditMode), XmMULTI_LINE_EDIT},  {const_cast<char*>(XmNeditable), False},
        {const_cast<char*>(XmNcursorPositionVisible), False}, {const_cast<char*>(XmNrows), rows},
        {const_cast<char*>(XmNscrollHorizontal), False},      {const_cast<char*>(XmNwordWrap), True}};
    const Widget field = XmCreateScrolledText(parent, const_cast<char*>("text"), args, XtNumber(args));
    XtVaSetValues(field, XmNwidth, text::columnsWidth(field, columns) + 16, nullptr);
    XmTextSetString(field, const_cast<char*>(text.c_str()));
    XtManageChild(field);
    return field;
}

TopLevel topLevelOf(Display* display, Window window)
{
    const protocol::ErrorTrap trap(display);
    const Atom state = XInternAtom(display, "WM_STATE", False);
    TopLevel top;
    for (Window w = window; w != None;) {
        Window root = None, parent = None, *children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(display, w, &root, &parent, &children, &count))
            return {};
        if (children)
            XFree(children);
        if (top.client == None && hasProperty(display, w, state))
            top.client = w;
        if (parent == root) {
            top.frame = w;
            break;
        }
        w = parent;
    }
    if (top.client == None)
        top.client = top.frame;
    if (top.frame != None) {
        top.clientArea = areaOf(display, top.client);
        top.frameArea = areaOf(display, top.frame);
    }
    return top;
}

Rectangle screenArea(Widget widget)
{
    return {0, 0, WidthOfScreen(XtScreen(widget)), HeightOfScreen(XtScreen(widget))};
}

void placeShell(Widget shell, int x, int y)
{
    XtVaSetValues(shell, XmNx, x, XmNy, y, nullptr);
    const std::unique_ptr<XSizeHints, int (*)(void*)> hints(XAllocSizeHints(), XFree);
    long supplied = 0;
    XGetWMNormalHints(XtDisplay(shell), XtWindow(shell), hints.get(), &supplied);
    hints->flags = (hints->flags & ~PPosition) | USPosition | PWinGravity;
    hints->x = x;
    hints->y = y;
    hints->win_gravity = NorthWestGravity;
    XSetWMNormalHints(XtDisplay(shell), XtWindow(shell), hints.get());
}

} // namespace wmenh
