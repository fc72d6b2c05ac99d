// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/TextFlow.h"

#include "platform/text/Utf8.h"

#include <sstream>

namespace viewer {

namespace {

constexpr const char* dots = "...";

// Lines that grow item by item.
class Lines {
public:
    Lines(int width, const Measure& measure) : width(width), measure(measure) {}

    void add(const std::string& item, const std::string& separator)
    {
        const std::string longer = lines.empty() ? item : lines.back() + separator + item;
        if (!lines.empty() && measure(longer) <= width)
            lines.back() = longer;
        else if (measure(item) <= width)
            lines.push_back(item);
        else
            addWords(item);
    }
    std::vector<std::string> take() { return std::move(lines); }

private:
    void addWords(const std::string& item)
    {
        const std::vector<std::string> words = wordsOf(item);
        if (words.size() < 2) {
            lines.push_back(fitted(item, width, measure));
            return;
        }
        lines.push_back(fitted(words.front(), width, measure));
        for (auto word = words.begin() + 1; word != words.end(); ++word)
            add(*word, " ");
    }

    int width;
    const Measure& measure;
    std::vector<std::string> lines;
};

// The line with the dots at its end; whole words make room for them.
std::string unfinished(std::string line, int width, const Measure& measure)
{
    std::size_t end = line.find_last_of(' ');
    while (measure(line + " " + dots) > width && end != std::string::npos) {
        line.erase(line.find_last_not_of(' ', end) + 1);
        end = line.find_last_of(' ');
    }
    return fitted(line + " " + dots, width, measure);
}

} // namespace

std::string fitted(const std::string& text, int width, const Measure& measure)
{
    if (measure(text) <= width)
        return text;
    std::vector<std::size_t> ends{0}; // of the beginnings, at whole characters
    while (ends.back() < text.size())
        ends.push_back(ends.back() + text::decodeUtf8(text, ends.back()).length);
    std::size_t fits = 0, tooLong = ends.size();
    while (tooLong - fits > 1) {
        const std::size_t middle = (fits + tooLong) / 2;
        (measure(text.substr(0, ends[middle]) + dots) <= width ? fits : tooLong) = middle;
    }
    return text.substr(0, ends[fits]) + dots;
}

std::vector<std::string> flow(const std::vector<std::string>& items, const std::string& separator, int width,
                              std::size_t maxLines, const Measure& measure)
{
    Lines flowing(width, measure);
    for (const std::string& item : items)
        flowing.add(item, separator);
    std::vector<std::string> lines = flowing.take();
    if (lines.size() <= maxLines)
        return lines;
    lines.resize(maxLines);
    if (!lines.empty())
        lines.back() = unfinished(std::move(lines.back()), width, measure);
    return lines;
}

std::vector<std::string> wordsOf(const std::string& sentence)
{
    std::istringstream in(sentence);
    std::vector<std::string> words;
    for (std::string word; in >> word;)
        words.push_back(word);
    return words;
}

} // namespace viewer
