// SPDX-License-Identifier: MIT
#include "platform/image/ImageFile.h"

#include "platform/image/Formats.h"

#include <algorithm>
#include <new>

namespace image {
namespace {

ImageError openError(const std::filesystem::path& path, const char* reason)
{
    return ImageError("Cannot open image file \"" + path.string() + "\": " + reason + ".");
}

} // namespace

std::unique_ptr<ImageFile> ImageFile::open(const std::filesystem::path& path)
{
    try {
        const base::FileStamp before = base::stampOf(path);
        std::unique_ptr<ImageFile> file = openByFormat(path);
        file->stamp = before;
        return file;
    } catch (const std::bad_alloc&) {
        throw openError(path, "there is not enough memory");
    } catch (const std::exception& error) {
        throw openError(path, error.what());
    }
}

ImageFile::BlockSize ImageFile::blockSize(const SectionIndex& /*section*/)
{
    return {info().width, info().height};
}

bool ImageFile::valueRange(const SectionIndex& section, const std::stop_token& stop, float& min, float& max)
{
    std::vector<float> row(static_cast<std::size_t>(info().width));
    bool any = false;
    for (int y = 0; y < info().height; ++y) {
        if (stop.stop_requested() || !read(section, {0, y, info().width - 1, y}, row))
            return false;
        for (const float value : row) {
            if (!(value - value == 0)) // infinite or not a number
                continue;
            min = any ? std::min(min, value) : value;
            max = any ? std::max(max, value) : value;
            any = true;
        }
    }
    return any;
}

} // namespace image
