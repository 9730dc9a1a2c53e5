// Numbers that are hard to bear: limits of the library and of doubles, both zeros, what is not finite. And
// records spoiled with them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
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

// Overwrites up to three aligned numbers, 32-bit words or bytes of a record.
template <class Record>
void Spoil(SeededRandom& random, Record& record)
{
    auto* bytes = reinterpret_cast<unsigned char*>(&record);
    for (std::size_t n = random.Below(4); n > 0; --n) {
        const std::size_t how = random.Below(4);
        if (how <= 1 && sizeof record >= sizeof(double)) {
            const double value = random.Below(10) == 0 ? random.Uniform(-400.0, 400.0) : NastyNumber(random);
            std::memcpy(bytes + 8 * random.Below(sizeof record / 8), &value, sizeof value);
        } else if (how == 2) {
            const auto value = static_cast<uint32_t>(random.Bits());
            std::memcpy(bytes + 4 * random.Below(sizeof record / 4), &value, sizeof value);
        } else {
            bytes[random.Below(sizeof record)] = static_cast<unsigned char>(random.Bits());
        }
    }
}

}  // namespace kine::test
