// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/ScaleStore.h"

#include "platform/base/FileStamp.h"
#include "platform/base/HashName.h"
#include "platform/base/UserFolders.h"
#include "platform/image/Plausible.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <limits>
#include <sstream>
#include <unistd.h>

namespace viewer {

namespace fs = std::filesystem;

namespace {

constexpr const char* versionLine = "kelvora-scale 1";

// Empty when the environment names none.
fs::path folder()
{
    const fs::path data = base::dataFolder();
    return data.empty() ? data : data / "scales";
}

std::string canonicalPath(const fs::path& image)
{
    std::error_code error;
    const fs::path path = fs::weakly_canonical(image, error);
    return (error ? image : path).string();
}

fs::path entryOf(const std::string& path)
{
    return folder() / base::hashName(path);
}

std::string failure(const std::string& what)
{
    return what + ": " + std::strerror(errno) + ".";
}

std::string entryText(const std::string& path, const UserScale& scale)
{
    const base::FileStamp stamp = base::stampOf(fs::path(path));
    std::ostringstream text;
    text << std::setprecision(std::numeric_limits<float>::max_digits10);
    text << versionLine << '\n' << stamp.size << ' ' << stamp.modified << '\n';
    text << scale.x << ' ' << scale.y << ' ' << scale.z.value_or(0) << '\n' << path << '\n';
    return text.str();
}

bool plausible(float microns)
{
    return image::plausibleSpacing(microns).has_value();
}

} // namespace

std::optional<KeptScale> loadScale(const fs::path& image)
{
    const std::string path = canonicalPath(image);
    if (folder().empty())
        return std::nullopt;
    std::ifstream file(entryOf(path));
    std::string version;
    base::FileStamp then;
    UserScale scale;
    float z = 0;
    if (!std::getline(file, version) || version != versionLine ||
        !(file >> then.size >> then.modified >> scale.x >> scale.y >> z) || file.get() != '\n')
        return std::nullopt;
    std::string ofPath(path.size() + 1, '\0'); // a path may hold line feeds
    file.read(ofPath.data(), static_cast<std::streamsize>(ofPath.size()));
    const bool good = plausible(scale.x) && plausible(scale.y) && (z == 0 || plausible(z));
    if (ofPath != path + '\n' || !good)
        return std::nullopt;
    if (z > 0)
        scale.z = z;
    const base::FileStamp now = base::stampOf(fs::path(path));
    return KeptScale{scale, now.size == then.size && now.modified == then.modified};
}

std::string keepScale(const fs::path& image, const UserScale& scale)
{
    constexpr const char* what = "The scale holds for this window but cannot be kept";
    if (folder().empty())
        return std::string(what) + ": neither XDG_DATA_HOME nor HOME tells a folder.";
    const std::string path = canonicalPath(image);
    const fs::path entry = entryOf(path);
    std::error_code error;
    fs::create_directories(entry.parent_path(), error);
    // A reader sees the old entry or the whole new one.
    const fs::path temporary = entry.string() + "." + std::to_string(getpid());
    errno = 0;
    std::ofstream file(temporary, std::ios::trunc);
    file << entryText(path, scale);
    file.close();
    if (file && std::rename(temporary.c_str(), entry.c_str()) == 0)
        return "";
    const std::string sentence = failure(what);
    fs::remove(temporary, error);
    return sentence;
}

std::string forgetScale(const fs::path& image)
{
    const std::string path = canonicalPath(image);
    if (folder().empty() || unlink(entryOf(path).c_str()) == 0 || errno == ENOENT)
        return "";
    return failure("The scale is kept on, it cannot be removed");
}

} // namespace viewer
