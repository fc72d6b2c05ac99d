// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/LocalText.h"

#include "platform/text/LocaleText.h"
#include "platform/text/Utf8.h"

namespace viewer {

namespace {

std::vector<std::string> linesOf(const std::string& utf8, LineFeeds lineFeeds)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (lineFeeds == LineFeeds::Kept) {
        const std::size_t end = utf8.find('\n', start);
        if (end == std::string::npos)
            break;
        lines.push_back(utf8.substr(start, end - start));
        start = end + 1;
    }
    lines.push_back(utf8.substr(start));
    return lines;
}

} // namespace

text::MotifString labelString(const std::string& utf8, LineFeeds lineFeeds)
{
    return labelString(linesOf(utf8, lineFeeds));
}

text::MotifString labelString(const std::vector<std::string>& lines)
{
    std::string local;
    for (const std::string& line : lines)
        local +=
            (&line == &lines.front() ? "" : "\n") + text::fromUtf8(text::shortened(line, maxLineCharacters));
    return text::MotifString(local);
}

} // namespace viewer
