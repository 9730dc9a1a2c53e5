// Euler angles to rotation matrix and the two conversions back, side by side because they differ on
// purpose in what they take as cos b = 0 and in where the sign of b comes from.
#include "math/rotation.h"

#include "math/angles.h"

namespace kine {

namespace {

// RotMatrixToEuler: r20 strictly within this of +1 gives b = -pi/2; everything else, NaN too, +pi/2.
constexpr double kGimbalSignLimit = 1e-5;
// RotMatrixToEulerExact: the smallest normal single-precision value; in practice only 0 is below it.
constexpr double kExactGimbalLimit = 1.1754943508222875e-38;

EulerAngles RegularEuler(const RotMatrix& r)
{
    return {std::atan2(r.r10, r.r00), std::atan2(-r.r20, std::sqrt(r.r00 * r.r00 + r.r10 * r.r10)),
            std::atan2(r.r21, r.r22)};
}

}  // namespace

EulerAngles RotMatrixToEuler(const RotMatrix& r)
{
    if (IsGimbal(r)) {
        if (std::fabs(r.r20 - 1.0) < kGimbalSignLimit) return {0.0, -kHalfPi, std::atan2(-r.r01, r.r11)};
        return {0.0, kHalfPi, std::atan2(r.r01, r.r11)};
    }
    return RegularEuler(r);
}

EulerAngles RotMatrixToEulerExact(const RotMatrix& r)
{
    if (std::fabs(r.r00) < kExactGimbalLimit && std::fabs(r.r10) < kExactGimbalLimit) {
        const double t = std::atan2(r.r01, r.r11);
        if (r.r20 > 0.0) return {0.0, -kHalfPi, -t};
        return {0.0, kHalfPi, t};
    }
    return RegularEuler(r);
}

}  // namespace kine
