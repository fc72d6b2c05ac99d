// SPDX-License-Identifier: MIT
#include "batch/run/Settings.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

namespace {

constexpr int maxIndex = 1'000'000;

int indexIn(std::string_view text)
{
    int index = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    if (error != std::errc() || end != text.data() + text.size() || index < 1 || index > maxIndex)
        throw std::invalid_argument("\"" + std::string(text) + "\" is no number from 1 on");
    return index;
}

} // namespace

IndexList IndexList::parse(const std::string& text)
{
    IndexList list;
    if (text == "all")
        return list;
    std::istringstream items(text + ",");
    for (std::string item; std::getline(items, item, ',');) {
        const std::size_t dash = item.find('-');
        const int first = indexIn(std::string_view(item).substr(0, dash));
        const int last = dash == std::string::npos ? first : indexIn(std::string_view(item).substr(dash + 1));
        if (last < first)
            throw std::invalid_argument("the range \"" + item + "\" runs backwards");
        list.ranges.emplace_back(first, last);
    }
    return list;
}

std::vector<int> IndexList::indices(int count) const
{
    std::vector<int> result;
    if (isAll()) {
        result.resize(static_cast<std::size_t>(count));
        std::iota(result.begin(), result.end(), 0);
        return result;
    }
    for (const auto& [first, last] : ranges)
        for (int index = first; index <= last; ++index)
            result.push_back(index - 1);
    std::ranges::sort(result);
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

std::string IndexList::text() const
{
    std::string text;
    for (const auto& [first, last] : ranges)
        text += (text.empty() ? "" : ",") + std::to_string(first) + "-" + std::to_string(last);
    return isAll() ? "all" : text;
}

} // namespace batch
