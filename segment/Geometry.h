// SPDX-License-Identifier: MIT
// Length and direction of a segment in the stage plane. Pure arithmetic.
#pragma once

// In the texts of lengths, which are ISO 8859-1.
constexpr int microSign = 0xB5;

// dx, dy: difference end minus start of the stage positions, microns.
// Length in microns, computed in double and rounded to float.
float stageLength(float dx, float dy);

// Direction in degrees from the stage +x axis, positive toward +y, at most 180. Radians are scaled by 180
// / 3.14159: the six-digit divisor is deliberate and makes exactly -x read -179.99985 and exactly
// +y 90.00008.
float stageAngle(float dx, float dy);
