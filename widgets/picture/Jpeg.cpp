// SPDX-License-Identifier: MIT
#include "widgets/picture/Codecs.h"
#include "widgets/picture/Samples.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <jpeglib.h>

namespace picture {

namespace {

// libjpeg reports an error by a call that must not return. Ours jumps back to the last setjmp, so the
// functions between them must hold no object with a destructor.
struct Errors {
    jpeg_error_mgr manager; // first: libjpeg hands out its address
    std::jmp_buf back;
    char message[JMSG_LENGTH_MAX];
};

[[noreturn]] void leave(j_common_ptr info)
{
    auto* errors = reinterpret_cast<Errors*>(info->err);
    info->err->format_message(info, errors->message);
    std::longjmp(errors->back, 1);
}

// Each scan of a progressive file costs a pass over all pixels; a small file may hold very many.
void limitScans(j_common_ptr info)
{
    constexpr int maxScans = 500;
    if (info->is_decompressor && reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > maxScans) {
        auto* errors = reinterpret_cast<Errors*>(info->err);
        std::snprintf(errors->message, sizeof errors->message, "too many scans");
        std::longjmp(errors->back, 1);
    }
}

jpeg_error_mgr* prepare(Errors& errors)
{
    jpeg_error_mgr* manager = jpeg_std_error(&errors.manager);
    manager->error_exit = leave;
    manager->output_message = [](j_common_ptr) {};
    return manager;
}

// Belongs to the caller of the function with the setjmp, so that a jump does not skip its destructor.
struct Decoding {
    Errors errors;
    jpeg_progress_mgr progress{};
    jpeg_decompress_struct info{};
    Decoding()
    {
        info.err = prepare(errors);
        jpeg_create_decompress(&info);
        progress.progress_monitor = limitScans;
        info.progress = &progress;
    }
    ~Decoding() { jpeg_destroy_decompress(&info); }
    Decoding(const Decoding&) = delete;
    Decoding& operator=(const Decoding&) = delete;
};

bool readHeader(Decoding& decoding, Bytes bytes)
{
    if (setjmp(decoding.errors.back))
        return false;
    jpeg_mem_src(&decoding.info, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    jpeg_read_header(&decoding.info, TRUE);
    return true;
}

// rows: rowBytes apart, as many as the picture has.
bool readRows(Decoding& decoding, J_COLOR_SPACE colors, unsigned char* rows, std::size_t rowBytes)
{
    if (setjmp(decoding.errors.back))
        return false;
    decoding.info.out_color_space = colors;
    jpeg_start_decompress(&decoding.info);
    while (decoding.info.output_scanline < decoding.info.output_height) {
        JSAMPROW row = rows + decoding.info.output_scanline * rowBytes;
        jpeg_read_scanlines(&decoding.info, &row, 1);
    }
    jpeg_finish_decompress(&decoding.info);
    return true;
}

std::unique_ptr<Decoding> beginDecoding(Bytes bytes)
{
    auto decoding = std::make_unique<Decoding>();
    if (!readHeader(*decoding, bytes))
        throw FormatError(std::string("is damaged: ") + decoding->errors.message);
    const bool fourInks = decoding->info.num_components == 4;
    if (fourInks)
        throw FormatError("has the inks of a printer instead of red, green and blue");
    return decoding;
}

void decodeRows(Decoding& decoding, J_COLOR_SPACE colors, unsigned char* rows, std::size_t rowBytes)
{
    if (!readRows(decoding, colors, rows, rowBytes))
        throw FormatError(std::string("is damaged: ") + decoding.errors.message);
    // libjpeg fills the rest of a file that is cut short with grey and counts a warning.
    if (decoding.info.err->num_warnings > 0)
        throw FormatError("is damaged or cut short");
}

struct Encoding {
    Errors errors;
    jpeg_compress_struct info{};
    unsigned char* data = nullptr; // by malloc, libjpeg's way
    unsigned long size = 0;
    Encoding()
    {
        info.err = prepare(errors);
        jpeg_create_compress(&info);
    }
    ~Encoding()
    {
        jpeg_destroy_compress(&info);
        std::free(data);
    }
    Encoding(const Encoding&) = delete;
    Encoding& operator=(const Encoding&) = delete;
};

bool writeRows(Encoding& encoding, const Picture& picture, std::vector<std::uint8_t>& rgb)
{
    constexpr int quality = 90;
    jpeg_compress_struct& info = encoding.info;
    if (setjmp(encoding.errors.back))
        return false;
    jpeg_mem_dest(&info, &encoding.data, &encoding.size);
    info.image_width = static_cast<JDIMENSION>(picture.width);
    info.image_height = static_cast<JDIMENSION>(picture.height);
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        JSAMPROW row = &rgb[static_cast<std::size_t>(info.next_scanline) * info.image_width * 3];
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    return true;
}

} // namespace

Picture decodeJpeg(Bytes bytes)
{
    const auto decoding = beginDecoding(bytes);
    Picture picture = makePicture(decoding->info.image_width, decoding->info.image_height);
    decodeRows(*decoding, JCS_EXT_RGBA, picture.rgba.data(), static_cast<std::size_t>(picture.width) * 4);
    return picture;
}

Samples samplesOfJpeg(Bytes bytes)
{
    const auto decoding = beginDecoding(bytes);
    Samples samples;
    samples.perPixel = decoding->info.num_components == 1 ? 1 : 3;
    allot(samples, decoding->info.image_width, decoding->info.image_height);
    decodeRows(*decoding, samples.perPixel == 1 ? JCS_GRAYSCALE : JCS_RGB,
               reinterpret_cast<unsigned char*>(samples.bytes.data()),
               samples.bytes.size() / static_cast<std::size_t>(samples.height));
    return samples;
}

std::vector<std::byte> encodeJpeg(const Picture& picture)
{
    const auto encoding = std::make_unique<Encoding>();
    std::vector<std::uint8_t> rgb = flatten(picture);
    if (!writeRows(*encoding, picture, rgb))
        throw FormatError(std::string("cannot be made a JPEG: ") + encoding->errors.message);
    const auto* first = reinterpret_cast<const std::byte*>(encoding->data);
    return {first, first + encoding->size};
}

} // namespace picture
