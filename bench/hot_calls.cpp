// The hot exports and their inputs.
#include "hot_calls.h"

#include <stdexcept>

#include "residual.h"

namespace kine::bench {

namespace {

using test::CellRecords;
using test::SeededRandom;

constexpr std::uint64_t kSeed = 6101;

template <class Forward>
KineResult PoseOf(Forward forward, const CellRecords& cell, const Input& input)
{
    KinePose pose{};
    return forward(&input.joints, &cell.tool, &cell.wobj, &cell.load, &pose);
}

KineResult Inverse(const CellRecords& cell, const Input& input)
{
    KineJoint joints{};
    return Kine_WobjPosToJoint(&input.target, &cell.tool, &cell.wobj, &cell.load, &joints);
}

// A step along X, 0.5 mm, and about Z (slot 5; of the four-axis arms slot 3), 0.2 degrees; 0.1 degrees per
// joint.
template <int32_t mode>
KineResult Jog(const CellRecords& cell, const Input& input)
{
    double steps[3] = {0.1, 0.5, 0.2};
    KineInchDir dir{};
    dir.Slot[0] = 1;
    dir.Slot[mode == 1 ? 1 : 3] = 1;
    KineJoint target{};
    return Kine_InchMovePosCalc(&dir, mode, &cell.tool, &cell.wobj, &cell.load, steps, &input.joints,
                                &target);
}

template <int32_t mode>
KineResult Align(const CellRecords& cell, const Input& input)
{
    KineJoint target{};
    return Kine_CalcAlignPos(mode, &input.joints, &cell.tool, &cell.wobj, &cell.load, &target);
}

KineResult Calibrate(const CellRecords&, const Input& input)
{
    KineFrame frame{};
    KineCalibError error{};
    return Kine_CalcGripToolPrm_3P(&input.touch[0], &input.touch[1], &input.touch[2], &frame, &error);
}

// Flange poses that bring a tool point t to the point p: position p - R t for the orientation R. The
// four-axis arms stay upright.
void DrawTouches(const Arm& arm, SeededRandom& random, Input& input)
{
    const double tilt = arm.type == KINE_ARM_SIX_AXIS ? 40.0 : 0.0;
    const double p[3] = {random.Uniform(300, 600), random.Uniform(-200, 200), random.Uniform(100, 400)};
    const double t[3] = {random.Uniform(-80, 80), random.Uniform(40, 80), random.Uniform(100, 200)};
    double heading = random.Uniform(-180.0, -80.0);
    for (KinePose& touch : input.touch) {
        touch = {};
        KineFrame& frame = touch.Frame;
        frame.A = heading;
        frame.B = random.Uniform(-tilt, tilt);
        frame.C = random.Uniform(-tilt, tilt);
        heading += random.Uniform(60.0, 110.0);
        const Rotation r = RotationOf(frame);
        double* const position[3] = {&frame.X, &frame.Y, &frame.Z};
        for (std::size_t row = 0; row < 3; ++row) {
            *position[row] = p[row] - (r[row][0] * t[0] + r[row][1] * t[1] + r[row][2] * t[2]);
        }
    }
}

}  // namespace

const std::vector<HotCall>& HotCalls()
{
    static const std::vector<HotCall> calls = {
        {"Kine_JointToBasePos", [](const CellRecords& cell,
                                   const Input& input) { return PoseOf(Kine_JointToBasePos, cell, input); }},
        {"Kine_JointToWorldPos",
         [](const CellRecords& cell, const Input& input) {
             return PoseOf(Kine_JointToWorldPos, cell, input);
         }},
        {"Kine_JointToWobjPos", [](const CellRecords& cell,
                                   const Input& input) { return PoseOf(Kine_JointToWobjPos, cell, input); }},
        {"Kine_WobjPosToJoint", Inverse},
        {"Kine_InchMovePosCalc_joint", Jog<1>},
        {"Kine_InchMovePosCalc_base", Jog<2>},
        {"Kine_InchMovePosCalc_tool", Jog<3>},
        {"Kine_InchMovePosCalc_wobj", Jog<4>},
        {"Kine_InchMovePosCalc_world", Jog<5>},
        {"Kine_CalcAlignPos_base", Align<2>},
        {"Kine_CalcAlignPos_wobj", Align<4>},
        {"Kine_CalcAlignPos_world", Align<5>},
    };
    return calls;
}

const HotCall& HotCallCalled(const std::string& name)
{
    for (const HotCall& call : HotCalls()) {
        if (call.name == name) return call;
    }
    throw std::out_of_range("no call is named " + name);
}

const HotCall& ToolCalibration()
{
    static const HotCall call = {"Kine_CalcGripToolPrm_3P", Calibrate};
    return call;
}

std::vector<Input> InputsFor(const HotCall& call, const Arm& arm, const Cell& cell, std::size_t count)
{
    const CellRecords& records = cell.records;
    SeededRandom random(kSeed);
    std::vector<Input> inputs;
    for (std::size_t draws = 0; inputs.size() < count; ++draws) {
        if (draws > 50 * count) throw std::runtime_error(call.name + " hardly succeeds on " + arm.name);
        Input input{};
        input.joints = test::RandomJoints(arm.type, random);
        DrawTouches(arm, random, input);
        if (test::IsRegular(arm.type, input.joints, records) &&
            Kine_JointToWobjPos(&input.joints, &records.tool, &records.wobj, &records.load, &input.target) ==
                KINE_OK &&
            call.run(records, input) == KINE_OK) {
            inputs.push_back(input);
        }
    }
    return inputs;
}

}  // namespace kine::bench
