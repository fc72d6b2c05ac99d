// SPDX-License-Identifier: MIT
#include "platform/wmenh/Keyboard.h"

#include "platform/wmenh/Toolkit.h"

#include <X11/keysym.h>
#include <Xm/DrawingA.h>
#include <Xm/TextF.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <vector>

namespace wmenh {
namespace {

struct Mnemonic {
    Widget shown, target;
    MnemonicRank rank;
    char letter; // lower case, '\0' as long as it has none
};
std::vector<Mnemonic> mnemonics;

// Thin windows along the edges of a drawing area: top, bottom, left, right. What its program draws does not
// touch them, and presses on them are presses on the area. They die with its window.
using Rim = std::array<Window, 4>;
std::map<Widget, Rim> rims; // by drawing area

char lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

void giveLetter(Mnemonic& mnemonic)
{
    std::string taken;
    for (const Mnemonic& other : mnemonics)
        taken += other.letter;
    const char letter = pickMnemonic(text::textResource(mnemonic.shown, XmNlabelString), taken);
    mnemonic.letter = lower(letter);
    if (letter)
        XtVaSetValues(mnemonic.shown, XmNmnemonic, static_cast<KeySym>(letter), nullptr);
}

void activate(Widget control, XEvent* event)
{
    XmProcessTraversal(control, XmTRAVERSE_CURRENT);
    if (XtIsWidget(control))
        XtCallActionProc(control, "ArmAndActivate", event, nullptr, 0);
}

void mnemonicPressed(Widget listener, XtPointer, XEvent* event, Boolean* goOn)
{
    const KeySym key = XLookupKeysym(&event->xkey, 0);
    if (!(event->xkey.state & Mod1Mask) || key == NoSymbol)
        return;
    const auto found = std::ranges::find_if(
        mnemonics, [key](const Mnemonic& m) { return m.letter && static_cast<KeySym>(m.letter) == key; });
    if (found == mnemonics.end() || !XtIsSensitive(found->target))
        return;
    *goOn = XmIsDrawingArea(listener); // whose program hears every key
    activate(found->target, event);
}

std::array<Rectangle, 4> rimPlaces(Widget area)
{
    Dimension width = 0, height = 0;
    XtVaGetValues(area, XmNwidth, &width, XmNheight, &height, nullptr);
    const int w = width, h = height, thick = std::min({focusThickness(XtDisplay(area)), w, h});
    return {{{0, 0, w, thick}, {0, h - thick, w, thick}, {0, 0, thick, h}, {w - thick, 0, thick, h}}};
}

Rim makeRim(Widget area)
{
    Pixel color = 0;
    XtVaGetValues(area, XmNhighlightColor, &color, nullptr);
    Rim rim;
    for (Window& edge : rim)
        edge = XCreateSimpleWindow(XtDisplay(area), XtWindow(area), 0, 0, 1, 1, 0, 0, color);
    return rim;
}

void showRim(Widget area)
{
    const Rim& rim = rims.try_emplace(area, Rim{}).first->second;
    if (rim[0] == None)
        rims[area] = makeRim(area);
    const auto places = rimPlaces(area);
    for (size_t i = 0; i < rim.size(); ++i) {
        const Rectangle& place = places[i];
        XMoveResizeWindow(XtDisplay(area), rim[i], place.x, place.y, static_cast<unsigned>(place.width),
                          static_cast<unsigned>(place.height));
        XMapRaised(XtDisplay(area), rim[i]);
    }
}

void hideRim(Widget area)
{
    const auto found = rims.find(area);
    if (found == rims.end())
        return;
    for (const Window edge : found->second)
        XUnmapWindow(XtDisplay(area), edge);
}

bool rimShown(Widget area)
{
    XWindowAttributes attributes;
    const auto found = rims.find(area);
    return found != rims.end() && XGetWindowAttributes(XtDisplay(area), found->second[0], &attributes) &&
           attributes.map_state != IsUnmapped;
}

void areaEvent(Widget area, XtPointer, XEvent* event, Boolean*)
{
    const bool resized = event->type == ConfigureNotify && rimShown(area);
    if (resized || (event->type == FocusIn && event->xfocus.detail != NotifyPointer))
        showRim(area);
    else if (event->type == FocusOut)
        hideRim(area);
}

// Motif binds Tab in an area's own translations, which its program may have replaced.
void leaveByTab(Widget area, XtPointer, XEvent* event, Boolean*)
{
    if (XLookupKeysym(&event->xkey, 0) != XK_Tab || (event->xkey.state & Mod1Mask))
        return;
    const bool back = (event->xkey.state & ShiftMask) != 0;
    XmProcessTraversal(area, back ? XmTRAVERSE_PREV_TAB_GROUP : XmTRAVERSE_NEXT_TAB_GROUP);
}

void forgetArea(Widget area, XtPointer, XtPointer)
{
    rims.erase(area);
}

} // namespace

char pickMnemonic(std::string_view label, std::string_view taken)
{
    const auto isFree = [&](size_t i) {
        const auto byte = static_cast<unsigned char>(label[i]);
        return byte < 0x80 && std::isalnum(byte) && taken.find(lower(label[i])) == std::string_view::npos;
    };
    for (size_t i = 0; i < label.size(); ++i)
        if ((i == 0 || label[i - 1] == ' ') && isFree(i))
            return label[i];
    for (size_t i = 0; i < label.size(); ++i)
        if (isFree(i))
            return label[i];
    return '\0';
}

void offerMnemonic(Widget shown, Widget target, MnemonicRank rank)
{
    mnemonics.push_back({shown, target, rank, '\0'});
}

void addToTraversal(Widget drawingArea)
{
    XtAddEventHandler(drawingArea, KeyPressMask, False, leaveByTab, nullptr);
    XtAddEventHandler(drawingArea, FocusChangeMask | StructureNotifyMask, False, areaEvent, nullptr);
    XtAddCallback(drawingArea, XmNdestroyCallback, forgetArea, nullptr);
}

void completeKeyboard(Widget form)
{
    std::ranges::stable_sort(mnemonics, {}, &Mnemonic::rank);
    for (Mnemonic& mnemonic : mnemonics)
        if (!mnemonic.letter)
            giveLetter(mnemonic);
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(form, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (const Widget child : std::vector<Widget>(children, children + count)) {
        XtAddEventHandler(child, KeyPressMask, False, mnemonicPressed, nullptr);
        if (XmIsTextField(child) && !XmTextFieldGetEditable(child))
            XtVaSetValues(child, XmNtraversalOn, False, nullptr);
    }
}

} // namespace wmenh
