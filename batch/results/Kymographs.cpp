// SPDX-License-Identifier: MIT
#include "batch/results/Kymographs.h"

#include "batch/results/Plots.h"

#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace batch {

namespace {

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

// Rows that lie beside each other: their distance along the axis, and its unit as ImageJ spells it.
struct RowStep {
    double step = 1;
    const char* unit = "row";
};

struct Kymograph {
    KymographAxis axis;
    std::vector<const Record*> records; // in the order of the axis
    int first = 0, rows = 0;            // of the axis

    int indexOf(const Record& record) const
    {
        return axis == KymographAxis::Time ? record.facts.t : record.facts.z;
    }
    std::size_t width() const
    {
        return std::ranges::max(records, {}, [](const Record* r) { return r->values.size(); })->values.size();
    }
    // Microns, or pixels where the image is not calibrated.
    double columnStep() const
    {
        const Record::Facts& facts = records.front()->facts;
        return double{facts.length} /
               (facts.band ? facts.pixelLength : static_cast<double>(records.front()->values.size()));
    }
    RowStep rowStep() const
    {
        const Record::Facts &from = records.front()->facts, &to = records.back()->facts;
        if (axis == KymographAxis::Z)
            return from.calibrated ? RowStep{double{from.zSpacing}, "um"} : RowStep{};
        const int steps = to.t - from.t;
        const double seconds = steps > 0 ? (double{to.timeSeconds} - from.timeSeconds) / steps : 0;
        return seconds > 0 ? RowStep{seconds, "s"} : RowStep{};
    }
};

std::string descriptionOf(const Kymograph& kymograph, const RowStep& row)
{
    const Record& record = *kymograph.records.front();
    char text[256];
    std::snprintf(
        text, sizeof text,
        "ImageJ=1.53t\nunit=%s\nyunit=%s\ncolumn_step=%.9g\nrow_step=%.9g\nfirst_%s=%d\nchannel=%d\n",
        record.facts.calibrated ? "um" : "pixel", row.unit, kymograph.columnStep(), row.step,
        kymograph.axis == KymographAxis::Time ? "t" : "z", kymograph.first + 1, record.facts.w + 1);
    return text;
}

void setTags(TIFF* tiff, const Kymograph& kymograph)
{
    const RowStep row = kymograph.rowStep();
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(kymograph.width()));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(kymograph.rows));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 32);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(kymograph.rows));
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 1 / kymograph.columnStep());
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 1 / row.step);
    TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, descriptionOf(kymograph, row).c_str());
}

void writeKymograph(const std::filesystem::path& path, const Kymograph& kymograph)
{
    StagedFile file(path);
    const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFOpen(file.temporaryName().c_str(), "w"));
    bool written = tiff != nullptr;
    if (written)
        setTags(tiff.get(), kymograph);
    const std::size_t width = kymograph.width();
    std::vector<float> values(width);
    auto next = kymograph.records.begin();
    for (int row = 0; row < kymograph.rows && written; ++row) {
        std::ranges::fill(values, std::numeric_limits<float>::quiet_NaN());
        if (next != kymograph.records.end() && kymograph.indexOf(**next) == kymograph.first + row)
            std::ranges::copy((*next++)->values, values.begin());
        written = TIFFWriteScanline(tiff.get(), values.data(), static_cast<std::uint32_t>(row)) == 1;
    }
    if (!written || TIFFFlush(tiff.get()) != 1)
        throw RunError(path.string() + " cannot be written.");
    file.commit();
}

// Sections that differ in the axis alone.
using Key = std::tuple<std::uint32_t, int, int, int>; // image, p, the other of z and t, channel
struct Stack {
    std::vector<FinishedUnit> units;
    int first = 0, last = 0; // of the axis
};
using Stacks = std::map<Key, Stack>;

Stacks stacksOf(const std::vector<FinishedUnit>& units, KymographAxis axis)
{
    Stacks stacks;
    for (const FinishedUnit& unit : units) {
        RecordCursor cursor((*unit.files)[RecordsPart], unit.ranges[RecordsPart]);
        if (const Record* record = cursor.next()) {
            const Record::Facts& facts = record->facts;
            const bool time = axis == KymographAxis::Time;
            Stack& stack = stacks[{unit.key.image, facts.p, time ? facts.z : facts.t, facts.w}];
            stack.last = time ? facts.t : facts.z;
            if (stack.units.empty())
                stack.first = stack.last;
            stack.units.push_back(unit);
        }
    }
    return stacks;
}

} // namespace

void writeKymographs(const std::filesystem::path& folder, const std::vector<FinishedUnit>& units,
                     KymographAxis axis)
{
    makeFolder(folder);
    for (const auto& [key, unitsOfKey] : stacksOf(units, axis)) {
        const Stack& stack = unitsOfKey;
        const auto [image, p, other, w] = key;
        const std::string where = "_p" + std::to_string(p + 1) + (axis == KymographAxis::Time ? "_z" : "_t") +
                                  std::to_string(other + 1) + "_c" + std::to_string(w + 1) + ".tif";
        forEachLineOf(stack.units,
                      [&, image = image](const LineRecords& records) { // clang 14 captures no bindings
                          const Kymograph kymograph{axis, records, stack.first, stack.last - stack.first + 1};
                          writeKymograph(folder / (resultName(image, *records.front()) + where), kymograph);
                      });
    }
}

} // namespace batch
