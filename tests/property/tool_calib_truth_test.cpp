// Tools from taught poses: a known tool touches a known point, and the calibrations find it again. The poses
// come from joints that really touch, see support/taught_touches.h; then the calibrated frame goes into a
// tool and the same joints have to meet in one point.
#include "support/taught_touches.h"
#include "support/tool_calib_calls.h"

namespace kine::test {
namespace {

// The same joints, seen from a stationary tool: what was the tool is the held object now.
Rig HeldPast(const TaughtCell& cell, const KineFrame& stationary)
{
    Rig rig{cell.tool, HeldWobj(cell.tool.TFrame)};
    rig.tool.HeldByRobot = 0;
    rig.tool.TFrame = stationary;
    return rig;
}

// The held tip seen from the stationary tool.
Point TipInStationary(const KineJoint& joints, const Rig& rig)
{
    return PositionOf(RigidInverse(MatrixOf(TaughtBy(Kine_JointToWobjPos, joints, rig).Frame)));
}

// The flange in the base while the carrier stands, or in the world while it moves.
TouchPlan DrawPlan(SeededRandom& random, std::size_t touches, bool axes = false)
{
    return {touches, random.Whole(0, 1) == 1, axes, {}};
}

// With the calibrated frame in the tool, the first `count` joints meet in the touched point.
void ExpectOneTip(const TaughtCell& cell, const FlangeSet& set, std::size_t count, const KineFrame& frame)
{
    TaughtCell calibrated = cell;
    calibrated.tool.TFrame = frame;
    // Without the height of the tool the point is that much lower.
    const double missing = cell.IsFourAxis() ? cell.tool.TFrame.Z : 0.0;
    const Point first = PositionOf(TaughtBy(set.call, set.joints[0], TipOf(cell)));
    for (std::size_t i = 0; i < count; ++i) {
        const Point tip = PositionOf(TaughtBy(set.call, set.joints[i], TipOf(calibrated)));
        EXPECT_TRUE(IsPoint(tip, {first[0], first[1], first[2] - missing})) << "touch " << i;
    }
}

// What the poses of this arm can tell about its tool.
KineFrame Known(const TaughtCell& cell, KineFrame frame)
{
    if (cell.IsFourAxis()) frame.Z = 0.0;
    return frame;
}

void ExpectToolPointFound(SeededRandom& random, const TaughtCell& cell, const ToolCalib& call)
{
    const FlangeSet set = TouchOnePoint(random, cell, DrawPlan(random, call.poses));
    const ToolCalibOutcome found = Solved(call, {set.poses});
    EXPECT_TRUE(IsPointFrame(found.frame, PositionOf(Known(cell, cell.tool.TFrame)), kTruthMm));
    if (call.reports) ExpectNoSpread(found.report);
    ExpectOneTip(cell, set, call.poses, found.frame);
}

TEST(Kine_CalcGripToolPrm_3P, poses_of_a_known_tool_recover_its_point)
{
    ForBothFamilies(7001, [](SeededRandom& random, const TaughtCell& cell) {
        ExpectToolPointFound(random, cell, kGrip3P);
    });
}

TEST(Kine_CalcGripToolPrm_5P, poses_of_a_known_tool_recover_its_point)
{
    ForTaughtCells(7002, SixAxisTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        ExpectToolPointFound(random, cell, kGrip5P);
    });
}

TEST(Kine_CalcGripToolPrm_Scara2P, poses_of_a_known_tool_recover_its_point)
{
    ForTaughtCells(7003, FourAxisTaughtArms(), 0.0, 0.0, [](SeededRandom& random, const TaughtCell& cell) {
        ExpectToolPointFound(random, cell, kScara2P);
    });
}

// An arm that bends stands elsewhere without the load of its tool, and by how much depends on its joints.
TEST(Kine_CalcGripToolPrm_3P, poses_without_the_load_of_the_tool_miss_its_point)
{
    const TaughtArm bending = {"wrist_calibrated", KINE_ARM_SIX_AXIS, CalibratedWristArm()};
    ForTaughtCells(7011, {bending}, 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        const FlangeSet set = TouchOnePoint(random, cell, {});
        const auto p = TaughtBy(set.call, set.joints, {HeldTool(), FixedWobj()});
        const ToolCalibOutcome found = Solved(kGrip3P, {p});
        EXPECT_FALSE(IsNearFrame(found.frame, At(PositionOf(cell.tool.TFrame), {}), 1e-4));
    });
}

// Badly conditioned sets. The differences of turns of one to two degrees shrink a vector to as little as
// 0.024 of its length, those of headings of one to two degrees to 0.017, and the rounding of the positions
// grows by as much. The truth is still met, with less of a margin.
TEST(Kine_CalcGripToolPrm_5P, slight_turns_recover_the_point_too)
{
    ForTaughtCells(7009, SixAxisTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        const FlangeSet set = TouchOnePoint(random, cell, {5, false, false, {1.0, 2.0}});
        const ToolCalibOutcome found = Solved(kGrip5P, {set.poses});
        EXPECT_TRUE(IsPointFrame(found.frame, PositionOf(cell.tool.TFrame), kTruthMm));
    });
}

TEST(Kine_CalcGripToolPrm_Scara2P, slight_turns_recover_the_point_too)
{
    ForTaughtCells(7010, FourAxisTaughtArms(), 0.0, 0.0, [](SeededRandom& random, const TaughtCell& cell) {
        const FlangeSet set = TouchOnePoint(random, cell, {2, false, false, {0.5, 1.0}});
        const ToolCalibOutcome found = Solved(kScara2P, {set.poses});
        EXPECT_TRUE(IsPointFrame(found.frame, PositionOf(Known(cell, cell.tool.TFrame)), kTruthMm));
    });
}

TEST(Kine_CalcGripToolPrm_3PZX, poses_of_a_known_tool_recover_its_frame)
{
    ForBothFamilies(7004, [](SeededRandom& random, const TaughtCell& cell) {
        FlangeSet set = TouchOnePoint(random, cell, DrawPlan(random, 3, true));
        if (cell.IsFourAxis()) set.poses[4].Frame = DrawFrame(random, 1000.0, 80.0);
        const ToolCalibOutcome found = Solved(kGrip3PZX, {set.poses});
        EXPECT_TRUE(IsNearFrame(found.frame, Known(cell, cell.tool.TFrame)));
        ExpectNoSpread(found.report);
        ExpectOneTip(cell, set, 3, found.frame);
        // The calibrated tool stands as the true one does.
        TaughtCell calibrated = cell;
        calibrated.tool.TFrame = found.frame;
        const Mat4 pose = MatrixOf(TaughtBy(set.call, set.joints[3], TipOf(calibrated)).Frame);
        const Mat4 truth = MatrixOf(TaughtBy(set.call, set.joints[3], TipOf(cell)).Frame);
        EXPECT_TRUE(IsMatrix(RotationOf(pose), RotationOf(truth), 0.0, InRadians(kTruthDeg)));
    });
}

// A stationary tool at the touched point; the held tip touches it and points on its axes.
struct StationarySet
{
    KineFrame truth;
    Point onZ, onX;  // in the stationary tool
    std::vector<KineJoint> joints;
};

// First `touches` joints on the tool centre point in spread orientations, then the origin again, a point on
// Z and one towards X.
StationarySet TouchStationaryTool(SeededRandom& random, const TaughtCell& cell, std::size_t touches)
{
    StationarySet set{};
    set.truth = DrawFrame(random, 1.0, cell.IsFourAxis() ? 0.0 : 80.0);
    set.onZ = {0.0, 0.0, random.Uniform(50, 120)};
    set.onX = {random.Uniform(50, 120), 0.0, random.Uniform(-40, 40)};
    set.joints = DrawJoints(random, cell, [&](KineJoint like, const Mat4& tip) {
        set.truth = At(PositionOf(tip), set.truth);
        std::vector<Target> targets;
        const auto add = [&](const Mat4& target) {
            MoveExtAxes(random, cell, like);
            targets.push_back({target, like});
        };
        for (const Mat4& turn : DrawTurns(random, cell.IsFourAxis(), touches, {})) add(tip * turn);
        for (const Point& point : {Point{}, set.onZ, set.onX})
            add(Shift(MatrixOf(set.truth) * point) * RotationOf(tip) * SlightTurn(random, cell.IsFourAxis()));
        return targets;
    });
    return set;
}

TEST(Kine_CalcExtToolPrm_1P, touch_of_a_calibrated_tool_gives_the_stationary_point)
{
    ForTaughtCells(7005, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        const StationarySet set = TouchStationaryTool(random, cell, 0);
        const KinePose touch = TaughtBy(Kine_JointToWorldPos, set.joints[0], TipOf(cell));
        const ToolCalibOutcome found = Solved(kExt1P, {{touch}});
        EXPECT_TRUE(IsPointFrame(found.frame, PositionOf(set.truth), kTruthMm));
        EXPECT_TRUE(IsPoint(TipInStationary(set.joints[0], HeldPast(cell, found.frame)), {}));
    });
}

TEST(Kine_CalcExtToolPrm_1PZX, touches_of_a_calibrated_tool_recover_the_stationary_frame)
{
    ForTaughtCells(7006, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        const StationarySet set = TouchStationaryTool(random, cell, 0);
        auto p = TaughtBy(Kine_JointToWorldPos, set.joints, TipOf(cell));
        if (cell.IsFourAxis()) p[1].Frame = DrawFrame(random, 1000.0, 80.0);
        const ToolCalibOutcome found = Solved(kExt1PZX, {p});
        EXPECT_TRUE(IsNearFrame(found.frame, set.truth));
        const Rig rig = HeldPast(cell, found.frame);
        EXPECT_TRUE(IsPoint(TipInStationary(set.joints[0], rig), {}));
        EXPECT_TRUE(IsPoint(TipInStationary(set.joints[1], rig), set.onZ));
        EXPECT_TRUE(IsPoint(TipInStationary(set.joints[2], rig), set.onX));
    });
}

// The flange of a four-axis arm does not tell the height of what it carries: the point lies at the flange.
KineFrame AtFlangeHeight(const TaughtCell& cell, KineFrame frame)
{
    if (cell.IsFourAxis()) frame.Z -= cell.tool.TFrame.Z;
    return frame;
}

TEST(Kine_CalcExtToolPrm_3P, flange_poses_that_touch_recover_the_stationary_point)
{
    ForBothFamilies(7007, [](SeededRandom& random, const TaughtCell& cell) {
        const StationarySet set = TouchStationaryTool(random, cell, 3);
        const auto p = TaughtBy(Kine_JointToWorldPos, set.joints, BareFlange(cell.tool));
        const ToolCalibOutcome found = Solved(kExt3P, {{p[0], p[1], p[2]}});
        EXPECT_TRUE(IsPointFrame(found.frame, PositionOf(AtFlangeHeight(cell, set.truth)), kTruthMm));
        ExpectNoSpread(found.report);
        const double height = set.truth.Z - AtFlangeHeight(cell, set.truth).Z;
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_TRUE(
                IsPoint(TipInStationary(set.joints[i], HeldPast(cell, found.frame)), {0.0, 0.0, height}));
    });
}

TEST(Kine_CalcExtToolPrm_3PZX, flange_poses_that_touch_recover_the_stationary_frame)
{
    ForBothFamilies(7008, [](SeededRandom& random, const TaughtCell& cell) {
        const StationarySet set = TouchStationaryTool(random, cell, 3);
        auto p = TaughtBy(Kine_JointToWorldPos, set.joints, BareFlange(cell.tool));
        if (cell.IsFourAxis()) p[4].Frame = DrawFrame(random, 1000.0, 80.0);
        const ToolCalibOutcome found = Solved(kExt3PZX, {p});
        EXPECT_TRUE(IsNearFrame(found.frame, AtFlangeHeight(cell, set.truth)));
        ExpectNoSpread(found.report);
        const double height = set.truth.Z - AtFlangeHeight(cell, set.truth).Z;
        const std::array<Point, 3> taught = {Point{}, set.onZ, set.onX};
        for (std::size_t i = 0; i < 3; ++i) {
            const Point tip = TipInStationary(set.joints[3 + i], HeldPast(cell, found.frame));
            EXPECT_TRUE(IsPoint(tip, {taught[i][0], taught[i][1], taught[i][2] + height})) << i;
        }
    });
}

}  // namespace
}  // namespace kine::test
