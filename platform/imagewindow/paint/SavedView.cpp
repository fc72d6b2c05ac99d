// SPDX-License-Identifier: MIT
#include "platform/imagewindow/paint/SavedView.h"

#include "platform/imagewindow/paint/Graphics.h"
#include "platform/imagewindow/paint/Labels.h"
#include "platform/imagewindow/paint/Pixels.h"
#include "platform/imagewindow/paint/TiffPicture.h"
#include "widgets/picture/VectorFile.h"

#include <algorithm>
#include <cctype>

namespace viewer {

namespace {

constexpr double pointsPerPixel = 72.0 / 96;

picture::Picture pictureOf(const std::vector<std::uint32_t>& pixels, Size size)
{
    picture::Picture result(size.width, size.height);
    std::uint8_t* out = result.rgba.data();
    for (const std::uint32_t pixel : pixels) {
        *out++ = static_cast<std::uint8_t>(pixel >> 16);
        *out++ = static_cast<std::uint8_t>(pixel >> 8);
        *out++ = static_cast<std::uint8_t>(pixel);
        *out++ = 255;
    }
    return result;
}

Size sizeOf(const SavedView& view)
{
    return {view.canvas.width * view.resolution, view.canvas.height * view.resolution};
}

void writePixels(const SavedView& view, const std::filesystem::path& path)
{
    picture::write(rasterOf(view), path);
}

void writeTiff(const SavedView& view, const std::filesystem::path& path)
{
    writeTiffPicture(rasterOf(view), view.micronsPerPixel / view.resolution, path);
}

void writeVectors(const SavedView& view, const std::filesystem::path& path)
{
    const picture::PageSize page{view.canvas.width * pointsPerPixel, view.canvas.height * pointsPerPixel};
    picture::writeVector(path, page, [&](cairo_t* cairo) {
        cairo_scale(cairo, pointsPerPixel, pointsPerPixel);
        paintView(cairo, view);
    });
}

constexpr struct {
    const char* ending;
    void (*write)(const SavedView& view, const std::filesystem::path& path);
} formats[] = {
    {"png", writePixels},  {"tif", writeTiff},    {"tiff", writeTiff},  {"jpg", writePixels},
    {"jpeg", writePixels}, {"gif", writePixels},  {"xpm", writePixels}, {"xwd", writePixels},
    {"pdf", writeVectors}, {"svg", writeVectors}, {"ps", writeVectors}, {"eps", writeVectors},
};

const auto* formatOf(const std::filesystem::path& path)
{
    std::string ending = path.extension().string();
    ending.erase(0, 1);
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto* found = std::find_if(std::begin(formats), std::end(formats),
                                     [&](const auto& format) { return ending == format.ending; });
    return found == std::end(formats) ? nullptr : found;
}

} // namespace

picture::Picture rasterOf(const SavedView& view)
{
    std::vector<std::uint32_t> pixels = view.image;
    paintOn(pixels, sizeOf(view), [&](cairo_t* cairo) {
        cairo_scale(cairo, view.resolution, view.resolution);
        paintLabels(cairo, view.scene);
        paintGraphics(cairo, view.scene, view.resolution == 1 ? Edges::Crisp : Edges::Smooth);
    });
    return pictureOf(pixels, sizeOf(view));
}

void paintView(cairo_t* cairo, const SavedView& view)
{
    picture::drawPicture(cairo, pictureOf(view.image, sizeOf(view)), 0, 0, view.canvas.width,
                         view.canvas.height);
    paintLabels(cairo, view.scene);
    paintGraphics(cairo, view.scene, Edges::Smooth);
}

std::string savedEndings()
{
    return "png, tif, jpg, gif, xpm, xwd, pdf, svg, ps or eps";
}

bool hasSavedEnding(const std::filesystem::path& path)
{
    return formatOf(path) != nullptr;
}

void saveView(const SavedView& view, const std::filesystem::path& path)
{
    const auto* format = formatOf(path);
    if (!format)
        throw picture::PictureError(path.string() + " cannot be written: its name should end with " +
                                    savedEndings() + ".");
    format->write(view, path);
}

} // namespace viewer
