// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/side/MessagesPage.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/text/LocaleText.h"

#include <Xm/Text.h>

#include <string>

namespace viewer {

namespace {

std::string localLines(const std::string& utf8)
{
    std::string lines;
    std::size_t start = 0;
    while (start <= utf8.size()) {
        const std::size_t end = std::min(utf8.find('\n', start), utf8.size());
        lines += (start > 0 ? "\n" : "") + text::fromUtf8(utf8.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

} // namespace

MessagesPage::MessagesPage(Widget parent, Desk& desk) : desk(desk)
{
    Arg args[] = {
        {const_cast<char*>(XmNeditMode), XmMULTI_LINE_EDIT},
        {const_cast<char*>(XmNeditable), False},
        {const_cast<char*>(XmNcursorPositionVisible), False},
        {const_cast<char*>(XmNwordWrap), True},
        {const_cast<char*>(XmNscrollHorizontal), False},
        {const_cast<char*>(XmNrows), 4},
        {const_cast<char*>(XmNcolumns), 20},
    };
    text = XmCreateScrolledText(parent, const_cast<char*>("messages"), args,
                                static_cast<Cardinal>(std::size(args)));
    scroller = XtParent(text);
    XtManageChild(text);
    refresh();
}

void MessagesPage::refresh()
{
    const MessageLog& log = desk.shown.log;
    if (log.version() == shown && shown > 0)
        return;
    shown = log.version();
    const std::string lines = log.messages().empty() ? "Nothing has been told yet." : messageLines(log);
    XmTextSetString(text, const_cast<char*>(localLines(lines).c_str()));
    XmTextShowPosition(text, XmTextGetLastPosition(text));
}

} // namespace viewer
