// SPDX-License-Identifier: MIT
// The user configuration of the C interface: values from the file at the first call, changes on top of them.
#include "platform/iwl/ConfigFile.h"
#include "platform/iwl/Session.h"

#include <IWL.h>
#include <X11/Xresource.h>

#include <cstdio>
#include <optional>
#include <string>
#include <strings.h>

namespace {

// The file as last read or saved, and what has been set since. answer is what IWGetConfig handed out last.
struct UserConfig {
    std::string path = iwl::configPath();
    XrmDatabase stored = nullptr;
    iwl::ConfigChanges changes;
    std::string answer;

    UserConfig()
    {
        XrmInitialize();
        const iwl::ConfigText file = iwl::readConfig(path);
        report(file.problem);
        take(file.text);
    }
    ~UserConfig() { XrmDestroyDatabase(stored); }
    UserConfig(const UserConfig&) = delete;
    UserConfig& operator=(const UserConfig&) = delete;

    void take(const std::string& text)
    {
        if (stored)
            XrmDestroyDatabase(stored);
        stored = XrmGetStringDatabase(text.c_str());
    }

    static void report(const std::string& problem)
    {
        if (!problem.empty())
            std::fprintf(stderr, "%s: %s\n", iwl::programName().c_str(), problem.c_str());
    }
};

UserConfig& config()
{
    static UserConfig user;
    return user;
}

std::optional<std::string> lookUp(const std::string& name)
{
    UserConfig& user = config();
    if (const auto change = user.changes.find(name); change != user.changes.end())
        return change->second;
    char* type = nullptr;
    XrmValue value = {};
    if (name.empty() || !XrmGetResource(user.stored, name.c_str(), name.c_str(), &type, &value) ||
        !value.addr)
        return std::nullopt;
    return std::string(value.addr);
}

void change(const char* key, std::optional<std::string> value)
{
    const std::string name = iwl::configKeyName(key ? key : "");
    if (name.empty())
        UserConfig::report("\"" + std::string(key ? key : "") + "\" is no name of a setting, ignored.");
    else
        config().changes[name] = std::move(value);
}

} // namespace

const char* IWGetConfig(const char* key)
{
    const auto value = lookUp(iwl::configKeyName(key ? key : ""));
    if (!value)
        return nullptr;
    config().answer = *value;
    return config().answer.c_str();
}

int IWGetConfigBoolean(const char* key, int* value)
{
    static const struct {
        const char* word;
        int value;
    } words[] = {{"true", 1}, {"on", 1}, {"yes", 1}, {"1", 1}, {"false", 0}, {"off", 0}, {"no", 0}, {"0", 0}};
    std::string text = lookUp(iwl::configKeyName(key ? key : "")).value_or("");
    text.erase(text.find_last_not_of(" \t\r") + 1);
    for (const auto& entry : words)
        if (strcasecmp(text.c_str(), entry.word) == 0) {
            *value = entry.value;
            return 1;
        }
    return 0;
}

void IWSetConfig(const char* key, const char* value)
{
    change(key, value ? std::optional<std::string>(value) : std::nullopt);
}

void IWSetConfigBoolean(const char* key, int value)
{
    change(key, value ? "true" : "false");
}

int IWSaveUserConfig(void)
{
    UserConfig& user = config();
    if (user.changes.empty())
        return 1;
    const iwl::ConfigSaved saved = iwl::saveConfig(user.path, user.changes);
    UserConfig::report(saved.problem);
    if (!saved.problem.empty())
        return 0;
    user.take(saved.text);
    user.changes.clear();
    return 1;
}
