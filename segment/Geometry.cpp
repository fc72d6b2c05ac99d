// SPDX-License-Identifier: MIT
#include "segment/Geometry.h"

#include <cmath>

float stageLength(float dx, float dy)
{
    double x = dx, y = dy;
    return static_cast<float>(std::sqrt(x * x + y * y));
}

float stageAngle(float dx, float dy)
{
    float angle = static_cast<float>(std::atan2(double{dy}, double{dx}) * 180.0 / 3.14159);
    if (angle > 180.0)
        angle = static_cast<float>(angle - 360.0);
    return angle;
}
