// Counts every allocation of the process, also those of shared libraries. A program that includes this is
// linked with allocations.cpp. Not under sanitizers, which have allocation functions of their own.
#pragma once

#include <cstdint>

namespace kine::test {

// Of the calling thread since it started.
std::uint64_t AllocationCount();
std::uint64_t FreeCount();

}  // namespace kine::test
