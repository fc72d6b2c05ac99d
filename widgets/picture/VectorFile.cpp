// SPDX-License-Identifier: MIT
#include "widgets/picture/VectorFile.h"

#include "widgets/picture/Codecs.h"
#include "widgets/picture/OutputFile.h"

#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cairo-svg.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace picture {

namespace {

struct SurfaceEnd {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceEnd>;
struct ContextEnd {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Context = std::unique_ptr<cairo_t, ContextEnd>;

cairo_status_t append(void* out, const unsigned char* data, unsigned count)
{
    auto& bytes = *static_cast<std::vector<std::byte>*>(out);
    const auto* first = reinterpret_cast<const std::byte*>(data);
    bytes.insert(bytes.end(), first, first + count);
    return CAIRO_STATUS_SUCCESS;
}

void check(cairo_status_t status)
{
    if (status != CAIRO_STATUS_SUCCESS)
        throw PictureError(std::string("The picture cannot be drawn: ") + cairo_status_to_string(status) +
                           ".");
}

cairo_surface_t* createSurface(VectorFormat format, PageSize size, std::vector<std::byte>& out)
{
    switch (format) {
    case VectorFormat::Pdf:
        return cairo_pdf_surface_create_for_stream(append, &out, size.width, size.height);
    case VectorFormat::Svg:
        return cairo_svg_surface_create_for_stream(append, &out, size.width, size.height);
    case VectorFormat::PostScript:
        break;
    }
    cairo_surface_t* surface = cairo_ps_surface_create_for_stream(append, &out, size.width, size.height);
    cairo_ps_surface_set_eps(surface, true);
    return surface;
}

void drawOn(cairo_surface_t* surface, double scale, const Drawing& draw)
{
    const Context context(cairo_create(surface));
    cairo_scale(context.get(), scale, scale);
    draw(context.get());
    check(cairo_status(context.get()));
}

constexpr std::uint32_t opaque = 255;

// cairo's pixel: a 32-bit number, opacity in its high byte, colours multiplied by it.
std::uint32_t premultiplied(const std::uint8_t* pixel)
{
    std::uint32_t out = pixel[3];
    for (int i = 0; i < 3; ++i)
        out = out << 8 | (std::uint32_t{pixel[i]} * pixel[3] + opaque / 2) / opaque;
    return out;
}

void takePixel(std::uint32_t from, std::uint8_t* pixel)
{
    const std::uint32_t opacity = from >> 24;
    for (int i = 0; i < 3 && opacity > 0; ++i)
        pixel[i] = static_cast<std::uint8_t>(
            std::min(opaque, ((from >> (16 - 8 * i) & opaque) * opaque + opacity / 2) / opacity));
    pixel[3] = static_cast<std::uint8_t>(opacity);
}

std::uint32_t* rowOf(cairo_surface_t* surface, int y)
{
    return reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(surface) +
                                            static_cast<std::ptrdiff_t>(y) *
                                                cairo_image_surface_get_stride(surface));
}

Surface imageSurface(int width, int height)
{
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    check(cairo_surface_status(surface.get()));
    cairo_surface_flush(surface.get());
    return surface;
}

Surface surfaceOf(const Picture& picture)
{
    Surface surface = imageSurface(picture.width, picture.height);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            rowOf(surface.get(), y)[x] = premultiplied(picture.at(x, y));
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

} // namespace

std::optional<VectorFormat> vectorFormatOfName(const std::filesystem::path& path)
{
    const std::string extension = extensionOf(path);
    if (extension == ".pdf")
        return VectorFormat::Pdf;
    if (extension == ".svg")
        return VectorFormat::Svg;
    return extension == ".ps" || extension == ".eps" ? std::optional(VectorFormat::PostScript) : std::nullopt;
}

std::vector<std::byte> encodeVector(VectorFormat format, PageSize size, const Drawing& draw)
{
    std::vector<std::byte> bytes;
    const Surface surface(createSurface(format, size, bytes));
    check(cairo_surface_status(surface.get()));
    drawOn(surface.get(), 1, draw);
    cairo_surface_finish(surface.get());
    check(cairo_surface_status(surface.get()));
    return bytes;
}

void writeVector(const std::filesystem::path& path, PageSize size, const Drawing& draw)
{
    const std::optional<VectorFormat> format = vectorFormatOfName(path);
    if (!format)
        throw PictureError(path.string() +
                           " cannot be written: its name should end with pdf, svg, ps or eps.");
    if (const std::string problem = replaceFile(path, encodeVector(*format, size, draw)); !problem.empty())
        throw PictureError(problem);
}

void drawPicture(cairo_t* cairo, const Picture& picture, double x, double y, double width, double height,
                 Enlarging enlarging)
{
    if (picture.pixelCount() == 0)
        return;
    const Surface surface = surfaceOf(picture);
    cairo_save(cairo);
    cairo_translate(cairo, x, y);
    cairo_scale(cairo, width / picture.width, height / picture.height);
    cairo_set_source_surface(cairo, surface.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cairo),
                             enlarging == Enlarging::Squares ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
    cairo_rectangle(cairo, 0, 0, picture.width, picture.height);
    cairo_fill(cairo);
    cairo_restore(cairo);
}

Picture rasterize(PageSize size, double scale, const Drawing& draw)
try {
    Picture picture = makePicture(static_cast<std::uint64_t>(std::ceil(size.width * scale)),
                                  static_cast<std::uint64_t>(std::ceil(size.height * scale)));
    const Surface surface = imageSurface(picture.width, picture.height);
    drawOn(surface.get(), scale, draw);
    cairo_surface_flush(surface.get());
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            takePixel(rowOf(surface.get(), y)[x], picture.at(x, y));
    return picture;
} catch (const FormatError& error) {
    throw PictureError(std::string("The picture ") + error.what() + ".");
}

} // namespace picture
