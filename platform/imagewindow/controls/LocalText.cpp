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

XmString oneLine(const std::string& utf8)
{
    return XmStringCreateLocalized(const_cast<char*>(localText(utf8).c_str()));
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

LabelText::LabelText(const std::string& utf8, LineFeeds lineFeeds) : text(nullptr)
{
    std::size_t start = 0;
    while (lineFeeds == LineFeeds::Kept) {
        const std::size_t end = utf8.find('\n', start);
        if (end == std::string::npos)
            break;
        text = XmStringConcatAndFree(text, oneLine(utf8.substr(start, end - start)));
        text = XmStringConcatAndFree(text, XmStringSeparatorCreate());
        start = end + 1;
    }
    text = XmStringConcatAndFree(text, oneLine(utf8.substr(start)));
}

std::string shortened(const std::string& utf8, std::size_t count)
{
    std::size_t position = 0, kept = 0, cut = 0;
    while (position < utf8.size()) {
        if (kept + 3 == count)
            cut = position;
        position += text::decodeUtf8(utf8, position).length;
        if (++kept > count)
            return utf8.substr(0, cut) + "...";
    }
    return utf8;
}

} // namespace viewer
