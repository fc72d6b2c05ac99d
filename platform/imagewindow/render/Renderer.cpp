// SPDX-License-Identifier: MIT
#include "platform/imagewindow/render/Renderer.h"

#include "platform/image/WorkerPool.h"
#include "platform/imagewindow/render/Contrast.h"
#include "platform/imagewindow/render/LabelColors.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace viewer {

namespace {

constexpr long contrastSamples = 1L << 18; // of one wavelength, over all panels
constexpr int bandRows = 64;               // tile rows that one work item composes

image::SectionIndex sectionOf(const PanelContent& panel, int wavelength)
{
    return {panel.z, wavelength, panel.t, panel.p};
}

std::array<int, 4> keyOf(const image::SectionIndex& section)
{
    return {section.z, section.w, section.t, section.p};
}

// Copies one composed tile row to a canvas row.
void expandRow(const std::uint32_t* row, const std::vector<int>& columns, std::uint32_t* out)
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        out[i] = row[columns[i]];
}

} // namespace

Renderer::Renderer(image::ImageFile& file) : file(&file), projections(std::make_unique<Projections>(file)) {}

void Renderer::setFile(image::ImageFile& newFile)
{
    file = &newFile;
    projections = std::make_unique<Projections>(newFile);
    mode = Projection::Section;
    awaited = false;
    samples.clear();
    tiles.clear();
    for (LimitSet& set : limitSets)
        set.fitted.clear();
}

Renderer::Source Renderer::sourceOf(const PanelContent& panel, int wavelength) const
{
    const image::SectionIndex section = sectionOf(panel, wavelength);
    if (panel.projection == Projection::Section)
        return {file, section, keyOf(section)};
    image::ImageFile* const made =
        projections ? projections->find({panel.projection, wavelength, panel.t, panel.p}) : nullptr;
    return {made, {}, {-1 - static_cast<int>(panel.projection), wavelength, panel.t, panel.p}};
}

bool Renderer::chooseProjection(const std::vector<PanelContent>& newPanels, bool sameGeometry,
                                std::string& problem)
{
    const Projection wanted = newPanels.empty() ? Projection::Section : newPanels.front().projection;
    std::vector<ProjectionKey> keys;
    for (const PanelContent& panel : newPanels)
        for (const int w : panel.wavelengths)
            if (const ProjectionKey key{wanted, w, panel.t, panel.p};
                wanted != Projection::Section && std::find(keys.begin(), keys.end(), key) == keys.end())
                keys.push_back(key);
    problem = projections->want(keys);
    const bool there =
        std::all_of(keys.begin(), keys.end(), [&](auto& key) { return projections->find(key); });
    if (problem.empty())
        problem = projections->problem();
    awaited = !there && problem.empty();
    if (awaited && mode == wanted && sameGeometry && panels.size() == newPanels.size())
        return false;
    mode = there ? wanted : Projection::Section;
    return true;
}

std::string Renderer::load(const protocol::Geometry& newGeometry, const std::vector<PanelContent>& newPanels)
{
    std::string problem;
    if (!chooseProjection(newPanels, newGeometry == geometry, problem))
        return problem;
    // Limits of the one section shown so far may suit none of the others.
    if (newGeometry.style != geometry.style && newPanels.size() > 1)
        limitSet().fitted.clear();
    geometry = newGeometry;
    panels = newPanels;
    for (PanelContent& panel : panels)
        panel.projection = mode;
    const bool labels = std::any_of(panels.begin(), panels.end(), [](auto& panel) { return panel.labels; });
    const TileFrame newFrame = tileFrame(geometry, labels);
    if (newFrame != frame)
        tiles.clear();
    if (newFrame != frame || panels.size() != sums.size())
        sums = std::vector<PanelSum>(panels.size());
    frame = newFrame;
    const std::string error = loadTiles();
    fitMissingLimits();
    return error.empty() ? problem : error;
}

std::string Renderer::loadTiles()
{
    std::string firstError;
    std::map<SectionKey, std::vector<float>> kept;
    for (const PanelContent& panel : panels)
        for (int w : panel.wavelengths) {
            const Source source = sourceOf(panel, w);
            if (kept.contains(source.key))
                continue;
            if (const auto found = tiles.find(source.key); found != tiles.end()) {
                kept[source.key] = std::move(found->second);
                continue;
            }
            std::string error;
            for (PanelSum& sum : sums)
                sum.forget();
            if (auto values = readTile(*source.file, source.section, frame, error))
                kept[source.key] = std::move(*values);
            else if (firstError.empty())
                firstError = error;
        }
    tiles = std::move(kept);
    return firstError;
}

void Renderer::fitMissingLimits()
{
    std::set<int> wavelengths;
    for (const PanelContent& panel : panels)
        wavelengths.insert(panel.wavelengths.begin(), panel.wavelengths.end());
    std::vector<int> missing;
    std::copy_if(wavelengths.begin(), wavelengths.end(), std::back_inserter(missing),
                 [&](int w) { return !limitSet().fitted.contains(w); });
    std::vector<std::optional<Fitted>> found(missing.size());
    image::parallelFor(static_cast<int>(missing.size()), [&](int i) {
        const auto index = static_cast<std::size_t>(i);
        found[index] = limitsOfSections(missing[index]);
    });
    for (std::size_t i = 0; i < missing.size(); ++i)
        if (found[i])
            limitSet().fitted[missing[i]] = *found[i];
}

void Renderer::setLimits(int wavelength, const ContrastLimits& limits, Projection projection)
{
    limitSets[static_cast<std::size_t>(projection)].manual[wavelength] = limits;
    lastSet = wavelength;
}

std::optional<ContrastLimits> Renderer::limitsByHand(int wavelength, Projection projection) const
{
    const auto& manual = limitSets[static_cast<std::size_t>(projection)].manual;
    const auto found = manual.find(wavelength);
    return found == manual.end() ? std::nullopt : std::optional(found->second);
}

float Renderer::gamma(int wavelength) const
{
    const auto found = gammas.find(wavelength);
    return found == gammas.end() ? 1 : found->second.value;
}

void Renderer::setGamma(int wavelength, float wanted)
{
    const float value = std::clamp(wanted, minGamma, maxGamma);
    if (value == 1)
        gammas.erase(wavelength);
    else
        gammas[wavelength] = {value, gammaTable(value)};
    lastSet = wavelength;
}

SampleStore::Sample Renderer::sample(int wavelength) const
{
    for (const PanelContent& panel : panels)
        if (std::find(panel.wavelengths.begin(), panel.wavelengths.end(), wavelength) !=
            panel.wavelengths.end()) {
            const Source source = sourceOf(panel, wavelength);
            const SectionKey& key = source.key;
            if (source.file)
                return samples.get({key[0], key[1], key[2], key[3]},
                                   [&] { return readSample(*source.file, source.section, histogramValues); });
        }
    return std::make_shared<const SectionSample>();
}

void Renderer::setAutomatic(int wavelength)
{
    limitSet().manual.erase(wavelength);
    limitSet().fitted.erase(wavelength);
    fitMissingLimits();
}

void Renderer::setAutomatic()
{
    limitSet() = {};
    fitMissingLimits();
}

void Renderer::forgetLimits()
{
    limitSets = {};
    fitMissingLimits();
}

// One pair of limits for all panels, or they could not be compared. Nothing when none of the sections can be
// read.
std::optional<Renderer::Fitted> Renderer::limitsOfSections(int wavelength) const
{
    const image::ImageInfo& info = file->info();
    const auto fixed = mode == Projection::Section ? fixedLimits(info, wavelength) : std::nullopt;
    if (fixed)
        return Fitted{*fixed, *fixed};
    std::vector<float> values;
    std::set<SectionKey> seen;
    for (const PanelContent& panel : panels) {
        const Source source = sourceOf(panel, wavelength);
        if (!source.file || !seen.insert(source.key).second)
            continue;
        const auto sample =
            sampleSection(*source.file, source.section, contrastSamples / static_cast<long>(panels.size()));
        values.insert(values.end(), sample.begin(), sample.end());
    }
    if (values.empty())
        return std::nullopt;
    std::vector<float> unordered = values;
    const ContrastLimits alone = automaticLimits(unordered);
    const bool fluorescent = info.wavelengths[static_cast<std::size_t>(wavelength)].nanometres > 0;
    return Fitted{alone, fluorescent ? alone : underlayLimits(values, alone)};
}

bool Renderer::shownAmongOthers(int wavelength) const
{
    return std::any_of(panels.begin(), panels.end(), [&](const PanelContent& panel) {
        return panel.wavelengths.size() > 1 && std::find(panel.wavelengths.begin(), panel.wavelengths.end(),
                                                         wavelength) != panel.wavelengths.end();
    });
}

ContrastLimits Renderer::limits(int wavelength, Projection projection) const
{
    return limitsAmong(wavelength, shownAmongOthers(wavelength), projection);
}

ContrastLimits Renderer::limitsAmong(int wavelength, bool others, Projection projection) const
{
    const LimitSet& set = limitSets[static_cast<std::size_t>(projection)];
    if (const auto found = set.manual.find(wavelength); found != set.manual.end())
        return found->second;
    const auto found = set.fitted.find(wavelength);
    if (found == set.fitted.end())
        return {0, 1};
    return others ? found->second.amongOthers : found->second.alone;
}

std::vector<CompositeChannel> Renderer::channelsOf(const PanelContent& panel) const
{
    std::vector<CompositeChannel> channels;
    for (std::size_t i = 0; i < panel.wavelengths.size(); ++i) {
        const int w = panel.wavelengths[i];
        const auto tile = tiles.find(sourceOf(panel, w).key);
        const auto bent = gammas.find(w);
        if (tile != tiles.end())
            channels.push_back({tile->second, limitsAmong(w, panel.wavelengths.size() > 1, mode),
                                palette[static_cast<std::size_t>(panel.colors[i])],
                                bent == gammas.end() ? nullptr : bent->second.table});
    }
    return channels;
}

void Renderer::beginSum(PanelSum& sum, const PanelContent& panel) const
{
    std::vector<CompositeChannel> channels = channelsOf(panel);
    // A wavelength whose tile cannot be read has no channel, and those behind it are one place further to the
    // front. The sum is then kept for the wrong channel, which costs time but gives the same picture.
    const auto place = std::find(panel.wavelengths.begin(), panel.wavelengths.end(), lastSet);
    sum.begin(std::move(channels), static_cast<std::size_t>(place - panel.wavelengths.begin()),
              static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height));
}

Renderer::Compose Renderer::composerOf(int index) const
{
    const PanelContent& panel = panels[static_cast<std::size_t>(index)];
    PanelSum& sum = sums[static_cast<std::size_t>(index)];
    if (!panel.labels) {
        beginSum(sum, panel);
        return [&sum](std::size_t first, std::span<std::uint32_t> out) { sum.compose(first, out); };
    }
    sum.forget();
    const auto tile = tiles.find(sourceOf(panel, panel.wavelengths.front()).key);
    return [tile, this](std::size_t first, std::span<std::uint32_t> out) {
        if (tile == tiles.end())
            std::fill(out.begin(), out.end(), 0U);
        else
            composeLabels(std::span(tile->second).subspan(first, out.size()), out);
    };
}

void Renderer::drawPanel(int index, std::span<std::uint32_t> pixels, int width, int height) const
{
    const int left = index % geometry.columns * (geometry.panelWidth + geometry.gap);
    const int top = index / geometry.columns * (geometry.panelHeight + geometry.gap);
    const int columnCount = std::min(geometry.panelWidth, width - left);
    const int rowCount = std::min(geometry.panelHeight, height - top);
    if (columnCount <= 0 || rowCount <= 0)
        return;
    const auto compose = composerOf(index);
    const std::vector<int> columns = tileColumns(frame, columnCount), rows = tileRows(frame, rowCount);
    const auto canvasRow = [&](int row) {
        return pixels.subspan(static_cast<std::size_t>(top + row) * static_cast<std::size_t>(width) +
                                  static_cast<std::size_t>(left),
                              columns.size());
    };
    // From one canvas pixel to the next the place in the tile grows by one at most; so when the last places
    // are equal, all are, and each tile row is composed straight into its canvas row.
    if (columns.back() + 1 == columnCount && rows.back() + 1 == rowCount)
        return image::parallelFor((rowCount + bandRows - 1) / bandRows, [&](int band) {
            for (int row = band * bandRows; row < std::min((band + 1) * bandRows, rowCount); ++row)
                compose(static_cast<std::size_t>(row) * static_cast<std::size_t>(frame.width),
                        canvasRow(row));
        });
    image::parallelFor((frame.height + bandRows - 1) / bandRows, [&](int band) {
        const int first = band * bandRows, last = std::min(first + bandRows, frame.height);
        const std::size_t offset = static_cast<std::size_t>(first) * static_cast<std::size_t>(frame.width);
        std::vector<std::uint32_t> composed(static_cast<std::size_t>(last - first) *
                                            static_cast<std::size_t>(frame.width));
        compose(offset, composed);
        for (auto row = std::lower_bound(rows.begin(), rows.end(), first); row != rows.end() && *row < last;
             ++row)
            expandRow(composed.data() + static_cast<std::size_t>(*row - first) * frame.width, columns,
                      canvasRow(static_cast<int>(row - rows.begin())).data());
    });
}

void Renderer::draw(std::span<std::uint32_t> pixels, int width, int height) const
{
    if (panels.size() > 1)
        std::fill(pixels.begin(), pixels.end(), surroundPixel);
    for (int panel = 0; panel < static_cast<int>(panels.size()); ++panel)
        drawPanel(panel, pixels, width, height);
}

std::optional<float> Renderer::valueAt(int panel, int wavelength, int x, int y) const
{
    if (panel < 0 || panel >= static_cast<int>(panels.size()))
        return std::nullopt;
    const Source source = sourceOf(panels[static_cast<std::size_t>(panel)], wavelength);
    const auto tile = tiles.find(source.key);
    const int column = x - frame.xFirst, row = y - frame.yFirst;
    if (frame.magnified && tile != tiles.end() && column >= 0 && row >= 0 && column < frame.width &&
        row < frame.height)
        return tile->second[static_cast<std::size_t>(row) * static_cast<std::size_t>(frame.width) +
                            static_cast<std::size_t>(column)];
    float value = 0;
    if (!source.file || !source.file->hasSection(source.section) ||
        !source.file->read(source.section, {x, y, x, y}, std::span(&value, 1)))
        return std::nullopt;
    return value;
}

} // namespace viewer
