// Measures the library beside Orocos KDL and writes what it finds into a directory:
// compare_kdl DIRECTORY [TARGETS [PASSES]]. Ends with 1 when a result is wrong; a slow one is only reported.
#include <cstdlib>
#include <exception>
#include <iostream>

#include "kdl_contests.h"
#include "library_figures.h"
#include "machine.h"
#include "stopwatch.h"

namespace {

using namespace kine::bench;

constexpr Plan kUsual = {10000, 7};

void Describe(const Plan& plan, Results& results)
{
    results.Fact("Processor", ProcessorName());
    results.Fact("Date", Today());
    results.Fact("Compiler", KINE_BENCH_COMPILER);
    results.Fact("Flags", KINE_BENCH_FLAGS);
    results.Fact("Clock", kClockName);
    results.Fact("Targets", std::to_string(plan.targets));
    results.Fact("Passes", std::to_string(plan.passes));
}

int Run(const std::string& directory, const Plan& plan)
{
    Results results(directory);
    Describe(plan, results);
    const auto announce = [](const char* what) { std::cerr << "-- " << what << '\n'; };
    announce("six-axis arms");
    CompareSixAxis(plan,
                   {"wrist arm", "wrist", "wrist_calibrated_gravity_tilted_base", "link errors and gravity"},
                   results);
    CompareSixAxis(plan, {"Puma", "puma", "puma_gravity", "gravity"}, results);
    announce("four-axis arm");
    CompareFourAxis(plan, results);
    announce("the library alone");
    MeasureTail(plan, results);
    MeasureUnreachable(plan, results);
    MeasureUnits(plan, results);
    MeasureThreads(plan, results);
    CountSystemCalls(results);
    return results.IsCorrect() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 4) {
        std::cerr << "usage: compare_kdl DIRECTORY [TARGETS [PASSES]]\n";
        return EXIT_FAILURE;
    }
    try {
        Plan plan = kUsual;
        if (argc > 2) plan.targets = std::stoul(argv[2]);
        if (argc > 3) plan.passes = std::stoi(argv[3]);
        return Run(argv[1], plan);
    } catch (const std::exception& problem) {
        std::cerr << "compare_kdl: " << problem.what() << '\n';
        return EXIT_FAILURE;
    }
}
