// SPDX-License-Identifier: MIT
// TIFF files without metadata: the pages of one size are z sections.
#include "platform/image/Colors.h"
#include "platform/image/Dataset.h"
#include "platform/image/Error.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace image {
namespace {

bool sameShape(const PageSummary& a, const PageSummary& b)
{
    return a.width == b.width && a.height == b.height && a.bits == b.bits && a.samples == b.samples;
}

// Section z is the page; pages that follow each other make one run.
void addPage(std::vector<PlaneRun>& runs, std::uint32_t z, std::uint32_t page)
{
    if (!runs.empty() && runs.back().place.page + runs.back().count == page)
        ++runs.back().count;
    else
        runs.push_back({z, 1, {0, page, 0}});
}

} // namespace

Dataset readPlainDataset(OpenedFile opened) // NOLINT(performance-unnecessary-value-param)
{
    if (!opened.tiff)
        throw FormatError("it is not a TIFF file");
    const std::vector<PageSummary>& pages = opened.tiff->pages();
    const PlanePtr plane = opened.tiff->plane(pages[0].offset, std::nullopt);
    Dataset dataset;
    dataset.files = std::make_shared<FileSet>(std::vector{opened.path});
    dataset.files->adopt(opened.path, opened.tiff);
    std::vector<PlaneRun> sections; // pages of the first one's size
    std::uint32_t count = 0, others = 0;
    for (std::uint32_t page = 0; page < pages.size(); ++page)
        if (page == 0 || (!pages[page].reduced && sameShape(pages[page], pages[0])))
            addPage(sections, count++, page);
        else if (!pages[page].reduced)
            ++others;
    dataset.places = PlaneMap(sections);
    dataset.samplesPerPlane = plane->sampleCount;
    setSizes(dataset, count, plane->sampleCount, 1, 1);
    setGeometry(dataset, *plane);
    if (others > 0)
        dataset.info.remarks.push_back(counted(others, "page") + " of another size or kind " +
                                       (others == 1 ? "is" : "are") + " not shown.");
    std::vector<ColorHint> hints(static_cast<std::size_t>(dataset.info.sizeW));
    hints[0].color = paletteColor(plane->directory);
    setWavelengths(dataset, *plane, hints);
    dataset.info.format = count == 1 ? "TIFF" : "TIFF, " + std::to_string(count) + " pages";
    return dataset;
}

} // namespace image
