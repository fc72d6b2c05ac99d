// SPDX-License-Identifier: MIT
#include "platform/text/Utf8.h"

namespace text {

namespace {

constexpr unsigned char byteAt(std::string_view text, size_t i)
{
    return static_cast<unsigned char>(text[i]);
}

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

} // namespace

Character decodeUtf8(std::string_view text, size_t start)
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

std::string shortened(std::string_view text, size_t maxCharacters)
{
    constexpr std::string_view dots = "...";
    size_t end = 0, cut = 0; // after the last character looked at, and where the dots would stand
    for (size_t count = 0; end < text.size(); ++count) {
        if (count + dots.size() == maxCharacters)
            cut = end;
        if (count == maxCharacters)
            return std::string(text.substr(0, cut)) + std::string(dots);
        end += decodeUtf8(text, end).length;
    }
    return std::string(text);
}

std::string_view cutToBytes(std::string_view text, size_t maxBytes)
{
    if (text.size() <= maxBytes)
        return text;
    size_t end = 0;
    for (size_t next = 0; next <= maxBytes; next += decodeUtf8(text, next).length)
        end = next;
    return text.substr(0, end);
}

} // namespace text
