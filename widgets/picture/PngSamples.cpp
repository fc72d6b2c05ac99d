// SPDX-License-Identifier: MIT
// libpng's simplified interface turns values by the file's gamma; this one leaves them as they are.
#include "widgets/picture/Samples.h"

#include <algorithm>
#include <bit>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>
#include <png.h>
#include <string>
#include <vector>

namespace picture {

namespace {

// Belongs to the caller of the functions with a setjmp, so that a jump skips no destructor.
struct Reading {
    Bytes rest;
    char message[200] = "";
    png_structp png = nullptr;
    png_infop info = nullptr;
    bool palette = false;

    explicit Reading(Bytes bytes) : rest(bytes)
    {
        png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, fail, [](png_structp, png_const_charp) {});
        info = png ? png_create_info_struct(png) : nullptr;
        if (!info)
            throw std::bad_alloc();
        png_set_read_fn(png, this, read);
        png_set_user_limits(png, 1 << 20, 1 << 20);
    }
    ~Reading() { png_destroy_read_struct(&png, &info, nullptr); }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    [[noreturn]] static void fail(png_structp png, png_const_charp reason)
    {
        auto& self = *static_cast<Reading*>(png_get_error_ptr(png));
        std::snprintf(self.message, sizeof self.message, "%s", reason);
        png_longjmp(png, 1);
    }
    static void read(png_structp png, png_bytep out, png_size_t count)
    {
        auto& self = *static_cast<Reading*>(png_get_io_ptr(png));
        if (count > self.rest.size())
            png_error(png, "it is cut short");
        std::memcpy(out, self.rest.data(), count);
        self.rest = self.rest.subspan(count);
    }
};

bool readHeader(Reading& reading)
{
    if (setjmp(png_jmpbuf(reading.png)))
        return false;
    png_read_info(reading.png, reading.info);
    const int color = png_get_color_type(reading.png, reading.info);
    reading.palette = color == PNG_COLOR_TYPE_PALETTE;
    if (reading.palette)
        png_set_palette_to_rgb(reading.png);
    else
        png_set_packing(reading.png); // a value of less than 8 bits in a byte of its own
    if ((color & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(reading.png, reading.info, PNG_INFO_tRNS) != 0)
        png_set_strip_alpha(reading.png);
    if (png_get_bit_depth(reading.png, reading.info) == 16 && std::endian::native == std::endian::little)
        png_set_swap(reading.png);
    png_set_interlace_handling(reading.png);
    return true;
}

bool readRows(Reading& reading, std::vector<png_bytep>& rows, std::size_t rowBytes)
{
    if (setjmp(png_jmpbuf(reading.png)))
        return false;
    png_read_update_info(reading.png, reading.info);
    if (png_get_rowbytes(reading.png, reading.info) != rowBytes)
        png_error(reading.png, "its rows have an unknown form");
    png_read_image(reading.png, rows.data());
    png_read_end(reading.png, nullptr);
    return true;
}

} // namespace

Samples samplesOfPng(Bytes bytes)
{
    const auto reading = std::make_unique<Reading>(bytes);
    const auto damaged = [&] { return FormatError(std::string("is damaged: ") + reading->message); };
    if (!readHeader(*reading))
        throw damaged();
    const png_byte color = png_get_color_type(reading->png, reading->info);
    Samples samples;
    samples.perPixel = (color & PNG_COLOR_MASK_COLOR) != 0 ? 3 : 1;
    samples.bits = reading->palette ? 8 : png_get_bit_depth(reading->png, reading->info);
    allot(samples, png_get_image_width(reading->png, reading->info),
          png_get_image_height(reading->png, reading->info));
    const std::size_t rowBytes = samples.bytes.size() / static_cast<std::size_t>(samples.height);
    std::vector<png_bytep> rows;
    for (std::size_t row = 0; row < samples.bytes.size(); row += rowBytes)
        rows.push_back(reinterpret_cast<png_bytep>(&samples.bytes[row]));
    if (!readRows(*reading, rows, rowBytes))
        throw damaged();
    if (reading->palette)
        reduceGrey(samples);
    return samples;
}

} // namespace picture
