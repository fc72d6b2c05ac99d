// SPDX-License-Identifier: MIT
#include "batch/lines/OmeLines.h"

#include "platform/image/Dataset.h"
#include "platform/image/Error.h"
#include "platform/image/OmeMetadata.h"
#include "platform/image/OmeXml.h"

#include <charconv>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

namespace {

using image::localName;
using pugi::xml_node;

double numberIn(std::string_view text)
{
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size()
               ? value
               : std::numeric_limits<double>::quiet_NaN();
}

// "x,y x,y", with any blanks and commas between the numbers.
std::vector<Point> pointsIn(std::string_view text)
{
    constexpr std::string_view between = " \t\r\n,";
    std::vector<double> numbers;
    for (auto at = text.find_first_not_of(between); at != std::string_view::npos;
         at = text.find_first_not_of(between, at)) {
        const auto end = std::min(text.find_first_of(between, at), text.size());
        numbers.push_back(numberIn(text.substr(at, end - at)));
        at = end;
    }
    std::vector<Point> points;
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
        points.push_back({numbers[i], numbers[i + 1]});
    return points;
}

class RegionReader {
public:
    RegionReader(xml_node root, LineList& list) : list(list)
    {
        int position = 0;
        for (const xml_node node : root.children())
            if (localName(node) == "Image") {
                ++position;
                for (const xml_node child : node.children())
                    if (localName(child) == "ROIRef")
                        positions[child.attribute("ID").value()].push_back(position);
            }
        images = position;
        for (const xml_node node : root.children())
            if (localName(node) == "ROI")
                takeRegion(node);
    }

private:
    void takeRegion(xml_node region)
    {
        const std::string id = region.attribute("ID").value();
        const std::string name = region.attribute("Name") ? region.attribute("Name").value() : id.c_str();
        int shape = 0;
        for (const xml_node all : region.children())
            for (const xml_node node : all.children())
                if (localName(all) == "Union" && (localName(node) == "Line" || localName(node) == "Polyline"))
                    takeShape(node, ++shape == 1 ? name : name + "." + std::to_string(shape), positions[id]);
    }
    void takeShape(xml_node shape, const std::string& name, const std::vector<int>& in)
    {
        Line line;
        line.name = name;
        const auto index = [&](const char* attribute) {
            return shape.attribute(attribute) ? shape.attribute(attribute).as_int(-2) + 1 : 0;
        };
        line.section = {index("TheZ"), index("TheT"), 0};
        if (shape.attribute("StrokeWidth"))
            line.width = std::max(0.0F, shape.attribute("StrokeWidth").as_float());
        const auto number = [&](const char* attribute) {
            return numberIn(shape.attribute(attribute).value());
        };
        const std::vector<Point> points =
            localName(shape) == "Line"
                ? std::vector<Point>{{number("X1"), number("Y1")}, {number("X2"), number("Y2")}}
                : pointsIn(shape.attribute("Points").value());
        if (in.empty() || static_cast<int>(in.size()) == images) {
            list.add(line, points);
            return;
        }
        for (const int position : in) {
            line.section.p = position;
            list.add(line, points);
        }
    }

    LineList& list;
    std::map<std::string, std::vector<int>> positions; // that refer to a region, from 1 on
    int images = 0;
};

} // namespace

void readOmeLines(const std::filesystem::path& path, LineList& list)
{
    try {
        std::string text = image::openForReading(path).description;
        if (!image::isOmeXml(text))
            return;
        if (const std::string companion = image::parseOme(text).metadataFile; !companion.empty())
            text = image::openForReading(path.parent_path() / std::filesystem::path(companion).filename())
                       .description;
        pugi::xml_document tree;
        image::loadOmeXml(text, tree);
        RegionReader(tree.document_element(), list);
    } catch (const image::FormatError& error) {
        throw std::runtime_error("The lines in the metadata of " + path.string() +
                                 " cannot be read: " + error.what() + ".");
    }
}

} // namespace batch
