// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <unistd.h>

namespace viewer {

int writeWhole(const std::filesystem::path& path, const std::string& text)
{
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    const std::filesystem::path temporary = path.string() + "." + std::to_string(getpid());
    errno = 0;
    std::ofstream file(temporary, std::ios::trunc);
    file << text;
    file.close();
    if (file && std::rename(temporary.c_str(), path.c_str()) == 0)
        return 0;
    const int problem = errno ? errno : EIO;
    std::filesystem::remove(temporary, error);
    return problem;
}

} // namespace viewer
