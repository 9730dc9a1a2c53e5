// Contests between calls.
#include "contest.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "machine.h"
#include "stopwatch.h"
#include "support/allocations.h"

namespace kine::bench {

namespace {

constexpr std::size_t kChunk = 200;
constexpr std::size_t kUntimedCalls = 16;

struct Timing
{
    std::vector<std::uint64_t> shortest;
    std::vector<std::uint64_t> latest;
};

void TimeChunk(const Contestant& contestant, std::size_t first, std::size_t last, Timing& timing)
{
    if (contestant.prepare) contestant.prepare();
    const std::size_t targets = timing.shortest.size();
    for (std::size_t i = 0; i < kUntimedCalls; ++i) {
        contestant.call((first + targets - kUntimedCalls % targets + i) % targets);
    }
    for (std::size_t target = first; target < last; ++target) {
        const std::uint64_t start = StartTicks();
        contestant.call(target);
        const std::uint64_t ticks = StopTicks() - start;
        timing.latest[target] = ticks;
        timing.shortest[target] = std::min(timing.shortest[target], ticks);
    }
}

std::vector<double> SortedNs(const std::vector<std::uint64_t>& ticks, double nsPerTick, double overheadNs)
{
    std::vector<double> ns;
    ns.reserve(ticks.size());
    for (const std::uint64_t count : ticks) {
        ns.push_back(std::max(0.0, static_cast<double>(count) * nsPerTick - overheadNs));
    }
    std::sort(ns.begin(), ns.end());
    return ns;
}

double AllocationsPerCall(const Contestant& contestant, std::size_t targets)
{
    const std::uint64_t before = test::AllocationCount();
    for (std::size_t target = 0; target < targets; ++target) contestant.call(target);
    return static_cast<double>(test::AllocationCount() - before) / static_cast<double>(targets);
}

void Judge(const Contestant& contestant, std::size_t targets, Standing& standing)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    standing.largestMm = standing.largestRad = kNan;
    if (contestant.prepare) contestant.prepare();
    standing.allocations = AllocationsPerCall(contestant, targets);

    std::size_t successes = 0;
    for (std::size_t target = 0; target < targets; ++target) {
        const Verdict verdict = contestant.verify ? contestant.verify(target) : Verdict{true, kNan, kNan};
        if (!verdict.success) continue;
        ++successes;
        standing.largestMm = std::fmax(standing.largestMm, verdict.mm);
        standing.largestRad = std::fmax(standing.largestRad, verdict.rad);
    }
    standing.success = static_cast<double>(successes) / static_cast<double>(targets);
}

}  // namespace

double QuantileOf(const std::vector<double>& sorted, double share)
{
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(sorted.size())));
    return sorted[std::clamp<std::size_t>(rank, 1, sorted.size()) - 1];
}

double Standing::Quantile(double share) const { return QuantileOf(sortedNs, share); }

std::vector<Standing> Compete(const Plan& plan, const std::vector<Contestant>& contestants)
{
    std::vector<Contestant> all = {{"nothing", {}, [](std::size_t) {}, {}}};
    all.insert(all.end(), contestants.begin(), contestants.end());
    const Timing untimed{std::vector<std::uint64_t>(plan.targets, std::numeric_limits<std::uint64_t>::max()),
                         std::vector<std::uint64_t>(plan.targets, 0)};
    std::vector<Timing> timings(all.size(), untimed);

    const OnCore here(UsableCores().back());
    const double nsPerTick = NsPerTick();
    for (int pass = 0; pass < plan.passes; ++pass) {
        for (std::size_t first = 0; first < plan.targets; first += kChunk) {
            const std::size_t last = std::min(first + kChunk, plan.targets);
            for (std::size_t i = 0; i < all.size(); ++i) TimeChunk(all[i], first, last, timings[i]);
        }
    }

    const double overheadNs = QuantileOf(SortedNs(timings[0].shortest, nsPerTick, 0.0), 0.5);
    std::vector<Standing> standings;
    for (std::size_t i = 1; i < all.size(); ++i) {
        Standing standing{};
        standing.name = all[i].name;
        standing.sortedNs = SortedNs(timings[i].shortest, nsPerTick, overheadNs);
        standing.singlePass = SortedNs(timings[i].latest, nsPerTick, overheadNs);
        Judge(all[i], plan.targets, standing);
        standings.push_back(standing);
    }
    return standings;
}

const Standing& StandingOf(const std::vector<Standing>& standings, const std::string& name)
{
    for (const Standing& standing : standings) {
        if (standing.name == name) return standing;
    }
    throw std::out_of_range("no contestant is called " + name);
}

}  // namespace kine::bench
