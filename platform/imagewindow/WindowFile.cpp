// SPDX-License-Identifier: MIT
// The image window and its file: following a file that grows or is replaced, the ranges of its wavelengths,
// and the record that tells clients what is shown.
#include "platform/imagewindow/ImageWindow.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace viewer {

namespace {

constexpr unsigned long scanMilliseconds = 300, growingMilliseconds = 200, finishedMilliseconds = 1000;

bool sameImage(const image::ImageInfo& a, const image::ImageInfo& b)
{
    return a.width == b.width && a.height == b.height && a.sizeW == b.sizeW;
}

} // namespace

void ImageWindow::pollScan()
{
    scanTimer = 0;
    gatherRanges();
    recordStale = statusStale = true;
    if (!scan->done())
        scanTimer = XtAppAddTimeOut(
            application.context(), scanMilliseconds,
            [](XtPointer client, XtIntervalId*) { static_cast<ImageWindow*>(client)->pollScan(); }, this);
}

void ImageWindow::gatherRanges()
{
    const std::vector<image::ValueRange> scanned = scan->ranges();
    ranges.resize(scanned.size());
    for (std::size_t w = 0; w < scanned.size(); ++w) {
        if (!scanned[w].known)
            continue;
        image::ValueRange& range = ranges[w];
        range.min = range.known ? std::min(range.min, scanned[w].min) : scanned[w].min;
        range.max = range.known ? std::max(range.max, scanned[w].max) : scanned[w].max;
        range.known = true;
    }
}

void ImageWindow::pollFile()
{
    if (source.input && receiving && !source.input->pump(0)) {
        receiving = false;
        fileProblem = source.input->error();
        statusStale = true;
    }
    if (watch.changed())
        reopenFile();
    fileTimer = XtAppAddTimeOut(
        application.context(), source.growing ? growingMilliseconds : finishedMilliseconds,
        [](XtPointer client, XtIntervalId*) { static_cast<ImageWindow*>(client)->pollFile(); }, this);
}

// While a file is being written it may be in no state to be opened: the next change is waited for.
void ImageWindow::reopenFile()
{
    statusStale = true;
    try {
        auto fresh = image::ImageFile::open(source.path);
        if (!sameImage(fresh->info(), image().info()) || !controls->hasScalesFor(fresh->info())) {
            fileProblem = "The file now holds another image: open it again to see it.";
            return;
        }
        fileProblem.clear();
        adoptFile(std::move(fresh));
    } catch (const image::ImageError& error) {
        if (!source.growing)
            fileProblem = error.what();
    }
}

// The view goes along to the newest section when it was there before.
void ImageWindow::adoptFile(std::unique_ptr<image::ImageFile> fresh)
{
    const image::SectionIndex before = newestSection(image());
    gatherRanges();
    if (!source.growing)
        ranges.clear();
    scan.reset();
    source.file = std::move(fresh);
    ++fileVersion;
    followScale();
    renderer.setFile(*source.file);
    scan = std::make_unique<image::RangeScan>(*source.file);
    if (source.growing && view.style == protocol::SinglePanel && view.z == before.z && view.t == before.t) {
        const image::SectionIndex newest = newestSection(image());
        view.z = newest.z;
        view.t = newest.t;
    }
    clampSection(image().info(), view);
    controls->showSizes();
    changed();
    if (!scanTimer)
        pollScan();
}

protocol::DisplayRecord ImageWindow::currentRecord() const
{
    protocol::DisplayRecord current = record;
    const image::ImageInfo& info = image().info();
    current.z = view.z;
    current.t = view.t;
    current.p = view.p;
    current.w = displayedWavelengths(view).front();
    current.spacing = userScale ? std::optional(scale().spacing) : std::nullopt;
    current.geometry = arrangement.geometry;
    current.scratchSize = source.growing ? info.sizeZ : 0;
    current.fileVersion = fileVersion;
    current.wavelengths.resize(view.displayed.size());
    for (std::size_t w = 0; w < view.displayed.size(); ++w) {
        protocol::WavelengthDisplay& wave = current.wavelengths[w];
        wave.displayed = view.displayed[w];
        wave.colorIndex = view.colors[w];
        wave.topImage = source.growing ? topImage(image(), static_cast<int>(w), view.t, view.p) : 0;
        if (w >= ranges.size() || !ranges[w].known)
            continue;
        wave.rangeKnown = true;
        wave.rangeMin = ranges[w].min;
        wave.rangeMax = ranges[w].max;
    }
    return current;
}

void ImageWindow::publish()
{
    if (!recordStale || record.windowNumber == 0)
        return;
    recordStale = false;
    protocol::DisplayRecord current = currentRecord();
    if (current == record)
        return;
    record = std::move(current);
    protocol::publishDisplay(display(), controls->canvas(), record);
}

} // namespace viewer
