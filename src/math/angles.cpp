// SafeAcos and SafeAsin.
#include "math/angles.h"

namespace kine {

namespace {

double ClampRoundingNoise(double x)
{
    if (x >= 1.0 && x < kArcTolerance) return 1.0;
    if (x <= -1.0 && x > -kArcTolerance) return -1.0;
    return x;
}

}  // namespace

double SafeAcos(double x) { return std::acos(ClampRoundingNoise(x)); }

double SafeAsin(double x) { return std::asin(ClampRoundingNoise(x)); }

}  // namespace kine
