// A line on a terminal that tells how far a long run is.
#pragma once

#include <chrono>
#include <cstdint>

namespace kine_cli {

class Progress
{
public:
    // Shows nothing when the standard error is no terminal, or when it is not wanted. `size` in bytes, 0 when
    // not known.
    Progress(bool wanted, std::uint64_t size);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Add(std::uint64_t rows, std::uint64_t bytes);
    // Makes room for a message.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    bool shown_;
    bool onScreen_ = false;
    std::uint64_t size_;
    std::uint64_t rows_ = 0;
    std::uint64_t bytes_ = 0;
    Clock::time_point start_ = Clock::now();
    Clock::time_point last_ = start_;
};

}  // namespace kine_cli
