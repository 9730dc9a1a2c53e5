// Counts every allocation of the process, also those of shared libraries.
#pragma once

#include <cstdint>

namespace kine::bench {

// Allocations of the calling thread since it started.
std::uint64_t AllocationCount();

}  // namespace kine::bench
