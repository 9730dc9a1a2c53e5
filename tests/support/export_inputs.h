// What every export is tried on: cells of each arm with and without mechanical units, and random records for
// them, good and bad. The same on every platform and from every compiler: seeds are written down, draws stand
// in an order that the language fixes, and the numbers are made without the mathematics library.
//
// Drawing prints what the forward call prints that looks for a target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <vector>

#include "KineDll.h"
#include "support/export_calls.h"
#include "support/mech_units.h"
#include "support/nasty_numbers.h"
#include "support/random_records.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/speed_inputs.h"

namespace kine::test {

// ---- Cells ---------------------------------------------------------------------------------------------

// The carrier is unit 1, driven by external axes 4 and 1; the positioner is unit 2, driven by 0 and 5. A unit
// of kind 0 is none.
struct TrialCell
{
    std::uint32_t armType;
    KineKinematicParam arm;
    KineMechUnit carrier;
    KineMechUnit positioner;
};

inline std::vector<TrialCell> TrialCells()
{
    const KineFrame carrierFirst = {-300.0, 150.0, 80.0, 23.0, -11.0, 6.0};
    const KineFrame carrierSecond = {40.0, -60.0, 120.0, -17.0, 29.0, -34.0};
    const KineFrame positionerFirst = {400.0, -200.0, 100.0, -40.0, 17.0, 11.0};
    const KineFrame positionerSecond = {-25.0, 35.0, 45.0, 34.0, -6.0, 52.0};
    struct Units
    {
        KineMechUnit carrier;
        KineMechUnit positioner;
    };
    const Units units[] = {
        {{}, {}},
        {LinearUnit(carrierFirst, carrierSecond, 4), TwoRotaryUnit(positionerFirst, positionerSecond, 0, 5)},
        {RotaryUnit(carrierFirst, 4), LinearUnit(positionerFirst, positionerSecond, 0)},
        {TwoRotaryUnit(carrierFirst, carrierSecond, 4, 1), RotaryUnit(positionerFirst, 0)},
    };
    std::vector<TrialCell> cells;
    for (const Units& unit : units) {
        cells.push_back({KINE_ARM_SIX_AXIS, WristArm(), unit.carrier, unit.positioner});
        cells.push_back({KINE_ARM_SIX_AXIS, CalibratedWristArm(), unit.carrier, unit.positioner});
        for (const std::uint32_t type : {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110}) {
            cells.push_back({type, Scara(), unit.carrier, unit.positioner});
            cells.push_back({type, TiltedScara(), unit.carrier, unit.positioner});
        }
    }
    return cells;
}

// Describes the cell: perform(place, inputs) makes the setup calls, each by its place in kExportCalls.
template <class Perform>
void SetUpCell(const TrialCell& cell, Perform perform)
{
    CallInputs in;
    in.armType = cell.armType;
    in.arm = cell.arm;
    perform(ExportCalled("Kine_InitKinematicParam"), in);

    in.unitCount = 3;
    in.extAxisCount = 6;
    in.enable = 1;
    perform(ExportCalled("Kine_SetMechUnitGlobalCfg"), in);

    const bool isCarried = cell.carrier.UnitKind != 0;
    const KineMechUnit units[] = {isCarried ? CarryingRobot(cell.carrier, 1) : KineMechUnit{}, cell.carrier,
                                  cell.positioner};
    for (const KineMechUnit& unit : units) {
        in.unit = unit;
        perform(ExportCalled("Kine_SetMechUnitParam"), in);
        ++in.index;
    }

    in.index = 0;
    for (const std::uint32_t kind :
         {cell.positioner.UnitKind, cell.carrier.UnitKind, cell.positioner.UnitKind, cell.carrier.UnitKind,
          cell.carrier.UnitKind, cell.positioner.UnitKind}) {
        in.extAxis.Word[3] = kind == kLinearKind ? 1 : 0;
        perform(ExportCalled("Kine_SetExtAxisParam"), in);
        ++in.index;
    }

    in.joints = MakeJoints({400.0, 400.0, 400.0, 400.0, 400.0, 400.0});
    in.lower = MakeJoints({-400.0, -400.0, -400.0, -400.0, -400.0, -400.0});
    perform(ExportCalled("Kine_SetAxisLimit"), in);
}

inline void SetUpCell(const TrialCell& cell)
{
    SetUpCell(cell, [](std::size_t place, const CallInputs& in) {
        CallResults out;
        MakeCall(kExportCalls[place], in, out);
    });
}

// ---- Inputs --------------------------------------------------------------------------------------------

namespace detail {

template <class Value, std::size_t N>
Value OneOf(SeededRandom& random, const Value (&values)[N])
{
    return values[random.Below(N)];
}

inline constexpr std::int32_t kMostNegative = std::numeric_limits<std::int32_t>::min();
inline constexpr std::int32_t kMostPositive = std::numeric_limits<std::int32_t>::max();

// Who holds what. Most ways are good ones; two are refused, one at the door and one inside the chains.
inline void DrawHolding(SeededRandom& random, CallInputs& in)
{
    const CellRecords cell = WorkingCell();
    in.tool = cell.tool;
    in.wobj = cell.wobj;
    in.load = cell.load;
    const std::size_t way = random.Below(10);
    if (way >= 5) {
        in.tool.HeldByRobot = 0;
        in.wobj.HeldByRobot = 1;
    } else if (way >= 3) {
        in.wobj = WobjOnUnit(random.Whole(1, 2), in.wobj.OFrame);
    }
    if (way == 8) in.wobj.HeldByRobot = 0;
    if (way == 9) in.tool.HeldByRobot = 2;
}

// Directions and steps of a jog.
inline void DrawJog(SeededRandom& random, CallInputs& in)
{
    for (int i = random.Whole(1, 2); i > 0; --i) in.dir.Slot[random.Below(6)] = random.Below(2) == 0 ? 1 : -1;
    in.steps[0] = random.Uniform(0.0, 2.0);
    in.steps[1] = random.Uniform(0.0, 20.0);
    in.steps[2] = random.Uniform(0.0, 5.0);
}

// Within reach when the forward call succeeds; as drawn otherwise.
inline void FindTarget(CallInputs& in)
{
    static_cast<void>(Kine_JointToWobjPos(&in.joints, &in.tool, &in.wobj, &in.load, in.poses.data()));
}

}  // namespace detail

// Records that most calls accept, for the arm and cell that the library is set up for.
inline CallInputs PlausibleInputs(SeededRandom& random, const TrialCell& cell)
{
    using detail::OneOf;
    CallInputs in;
    in.joints = RandomJoints(cell.armType, random);
    in.lower = RandomJoints(cell.armType, random);
    for (KinePose& pose : in.poses) {
        pose.Frame = AnyFrame(random);
        pose.Cfg1 = random.Whole(-2, 1);
        pose.Cfg2 = random.Whole(-2, 1);
        pose.Cfg3 = random.Whole(-2, 1);
        pose.Cfg4 = random.Whole(0, 7);
        for (double& extAxis : pose.ExtAxis) extAxis = random.Uniform(-170.0, 170.0);
    }
    for (KineFrame& frame : in.frames) frame = AnyFrame(random);
    detail::DrawHolding(random, in);
    detail::DrawJog(random, in);
    for (double& coordinate : in.centre) coordinate = random.Uniform(-500.0, 500.0);
    in.length = random.Uniform(-10.0, 1000.0);
    in.mode = OneOf(random, {-2, -1, 1, 2, 3, 4, 5, 2, 4, 5, 0, 6, detail::kMostNegative});
    in.index = OneOf(random, {0, 1, 1, 2, 2, -1, 3, detail::kMostNegative, detail::kMostPositive});
    in.axis = OneOf(random, {1, 2, 2, 0, 3, detail::kMostNegative, detail::kMostPositive});
    in.kind = static_cast<std::uint32_t>(random.Below(4));

    in.armType = cell.armType;
    in.arm = cell.arm;
    in.unitCount = static_cast<std::uint32_t>(random.Below(5));
    in.extAxisCount = static_cast<std::uint32_t>(random.Below(8));
    in.enable = random.Below(8) == 0 ? 0 : 1;
    in.unit = random.Below(2) == 0 ? cell.carrier : cell.positioner;
    in.extAxis = random.AnyBits<KineExtAxisParam>();

    detail::FindTarget(in);
    return in;
}

namespace detail {

// Joints near a singularity and taught points that no frame comes from.
inline void Degenerate(SeededRandom& random, CallInputs& in)
{
    KineFrame& p0 = in.poses[0].Frame;
    KineFrame& p1 = in.poses[1].Frame;
    KineFrame& p2 = in.poses[2].Frame;
    switch (random.Below(4)) {
        case 0:  // the same twice
            in.poses[random.Below(6)] = in.poses[random.Below(6)];
            break;
        case 1:  // on a line
            for (const auto coordinate : kCoordinates) {
                p2.*coordinate = 2.0 * p1.*coordinate - p0.*coordinate;
            }
            break;
        case 2:  // on a tiny circle
            p1 = p2 = p0;
            p1.X += 0.01;
            p2.Y += 0.01;
            break;
        default:  // elbow and wrist straight, or nearly
            in.joints.Axis[1] = OneOf(random, {0.0, 180.0, -180.0, 1e-4});
            in.joints.Axis[4] = OneOf(random, {0.0, 1e-4});
            FindTarget(in);
    }
}

// A bit or a number here and there.
inline void SpoilRecords(SeededRandom& random, CallInputs& in)
{
    const auto maybe = [&](auto& record) {
        if (random.Below(2) == 0) Spoil(random, record);
    };
    maybe(in.joints);
    maybe(in.lower);
    maybe(in.poses);
    maybe(in.frames);
    maybe(in.tool);
    maybe(in.wobj);
    maybe(in.load);
    maybe(in.dir);
    maybe(in.steps);
    maybe(in.centre);
    maybe(in.length);
    maybe(in.arm);
    maybe(in.unit);
}

// Setup that is accepted and makes later calls fail.
inline void SpoilSetup(SeededRandom& random, CallInputs& in)
{
    if (random.Below(8) == 0) in.armType = static_cast<std::uint32_t>(random.Below(8));
    if (random.Below(2) == 0) in.arm.SixAxis.alpha1 += random.Uniform(-30.0, 30.0);
    if (random.Below(2) == 0) in.arm.SixAxis.d5 += random.Uniform(-30.0, 30.0);
    if (random.Below(2) == 0) in.unit.AxisFrame[random.Below(2)] = {};
}

}  // namespace detail

// The same spoiled: by bits and numbers here and there, by points that coincide, by null pointers; or nothing
// but random bits.
inline CallInputs SpoiledInputs(SeededRandom& random, const TrialCell& cell)
{
    CallInputs in = PlausibleInputs(random, cell);
    switch (random.Below(8)) {
        case 0: in = random.AnyBits<CallInputs>(); [[fallthrough]];
        case 1: in.missing = static_cast<std::uint32_t>(random.Bits() & random.Bits() & random.Bits()); break;
        case 2:
        case 3: detail::Degenerate(random, in); break;
        case 4: detail::SpoilSetup(random, in); break;
        default: detail::SpoilRecords(random, in);
    }
    return in;
}

// Three good ones to one that is spoiled.
inline std::vector<CallInputs> DrawInputs(SeededRandom& random, const TrialCell& cell, std::size_t count)
{
    std::vector<CallInputs> inputs;
    for (std::size_t i = 0; i < count; ++i) {
        inputs.push_back(i % 4 == 3 ? SpoiledInputs(random, cell) : PlausibleInputs(random, cell));
    }
    return inputs;
}

// ---- Reading calls -------------------------------------------------------------------------------------

struct ReadingCall
{
    std::size_t place;  // in kExportCalls
    const CallInputs* in;
};

// Every export that only reads the configuration, on every input. The inputs must outlive the calls.
inline std::vector<ReadingCall> ReadingCalls(std::span<const CallInputs> inputs)
{
    std::vector<ReadingCall> calls;
    for (const CallInputs& in : inputs) {
        for (std::size_t place = kSetupCount; place < kExportCount; ++place) calls.push_back({place, &in});
    }
    return calls;
}

inline void MakeCall(const ReadingCall& call, CallResults& out)
{
    MakeCall(kExportCalls[call.place], *call.in, out);
}

}  // namespace kine::test
