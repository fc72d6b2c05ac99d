// SPDX-License-Identifier: MIT
#include "batch/results/Tables.h"

#include "batch/results/Row.h"
#include "platform/base/FileStamp.h"

#include <algorithm>
#include <cmath>

namespace batch {

const std::string_view summaryHeader =
    "image,z,t,p,channel,channel_name,wavelength_nm,time_s,pixel_width_um,pixel_height_um,calibrated,stage_x_"
    "um,"
    "stage_y_um,method,line,points,width_px,x0_px,y0_px,x1_px,y1_px,x0_um,y0_um,x1_um,y1_um,length_px,length_"
    "um,"
    "angle_deg,samples,pixels,minimum,maximum,mean,integral_um,baseline,peak,peak_sample,peak_x_px,peak_y_px,"
    "peak_px,peak_um,fwhm_um\n";
const std::string_view samplesHeader =
    "image,z,t,p,channel,line,sample,distance_px,distance_um,x_px,y_px,stage_x_um,stage_y_um,pixels,value\n";
const std::string_view errorsHeader = "image,z,t,p,channel,line,problem\n";

namespace {

std::string methodText(const Settings& settings)
{
    std::string text = methodNames[static_cast<int>(settings.method)];
    if (settings.method == Method::Band)
        text += std::string(" ") + reduceNames[static_cast<int>(settings.reduce)];
    return text;
}

} // namespace

SectionFacts factsOf(const image::ImageFile& file, const std::string& image,
                     const image::SectionIndex& section, const Settings& settings)
{
    const image::ImageInfo& info = file.info();
    SectionFacts facts{&file, section, stageOriginOf(file, section), image, base::stampOf(info.path).modified,
                       {},    {}};
    Row key(facts.key);
    key.text(image).number(section.z + 1).number(section.t + 1).number(section.p + 1).number(section.w + 1);
    if (section.w >= info.sizeW)
        return facts;
    const image::Wavelength& wavelength = info.wavelengths[static_cast<std::size_t>(section.w)];
    Row context(facts.context);
    context.fields(facts.key).text(wavelength.name).number(wavelength.nanometres);
    context.number(file.extendedHeader(section, image::TimeStampSeconds).value_or(NAN));
    context.number(info.spacing[0]).number(info.spacing[1]).number(info.calibrated ? 1 : 0);
    context.number(facts.origin.x).number(facts.origin.y).text(methodText(settings));
    return facts;
}

double Measured::distanceOf(std::size_t i) const
{
    if (profile.isBand())
        return static_cast<double>(i) + 0.5;
    return static_cast<double>(i) * path.pixelLength() / static_cast<double>(profile.size());
}

// Along the pieces of the path.
Point Measured::placeOf(std::size_t i) const
{
    if (!profile.isBand())
        return {static_cast<double>(profile.pixels[i].x), static_cast<double>(profile.pixels[i].y)};
    double left = distanceOf(i);
    for (std::size_t piece = 1; piece < path.points.size(); ++piece) {
        const Point &from = path.points[piece - 1], &to = path.points[piece];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        if (left <= length)
            return {from.x + (to.x - from.x) * left / length, from.y + (to.y - from.y) * left / length};
        left -= length;
    }
    return path.end();
}

namespace {

// Microns from the image's corner.
void appendMicrons(Row& row, const Point& point, const image::ImageInfo& info)
{
    row.number(static_cast<float>(point.x * info.spacing[0]))
        .number(static_cast<float>(point.y * info.spacing[1]));
}

void appendGeometry(Row& row, const Measured& measured)
{
    const Path& path = measured.path;
    row.text(measured.line).number(path.points.size());
    row.number(measured.profile.isBand() ? path.width : 1.0);
    row.number(path.start().x).number(path.start().y).number(path.end().x).number(path.end().y);
    appendMicrons(row, path.start(), measured.info());
    appendMicrons(row, path.end(), measured.info());
    row.number(static_cast<float>(path.pixelLength()));
    row.number(measured.extent.length).number(measured.extent.angle);
}

void appendPeak(Row& row, const Measured& measured)
{
    const Figures& figures = measured.figures;
    const auto sample = static_cast<std::size_t>(figures.peakSample);
    const Point place = measured.placeOf(sample);
    const double distance = measured.distanceOf(sample), length = measured.path.pixelLength();
    row.number(figures.baseline).number(figures.peak).number(sample).number(place.x).number(place.y);
    row.number(static_cast<float>(distance));
    row.number(static_cast<float>(distance / length * static_cast<double>(measured.extent.length)));
    row.number(figures.fwhm);
}

} // namespace

void appendSummary(std::string& table, const Measured& measured)
{
    const Figures& figures = measured.figures;
    Row row(table);
    row.fields(measured.section.context);
    appendGeometry(row, measured);
    row.number(measured.profile.size()).number(measured.profile.pixelCount);
    row.number(figures.minimum).number(figures.maximum).number(figures.mean);
    row.number(figures.sum * static_cast<double>(measured.step));
    if (figures.numbers > 0)
        appendPeak(row, measured);
    else
        row.fields(",,,,,,,");
    row.end();
}

void appendSamples(std::string& table, const Measured& measured)
{
    const Profile& profile = measured.profile;
    const double micronsPerPixel = static_cast<double>(measured.extent.length) / measured.path.pixelLength();
    std::string key;
    Row(key).fields(measured.section.key).text(measured.line);
    for (std::size_t i = 0; i < profile.size(); ++i) {
        const Point place = measured.placeOf(i);
        const StagePoint stage = stageOf(place, measured.section.origin, measured.info());
        const double distance = measured.distanceOf(i);
        Row row(table);
        row.fields(key).number(i).number(static_cast<float>(distance));
        row.number(static_cast<float>(distance * micronsPerPixel));
        row.number(static_cast<float>(place.x)).number(static_cast<float>(place.y));
        row.number(stage.x).number(stage.y).number(profile.isBand() ? profile.counts[i] : 1);
        if (profile.isBand())
            row.number(profile.exact[i]);
        else
            row.number(profile.values[i]);
        row.end();
    }
}

void appendError(std::string& table, std::string_view key, std::string_view line, std::string_view sentence)
{
    Row row(table);
    row.fields(key.empty() ? ",,,," : key).text(line).text(sentence);
    row.end();
}

std::string imageKey(const std::string& image)
{
    std::string key;
    Row(key).text(image);
    return key + ",,,,";
}

} // namespace batch
