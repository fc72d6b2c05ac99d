// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/LocalText.h"

#include "platform/text/Locale.h"
#include "platform/text/Utf8.h"

namespace viewer {

namespace {

bool printable(const text::Character& character)
{
    const char32_t code = character.code;
    return character.wide ? code > 159 : code >= 32 && code < 127;
}

} // namespace

std::string localText(const std::string& utf8)
{
    const bool keep = text::localeIsUtf8();
    std::string local;
    for (std::size_t position = 0; position < utf8.size();) {
        const text::Character character = text::decodeUtf8(utf8, position);
        if (!printable(character))
            local += '?';
        else if (keep || !character.wide)
            local.append(utf8, position, character.length);
        else
            local += character.code < 256 ? static_cast<char>(character.code) : '?';
        position += character.length;
    }
    return local;
}

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
        local += (&line == &lines.front() ? "" : "\n") + localText(text::shortened(line, maxLineCharacters));
    return text::MotifString(local);
}

} // namespace viewer
