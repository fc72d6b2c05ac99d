// TIFF files without metadata: the pages of one size are z sections.
#include "platform/image/Colors.h"
#include "platform/image/Dataset.h"
#include "platform/image/Error.h"

namespace image {

static bool sameShape(const PageSummary& a, const PageSummary& b)
{
    return a.width == b.width && a.height == b.height && a.bits == b.bits && a.samples == b.samples;
}

Dataset readPlainDataset(const OpenedFile& opened)
{
    if (!opened.tiff)
        throw FormatError("it is not a TIFF file");
    const std::vector<PageSummary>& pages = opened.tiff->pages();
    const PlanePtr plane = opened.tiff->plane(pages[0].offset, std::nullopt);
    Dataset dataset;
    dataset.files = std::make_shared<FileSet>(std::vector{opened.path});
    dataset.files->adopt(opened.path, opened.tiff);
    std::vector<std::uint32_t> sections; // pages of the first one's size
    for (std::uint32_t page = 0; page < pages.size(); ++page)
        if (page == 0 || (!pages[page].reduced && sameShape(pages[page], pages[0])))
            sections.push_back(page);
    dataset.samplesPerPlane = plane->sampleCount;
    setSizes(dataset, static_cast<std::int64_t>(sections.size()), plane->sampleCount, 1, 1);
    setGeometry(dataset, *plane);
    for (std::size_t z = 0; z < sections.size(); ++z)
        dataset.places[dataset.key({static_cast<int>(z), 0, 0, 0})] = {0, sections[z], 0};
    std::vector<ColorHint> hints(static_cast<std::size_t>(dataset.info.sizeW));
    hints[0].color = paletteColor(plane->directory);
    setWavelengths(dataset, *plane, hints);
    dataset.info.format =
        sections.size() == 1 ? "TIFF" : "TIFF, " + std::to_string(sections.size()) + " pages";
    return dataset;
}

} // namespace image
