#include "platform/imagewindow/LocalText.h"

#include <cstdint>
#include <cstring>
#include <langinfo.h>

namespace viewer {

namespace {

constexpr std::uint32_t malformed = 0xFFFD;

// Reads one character at position and moves past it; malformed takes one byte.
std::uint32_t nextCharacter(const std::string& text, std::size_t& position)
{
    const auto byte = [&](std::size_t i) {
        return static_cast<unsigned char>(i < text.size() ? text[i] : 0);
    };
    const unsigned char lead = byte(position++);
    if (lead < 0x80)
        return lead;
    const int more = lead >= 0xC2 && lead < 0xE0   ? 1
                     : lead >= 0xE0 && lead < 0xF0 ? 2
                     : lead >= 0xF0 && lead < 0xF5 ? 3
                                                   : 0;
    std::uint32_t character = lead & (0x3F >> more);
    for (int i = 0; i < more; ++i) {
        if ((byte(position + static_cast<std::size_t>(i)) & 0xC0) != 0x80)
            return malformed;
        character = character << 6 | (byte(position + static_cast<std::size_t>(i)) & 0x3F);
    }
    position += static_cast<std::size_t>(more);
    const bool overlong = (more == 2 && character < 0x800) || (more == 3 && character < 0x10000);
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    return more == 0 || overlong || surrogate || character > 0x10FFFF ? malformed : character;
}

bool printable(std::uint32_t character)
{
    return character != malformed && character >= 32 && (character < 127 || character > 159);
}

} // namespace

std::string localText(const std::string& utf8)
{
    const bool keep = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    std::string text;
    for (std::size_t position = 0; position < utf8.size();) {
        const std::size_t start = position;
        const std::uint32_t character = nextCharacter(utf8, position);
        if (!printable(character))
            text += '?';
        else if (keep || character < 128)
            text.append(utf8, start, position - start);
        else
            text += character < 256 ? static_cast<char>(character) : '?';
    }
    return text;
}

LabelText::LabelText(const std::string& utf8)
    : text(XmStringCreateLocalized(const_cast<char*>(localText(utf8).c_str())))
{
}

std::string shortened(const std::string& utf8, std::size_t count)
{
    std::size_t position = 0, kept = 0, cut = 0;
    while (position < utf8.size()) {
        if (kept + 3 == count)
            cut = position;
        nextCharacter(utf8, position);
        if (++kept > count)
            return utf8.substr(0, cut) + "...";
    }
    return utf8;
}

} // namespace viewer
