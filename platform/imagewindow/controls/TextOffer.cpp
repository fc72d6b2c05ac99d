// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/TextOffer.h"

#include "platform/text/Utf8.h"

#include <X11/Xatom.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace viewer {

namespace {

TextOffer* offerOf(Widget owner)
{
    XtPointer offer = nullptr;
    XtVaGetValues(owner, XmNuserData, &offer, nullptr);
    return static_cast<TextOffer*>(offer);
}

// Of ISO 8859-1; what it has not becomes a question mark.
std::string latinOf(const std::string& utf8)
{
    std::string latin;
    for (std::size_t position = 0; position < utf8.size();) {
        const text::Character character = text::decodeUtf8(utf8, position);
        latin += character.code < 256 ? static_cast<char>(character.code) : '?';
        position += character.length;
    }
    return latin;
}

// The toolkit frees it.
XtPointer copied(const void* bytes, std::size_t count)
{
    char* const copy = XtMalloc(static_cast<Cardinal>(std::max<std::size_t>(count, 1)));
    std::memcpy(copy, bytes, count);
    return copy;
}

} // namespace

TextOffer::TextOffer(Widget owner) : owner(owner)
{
    XtVaSetValues(owner, XmNuserData, this, nullptr);
}

bool TextOffer::offer(Atom selection, const std::string& utf8, Time time)
{
    texts[selection] = utf8;
    return XtOwnSelection(owner, selection, time, convert, lose, nullptr) != False;
}

Boolean TextOffer::convert(Widget owner, Atom* selection, Atom* target, Atom* type, XtPointer* value,
                           unsigned long* length, int* format)
{
    Display* display = XtDisplay(owner);
    const auto atom = [&](const char* name) { return XInternAtom(display, name, False); };
    const Atom targets = atom("TARGETS"), utf8 = atom("UTF8_STRING"), text = atom("TEXT");
    const std::string& offered = offerOf(owner)->texts[*selection];
    if (*target == targets) {
        const std::array<Atom, 4> list{targets, utf8, text, XA_STRING};
        *type = XA_ATOM;
        *value = copied(list.data(), sizeof list);
        *length = list.size();
        *format = 32;
        return True;
    }
    if (*target != utf8 && *target != text && *target != XA_STRING)
        return False;
    const std::string bytes = *target == XA_STRING ? latinOf(offered) : offered;
    *type = *target == XA_STRING ? XA_STRING : utf8;
    *value = copied(bytes.data(), bytes.size());
    *length = bytes.size();
    *format = 8;
    return True;
}

void TextOffer::lose(Widget owner, Atom* selection)
{
    offerOf(owner)->texts.erase(*selection);
}

} // namespace viewer
