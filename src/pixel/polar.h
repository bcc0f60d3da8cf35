// The polar angle used by the geometric deformations.
#pragma once

#include <cmath>

namespace ostrivex {

// Pi as the deformations use it: the single-precision constant 3.141592.
inline constexpr float kDeformPi = 3.141592f;

// `PolarAngle(x, y)` in radians, single precision: pi / 2 on the positive y axis (y >= 1),
// -(pi / 2) for x = 0 and y below 1 (the origin included); atan(y / x) to the right of the
// axis, and atan(y / x) + pi to its left, so the range runs from -(pi / 2) to 3 pi / 2.
inline float PolarAngle(double x, double y) {
    if (x == 0) return y >= 1 ? kDeformPi / 2 : -(kDeformPi / 2);
    if (x > 0) return static_cast<float>(std::atan(y / x));
    return static_cast<float>(std::atan(y / x) + double(kDeformPi));
}

} // namespace ostrivex
