// Cells in which an engineer teaches points, set up through the exports: an arm, what it stands on and what
// it carries, drawn at random but with room to move. taught_touches.h finds the joints that touch.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "KineDll.h"
#include "support/calib_results.h"
#include "support/cell_setup.h"
#include "support/points.h"
#include "support/random_records.h"
#include "support/records.h"
#include "support/sample_arms.h"

namespace kine::test {

// ---- The cell ------------------------------------------------------------------------------------------

// Unit 1 carries the robot and moves by external axes 4 and 1; unit 2 is a positioner, moved by the others.
inline constexpr int kCarrier = 1;
inline constexpr int kPositioner = 2;

struct TaughtArm
{
    const char* name;
    std::uint32_t type;
    KineKinematicParam param;
};

struct TaughtCell
{
    TaughtArm arm{};
    KineMechUnit carrier{};  // UnitKind 0: the robot stands on the ground
    KineTool tool{};         // on the flange, with its load

    bool IsFourAxis() const { return arm.type != KINE_ARM_SIX_AXIS; }
};

inline std::vector<TaughtArm> SixAxisTaughtArms()
{
    return {{"wrist", KINE_ARM_SIX_AXIS, WristArm()},
            {"wrist_calibrated", KINE_ARM_SIX_AXIS, CalibratedWristArm()},
            {"puma_gravity", KINE_ARM_SIX_AXIS, PumaWithGravity()}};
}

inline std::vector<TaughtArm> FourAxisTaughtArms()
{
    return {{"scara", KINE_ARM_FOUR_AXIS, Scara()}, {"scara_4110", KINE_ARM_FOUR_AXIS_4110, Scara()}};
}

// With the four-axis arms whose poses leave their tilts out: the tip is where the pose says, but it is turned
// by a heading only, so that a point behind it cannot be found from such poses.
inline std::vector<TaughtArm> AllTaughtArms()
{
    std::vector<TaughtArm> arms = SixAxisTaughtArms();
    for (const TaughtArm& arm : FourAxisTaughtArms()) arms.push_back(arm);
    arms.push_back({"scara_tilted", KINE_ARM_FOUR_AXIS, TiltedScara()});
    arms.push_back({"scara_4110_tilted", KINE_ARM_FOUR_AXIS_4110, TiltedScara()});
    return arms;
}

inline void SetUp(const TaughtCell& cell)
{
    SetUnitCounts(0, 0);
    EXPECT_EQ(Kine_InitKinematicParam(cell.arm.type, &cell.arm.param), KINE_OK);
    SetUnitCounts(3, 6);
    const bool carried = cell.carrier.UnitKind != 0;
    StoreUnit(0, carried ? CarryingRobot({}, kCarrier) : KineMechUnit{});
    StoreUnit(kCarrier, cell.carrier);
}

// ---- Drawing -------------------------------------------------------------------------------------------

// A frame clear of B = +-90; with tilt 0 its Z axis is that of its reference.
inline KineFrame DrawFrame(SeededRandom& random, double reach, double tilt)
{
    KineFrame frame = RandomFrame(random, reach, tilt);
    if (tilt == 0.0) frame.C = 0.0;
    return frame;
}

// A unit of this kind, its axes tilted by up to tilt; kind 0 is none.
inline KineMechUnit DrawCarrier(SeededRandom& random, int kind, double tilt)
{
    const KineFrame first = DrawFrame(random, 600.0, tilt);
    const KineFrame second = DrawFrame(random, 150.0, tilt);
    if (kind == kLinearKind) return LinearUnit(first, second, 4);
    if (kind == kRotaryKind) return RotaryUnit(first, 4);
    if (kind == kTwoRotaryKind) return TwoRotaryUnit(first, second, 4, 1);
    return {};
}

// The carrier moves a little, so that the arm still reaches; the positioner turns anywhere.
inline void MoveExtAxes(SeededRandom& random, const TaughtCell& cell, KineJoint& joints)
{
    const double stroke = cell.carrier.UnitKind == kLinearKind ? 150.0 : 8.0;
    for (const std::size_t i : {4U, 1U}) joints.ExtAxis[i] = random.Uniform(-stroke, stroke);
    for (const std::size_t i : {0U, 2U, 3U, 5U}) joints.ExtAxis[i] = random.Uniform(-170, 170);
}

// Joints in the middle of the working range: the arm may still turn its tool and move some way.
inline KineJoint MiddleJoints(SeededRandom& random, const TaughtCell& cell)
{
    const double side = random.Whole(0, 1) == 1 ? 1.0 : -1.0;
    const double first = random.Uniform(-120, 120);
    KineJoint joints{};
    if (cell.IsFourAxis()) {
        // Arm type 4110 counts axis 2 from the folded elbow.
        const double elbow = side * random.Uniform(50, 130);
        const double folded = cell.arm.type == KINE_ARM_FOUR_AXIS_4110 ? 180.0 : 0.0;
        joints =
            MakeJoints({first, elbow - side * folded, random.Uniform(-500, 500), random.Uniform(-100, 100)});
    } else {
        joints =
            MakeJoints({first, random.Uniform(-40, -10), random.Uniform(-20, 30), random.Uniform(-60, 60),
                        side * random.Uniform(40, 80), random.Uniform(-150, 150)});
    }
    MoveExtAxes(random, cell, joints);
    return joints;
}

// Orientations about one point, the first being none: turns of this size about axes at right angles, or
// headings twice as far for the four-axis arms. With 35 to 55 degrees they are well spread: the differences
// of any two of them to the first, stacked, shorten no vector to less than 2 sin(35 / 2) = 0.6 of its length,
// nor lengthen one beyond 2 sin(55 / 2) * sqrt(2) = 1.3; those of headings lengthen all vectors alike.
struct TurnSize
{
    double leastDeg = 35.0, mostDeg = 55.0;
};

inline std::vector<Mat4> DrawTurns(SeededRandom& random, bool fourAxis, std::size_t count,
                                   const TurnSize& size)
{
    const Mat4 axes = MatrixOf(RandomFrame(random, 0.0, 89.0));
    const auto about = [&](const Mat4& turn) { return axes * turn * RigidInverse(axes); };
    const auto angle = [&] { return random.Uniform(size.leastDeg, size.mostDeg); };
    std::vector<Mat4> turns;
    if (fourAxis)
        turns = {Identity4(), TurnZDeg(2.0 * angle()), TurnZDeg(-2.0 * angle())};
    else
        turns = {Identity4(), about(TurnXDeg(angle())), about(TurnYDeg(angle())), about(TurnZDeg(angle())),
                 about(TurnXDeg(-angle()))};
    turns.resize(count, Identity4());
    return turns;
}

// A turn small enough for any arm in the middle of its range.
inline Mat4 SlightTurn(SeededRandom& random, bool fourAxis)
{
    const KineFrame turn = {
        0.0, 0.0, 0.0, random.Uniform(-15, 15), random.Uniform(-15, 15), random.Uniform(-15, 15)};
    return fourAxis ? TurnZDeg(turn.A) : MatrixOf(turn);
}

// Arms on the ground, on a track, on one and on two rotary axes that tilt them by up to carrierTilt degrees
// and move between the touches, with a tool of up to toolTilt.
template <class Check>
void ForTaughtCells(std::uint64_t seed, const std::vector<TaughtArm>& arms, double carrierTilt,
                    double toolTilt, Check check)
{
    SeededRandom random(seed);
    for (const TaughtArm& arm : arms) {
        for (int i = 0; i < 16; ++i) {
            SCOPED_TRACE(::testing::Message() << arm.name << " cell " << i);
            TaughtCell cell{arm, DrawCarrier(random, i % 4, carrierTilt), {}};
            cell.tool = HeldTool(DrawFrame(random, 100.0, toolTilt));
            cell.tool.TFrame.Z = random.Uniform(60, 180);
            cell.tool.TLoad = {random.Uniform(0.5, 4.0),
                               {random.Uniform(-50, 50), random.Uniform(-50, 50), random.Uniform(20, 120)},
                               {},
                               {}};
            SetUp(cell);
            check(random, cell);
        }
    }
}

// Both families where orientations count: four-axis arms tell headings only, so that the Z axes of their
// base, carrier and tool stay upright.
template <class Check>
void ForBothFamilies(std::uint64_t seed, Check check)
{
    ForTaughtCells(seed, SixAxisTaughtArms(), 40.0, 80.0, check);
    ForTaughtCells(seed, FourAxisTaughtArms(), 0.0, 0.0, check);
}

}  // namespace kine::test
