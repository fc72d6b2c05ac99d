// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/Netpbm.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace viewer {

namespace {

constexpr std::size_t maxHeader = 4096;

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

// The words of a header without comments. A comment runs from # to the end of its line.
std::vector<std::string> wordsOf(const std::string& header)
{
    std::vector<std::string> words(1);
    bool comment = false;
    for (char c : header) {
        comment = comment ? c != '\n' : c == '#';
        if (comment || c == '#')
            continue;
        if (isSpace(c) && !words.back().empty())
            words.emplace_back();
        else if (!isSpace(c))
            words.back() += c;
    }
    return words;
}

int positiveNumber(const std::string& word, int most)
{
    int number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size() || number < 1 || number > most)
        throw StreamError("The stream has an image header with \"" + word.substr(0, 20) + "\" in it.");
    return number;
}

StreamFormat parse(const std::vector<std::string>& words)
{
    if (words[0] != "P5" && words[0] != "P6")
        throw StreamError("The stream is no sequence of binary PGM or PPM images.");
    StreamFormat format;
    format.samples = words[0] == "P6" ? 3 : 1;
    format.width = positiveNumber(words[1], 1 << 20);
    format.height = positiveNumber(words[2], 1 << 20);
    format.bytesPerValue = positiveNumber(words[3], 65535) > 255 ? 2 : 1;
    if (format.bytes() > maxStreamImage)
        throw StreamError("The stream's images are larger than a gigabyte each.");
    return format;
}

} // namespace

void NetpbmStream::feed(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        if (!current) {
            takeHeaderByte(static_cast<char>(bytes.front()));
            bytes = bytes.subspan(1);
            continue;
        }
        const std::size_t count = std::min(bytes.size(), current->bytes() - values.size());
        values.insert(values.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
        bytes = bytes.subspan(count);
        if (values.size() == current->bytes()) {
            complete.push_back(std::exchange(values, {}));
            current.reset();
        }
    }
}

void NetpbmStream::takeHeaderByte(char byte)
{
    if (header.empty() && isSpace(byte))
        return; // line ends between images
    header += byte;
    const bool wrong = header[0] != 'P' || (header.size() == 2 && header[1] != '5' && header[1] != '6');
    if (wrong || header.size() > maxHeader)
        throw StreamError("The stream is no sequence of binary PGM or PPM images.");
    // The values begin after the one space that follows the fourth word.
    if (isSpace(byte) && wordsOf(header).size() > 4)
        startImage();
}

void NetpbmStream::startImage()
{
    const StreamFormat format = parse(wordsOf(header));
    if (first && format != *first)
        throw StreamError("The stream's images differ in size or kind.");
    header.clear();
    first = current = format;
}

std::optional<std::vector<std::byte>> NetpbmStream::next()
{
    if (complete.empty())
        return std::nullopt;
    auto image = std::move(complete.front());
    complete.pop_front();
    return image;
}

} // namespace viewer
