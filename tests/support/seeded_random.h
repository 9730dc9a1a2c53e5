// Random numbers that are the same on every platform: the standard fixes the generator but not the
// distributions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>

namespace kine::test {

class SeededRandom
{
public:
    explicit SeededRandom(std::uint64_t seed) : generator_(seed) {}

    std::uint64_t Bits() { return generator_(); }

    // 0 .. count - 1; the tiny bias of the remainder does not matter here.
    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(generator_() % count); }

    // low .. high, both included.
    int Whole(int low, int high)
    {
        return low + static_cast<int>(Below(static_cast<std::size_t>(high - low + 1)));
    }

    // Uniform in [low, high): 53 random bits.
    double Uniform(double low, double high)
    {
        return low + (high - low) * (static_cast<double>(generator_() >> 11U) * 0x1p-53);
    }

    // A record of any byte pattern.
    template <class Record>
    Record AnyBits()
    {
        Record record;
        auto* bytes = reinterpret_cast<unsigned char*>(&record);
        for (std::size_t i = 0; i < sizeof record; ++i) bytes[i] = static_cast<unsigned char>(generator_());
        return record;
    }

private:
    std::mt19937_64 generator_;
};

}  // namespace kine::test
