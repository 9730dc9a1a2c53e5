// Figures of the library alone, on the calibrated six-axis arm with gravity.
#include "library_figures.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "hot_calls.h"
#include "inner_steps.h"
#include "support/quiet_stdout.h"
#include "support/system_calls.h"
#include "two_threads.h"

namespace kine::bench {

namespace {

constexpr int kThreadRunsPerPass = 20;
constexpr double kNoAim = std::numeric_limits<double>::quiet_NaN();

Arm CalibratedArm() { return ArmCalled("wrist_calibrated_gravity_tilted_base"); }
const HotCall& Inverse() { return HotCallCalled("Kine_WobjPosToJoint"); }

// A call on the inputs, on an arm in a cell.
Contestant ContestantOf(const std::string& name, const HotCall& call, const Arm& arm, const Cell& cell,
                        const std::vector<Input>& inputs, KineResult expected = KINE_OK)
{
    const auto run = [call, cell, &inputs](std::size_t i) { return call.run(cell.records, inputs[i]); };
    return {name, [arm, cell] { SetUp(arm, cell); }, [run](std::size_t i) { static_cast<void>(run(i)); },
            [run, expected](std::size_t i) {
                return Verdict{run(i) == expected, kNoAim, kNoAim};
            }};
}

std::vector<Input> InputsIn(const Arm& arm, const Cell& cell, std::size_t count)
{
    SetUp(arm, cell);
    return InputsFor(Inverse(), arm, cell, count);
}

void RequireSuccess(const std::vector<Standing>& standings, Results& results)
{
    for (const Standing& standing : standings) {
        results.Require(standing.success == 1.0, standing.name + " does not end as expected on every target");
        results.Require(standing.allocations == 0.0, standing.name + " allocates");
    }
}

}  // namespace

void MeasureTail(const Plan& plan, Results& results)
{
    const Arm arm = CalibratedArm();
    const Cell cell = CellCalled("loads_frames");
    const std::vector<Input> inputs = InputsIn(arm, cell, plan.targets);
    const std::vector<Standing> standings =
        Compete(plan, {ContestantOf("inverse back to back", Inverse(), arm, cell, inputs)});
    RequireSuccess(standings, results);
    results.Add("Inverse back to back", standings);

    const Standing& inverse = standings.front();
    const double median = inverse.Median();
    const std::string figure = "tail of back-to-back inverse calls: ";
    results.Add({figure + "p99 / p50", inverse.Quantile(0.99) / median, "x", 1.20, 1.12, Better::kLower});
    results.Add(
        {figure + "p99.99 / p50", inverse.Quantile(0.9999) / median, "x", 1.40, 1.25, Better::kLower});
    const std::vector<double>& once = inverse.singlePass;
    const std::string single = "the same in one pass, with all that interrupts it: ";
    results.Add({single + "p99 / p50", QuantileOf(once, 0.99) / QuantileOf(once, 0.5), "x", kNoAim, kNoAim,
                 Better::kLower});
    results.Add({single + "p99.99 / p50", QuantileOf(once, 0.9999) / QuantileOf(once, 0.5), "x", kNoAim,
                 kNoAim, Better::kLower});
}

void MeasureUnreachable(const Plan& plan, Results& results)
{
    const Arm arm = CalibratedArm();
    const Cell cell = CellCalled("loads_frames");
    const std::vector<Input> near = InputsIn(arm, cell, plan.targets);
    std::vector<Input> far = near;
    constexpr double kMm = 5000.0;  // more than twice the reach of the arm
    for (Input& input : far) input.target.Frame.X += kMm;

    std::vector<KineJoint> joints;
    joints.reserve(near.size());
    for (const Input& input : near) joints.push_back(input.joints);
    PrepareInnerSteps(joints, {});

    const std::string solved = "solved", refused = "out of reach";
    const std::string modelSolved = "model alone, solved", modelRefused = "model alone, out of reach";
    std::vector<Standing> standings;
    {
        const test::QuietStdout quiet;
        standings = Compete(plan, {ContestantOf(solved, Inverse(), arm, cell, near),
                                   ContestantOf(refused, Inverse(), arm, cell, far, KINE_ERR_IK_7),
                                   {modelSolved, {}, InnerStepCalled(kInverse).run, {}},
                                   {modelRefused, {}, InnerStepCalled(kInverseOutOfReach).run, {}}});
    }
    const auto median = [&](const std::string& name) { return StandingOf(standings, name).Median(); };
    RequireSuccess({StandingOf(standings, solved), StandingOf(standings, refused)}, results);
    results.Add("Inverse of targets in and out of reach", standings);
    results.Add({"target out of reach, its printed line to /dev/null included: time against a success",
                 median(refused) / median(solved), "x", 0.20, 0.13, Better::kLower});
    results.Add({"the same inside the model, where nothing is printed",
                 median(modelRefused) / median(modelSolved), "x", kNoAim, kNoAim, Better::kLower});
}

void MeasureThreads(const Plan& plan, Results& results)
{
    const Arm arm = CalibratedArm();
    const Cell cell = CellCalled("loads_frames");
    const std::vector<Input> inputs = InputsIn(arm, cell, std::min<std::size_t>(plan.targets, 2000));
    const auto solve = [&](std::size_t i, KineJoint& joints) {
        const test::CellRecords& records = cell.records;
        return Kine_WobjPosToJoint(&inputs[i].target, &records.tool, &records.wobj, &records.load, &joints);
    };
    const std::string figure = "two threads on two cores: inverse calls per second against one thread";
    const TwoThreads found = RaceTwoThreads(inputs.size(), kThreadRunsPerPass * plan.passes, solve);
    if (!found.hasTwoCores) {
        results.Fact("Skipped", figure + " (one core)");
        return;
    }
    results.Require(found.sameBits, "two threads do not give the bits of one");
    results.Add({figure, found.speedUp, "x", 1.9, 1.95, Better::kHigher});
}

void MeasureUnits(const Plan& plan, Results& results)
{
    const Arm arm = CalibratedArm();
    const std::vector<std::string> calls = {"Kine_JointToWobjPos", "Kine_WobjPosToJoint"};
    std::vector<Cell> cells = {CellCalled("loads_frames")};
    for (const Cell& cell : Cells()) {
        if (cell.unitAxes > 0) cells.push_back(cell);
    }
    std::vector<std::vector<Input>> inputs;
    inputs.reserve(cells.size());
    for (const Cell& cell : cells) inputs.push_back(InputsIn(arm, cell, plan.targets));

    std::vector<Contestant> contestants;
    for (const std::string& call : calls) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::string name = call + ", " + cells[i].name;
            contestants.push_back(ContestantOf(name, HotCallCalled(call), arm, cells[i], inputs[i]));
        }
    }
    const std::vector<Standing> standings = Compete(plan, contestants);
    RequireSuccess(standings, results);
    results.Add("Mechanical units", standings);

    for (const std::string& call : calls) {
        const double without = StandingOf(standings, call + ", " + cells[0].name).Median();
        double largest = 0.0;
        for (std::size_t i = 1; i < cells.size(); ++i) {
            const double with = StandingOf(standings, call + ", " + cells[i].name).Median();
            largest = std::max(largest, (with - without) / cells[i].unitAxes);
        }
        results.Add({"cost per axis of a mechanical unit, " + call + ", dearest cell", largest, "ns", 120.0,
                     kNoAim, Better::kLower});
    }
}

void CountSystemCalls(Results& results)
{
    constexpr std::size_t kInputs = 1000;
    int calling = 0;
    for (const Arm& arm : Arms()) {
        for (const char* name : {"loads_frames", "both_on_two_rotary"}) {
            const Cell cell = CellCalled(name);
            const std::vector<Input> inputs = InputsIn(arm, cell, kInputs);
            for (const HotCall& call : HotCalls()) {
                if (!call.name.starts_with("Kine_JointTo") && call.name != Inverse().name) continue;
                const bool calls = test::MakesSystemCalls([&] {
                    for (const Input& input : inputs) static_cast<void>(call.run(cell.records, input));
                });
                calling += calls ? 1 : 0;
            }
        }
    }
    results.Require(calling == 0, "a call that succeeds makes system calls");
    results.Add({"successful forward and inverse calls that make a system call", static_cast<double>(calling),
                 "", 0.0, 0.0, Better::kLower});
}

}  // namespace kine::bench
