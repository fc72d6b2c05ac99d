// SPDX-License-Identifier: MIT
// LineString and MultiLineString of GeoJSON, in pixels; name, image, z, t, p and width_px are properties.
#include "batch/lines/LineFile.h"

#include <nlohmann/json.hpp>

#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

namespace {

using nlohmann::json;

constexpr int maxDepth = 32; // a collection of multi-lines nests eight levels

double numberOf(const json& value)
{
    return value.is_number() ? value.get<double>() : std::numeric_limits<double>::quiet_NaN();
}

int indexOf(const json& properties, const char* name)
{
    const auto found = properties.find(name);
    if (found == properties.end() || found->is_null())
        return 0;
    const double value = numberOf(*found);
    return value >= 1 && value <= 1e9 && value == static_cast<int>(value) ? static_cast<int>(value) : -1;
}

std::string textOf(const json& properties, const char* name)
{
    const auto found = properties.find(name);
    if (found == properties.end() || found->is_null())
        return {};
    return found->is_string() ? found->get<std::string>() : found->dump();
}

class GeoReader {
public:
    GeoReader(const std::string& source, LineList& list) : source(source), list(list) {}

    void takeFeature(const json& feature)
    {
        const auto properties = feature.find("properties");
        const json& described = properties != feature.end() && properties->is_object() ? *properties : none;
        ++count;
        Line line;
        line.name = textOf(described, "name");
        if (line.name.empty())
            line.name = textOf(feature, "id");
        if (line.name.empty())
            line.name = source + ":" + std::to_string(count);
        line.section = {indexOf(described, "z"), indexOf(described, "t"), indexOf(described, "p")};
        if (const auto width = described.find("width_px"); width != described.end())
            line.width = static_cast<float>(numberOf(*width));
        line.image = list.imageNumber(textOf(described, "image"));
        const auto geometry = feature.find("geometry");
        takeGeometry(geometry != feature.end() ? *geometry : none, line);
    }
    void takeGeometry(const json& geometry, const Line& line)
    {
        const std::string type = geometry.is_object() ? textOf(geometry, "type") : "";
        const auto coordinates = geometry.is_object() ? geometry.find("coordinates") : geometry.end();
        if (type == "LineString" && coordinates != geometry.end()) {
            takeLine(*coordinates, line);
        } else if (type == "MultiLineString" && coordinates != geometry.end() && coordinates->is_array()) {
            int part = 0;
            for (const json& one : *coordinates) {
                Line piece = line;
                piece.name += "." + std::to_string(++part);
                takeLine(one, piece);
            }
        } else {
            list.problems.push_back({line.name, "It has no LineString or MultiLineString."});
        }
    }
    std::string nextName() const { return source + ":" + std::to_string(count + 1); }
    bool foundAny() const { return count > 0; }

private:
    void takeLine(const json& coordinates, const Line& line)
    {
        std::vector<Point> points;
        for (const json& pair : coordinates) {
            const bool usable = pair.is_array() && pair.size() >= 2;
            points.push_back(usable ? Point{numberOf(pair[0]), numberOf(pair[1])}
                                    : Point{std::numeric_limits<double>::quiet_NaN(), 0});
        }
        list.add(line, points);
    }

    const std::string& source;
    LineList& list;
    const json none = json::object();
    std::size_t count = 0;
};

} // namespace

// Each feature is taken when it is complete and then forgotten, so that a long collection is never whole in
// memory.
void readGeoJsonLines(std::string_view text, const std::string& source, LineList& list)
{
    GeoReader reader(source, list);
    const auto keep = [&](int depth, json::parse_event_t event, json& value) {
        if (depth > maxDepth)
            throw std::runtime_error("nests deeper than any GeoJSON");
        if (event != json::parse_event_t::object_end || !value.is_object())
            return true;
        if (const auto type = value.find("type"); type == value.end() || *type != "Feature")
            return true;
        reader.takeFeature(value);
        return false;
    };
    try {
        const json rest = json::parse(text, keep);
        if (rest.is_object() && rest.contains("coordinates")) {
            Line line;
            line.name = reader.nextName();
            reader.takeGeometry(rest, line);
        } else if (!reader.foundAny()) {
            throw std::runtime_error("holds no feature of GeoJSON");
        }
    } catch (const json::exception&) {
        throw std::runtime_error("is damaged JSON");
    }
}

} // namespace batch
