// Random numbers that are the same on every platform: the standard distributions are not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace kine::test {

class SeededRandom
{
public:
    explicit SeededRandom(std::uint64_t seed) : generator_(seed) {}

    // Uniform in [low, high): 53 random bits.
    double Uniform(double low, double high)
    {
        return low + (high - low) * (static_cast<double>(generator_() >> 11U) * 0x1p-53);
    }

    // Uniform in [0, count).
    std::size_t Index(std::size_t count) { return static_cast<std::size_t>(generator_() % count); }

private:
    std::mt19937_64 generator_;
};

}  // namespace kine::test
