// Time of one call: the processor's time-stamp counter where there is one, the monotonic clock elsewhere.
#pragma once

#include <cstdint>
#include <ctime>

#if defined(__x86_64__)
#include <x86intrin.h>
#endif

namespace kine::bench {

inline double MonotonicNs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

#if defined(__x86_64__)

inline constexpr const char* kClockName = "time-stamp counter";

// The fences keep the call between the two readings: nothing of it starts before the first or is still under
// way at the second.
inline std::uint64_t StartTicks()
{
    _mm_lfence();
    const std::uint64_t ticks = __rdtsc();
    _mm_lfence();
    return ticks;
}

inline std::uint64_t StopTicks()
{
    unsigned processor = 0;
    const std::uint64_t ticks = __rdtscp(&processor);
    _mm_lfence();
    return ticks;
}

#else

inline constexpr const char* kClockName = "clock_gettime";

inline std::uint64_t StartTicks() { return static_cast<std::uint64_t>(MonotonicNs()); }
inline std::uint64_t StopTicks() { return StartTicks(); }

#endif

// Nanoseconds per tick, against the monotonic clock over a tenth of a second.
inline double NsPerTick()
{
    constexpr double kWindowNs = 1e8;
    const double startNs = MonotonicNs();
    const std::uint64_t start = StartTicks();
    double now = startNs;
    while (now - startNs < kWindowNs) now = MonotonicNs();
    return (now - startNs) / static_cast<double>(StopTicks() - start);
}

}  // namespace kine::bench
