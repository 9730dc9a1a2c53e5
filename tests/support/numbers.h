// Numbers at the ends of what a double can be, the neighbours of a number, and which NaN is which.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace kine::test {

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInf = std::numeric_limits<double>::infinity();

// A NaN that no computation makes out of numbers: negative, with a payload.
inline constexpr double kNanWithPayload = std::bit_cast<double>(std::uint64_t{0xFFF80000DEADBEEF});

inline double JustBelow(double x) { return std::nextafter(x, -kInf); }
inline double JustAbove(double x) { return std::nextafter(x, kInf); }

// The one NaN that results show: quiet, positive, without a payload.
inline bool IsTheNan(double x)
{
    return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(kNan);
}

inline bool IsNumberOrTheNan(double x) { return !std::isnan(x) || IsTheNan(x); }

}  // namespace kine::test
