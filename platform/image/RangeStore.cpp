// SPDX-License-Identifier: MIT
#include "platform/image/RangeStore.h"

#include "platform/base/HashName.h"
#include "platform/base/UserFolders.h"

#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <limits>
#include <sstream>
#include <unistd.h>
#include <vector>

namespace image {

namespace fs = std::filesystem;

namespace {

constexpr char versionLine[] = "kelvora-ranges 1";

} // namespace

std::string rangeIdentity(const ImageFile& image, const base::FileStamp& opened)
{
    std::ostringstream all;
    std::error_code error;
    for (const fs::path& path : image.files()) {
        const base::FileStamp stamp = path == image.info().path ? opened : base::stampOf(path);
        all << fs::weakly_canonical(path, error).string() << '\t' << stamp.size << '\t' << stamp.modified
            << '\t';
    }
    return base::hashName(all.str());
}

namespace {

fs::path folder()
{
    const fs::path cache = base::cacheFolder();
    return cache.empty() ? cache : cache / "ranges";
}

} // namespace

std::optional<std::vector<ValueRange>> loadRanges(const std::string& identity, std::size_t count)
{
    const fs::path directory = folder();
    std::ifstream file(directory / identity);
    std::string version;
    std::size_t stored = 0;
    if (directory.empty() || !std::getline(file, version) || version != versionLine || !(file >> stored) ||
        stored != count)
        return std::nullopt;
    std::vector<ValueRange> ranges(count);
    for (ValueRange& range : ranges)
        if (!(file >> range.known >> range.min >> range.max) || !(range.min <= range.max))
            return std::nullopt;
    return ranges;
}

namespace {

bool writeAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

void storeRanges(const std::string& identity, const std::vector<ValueRange>& ranges)
{
    const fs::path directory = folder();
    std::error_code error;
    if (directory.empty() || (fs::create_directories(directory, error), error))
        return;
    std::ostringstream text;
    text << versionLine << '\n' << ranges.size() << '\n';
    text << std::setprecision(std::numeric_limits<float>::max_digits10);
    for (const ValueRange& range : ranges)
        text << range.known << ' ' << range.min << ' ' << range.max << '\n';
    // A reader sees the old file or the whole new one.
    std::string temporary = (directory / (identity + ".XXXXXX")).string();
    const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        return;
    bool good = writeAll(descriptor, text.str());
    good = close(descriptor) == 0 && good;
    if (good)
        fs::rename(temporary, directory / identity, error);
    if (!good || error)
        fs::remove(temporary, error);
}

} // namespace image
