// One thread and two take turns; each thread solves all targets. The runs are short and many, so that some
// are left alone by whatever else the machine does.
#include "two_threads.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>
#include <thread>
#include <vector>

#include "machine.h"
#include "stopwatch.h"

namespace kine::bench {

namespace {

using Solve = std::function<KineResult(std::size_t, KineJoint&)>;
using Solutions = std::vector<KineJoint>;

// The wall clock of one or two threads from the moment all are ready to the end of the last.
double NsOfThreads(const std::vector<std::size_t>& cores, const Solve& solve,
                   std::vector<Solutions>& solutions)
{
    std::atomic<std::size_t> ready{0};
    std::vector<double> start(cores.size()), end(cores.size());
    const auto work = [&](std::size_t thread) {
        const OnCore here(cores[thread]);
        Solutions& own = solutions[thread];
        ++ready;
        while (ready < cores.size()) {
        }
        start[thread] = MonotonicNs();
        for (std::size_t i = 0; i < own.size(); ++i) static_cast<void>(solve(i, own[i]));
        end[thread] = MonotonicNs();
    };
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < cores.size(); ++i) threads.emplace_back(work, i);
    for (std::thread& thread : threads) thread.join();
    return *std::max_element(end.begin(), end.end()) - *std::min_element(start.begin(), start.end());
}

bool SameBits(const Solutions& a, const Solutions& b)
{
    return std::memcmp(a.data(), b.data(), a.size() * sizeof(KineJoint)) == 0;
}

}  // namespace

TwoThreads RaceTwoThreads(std::size_t targets, int runs, const Solve& solve)
{
    std::vector<std::size_t> cores = UsableCores();
    if (cores.size() < 2) return {false, false, 0.0};
    cores = {cores[cores.size() - 1], cores[cores.size() - 2]};

    std::vector<Solutions> alone(1, Solutions(targets));
    std::vector<Solutions> together(2, Solutions(targets));
    double shortestAlone = std::numeric_limits<double>::max();
    double shortestTogether = shortestAlone;
    TwoThreads found{true, true, 0.0};
    for (int run = 0; run < runs; ++run) {
        shortestAlone = std::min(shortestAlone, NsOfThreads({cores[0]}, solve, alone));
        shortestTogether = std::min(shortestTogether, NsOfThreads(cores, solve, together));
        found.sameBits = found.sameBits && SameBits(alone[0], together[0]) && SameBits(alone[0], together[1]);
    }
    found.speedUp = 2.0 * shortestAlone / shortestTogether;
    return found;
}

}  // namespace kine::bench
