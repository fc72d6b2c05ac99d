// SPDX-License-Identifier: MIT
#include "profile/Patch.h"

int64_t patchRoom(int64_t boundingPixels)
{
    return boundingPixels <= wholePatchPixels ? boundingPixels : patchPixels;
}

Patch patchAt(const PixelPoint* points, int32_t count, int32_t first, int64_t boundingPixels)
{
    int32_t end = runEnd(points, count, first, patchRoom(boundingPixels));
    return {boundingRect(points[first], points[end - 1]), first, end};
}

void pickSamples(const Patch& patch, const PixelPoint* points, const float* pixels, float* samples)
{
    const int64_t nx = patch.rect.width();
    for (int32_t i = patch.first; i < patch.end; i++)
        samples[i] = pixels[(points[i].x - patch.rect.xFirst) + (points[i].y - patch.rect.yFirst) * nx];
}
