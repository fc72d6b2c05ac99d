// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/WindowParts.h"

#include "platform/imagewindow/files/Settings.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace viewer {

namespace {

constexpr const char *toolBarName = "toolBar", *panelName = "sidePanel", *overviewName = "overview",
                     *tabName = "sideTab", *widthName = "sideWidth", *shown = "shown", *hidden = "hidden";
constexpr std::array tabNames{"channels", "metadata", "messages"}; // by SideTab
constexpr int widest = 4000;

bool isShown(const char* name, bool otherwise)
{
    const std::string value = setting(name);
    return value == shown || (value != hidden && otherwise);
}

SideTab tabOf(const std::string& name)
{
    const auto place = std::find(tabNames.begin(), tabNames.end(), name);
    return place == tabNames.end() ? SideTab::Channels : static_cast<SideTab>(place - tabNames.begin());
}

} // namespace

WindowParts loadParts()
{
    const WindowParts usual;
    return {isShown(toolBarName, usual.toolBar), isShown(panelName, usual.sidePanel),
            isShown(overviewName, usual.overview), tabOf(setting(tabName)),
            std::clamp(std::atoi(setting(widthName).c_str()), 0, widest)};
}

std::string keepParts(const WindowParts& parts)
{
    return keepSettings({{toolBarName, parts.toolBar ? shown : hidden},
                         {panelName, parts.sidePanel ? shown : hidden},
                         {overviewName, parts.overview ? shown : hidden},
                         {tabName, tabNames[static_cast<std::size_t>(parts.tab)]},
                         {widthName, std::to_string(parts.sideWidth)}});
}

} // namespace viewer
