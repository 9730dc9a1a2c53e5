// Google Benchmark of the hot exports: CALL/ARM/CELL. One iteration is one call; 1024 distinct inputs take
// turns.
#include <benchmark/benchmark.h>

#include <memory>

#include "hot_calls.h"
#include "support/quiet_stdout.h"

namespace {

using namespace kine::bench;

constexpr std::size_t kInputs = 1024;

struct Subject
{
    HotCall call;
    Arm arm;
    Cell cell;
    std::vector<Input> inputs;  // made when the benchmark first runs
};

void Run(benchmark::State& state, Subject& subject)
{
    SetUp(subject.arm, subject.cell);
    if (subject.inputs.empty()) {
        const kine::test::QuietStdout quiet;
        subject.inputs = InputsFor(subject.call, subject.arm, subject.cell, kInputs);
    }
    std::size_t next = 0;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(subject.call.run(subject.cell.records, subject.inputs[next]));
        if (++next == kInputs) next = 0;
    }
}

void Register(const HotCall& call, const Arm& arm, const Cell& cell)
{
    const auto subject = std::make_shared<Subject>(Subject{call, arm, cell, {}});
    const std::string name = call.name + "/" + arm.name + "/" + cell.name;
    benchmark::RegisterBenchmark(name.c_str(), [subject](benchmark::State& state) { Run(state, *subject); });
}

// Every call on every arm in one cell, and forward and inverse of one arm of each type in the other cells.
void RegisterAll()
{
    const Cell usual = CellCalled("loads_frames");
    for (const Arm& arm : Arms()) {
        for (const HotCall& call : HotCalls()) Register(call, arm, usual);
    }
    for (const char* arm :
         {"wrist_calibrated_gravity_tilted_base", "four_axis_tilts", "four_axis_4110_tilts"}) {
        for (const Cell& cell : Cells()) {
            if (cell.name == usual.name) continue;
            for (const char* call : {"Kine_JointToBasePos", "Kine_JointToWorldPos", "Kine_JointToWobjPos",
                                     "Kine_WobjPosToJoint"}) {
                Register(HotCallCalled(call), ArmCalled(arm), cell);
            }
        }
        Register(ToolCalibration(), ArmCalled(arm), usual);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RegisterAll();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
