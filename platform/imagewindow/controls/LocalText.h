// Text for widgets and standard output in the character set of the user's locale: UTF-8, or else ISO 8859-1,
// which is what the widgets draw in the C locale.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace viewer {

// utf8 in the locale's character set; what it cannot hold, malformed bytes and control characters become '?'.
std::string localText(const std::string& utf8);

// Whether line feeds break lines. Only in texts of the program's own: a name from a file stays on one line.
enum class LineFeeds { Replaced, Kept };

// A compound string that its owner frees, for XtVaSetValues and the like.
class LabelText {
public:
    explicit LabelText(const std::string& utf8, LineFeeds lineFeeds = LineFeeds::Replaced);
    ~LabelText() { XmStringFree(text); }
    LabelText(const LabelText&) = delete;
    LabelText& operator=(const LabelText&) = delete;
    operator XmString() const { return text; }

private:
    XmString text;
};

// At most count characters of utf8, the last three being dots when it was cut.
std::string shortened(const std::string& utf8, std::size_t count);

} // namespace viewer
