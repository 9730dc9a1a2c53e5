#include "measure/latencies.h"

#include <algorithm>
#include <cmath>

namespace kine_cli {
namespace {

// A call of the library that takes longer was interrupted; few are.
constexpr std::int64_t kLongestCounted = 100'000;  // ns

}  // namespace

Latencies::Latencies() : short_(static_cast<std::size_t>(kLongestCounted) + 1) {}

void Latencies::Add(std::int64_t nanoseconds)
{
    ++count_;
    const std::int64_t duration = std::max<std::int64_t>(nanoseconds, 0);
    if (duration > kLongestCounted) {
        long_.push_back(duration);
    } else {
        ++short_[static_cast<std::size_t>(duration)];
    }
}

std::int64_t Latencies::Percentile(double share)
{
    if (count_ == 0) return 0;
    const double wanted = std::ceil(share * static_cast<double>(count_));
    const std::uint64_t rank = std::clamp<std::uint64_t>(static_cast<std::uint64_t>(wanted), 1, count_);
    std::uint64_t seen = 0;
    for (std::size_t i = 0; i < short_.size(); ++i) {
        seen += short_[i];
        if (seen >= rank) return static_cast<std::int64_t>(i);
    }
    std::sort(long_.begin(), long_.end());
    return long_[static_cast<std::size_t>(rank - seen - 1)];
}

}  // namespace kine_cli
