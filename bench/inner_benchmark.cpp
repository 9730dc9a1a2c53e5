// Google Benchmark of the inner steps. One iteration is one step; 1024 distinct inputs take turns.
#include <benchmark/benchmark.h>

#include "cells.h"
#include "inner_steps.h"

namespace {

using namespace kine;

constexpr std::size_t kInputs = 1024;
constexpr std::uint64_t kSeed = 6201;

std::vector<KineJoint> JointsOf(const char* arm)
{
    const bench::Arm chosen = bench::ArmCalled(arm);
    const bench::Cell cell = bench::CellCalled("empty");
    bench::SetUp(chosen, cell);
    return test::RegularJoints(chosen.type, cell.records, kInputs, kSeed);
}

void Run(benchmark::State& state, const bench::InnerStep& step)
{
    std::size_t next = 0;
    while (state.KeepRunning()) {
        step.run(next);
        if (++next == kInputs) next = 0;
    }
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    bench::PrepareInnerSteps(JointsOf("wrist_calibrated_gravity_tilted_base"), JointsOf("four_axis_tilts"));
    for (const bench::InnerStep& step : bench::InnerSteps()) {
        benchmark::RegisterBenchmark(step.name.c_str(),
                                     [&step](benchmark::State& state) { Run(state, step); });
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
