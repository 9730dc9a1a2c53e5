// Durations of many calls in nanoseconds: counted one by one up to a bound and kept above it, so that a run
// of any length takes little memory and its percentiles are exact.
#pragma once

#include <cstdint>
#include <vector>

namespace kine_cli {

class Latencies
{
public:
    Latencies();

    void Add(std::int64_t nanoseconds);
    std::uint64_t Count() const { return count_; }

    // The smallest duration that at least this share of the calls, above 0 and up to 1, does not exceed. 0
    // without calls.
    std::int64_t Percentile(double share);
    std::int64_t Worst() { return Percentile(1.0); }

private:
    std::vector<std::uint64_t> short_;  // how many calls took as many nanoseconds as the index
    std::vector<std::int64_t> long_;    // the others
    std::uint64_t count_ = 0;
};

}  // namespace kine_cli
