#include "platform/imagewindow/controls/Controls.h"
#include "platform/imagewindow/controls/Dialogs.h"
#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/controls/LocalText.h"

#include <Xm/CascadeB.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <span>

namespace viewer {

namespace {

using Action = void (*)(ImageWindow&, Widget);

// One row per menu entry.
struct Entry {
    const char* label;
    KeySym mnemonic;
    const char* accelerator;     // null: none
    const char* acceleratorText; // as shown
    Action action;
    int panelStyle = -1;   // an entry that is one of the panel styles
    bool scaleBar = false; // the entry that shows and hides the scale bar
};

const Entry separator{nullptr, NoSymbol, nullptr, nullptr, nullptr}; // has no label

constexpr const char* aboutText = "Image window " PROJECT_VERSION "\n\n"
                                  "Shows microscope images: OME-TIFF, hyperstacks and plain TIFF.\n"
                                  "Tools attach to an image window by its number.";

// Two columns, line by line.
constexpr const char* keysText = "Wheel\n"
                                 "Shift + wheel\n"
                                 "Control + wheel\n"
                                 "Drag button 1 or 2\n"
                                 "Button 3\n"
                                 "=   -   1   F\n"
                                 "Page Down, Page Up\n"
                                 "Control + Page Down, Page Up\n"
                                 "Wheel on a slider\n"
                                 "C\n"
                                 "A\n"
                                 "S\n"
                                 "Control + L\n"
                                 "Control + O, W, Q\n"
                                 "Escape";
constexpr const char* meaningsText = "zoom around the pointer\n"
                                     "next or previous z section\n"
                                     "next or previous time point\n"
                                     "move the image (a tool may take button 1)\n"
                                     "menu: a click leaves it up, a drag chooses\n"
                                     "zoom in, out, one to one, fit to the window\n"
                                     "next, previous z section\n"
                                     "next, previous time point\n"
                                     "one section or time point on or back\n"
                                     "contrast and colours\n"
                                     "automatic contrast\n"
                                     "scale bar\n"
                                     "line profile tool, or bring it to the front\n"
                                     "open, close, quit\n"
                                     "close a dialogue or menu";

const Entry fileEntries[] = {
    {"Open...", 'O', "Ctrl<Key>o", "Ctrl+O", [](ImageWindow& w, Widget shell) { chooseFile(shell, w); }},
    separator,
    {"Close", 'C', "Ctrl<Key>w", "Ctrl+W", [](ImageWindow& w, Widget) { w.close(); }},
    {"Quit", 'Q', "Ctrl<Key>q", "Ctrl+Q", [](ImageWindow& w, Widget) { w.quitProgram(); }},
};

const Entry viewEntries[] = {
    {firstMenuEntry, 'i', "<Key>equal", "=", [](ImageWindow& w, Widget) { w.zoomSteps(1); }},
    {"Zoom out", 'o', "<Key>minus", "-", [](ImageWindow& w, Widget) { w.zoomSteps(-1); }},
    {"One to one", '1', "<Key>1", "1", [](ImageWindow& w, Widget) { w.zoomTo(1.0); }},
    {"Fit to window", 'F', "<Key>f", "F", [](ImageWindow& w, Widget) { w.zoomToFit(); }},
    separator,
    {"Single panel", 'S', nullptr, nullptr,
     [](ImageWindow& w, Widget) { w.setPanels(protocol::SinglePanel); }, protocol::SinglePanel},
    {"Z panels", 'Z', nullptr, nullptr, [](ImageWindow& w, Widget) { w.setPanels(protocol::ZPanels); },
     protocol::ZPanels},
    {"Wavelength panels", 'W', nullptr, nullptr,
     [](ImageWindow& w, Widget) { w.setPanels(protocol::WavelengthPanels); }, protocol::WavelengthPanels},
    {"Time panels", 'T', nullptr, nullptr, [](ImageWindow& w, Widget) { w.setPanels(protocol::TimePanels); },
     protocol::TimePanels},
    separator,
    {"Scale bar", 'b', "<Key>s", "S", [](ImageWindow& w, Widget) { w.toggleScaleBar(); }, -1, true},
    separator,
    {"Next section", 'N', "<Key>osfPageDown", "Page Down", [](ImageWindow& w, Widget) { w.stepZ(1); }},
    {"Previous section", 'P', "<Key>osfPageUp", "Page Up", [](ImageWindow& w, Widget) { w.stepZ(-1); }},
    {"Next time point", 'x', "Ctrl<Key>osfPageDown", "Ctrl+Page Down",
     [](ImageWindow& w, Widget) { w.stepTime(1); }},
    {"Previous time point", 'v', "Ctrl<Key>osfPageUp", "Ctrl+Page Up",
     [](ImageWindow& w, Widget) { w.stepTime(-1); }},
    separator,
    {"Contrast and colours...", 'C', "<Key>c", "C", [](ImageWindow& w, Widget) { w.showContrast(); }},
    {"Automatic contrast", 'A', "<Key>a", "A", [](ImageWindow& w, Widget) { w.setAutomaticContrast(); }},
};

const Entry toolEntries[] = {
    {"Line profile", 'L', "Ctrl<Key>l", "Ctrl+L", [](ImageWindow& w, Widget) { w.startLineProfile(); }},
};

const Entry helpEntries[] = {
    {"Mouse and keys", 'M', nullptr, nullptr,
     [](ImageWindow&, Widget shell) { showTable(shell, "Mouse and keys", keysText, meaningsText); }},
    {"About", 'A', nullptr, nullptr,
     [](ImageWindow&, Widget shell) { showInformation(shell, "About the image window", aboutText); }},
};

Widget shellOf(Widget widget)
{
    while (XtParent(widget))
        widget = XtParent(widget);
    return widget;
}

ImageWindow& windowOf(Widget item)
{
    XtPointer window = nullptr;
    XtVaGetValues(item, XmNuserData, &window, nullptr);
    return *static_cast<ImageWindow*>(window);
}

void entryChosen(Widget item, XtPointer client, XtPointer)
{
    static_cast<const Entry*>(client)->action(windowOf(item), shellOf(item));
}

Widget addEntry(Widget menu, const Entry& entry, ImageWindow& window, bool accelerated)
{
    if (!entry.label)
        return XtVaCreateManagedWidget("separator", xmSeparatorWidgetClass, menu, nullptr);
    const bool toggle = entry.panelStyle >= 0 || entry.scaleBar;
    const LabelText label(entry.label);
    Widget item = XtVaCreateManagedWidget(
        entry.label, toggle ? xmToggleButtonWidgetClass : xmPushButtonWidgetClass, menu, XmNlabelString,
        static_cast<XmString>(label), XmNmnemonic, entry.mnemonic, XmNuserData, &window, nullptr);
    if (toggle)
        XtVaSetValues(item, XmNindicatorType, entry.scaleBar ? XmN_OF_MANY : XmONE_OF_MANY, XmNvisibleWhenOff,
                      True, nullptr);
    if (entry.accelerator && accelerated) {
        const LabelText text(entry.acceleratorText);
        XtVaSetValues(item, XmNaccelerator, entry.accelerator, XmNacceleratorText,
                      static_cast<XmString>(text), nullptr);
    }
    XtAddCallback(item, toggle ? XmNvalueChangedCallback : XmNactivateCallback, entryChosen,
                  const_cast<Entry*>(&entry));
    return item;
}

Widget addMenu(Widget bar, const char* label, char mnemonic, std::span<const Entry> entries,
               ImageWindow& window, MenuBar& menus)
{
    Widget menu = XmCreatePulldownMenu(bar, const_cast<char*>(label), nullptr, 0);
    for (const Entry& entry : entries) {
        Widget item = addEntry(menu, entry, window, true);
        if (entry.panelStyle >= 0)
            menus.panelToggles[static_cast<std::size_t>(entry.panelStyle)] = item;
        if (entry.scaleBar)
            menus.scaleBarToggle = item;
    }
    const LabelText text(label);
    Widget cascade = XtVaCreateManagedWidget(label, xmCascadeButtonWidgetClass, bar, XmNlabelString,
                                             static_cast<XmString>(text), XmNmnemonic,
                                             static_cast<KeySym>(mnemonic), XmNsubMenuId, menu, nullptr);
    if (mnemonic == 'H')
        XtVaSetValues(bar, XmNmenuHelpWidget, cascade, nullptr);
    return menu;
}

void endTool(Widget item, XtPointer client, XtPointer)
{
    protocol::requestQuit(XtDisplay(item), reinterpret_cast<Window>(client));
}

constexpr const char* toolItemName = "runningTool";

void removeToolItems(Widget menu)
{
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(menu, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    const std::vector<Widget> present(children, children + count);
    for (Widget child : present)
        if (std::string(XtName(child)) == toolItemName) {
            XtUnmanageChild(child);
            XtDestroyWidget(child);
        }
}

// The tools that run now are listed each time the menu opens.
void listTools(Widget menu, XtPointer client, XtPointer)
{
    ImageWindow& window = *static_cast<ImageWindow*>(client);
    removeToolItems(menu);
    const auto tools = window.tools();
    if (!tools.empty())
        XtVaCreateManagedWidget(toolItemName, xmSeparatorWidgetClass, menu, nullptr);
    for (const protocol::ToolEntry& tool : tools) {
        const LabelText label("End \"" + shortened(tool.title, 40) + "\"");
        Widget item = XtVaCreateManagedWidget(toolItemName, xmPushButtonWidgetClass, menu, XmNlabelString,
                                              static_cast<XmString>(label), nullptr);
        XtAddCallback(item, XmNactivateCallback, endTool, reinterpret_cast<XtPointer>(tool.shell));
    }
}

} // namespace

MenuBar makeMenuBar(Widget parent, ImageWindow& window)
{
    MenuBar menus;
    menus.bar = XmCreateMenuBar(parent, const_cast<char*>("menuBar"), nullptr, 0);
    addMenu(menus.bar, "File", 'F', fileEntries, window, menus);
    addMenu(menus.bar, "View", 'V', viewEntries, window, menus);
    menus.toolsMenu = addMenu(menus.bar, "Tools", 'T', toolEntries, window, menus);
    addMenu(menus.bar, "Help", 'H', helpEntries, window, menus);
    XtAddCallback(menus.toolsMenu, XmNmapCallback, listTools, &window);
    XtManageChild(menus.bar);
    return menus;
}

namespace {

// Moves to the next entry (parameter 1) or the previous one (-1), around the ends. The toolkit's own actions
// do so only in a menu that it has posted itself.
void stepEntry(Widget entry, XEvent*, String* parameters, Cardinal* count)
{
    WidgetList children = nullptr;
    Cardinal childCount = 0;
    XtVaGetValues(XtParent(entry), XmNchildren, &children, XmNnumChildren, &childCount, nullptr);
    const int number = static_cast<int>(childCount), step = *count == 1 && *parameters[0] == '-' ? -1 : 1;
    int place = static_cast<int>(std::find(children, children + number, entry) - children);
    do
        place = (place + step + number) % number;
    while (XmIsSeparator(children[place]));
    XmProcessTraversal(children[place], XmTRAVERSE_CURRENT);
}

void stepWithArrows(Widget menu)
{
    static XtActionsRec actions[] = {{"stepEntry", stepEntry}};
    XtAppAddActions(XtWidgetToApplicationContext(menu), actions, XtNumber(actions));
    const XtTranslations keys =
        XtParseTranslationTable("<Key>osfDown: stepEntry(1)\n<Key>osfUp: stepEntry(-1)");
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(menu, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; ++i)
        XtOverrideTranslations(children[i], keys);
}

} // namespace

Widget makePopupMenu(Widget parent, ImageWindow& window)
{
    Arg disabled{const_cast<char*>(XmNpopupEnabled), XmPOPUP_DISABLED};
    Widget menu = XmCreatePopupMenu(parent, const_cast<char*>("popup"), &disabled, 1);
    for (const Entry& entry : std::span(viewEntries).first(5)) // the zoom entries and the separator
        addEntry(menu, entry, window, false);
    for (const Entry& entry : std::span(viewEntries).last(2)) // those of contrast
        addEntry(menu, entry, window, false);
    addEntry(menu, separator, window, false);
    addEntry(menu, toolEntries[0], window, false);
    stepWithArrows(menu);
    return menu;
}

} // namespace viewer
