// Numbers that are hard to bear: limits of the library and of doubles, both zeros, what is not finite.
#pragma once

#include <cstddef>
#include <iterator>

#include "support/numbers.h"
#include "support/seeded_random.h"

namespace kine::test {

inline constexpr double kNastyNumbers[] = {
    0.0,   -0.0,   1.0,   -1.0,   90.0,   180.0,           -180.0,  180.0000001, 360.0, 0.1,  100.0, 0.001,
    0.01,  0.02,   1e-5,  -1e-5,  1e-300, 1e-308,          1e15,    1e16,        1e150, kNan, kInf,  -kInf,
    1e154, -1e154, 1e308, -1e308, -1e150, kNanWithPayload, 4.9e-324};

// One of them, or any bits.
inline double NastyNumber(SeededRandom& random)
{
    const std::size_t pick = random.Below(std::size(kNastyNumbers) + 1);
    return pick < std::size(kNastyNumbers) ? kNastyNumbers[pick] : random.AnyBits<double>();
}

}  // namespace kine::test
