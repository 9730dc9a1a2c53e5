// Numbers at the ends of what a double can be, and the neighbours of a number.
#pragma once

#include <cmath>
#include <limits>

namespace kine::test {

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInf = std::numeric_limits<double>::infinity();

inline double JustBelow(double x) { return std::nextafter(x, -kInf); }
inline double JustAbove(double x) { return std::nextafter(x, kInf); }

}  // namespace kine::test
