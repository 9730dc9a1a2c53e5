// Joints that touch: what is on the robot and in the cell, joints whose tip really reaches a point, and the
// poses that the forward calls give for them.
//
// Truth comes first: a point of the world and what touches it are chosen, Kine_WobjPosToJoint finds joints,
// and every taught pose is what a forward call says of these joints. Joints whose tip misses its point by
// more than kTouchMm are not used.
#pragma once

#include <optional>
#include <stdexcept>
#include <vector>

#include "support/chain_calls.h"
#include "support/taught_cell.h"

namespace kine::test {

inline constexpr double kTouchMm = 1e-11;

// What is on the robot and what in the cell.
struct Rig
{
    KineTool tool = HeldTool();
    KineWobj wobj = FixedWobj();
};

// The flange is taught with the tool on it as it is, but for its frame: the tool's load bends the arm.
inline Rig BareFlange(KineTool tool)
{
    tool.TFrame = {};
    return {tool, FixedWobj()};
}

inline KinePose TaughtBy(ForwardCall call, const KineJoint& joints, const Rig& rig)
{
    const KineLoad none{};
    KinePose pose{};
    EXPECT_EQ(call(&joints, &rig.tool, &rig.wobj, &none, &pose), KINE_OK);
    return pose;
}

// Joints with the tool in the given pose of the work object, in the posture and with the external axes of
// the given ones. Nothing when that is out of reach or nearly singular. Four-axis arms keep to the heading.
inline std::optional<KineJoint> Aim(const Rig& rig, const Mat4& objectFromTip, const KineJoint& like)
{
    KineArmConfig config{};
    EXPECT_EQ(Kine_GetArmType(&like, &config), KINE_OK);
    KinePose target{FrameOf(objectFromTip), config.Cfg1, config.Cfg2, config.Cfg3, config.Cfg4, {}};
    for (std::size_t i = 0; i < 6; ++i) target.ExtAxis[i] = like.ExtAxis[i];
    const Point wanted = PositionOf(objectFromTip);
    const KineLoad none{};
    // The tilted four-axis arm stops within 1e-6 mm; aimed once more past its own miss it stops at rounding.
    for (int shot = 0; shot < 2; ++shot) {
        KineJoint joints{};
        if (Kine_WobjPosToJoint(&target, &rig.tool, &rig.wobj, &none, &joints) != KINE_OK) return {};
        if (Kine_IsSingularity(&joints, 2) != KINE_OK) return {};
        const Point reached = PositionOf(TaughtBy(Kine_JointToWobjPos, joints, rig));
        if (Distance(reached, wanted) <= kTouchMm) return joints;
        target.Frame.X += wanted[0] - reached[0];
        target.Frame.Y += wanted[1] - reached[1];
        target.Frame.Z += wanted[2] - reached[2];
    }
    return {};
}

// Draws until make() gives something. What the refused targets print is kept away.
template <class Make>
auto DrawUntilReached(Make make)
{
    decltype(make()) drawn;
    (void)PrintedBy([&] {
        for (int attempt = 0; attempt < 500 && !drawn; ++attempt) drawn = make();
    });
    if (!drawn) throw std::runtime_error("no joints found that touch");
    return *drawn;
}

// A pose of the tip in the world, and joints with the external axes to be used.
struct Target
{
    Mat4 worldFromTip;
    KineJoint like;
};

// Joints for the targets that targets(start, worldFromTip) makes out of a tip in the middle of the range.
template <class Targets>
std::vector<KineJoint> DrawJoints(SeededRandom& random, const TaughtCell& cell, Targets targets)
{
    const Rig rig{cell.tool, FixedWobj()};
    return DrawUntilReached([&]() -> std::optional<std::vector<KineJoint>> {
        const KineJoint start = MiddleJoints(random, cell);
        std::vector<KineJoint> set;
        for (const Target& target :
             targets(start, MatrixOf(TaughtBy(Kine_JointToWorldPos, start, rig).Frame))) {
            const std::optional<KineJoint> joints = Aim(rig, target.worldFromTip, target.like);
            if (!joints) return {};
            set.push_back(*joints);
        }
        return set;
    });
}

// The tip of the tool on the flange.
inline Rig TipOf(const TaughtCell& cell) { return {cell.tool, FixedWobj()}; }

inline std::vector<KinePose> TaughtBy(ForwardCall call, const std::vector<KineJoint>& set, const Rig& rig)
{
    std::vector<KinePose> poses;
    for (const KineJoint& joints : set) poses.push_back(TaughtBy(call, joints, rig));
    return poses;
}

// The tip at a point, turned a little against where it came from.
inline Mat4 TipAt(SeededRandom& random, const TaughtCell& cell, const Mat4& tip, const Point& point)
{
    return Shift(point) * RotationOf(tip) * SlightTurn(random, cell.IsFourAxis());
}

// ---- Taught sets ---------------------------------------------------------------------------------------

// Poses of the flange, in the base where the carrier stands still, in the world where it moves.
struct FlangeSet
{
    ForwardCall call;
    std::vector<KineJoint> joints;
    std::vector<KinePose> poses;
};

// Touches of one point. With axes, three poses more: the tool somewhere near in an orientation of its own,
// moved along its Z axis, and moved in its XZ plane towards X.
struct TouchPlan
{
    std::size_t touches = 3;
    bool carrierMoves = false;
    bool axes = false;
    TurnSize size{};
};

inline FlangeSet TouchOnePoint(SeededRandom& random, const TaughtCell& cell, const TouchPlan& plan)
{
    FlangeSet set{};
    set.call = plan.carrierMoves ? Kine_JointToWorldPos : Kine_JointToBasePos;
    set.joints = DrawJoints(random, cell, [&](KineJoint like, const Mat4& tip) {
        std::vector<Mat4> fromTip = DrawTurns(random, cell.IsFourAxis(), plan.touches, plan.size);
        if (plan.axes) {
            const std::array<Point, 3> moves = {
                {{random.Uniform(-40, 40), random.Uniform(-40, 40), random.Uniform(-40, 40)},
                 {0.0, 0.0, random.Uniform(50, 120)},
                 {random.Uniform(50, 120), 0.0, random.Uniform(-40, 40)}}};
            const auto moved = [&](const Mat4& from, const Point& by) {
                return from * Shift(by) * SlightTurn(random, cell.IsFourAxis());
            };
            const Mat4 origin = moved(Identity4(), moves[0]);
            fromTip.push_back(origin);
            fromTip.push_back(moved(origin, moves[1]));
            fromTip.push_back(moved(origin, moves[2]));
        }
        std::vector<Target> targets;
        for (const Mat4& tipFromTarget : fromTip) {
            if (plan.carrierMoves) MoveExtAxes(random, cell, like);
            targets.push_back({tip * tipFromTarget, like});
        }
        return targets;
    });
    set.poses = TaughtBy(set.call, set.joints, BareFlange(cell.tool));
    return set;
}

inline constexpr double kNoiseMm = 0.1;

// On every coordinate of every taught position.
inline void AddNoise(SeededRandom& random, std::vector<KinePose>& poses)
{
    for (KinePose& pose : poses) pose.Frame = At(PositionOf(pose) + AnyPoint(random, kNoiseMm), pose.Frame);
}

inline void ExpectNoisyReport(const KineCalibError& report, const KineCalibError& expected)
{
    ExpectReport(report, expected, kTruthMm);
    EXPECT_GT(report.Largest, 1e-4) << "noise must show";
}

struct Track
{
    KineMechUnit unit;
    std::vector<KineJoint> joints;
};

// The track moves the robot along X of its rail; the base stands on it turned about Z.
inline Track TouchFromTrack(SeededRandom& random, TaughtCell& cell)
{
    Track track{};
    const KineFrame turned = {0.0, 0.0, 0.0, random.Uniform(-179, 179), 0.0, 0.0};
    track.unit = LinearUnit(DrawFrame(random, 600.0, 40.0), turned, 4);
    cell.carrier = track.unit;
    SetUp(cell);
    track.joints = DrawJoints(random, cell, [&](KineJoint like, const Mat4& tip) {
        std::vector<Target> targets;
        const double start = like.ExtAxis[4];
        for (const double move : {0.0, random.Uniform(40, 150), random.Uniform(-150, -40)}) {
            like.ExtAxis[4] = start + move;
            targets.push_back({TipAt(random, cell, tip, PositionOf(tip)), like});
        }
        return targets;
    });
    return track;
}

}  // namespace kine::test
