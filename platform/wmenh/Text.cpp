#include "platform/wmenh/Text.h"

#include <algorithm>
#include <langinfo.h>

namespace wmenh {
namespace {

constexpr unsigned char byteAt(std::string_view text, size_t i)
{
    return static_cast<unsigned char>(text[i]);
}

struct Character {
    char32_t code = 0;
    size_t length = 1; // bytes
    bool wide = false; // came as a UTF-8 sequence
    bool cut = false;  // the text ended inside a sequence
};

// Bytes of the sequence that a byte leads, 1 when it leads none.
size_t sequenceLength(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 1;
}

bool wellFormed(char32_t code, size_t length)
{
    if (length == 3)
        return code >= 0x800 && (code < 0xD800 || code > 0xDFFF);
    return length != 4 || (code >= 0x10000 && code <= 0x10FFFF);
}

Character decode(std::string_view text, size_t start)
{
    const unsigned char lead = byteAt(text, start);
    const Character single{lead, 1, false, false};
    const size_t length = sequenceLength(lead);
    if (length == 1)
        return single;
    char32_t code = lead & (0xFF >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        if (start + i >= text.size())
            return {lead, text.size() - start, false, true};
        if ((byteAt(text, start + i) & 0xC0) != 0x80)
            return single;
        code = code << 6 | (byteAt(text, start + i) & 0x3F);
    }
    return wellFormed(code, length) ? Character{code, length, true, false} : single;
}

void appendUtf8(std::string& out, char32_t code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
        return;
    }
    const int extra = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    static constexpr int leads[] = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(leads[extra] | code >> (6 * extra));
    for (int i = extra - 1; i >= 0; --i)
        out += static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
}

bool isControl(char32_t code)
{
    return (code < 0x20 && code != '\n' && code != '\t') || (code >= 0x7F && code < 0xA0);
}

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

void appendWrapped(std::string& out, std::string_view line, int columns, bool utf8)
{
    size_t start = 0;
    while (true) {
        size_t end = start;
        size_t space = std::string_view::npos;
        for (int column = 0; end < line.size() && column < columns; ++column) {
            if (line[end] == ' ')
                space = end;
            ++end;
            while (utf8 && end < line.size() && isContinuation(line[end]))
                ++end;
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

bool localeIsUtf8()
{
    return std::string_view(nl_langinfo(CODESET)) == "UTF-8";
}

std::string localeText(std::string_view text, bool utf8)
{
    std::string out;
    bool sawWide = false;
    for (size_t i = 0; i < text.size();) {
        Character c = decode(text, i);
        if (c.cut && sawWide)
            break;
        if (c.cut)
            c = {byteAt(text, i), 1, false, false};
        i += c.length;
        sawWide = sawWide || c.wide;
        const char32_t code = isControl(c.code) ? U' ' : c.code;
        if (utf8)
            appendUtf8(out, code);
        else
            out += code < 0x100 ? static_cast<char>(code) : '?';
    }
    return out;
}

std::string localeText(std::string_view text)
{
    return localeText(text, localeIsUtf8());
}

std::string wrapText(std::string_view text, int columns)
{
    std::string out;
    const bool utf8 = localeIsUtf8();
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
