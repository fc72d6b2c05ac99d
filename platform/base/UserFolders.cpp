// SPDX-License-Identifier: MIT
#include "platform/base/UserFolders.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace base {

namespace fs = std::filesystem;

namespace {

// Empty when the variable is not an absolute path.
fs::path absoluteVariable(const char* name)
{
    const char* const value = std::getenv(name);
    return value && value[0] == '/' ? fs::path(value) : fs::path();
}

fs::path baseFolder(const char* variable, const char* inHome)
{
    fs::path given = absoluteVariable(variable);
    if (!given.empty())
        return given;
    const fs::path home = homeFolder();
    return home.empty() ? home : home / inHome;
}

fs::path ownFolder(const fs::path& base)
{
    return base.empty() ? base : base / "kelvora";
}

} // namespace

fs::path homeFolder()
{
    fs::path home = absoluteVariable("HOME");
    if (!home.empty())
        return home;
    const passwd* const account = getpwuid(getuid());
    return account && account->pw_dir && account->pw_dir[0] == '/' ? fs::path(account->pw_dir) : fs::path();
}

fs::path configBase()
{
    return baseFolder("XDG_CONFIG_HOME", ".config");
}

fs::path cacheBase()
{
    return baseFolder("XDG_CACHE_HOME", ".cache");
}

fs::path dataBase()
{
    return baseFolder("XDG_DATA_HOME", ".local/share");
}

fs::path configFolder()
{
    return ownFolder(configBase());
}

fs::path cacheFolder()
{
    return ownFolder(cacheBase());
}

fs::path dataFolder()
{
    return ownFolder(dataBase());
}

} // namespace base
