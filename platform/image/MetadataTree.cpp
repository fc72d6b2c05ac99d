// SPDX-License-Identifier: MIT
#include "platform/image/MetadataTree.h"

#include "platform/image/Dataset.h"
#include "platform/image/Error.h"
#include "platform/image/Formats.h"
#include "platform/image/ImageJMetadata.h"
#include "platform/image/OmeMetadata.h"
#include "platform/image/OmeXml.h"
#include "platform/image/TiffFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <deque>
#include <filesystem>
#include <span>
#include <string_view>

namespace image {
namespace {

constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

class TreeWriter {
public:
    // The row's number, or -1 when there is no room for it.
    int add(int parent, std::string_view name, std::string_view value)
    {
        if (tree.size() >= maxMetadataRows) {
            cut = true;
            return -1;
        }
        MetadataRow row{parent, std::string(name.substr(0, maxMetadataValue)), std::string(trimmed(value))};
        if (row.value.size() > maxMetadataValue)
            row.value = row.value.substr(0, maxMetadataValue) + "...";
        tree.push_back(std::move(row));
        return static_cast<int>(tree.size()) - 1;
    }
    bool full() const { return cut; }
    MetadataTree finished()
    {
        if (cut)
            tree.push_back(
                {-1, "...",
                 "There is more: the first " + std::to_string(maxMetadataRows) + " rows are shown."});
        return std::move(tree);
    }

private:
    MetadataTree tree;
    bool cut = false;
};

// What tells an element from others of its kind.
std::string_view headingOf(pugi::xml_node element)
{
    if (const std::string_view text = trimmed(element.text().get()); !text.empty())
        return text;
    const std::string_view name = element.attribute("Name").value();
    return name.empty() ? element.attribute("ID").value() : name;
}

// Level by level: when there is too much, what is left out is the deepest.
void addXml(TreeWriter& writer, pugi::xml_node root)
{
    struct Waiting {
        pugi::xml_node element;
        int parent;
        std::size_t depth;
    };
    std::deque<Waiting> waiting{{root, -1, 0}};
    while (!waiting.empty() && !writer.full()) {
        const Waiting next = waiting.front();
        waiting.pop_front();
        const int row = writer.add(next.parent, localName(next.element), headingOf(next.element));
        for (const pugi::xml_attribute attribute : next.element.attributes())
            writer.add(row, attribute.name(), attribute.value());
        const bool deeper = next.depth < maxMetadataDepth;
        for (const pugi::xml_node child : next.element.children())
            if (child.type() == pugi::node_element)
                waiting.push_back({child, deeper ? row : next.parent, next.depth + (deeper ? 1 : 0)});
    }
}

void addOme(TreeWriter& writer, const OpenedFile& opened)
{
    std::string text = opened.description;
    pugi::xml_document document;
    loadOmeXml(text, document);
    for (const pugi::xml_node node : document.children()) {
        if (node.type() != pugi::node_element)
            continue;
        addXml(writer, node);
        for (const pugi::xml_node child : node.children()) {
            const std::filesystem::path name =
                std::filesystem::path(child.attribute("MetadataFile").value()).filename();
            if (localName(child) == "BinaryOnly" && !name.empty()) {
                std::string companionText = openForReading(opened.path.parent_path() / name).description;
                pugi::xml_document companion;
                loadOmeXml(companionText, companion);
                addXml(writer, companion.document_element());
            }
        }
    }
}

// "name=value" or "name: value" each; other lines are values without a name.
void addLines(TreeWriter& writer, int parent, std::string_view text)
{
    while (!text.empty() && !writer.full()) {
        const std::size_t end = text.find_first_of("\r\n");
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        const std::size_t equals = line.find('='), colon = line.find(": ");
        const std::size_t mark = std::min(equals, colon);
        if (mark != std::string_view::npos && mark > 0)
            writer.add(parent, trimmed(line.substr(0, mark)), line.substr(mark + 1));
        else if (!line.empty())
            writer.add(parent, "", line);
    }
}

void addImageJ(TreeWriter& writer, const OpenedFile& opened)
{
    addLines(writer, writer.add(-1, "ImageJ", ""), opened.description);
    if (!opened.tiff)
        return;
    const ImageJTexts texts = readImageJTexts(opened.tiff->tags(), opened.tiff->pages()[0].offset);
    if (!texts.info.empty())
        addLines(writer, writer.add(-1, "Info", ""), texts.info);
    if (texts.labels.empty())
        return;
    const int labels = writer.add(-1, "Labels", "");
    for (std::size_t i = 0; i < texts.labels.size() && !writer.full(); ++i)
        writer.add(labels, std::to_string(i + 1), texts.labels[i]);
}

void addTags(TreeWriter& writer, const TiffFile& file)
{
    const std::size_t pages = file.pages().size();
    const int parent = writer.add(-1, "TIFF", file.tags().bigTiff() ? "BigTIFF" : "");
    writer.add(parent, "Pages", std::to_string(pages));
    writer.add(parent, "ByteOrder", file.tags().bigEndian() ? "big-endian" : "little-endian");
    for (const TagText& tag : file.tags().listing(file.pages()[0].offset))
        if (tag.tag != TagDescription)
            writer.add(parent, tag.name, tag.value);
}

MetadataTree read(const OpenedFile& opened)
{
    TreeWriter writer;
    if (isOmeXml(opened.description))
        addOme(writer, opened);
    else if (isImageJ(opened.description))
        addImageJ(writer, opened);
    else if (!trimmed(opened.description).empty())
        addLines(writer, writer.add(-1, "ImageDescription", ""), opened.description);
    if (opened.tiff)
        addTags(writer, *opened.tiff);
    return writer.finished();
}

} // namespace

MetadataTree readMetadata(const std::filesystem::path& path)
{
    constexpr std::array<std::string_view, 4> pictures = {"\x89PNG", "\xff\xd8\xff", "GIF8"};
    try {
        if (beginsWith(path, pictures))
            return {{-1, "Picture", "This kind of file tells nothing about its image."}};
        return read(openForReading(path));
    } catch (const FormatError& error) {
        throw ImageError("The metadata of " + path.filename().string() + " cannot be read: " + error.what() +
                         ".");
    }
}

} // namespace image
