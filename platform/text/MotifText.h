// SPDX-License-Identifier: MIT
// Texts of Motif's widgets: the compound strings that they take and give, and what stands in text fields. All
// texts are in the encoding of the locale, so file names pass through unchanged.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace text {

// A compound string that is freed with its owner. Line feeds break lines. A widget that is given it makes a
// copy.
class MotifString {
public:
    explicit MotifString(const std::string& text);
    explicit MotifString(XmString owned) : string(owned) {} // takes it over
    ~MotifString() { XmStringFree(string); }
    MotifString(const MotifString&) = delete;
    MotifString& operator=(const MotifString&) = delete;
    XmString get() const { return string; }

private:
    XmString string;
};

// The text of a compound string; empty for a null one.
std::string plainText(XmString string);

// The text of a resource that is a compound string, such as XmNlabelString.
std::string textResource(Widget widget, const char* resource);

// What stands in an XmTextField.
std::string fieldText(Widget field);

// Pixels that a number of average characters take in the widget's font. Motif's own columns are those of the
// widest character, which is far too much in a scalable font.
int columnsWidth(Widget widget, int columns);

// Gives a file selection box one width, in which paths can be read, from when it is shown. Motif's own
// follows the longest name in the lists, off the screen.
void fixFileBoxWidth(Widget box);

} // namespace text
