// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/MetadataText.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace viewer {

namespace {

using image::MetadataRow;
using image::MetadataTree;

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string onOneRow(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return text;
}

// The rows below each row, and the topmost at the end.
std::vector<std::vector<int>> childrenOf(const MetadataTree& tree)
{
    std::vector<std::vector<int>> children(tree.size() + 1);
    for (std::size_t row = 0; row < tree.size(); ++row) {
        const int parent = tree[row].parent;
        children[parent < 0 ? tree.size() : static_cast<std::size_t>(parent)].push_back(
            static_cast<int>(row));
    }
    return children;
}

class Writer {
public:
    Writer(const MetadataTree& tree, const std::vector<char>& chosen)
        : tree(tree), chosen(chosen), children(childrenOf(tree))
    {
    }
    void addBelow(std::size_t row, std::size_t depth)
    {
        for (const int child : children[row])
            add(static_cast<std::size_t>(child), depth);
    }
    void add(std::size_t row, std::size_t depth)
    {
        if (!chosen.empty() && !chosen[row])
            return;
        text +=
            std::string(2 * depth, ' ') + onOneRow(tree[row].name) + '\t' + onOneRow(tree[row].value) + '\n';
        addBelow(row, depth + 1);
    }
    std::string text;

private:
    const MetadataTree& tree;
    const std::vector<char>& chosen; // empty: all
    std::vector<std::vector<int>> children;
};

} // namespace

std::string rowsText(const MetadataTree& tree, const std::vector<int>& rows)
{
    std::vector<char> wanted(tree.size());
    for (const int row : rows)
        if (row >= 0 && row < static_cast<int>(tree.size()))
            wanted[static_cast<std::size_t>(row)] = 1;
    std::vector<char> covered = wanted; // it or a row above it is wanted
    const std::vector<char> all;
    Writer writer(tree, all);
    for (std::size_t row = 0; row < tree.size(); ++row) {
        const bool below = tree[row].parent >= 0 && covered[static_cast<std::size_t>(tree[row].parent)];
        if (wanted[row] && !below)
            writer.add(row, 0);
        covered[row] |= below;
    }
    return writer.text;
}

std::string foundText(const MetadataTree& tree, const std::string& wanted)
{
    std::vector<char> chosen;
    if (!wanted.empty()) {
        chosen.resize(tree.size());
        const std::string text = lowered(wanted);
        for (std::size_t row = tree.size(); row-- > 0;) {
            chosen[row] |= lowered(tree[row].name).find(text) != std::string::npos ||
                           lowered(tree[row].value).find(text) != std::string::npos;
            if (chosen[row] && tree[row].parent >= 0)
                chosen[static_cast<std::size_t>(tree[row].parent)] = 1;
        }
    }
    Writer writer(tree, chosen);
    writer.addBelow(tree.size(), 0);
    return writer.text;
}

} // namespace viewer
