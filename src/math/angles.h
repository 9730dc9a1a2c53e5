// Scalar helpers for angles. Radians unless a name says otherwise.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace kine {

inline constexpr double DEG2RAD = 0.017453292519943295;
inline constexpr double RAD2DEG = 57.29577951308232;
inline constexpr double kPi = 3.141592653589793;
inline constexpr double kHalfPi = 1.5707963267948966;
inline constexpr double kTwoPi = 6.283185307179586;

// Sine and cosine of one angle.
struct SinCos
{
    double sin;
    double cos;
};

// Where the C library computes both in one call, this call is named: left to the optimiser, some builds
// would pair std::sin with std::cos and others not, and the paired results may differ in the last bit.
inline SinCos SinCosOf(double angle)
{
    SinCos result{};
#if defined(__GLIBC__)
    ::sincos(angle, &result.sin, &result.cos);
#else
    result.sin = std::sin(angle);
    result.cos = std::cos(angle);
#endif
    return result;
}

// Largest step, rad, for which Advanced uses its series: the first terms left out are below 1e-18 there.
inline constexpr double kMaxSeriesStep = 0.04;

// Sine and cosine of an angle that lies by further than the one whose sine and cosine are at: the addition
// theorems with the series of a small step, which cost a fraction of a call. Up to kMaxSeriesStep only.
inline SinCos Advanced(const SinCos& at, double by)
{
    constexpr double kSin3 = -1.0 / 6.0, kSin5 = 1.0 / 120.0, kSin7 = -1.0 / 5040.0;
    constexpr double kCos2 = -0.5, kCos4 = 1.0 / 24.0, kCos6 = -1.0 / 720.0, kCos8 = 1.0 / 40320.0;
    const double square = by * by;
    const double sin = by * (1.0 + square * (kSin3 + square * (kSin5 + square * kSin7)));
    const double cosLess1 = square * (kCos2 + square * (kCos4 + square * (kCos6 + square * kCos8)));
    return {at.sin + (at.cos * sin + at.sin * cosLess1), at.cos + (at.cos * cosLess1 - at.sin * sin)};
}

// Sine and cosine of the sum of two angles.
inline SinCos SumOf(const SinCos& a, const SinCos& b)
{
    return {a.sin * b.cos + a.cos * b.sin, a.cos * b.cos - a.sin * b.sin};
}

inline SinCos SinCosDeg(double degrees) { return SinCosOf(degrees * DEG2RAD); }

// Arguments this far outside [-1, 1] are rounding noise and count as +-1. At the limit itself and beyond
// the argument is passed on, so that an unreachable target shows as NaN.
inline constexpr double kArcTolerance = 1.00001;

// Arc cosine and arc sine with the tolerance above; NaN for a NaN argument.
double SafeAcos(double x);
double SafeAsin(double x);

// Rounds toward zero. Values beyond the range of int32 give its nearest end, NaN gives its lower end.
inline std::int32_t TruncToInt32(double x)
{
    constexpr double kUpper = 2147483647.0;
    constexpr double kLower = -2147483648.0;
    if (x >= kUpper) return std::numeric_limits<std::int32_t>::max();
    if (!(x > kLower)) return std::numeric_limits<std::int32_t>::min();  // NaN ends here
    return static_cast<std::int32_t>(x);
}

// A computed value on its way out of the library. Sign and payload of a NaN depend on the order in which a
// compiler puts the operands of a sum; results show one NaN only, so that the same inputs give the same bits
// everywhere.
inline double WithOneNaN(double value)
{
    return std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value;
}

}  // namespace kine
