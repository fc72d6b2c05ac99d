// SPDX-License-Identifier: MIT
#include "platform/wmenh/Text.h"

#include "platform/text/LocaleText.h"
#include "platform/text/Utf8.h"

#include <algorithm>

namespace wmenh {
namespace {

void appendWrapped(std::string& out, std::string_view line, int columns, bool utf8)
{
    size_t start = 0;
    while (true) {
        size_t end = start;
        size_t space = std::string_view::npos;
        for (int column = 0; end < line.size() && column < columns; ++column) {
            if (line[end] == ' ')
                space = end;
            end += utf8 ? text::decodeUtf8(line, end).length : 1;
        }
        if (end >= line.size())
            break;
        const bool atSpace = line[end] != ' ' && space != std::string_view::npos && space > start;
        const size_t stop = atSpace ? space : end;
        out.append(line.substr(start, stop - start)) += '\n';
        start = stop < line.size() && line[stop] == ' ' ? stop + 1 : stop;
    }
    out.append(line.substr(start));
}

} // namespace

std::string wrapText(std::string_view text, int columns)
{
    std::string out;
    const bool utf8 = text::localeIsUtf8();
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find('\n', start), text.size());
        appendWrapped(out, text.substr(start, end - start), std::max(columns, 1), utf8);
        if (end < text.size())
            out += '\n';
        start = end + 1;
    }
    return out;
}

std::string joinLines(std::string_view text)
{
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool before = i > 0 && text[i - 1] == '\n';
        const bool after = i + 1 < text.size() && (text[i + 1] == '\n' || text[i + 1] == ' ');
        const bool last = i + 1 == text.size();
        out += text[i] == '\n' && !before && !after && !last ? ' ' : text[i];
    }
    return out;
}

int lineCount(std::string_view text)
{
    return 1 + static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

} // namespace wmenh
