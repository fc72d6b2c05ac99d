// SPDX-License-Identifier: MIT
#include "batch/run/Plan.h"

#include "platform/base/HashName.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <tuple>

namespace batch {

namespace {

using Places = std::unordered_map<std::string, std::vector<std::size_t>>;

std::string normalPath(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::absolute(path, error);
    return (error ? std::filesystem::path(path) : whole).lexically_normal().string();
}

std::string fileName(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

} // namespace

Plan::Plan(const Options& chosen, LineList list)
    : options(chosen), all(std::move(list)), paths(options.images)
{
    if (paths.empty())
        paths.assign(all.images.begin() + 1, all.images.end());
    Places byPath, byName;
    if (all.images.size() > 1)
        for (std::size_t i = 0; i < paths.size(); ++i) {
            byPath[normalPath(paths[i])].push_back(i);
            byName[fileName(paths[i])].push_back(i);
        }
    assign(byPath, byName);
}

void Plan::assign(const Places& byPath, const Places& byName)
{
    std::vector<const std::vector<std::size_t>*> found(all.images.size(), nullptr);
    for (std::size_t i = 1; i < all.images.size(); ++i) {
        const auto path = byPath.find(normalPath(all.images[i]));
        const auto name = byName.find(fileName(all.images[i]));
        found[i] = path != byPath.end() ? &path->second : name != byName.end() ? &name->second : nullptr;
    }
    for (std::uint32_t number = 0; number < all.lines.size(); ++number) {
        const Line& line = all.lines[number];
        if (line.image == 0)
            shared[line.section].push_back(number);
        else if (!found[line.image])
            all.problems.push_back({line.name, "The line is for the image \"" + all.images[line.image] +
                                                   "\", which is not in the run."});
        else
            for (const std::size_t image : *found[line.image])
                ofImage[image][line.section].push_back(number);
    }
}

std::vector<const Plan::Groups*> Plan::groupsOf(std::size_t image) const
{
    std::vector<const Groups*> groups = {&shared};
    if (const auto own = ofImage.find(image); own != ofImage.end())
        groups.push_back(&own->second);
    return groups;
}

namespace {

std::vector<int> chosen(int number, const IndexList& list, int count)
{
    return number > 0 ? std::vector<int>{number - 1} : list.indices(count);
}

// p, t, z
using Place = std::tuple<int, int, int>;
using Places3 = std::map<Place, std::vector<const LineNumbers*>>;

void addPlaces(Places3& places, const SectionChoice& choice, const LineNumbers& lines,
               const Settings& settings, const image::ImageInfo& info)
{
    for (const int p : chosen(choice.p, settings.position, info.sizeP))
        for (const int t : chosen(choice.t, settings.time, info.sizeT))
            for (const int z : chosen(choice.z, settings.z, info.sizeZ))
                places[{p, t, z}].push_back(&lines);
}

std::shared_ptr<const LineNumbers> joined(const std::vector<const LineNumbers*>& lists)
{
    if (lists.size() == 1)
        return {std::shared_ptr<void>(), lists.front()}; // the plan keeps it
    auto all = std::make_shared<LineNumbers>();
    for (const LineNumbers* list : lists)
        all->insert(all->end(), list->begin(), list->end());
    std::ranges::sort(*all);
    return all;
}

} // namespace

std::vector<Unit> Plan::unitsOf(std::size_t image, const image::ImageInfo& info, const LineList& own) const
{
    auto ownGroups = std::make_shared<Groups>();
    for (std::uint32_t i = 0; i < own.lines.size(); ++i)
        (*ownGroups)[own.lines[i].section].push_back(static_cast<std::uint32_t>(all.lines.size()) + i);
    std::vector<const Groups*> groups = groupsOf(image);
    groups.push_back(ownGroups.get());
    Places3 places;
    for (const Groups* group : groups)
        for (const auto& [choice, lines] : *group)
            addPlaces(places, choice, lines, options.settings, info);
    std::vector<Unit> units;
    const std::vector<int> channels = options.settings.channels.indices(info.sizeW);
    for (const auto& [place, lists] : places) {
        std::shared_ptr<const LineNumbers> lines = joined(lists);
        if (lists.size() == 1 && !ownGroups->empty())
            lines = {ownGroups, lines.get()};
        for (const int channel : channels) {
            const auto [p, t, z] = place;
            units.push_back({{z, channel, t, p}, lines});
        }
    }
    return units;
}

std::optional<std::size_t> Plan::unitCount(std::size_t image) const
{
    const Settings& settings = options.settings;
    if (settings.channels.isAll() || options.linesOfImages)
        return std::nullopt;
    Places3 places;
    for (const Groups* groups : groupsOf(image))
        for (const auto& [choice, lines] : *groups) {
            if ((choice.z == 0 && settings.z.isAll()) || (choice.t == 0 && settings.time.isAll()) ||
                (choice.p == 0 && settings.position.isAll()))
                return std::nullopt;
            addPlaces(places, choice, lines, settings, {});
        }
    return places.size() * settings.channels.indices(0).size();
}

namespace {

// Of bytes that come piece by piece.
class Identity {
public:
    void add(std::string_view text)
    {
        bytes += text;
        bytes += '\n';
        if (bytes.size() > atOnce)
            take();
    }
    template<class Value> void addValue(const Value& value)
    {
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    std::string text()
    {
        take();
        return hash;
    }

private:
    static constexpr std::size_t atOnce = 1 << 20;
    void take()
    {
        hash = base::hashName(hash + bytes);
        bytes.clear();
    }
    std::string bytes, hash;
};

} // namespace

std::string Plan::identity() const
{
    Identity identity;
    for (const std::string& word : wordsOf(options.settings))
        identity.add(word);
    identity.addValue(options.linesOfImages);
    for (const std::string& path : paths)
        identity.add(path);
    for (const Line& line : all.lines) {
        identity.add(line.name);
        identity.add(all.images[line.image]);
        identity.addValue(line.section);
        identity.addValue(line.width);
        identity.addValue(line.microns);
        for (const Point& point : all.pointsOf(line))
            identity.addValue(point);
    }
    return identity.text();
}

} // namespace batch
