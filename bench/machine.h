// The machine: its processor, its clock and its cores.
#pragma once

#include <sched.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kine::bench {

std::string ProcessorName();
std::string Today();

// Cores that this process may use.
std::vector<std::size_t> UsableCores();

// Keeps the calling thread on a core while it lives.
class OnCore
{
public:
    explicit OnCore(std::size_t core);
    ~OnCore();
    OnCore(const OnCore&) = delete;
    OnCore& operator=(const OnCore&) = delete;

private:
    cpu_set_t before_{};
};

}  // namespace kine::bench
