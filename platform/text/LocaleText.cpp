// SPDX-License-Identifier: MIT
#include "platform/text/LocaleText.h"

#include "platform/text/Utf8.h"

#include <cstring>
#include <langinfo.h>

namespace text {

namespace {

bool isControl(char32_t code)
{
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

void append(std::string& out, char32_t code, bool utf8)
{
    if (utf8)
        appendUtf8(out, code);
    else
        out += code < 0x100 ? static_cast<char>(code) : '?';
}

} // namespace

bool localeIsUtf8()
{
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

std::string fromUtf8(std::string_view text, bool utf8)
{
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        const Character c = decodeUtf8(text, i);
        const bool malformed = !c.wide && c.code >= 0x80;
        append(out, malformed || isControl(c.code) ? U'?' : c.code, utf8);
        i += c.length;
    }
    return out;
}

std::string fromMixed(std::string_view text, bool utf8)
{
    std::string out;
    bool sawWide = false;
    for (std::size_t i = 0; i < text.size();) {
        const Character c = decodeUtf8(text, i);
        if (c.cut && sawWide)
            break;
        i += c.cut ? 1 : c.length;
        sawWide = sawWide || c.wide;
        const bool kept = c.code == '\n' || c.code == '\t' || !isControl(c.code);
        append(out, kept ? c.code : U' ', utf8);
    }
    return out;
}

} // namespace text
