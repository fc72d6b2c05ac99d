// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/ImageLife.h"

#include <algorithm>
#include <utility>

namespace viewer {

namespace {

void widen(image::ValueRange& range, const image::ValueRange& found)
{
    if (!found.known)
        return;
    range.min = range.known ? std::min(range.min, found.min) : found.min;
    range.max = range.known ? std::max(range.max, found.max) : found.max;
    range.known = true;
}

} // namespace

ImageLife::ImageLife(ImageSource opened)
    : source(std::move(opened)),
      watch(source.path), steps{info().sizeZ > 1 || source.growing, info().sizeT > 1, info().sizeP > 1},
      chosenScale(source.input ? std::filesystem::path() : source.path, info()),
      scan(std::make_unique<image::RangeScan>(*source.file)), receiving(source.input != nullptr)
{
}

FileNews ImageLife::poll()
{
    FileNews news;
    if (receiving && !source.input->pump(0)) {
        receiving = false;
        trouble = source.input->error();
        news.told = true;
    }
    if (watch.changed()) {
        news.told = true;
        news.replaced = reopen();
    }
    return news;
}

// While a file is being written it may be in no state to be opened: the next change is waited for.
std::optional<image::SectionIndex> ImageLife::reopen()
{
    try {
        auto fresh = image::ImageFile::open(source.path);
        if (!isSameImage(fresh->info())) {
            trouble = "The file now holds another image: open it again to see it.";
            return std::nullopt;
        }
        trouble.clear();
        return adopt(std::move(fresh));
    } catch (const image::ImageError& error) {
        if (!source.growing)
            trouble = error.what();
    }
    return std::nullopt;
}

bool ImageLife::isSameImage(const image::ImageInfo& other) const
{
    return other.width == info().width && other.height == info().height && other.sizeW == info().sizeW &&
           (steps.z || other.sizeZ < 2) && (steps.t || other.sizeT < 2) && (steps.p || other.sizeP < 2);
}

image::SectionIndex ImageLife::adopt(std::unique_ptr<image::ImageFile> fresh)
{
    const image::SectionIndex newestBefore = newestSection(*source.file);
    gatherRanges();
    if (!source.growing)
        seen.clear();
    scan.reset();
    if (leave)
        leave();
    source.file = std::move(fresh);
    ++openings;
    chosenScale.follow(info(), source.growing);
    scan = std::make_unique<image::RangeScan>(*source.file);
    return newestBefore;
}

std::string ImageLife::activity() const
{
    if (receiving)
        return "receiving";
    return scan->done() ? "" : "ranges " + std::to_string(static_cast<int>(scan->progress() * 100)) + " %";
}

bool ImageLife::gatherRanges()
{
    const bool more = !scan->done();
    const std::vector<image::ValueRange> found = scan->ranges();
    seen.resize(found.size());
    for (std::size_t w = 0; w < found.size(); ++w)
        widen(seen[w], found[w]);
    return more;
}

image::ValueRange ImageLife::range(int wavelength) const
{
    const auto index = static_cast<std::size_t>(wavelength);
    return index < seen.size() ? seen[index] : image::ValueRange{};
}

} // namespace viewer
