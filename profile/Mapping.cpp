// SPDX-License-Identifier: MIT
#include "profile/Mapping.h"

#include "profile/Truncation.h"

#include <algorithm>
#include <cstdio>

bool makePlotMapping(float scaleMin, float scaleMax, int32_t width, int32_t height, PlotMapping* mapping)
{
    float range = scaleMax - scaleMin;
    if (!(range > 0.0f))
        return false;
    float yScale = static_cast<float>(height) / range;
    *mapping = {yScale, truncateToWide(scaleMin * yScale), width, height};
    return true;
}

int16_t plotColumn(const PlotMapping& mapping, int32_t i, int32_t n)
{
    int64_t product = int64_t{i} * mapping.width;
    return static_cast<int16_t>(truncateToWide(static_cast<float>(product) / static_cast<float>(n)));
}

int16_t plotRow(const PlotMapping& mapping, float value)
{
    return static_cast<int16_t>(mapping.yBase + mapping.height - truncateToWide(mapping.yScale * value));
}

float valueAtRow(float scaleMin, float scaleMax, int32_t height, int32_t y)
{
    float k = static_cast<float>(height) / (scaleMax - scaleMin);
    return static_cast<float>(height - y + truncateToWide(scaleMin * k)) / k;
}

void formatReadout(float value, float range, char* text, int size)
{
    std::snprintf(text, static_cast<size_t>(size), range < 50.0f ? "%.2f" : "%.0f", double{value});
}

TextPosition placeReadout(int32_t x, int32_t y, int32_t width, int32_t height, int32_t lineHeight)
{
    int32_t h = lineHeight, half = lineHeight / 2;
    return {std::max(half, std::min(width - 40, x + h)), std::min(height - h, std::max(y + half, h))};
}
