// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/Neighbours.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace viewer {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t maxFiles = 100000; // of a folder

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The run of digits at the front, without leading zeroes, and what is left of the text.
std::string_view takeNumber(std::string_view& text)
{
    const std::size_t end =
        static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
    std::string_view digits = text.substr(0, end);
    text.remove_prefix(end);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

int compareNaturally(std::string_view a, std::string_view b)
{
    const auto folded = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const std::string_view left = takeNumber(a), right = takeNumber(b);
            if (left.size() != right.size())
                return left.size() < right.size() ? -1 : 1;
            if (const int order = left.compare(right); order != 0)
                return order;
            continue;
        }
        if (folded(a.front()) != folded(b.front()))
            return folded(a.front()) < folded(b.front()) ? -1 : 1;
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

} // namespace

bool naturallyBefore(const std::string& a, const std::string& b)
{
    const int order = compareNaturally(a, b);
    return order != 0 ? order < 0 : a < b;
}

std::vector<fs::path> neighboursOf(const fs::path& image, int step)
{
    std::error_code error;
    const std::string own = image.filename().string();
    std::vector<std::string> names;
    for (fs::directory_iterator entry(image.parent_path(), error), end;
         !error && entry != end && names.size() < maxFiles; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        std::error_code unknown;
        const bool wanted = step > 0 ? naturallyBefore(own, name) : naturallyBefore(name, own);
        if (wanted && name.front() != '.' && entry->is_regular_file(unknown))
            names.push_back(name);
    }
    std::sort(names.begin(), names.end(), naturallyBefore);
    if (step < 0)
        std::reverse(names.begin(), names.end());
    std::vector<fs::path> paths;
    for (const std::string& name : names)
        paths.push_back(image.parent_path() / name);
    return paths;
}

} // namespace viewer
