// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/BarStyle.h"

#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/files/Settings.h"

#include <algorithm>

namespace viewer {

namespace {

constexpr const char *lengthName = "scaleBarLength", *cornerName = "scaleBarCorner",
                     *colorName = "scaleBarColor", *automatic = "automatic";

} // namespace

BarStyle loadBarStyle()
{
    BarStyle style;
    style.microns = parseLength(setting(lengthName)).microns.value_or(0);
    const auto corner = std::find(barCornerNames.begin(), barCornerNames.end(), setting(cornerName));
    if (corner != barCornerNames.end())
        style.corner = static_cast<BarCorner>(corner - barCornerNames.begin());
    const auto color = std::find_if(barColors.begin(), barColors.end(),
                                    [name = setting(colorName)](auto& each) { return name == each.name; });
    if (color != barColors.end())
        style.color = static_cast<std::size_t>(color - barColors.begin());
    return style;
}

std::string keepBarStyle(const BarStyle& style)
{
    return keepSettings(
        {{lengthName, style.microns > 0 ? lengthText(static_cast<float>(style.microns)) : automatic},
         {cornerName, barCornerNames[static_cast<std::size_t>(style.corner)]},
         {colorName, barColors[style.color].name}});
}

} // namespace viewer
