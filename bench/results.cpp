// Files of results. One line per entry; columns as written here.
#include "results.h"

#include <cmath>
#include <iostream>
#include <stdexcept>

namespace kine::bench {

namespace {

std::ofstream Created(const std::string& path)
{
    std::ofstream file(path);
    if (!file) throw std::runtime_error("cannot write " + path);
    file.precision(9);
    return file;
}

// Dense where the tail is: 0 to 99 % in steps of one, then ever closer to 1 down to one target in 10,000.
std::vector<double> Shares()
{
    std::vector<double> shares;
    for (int percent = 1; percent <= 99; ++percent) shares.push_back(percent / 100.0);
    constexpr int kStepsPerDecade = 20;
    for (int step = 1; step <= 2 * kStepsPerDecade; ++step) {
        shares.push_back(1.0 - 0.01 * std::pow(10.0, -static_cast<double>(step) / kStepsPerDecade));
    }
    return shares;
}

}  // namespace

Results::Results(const std::string& directory)
    : facts_(Created(directory + "/facts.tsv")),
      bars_(Created(directory + "/bars.tsv")),
      contests_(Created(directory + "/contests.tsv")),
      distributions_(Created(directory + "/distributions.tsv"))
{}

void Results::Fact(const std::string& name, const std::string& value)
{
    facts_ << name << '\t' << value << '\n';
}

void Results::Add(const Bar& bar)
{
    bars_ << bar.figure << '\t' << bar.value << '\t' << bar.unit << '\t' << bar.must << '\t' << bar.aim
          << '\t' << (bar.better == Better::kHigher ? "higher" : "lower") << '\n';
}

void Results::Add(const std::string& contest, const std::vector<Standing>& standings)
{
    for (const Standing& standing : standings) {
        contests_ << contest << '\t' << standing.name << '\t' << standing.Median() << '\t'
                  << standing.Quantile(0.99) << '\t' << standing.Quantile(0.9999) << '\t' << standing.success
                  << '\t' << standing.largestMm << '\t' << standing.largestRad << '\t' << standing.allocations
                  << '\n';
        for (const double share : Shares()) {
            distributions_ << contest << '\t' << standing.name << '\t' << share << '\t'
                           << standing.Quantile(share) << '\n';
        }
    }
}

void Results::Require(bool holds, const std::string& what)
{
    if (holds) return;
    isCorrect_ = false;
    std::cerr << "WRONG: " << what << '\n';
    Fact("WRONG", what);
}

}  // namespace kine::bench
