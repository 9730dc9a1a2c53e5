// Times contestants against each other on the same numbered targets, so that a noisy machine is unfair to
// none: they take turns in chunks, each starts a chunk with untimed calls, every call is timed alone, and of
// every target the shortest of several passes counts. An empty contestant, timed in the same way, is the
// overhead that is subtracted from all. Nanoseconds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kine::bench {

// How one target came out; NaN where there is nothing to measure.
struct Verdict
{
    bool success;
    double mm;
    double rad;
};

struct Contestant
{
    std::string name;
    std::function<void()> prepare;               // before every chunk, untimed
    std::function<void(std::size_t)> call;       // the timed call on one target
    std::function<Verdict(std::size_t)> verify;  // performs and judges it, untimed
};

struct Plan
{
    std::size_t targets;
    int passes;
};

struct Standing
{
    std::string name;
    std::vector<double> sortedNs;    // per target the minimum over the passes
    std::vector<double> singlePass;  // the last pass alone, sorted
    double success;                  // share of the targets
    double largestMm;                // of the successes; NaN where nothing is measured
    double largestRad;
    double allocations;  // per call

    // The time that a share of the targets does not exceed.
    [[nodiscard]] double Quantile(double share) const;
    [[nodiscard]] double Median() const { return Quantile(0.5); }
};

double QuantileOf(const std::vector<double>& sorted, double share);

std::vector<Standing> Compete(const Plan& plan, const std::vector<Contestant>& contestants);

const Standing& StandingOf(const std::vector<Standing>& standings, const std::string& name);

}  // namespace kine::bench
