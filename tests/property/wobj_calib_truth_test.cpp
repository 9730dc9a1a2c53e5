// Work objects from taught points: points of a known frame are touched by joints that really reach them, see
// support/taught_touches.h, and the calibrations find the frame again. Then it goes into a work object and
// the same joints have to give the points in it.
#include "support/taught_touches.h"
#include "support/wobj_calib_calls.h"

namespace kine::test {
namespace {

// Origin, a point on positive X, a point in the XY plane on the side of positive Y.
using Corner = std::array<Point, 3>;

Corner DrawCorner(SeededRandom& random)
{
    return {{{0.0, 0.0, 0.0},
             {random.Uniform(80, 180), 0.0, 0.0},
             {random.Uniform(-100, 100), random.Uniform(60, 150), 0.0}}};
}

// Three points of a circle about the origin, taught anticlockwise from its X axis on.
Corner DrawCircle(SeededRandom& random)
{
    const double radius = random.Uniform(60, 150);
    const Point onX = {radius, 0.0, 0.0};
    return {{onX, TurnZDeg(random.Uniform(60, 140)) * onX, TurnZDeg(random.Uniform(-140, -60)) * onX}};
}

// Joints whose tip touches points of a frame; its origin stands where the tip happens to be.
struct TouchedFrame
{
    KineFrame frame;
    Corner points;
    std::vector<KineJoint> joints;
};

TouchedFrame TouchFrame(SeededRandom& random, const TaughtCell& cell, const Corner& points,
                        double roll = 179.0)
{
    TouchedFrame touched{DrawFrame(random, 1.0, 80.0), points, {}};
    touched.frame.C = random.Uniform(-roll, roll);
    touched.joints = DrawJoints(random, cell, [&](KineJoint like, const Mat4& tip) {
        touched.frame = At(PositionOf(tip), touched.frame);
        std::vector<Target> targets;
        for (const Point& point : points) {
            MoveExtAxes(random, cell, like);
            targets.push_back({TipAt(random, cell, tip, MatrixOf(touched.frame) * point), like});
        }
        return targets;
    });
    return touched;
}

std::vector<KinePose> TipsInWorld(const TaughtCell& cell, const std::vector<KineJoint>& joints)
{
    return TaughtBy(Kine_JointToWorldPos, joints, TipOf(cell));
}

// The joints give the points in the calibrated work object.
void ExpectPointsIn(const Rig& rig, const std::vector<KineJoint>& joints, const Corner& points)
{
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point tip = PositionOf(TaughtBy(Kine_JointToWobjPos, joints[i], rig));
        EXPECT_TRUE(IsPoint(tip, points[i])) << "point " << i;
    }
}

void ExpectUserFrameFound(const TaughtCell& cell, const WobjCalib& call, const TouchedFrame& touched)
{
    const auto p = TipsInWorld(cell, touched.joints);
    const WobjCalibOutcome found = Solved(call, {{p[0], p[1], p[2]}});
    EXPECT_TRUE(IsNearFrame(found.frame, touched.frame));
    ExpectTilt(found.tilt, MatrixOf(touched.frame));
    ExpectPointsIn({cell.tool, FixedWobj(found.frame)}, touched.joints, touched.points);
}

TEST(Kine_CalcExtWobj_UserPrm_3P, touched_points_recover_the_user_frame)
{
    ForTaughtCells(7101, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        ExpectUserFrameFound(cell, kExtUser3P, TouchFrame(random, cell, DrawCorner(random)));
    });
}

// Y is horizontal and Z points up when the frame does not roll about X.
TEST(Kine_CalcExtWobj_UserPrm_2P, touched_points_recover_a_user_frame_with_a_horizontal_y_axis)
{
    ForTaughtCells(7102, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        ExpectUserFrameFound(cell, kUser2P, TouchFrame(random, cell, DrawCorner(random), 0.0));
    });
}

TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, touched_points_recover_the_user_frame_in_the_centre)
{
    ForTaughtCells(7103, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        ExpectUserFrameFound(cell, kCircle, TouchFrame(random, cell, DrawCircle(random)));
    });
}

// A user frame in which the touched frame has the given object frame.
KineFrame UserUnder(const KineFrame& object, const KineFrame& touched)
{
    return FrameOf(MatrixOf(touched) * RigidInverse(MatrixOf(object)));
}

TEST(Kine_CalcExtWobj_ObjPrm_3P, touched_points_recover_the_object_frame_in_its_user_frame)
{
    ForTaughtCells(7104, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        const TouchedFrame touched = TouchFrame(random, cell, DrawCorner(random));
        const KineFrame object = DrawFrame(random, 200.0, 80.0);
        const KineFrame user = UserUnder(object, touched.frame);
        const auto p = TipsInWorld(cell, touched.joints);
        const WobjCalibOutcome found = Solved(kExtObject, {{p[0], p[1], p[2]}, user});
        EXPECT_TRUE(IsNearFrame(found.frame, object));
        ExpectTilt(found.tilt, MatrixOf(touched.frame));
        ExpectPointsIn({cell.tool, FixedWobj(user, found.frame)}, touched.joints, touched.points);
    });
}

// ---- Held by the robot ---------------------------------------------------------------------------------

// Points given in the flange, moved to a stationary tip by joints of one posture. Only the position of a
// held frame is used on the way: the four-axis arms leave two of its angles out.
struct HeldTouches
{
    KineTool stationary;
    std::vector<KineJoint> joints;
};

HeldTouches TouchHeldPoints(SeededRandom& random, const TaughtCell& cell, const Corner& inFlange)
{
    HeldTouches held{cell.tool, {}};
    held.stationary.HeldByRobot = 0;
    held.joints = DrawUntilReached([&]() -> std::optional<std::vector<KineJoint>> {
        KineJoint like = MiddleJoints(random, cell);
        const Mat4 start = MatrixOf(TaughtBy(Kine_JointToWorldPos, like, BareFlange(cell.tool)).Frame);
        held.stationary.TFrame = At(start * inFlange[0], DrawFrame(random, 1.0, 80.0));
        const Mat4 tipTurn = RotationOf(MatrixOf(held.stationary.TFrame));
        std::vector<KineJoint> set;
        for (const Point& point : inFlange) {
            MoveExtAxes(random, cell, like);
            // The flange turns in the world, which the held object sees as the tip turning backward.
            const Mat4 turned = RotationOf(start) * SlightTurn(random, cell.IsFourAxis());
            const Rig rig{held.stationary, HeldWobj(At(point, {}))};
            const std::optional<KineJoint> joints = Aim(rig, RigidInverse(turned) * tipTurn, like);
            if (!joints) return {};
            set.push_back(*joints);
        }
        return set;
    });
    return held;
}

Corner InFrame(const KineFrame& frame, const Corner& points)
{
    const Mat4 m = MatrixOf(frame);
    return {m * points[0], m * points[1], m * points[2]};
}

// Four-axis arms: only a heading of a held frame counts when the arm moves, so the loop is closed with one.
double HeldTilt(const TaughtCell& cell) { return cell.IsFourAxis() ? 0.0 : 80.0; }

TEST(Kine_CalcGripWobj_UserPrm_3P, touched_points_recover_the_user_frame_in_the_flange)
{
    ForBothFamilies(7105, [](SeededRandom& random, const TaughtCell& cell) {
        for (const double tilt : {HeldTilt(cell), 80.0}) {
            const KineFrame user = DrawFrame(random, 120.0, tilt);
            const Corner points = DrawCorner(random);
            const HeldTouches held = TouchHeldPoints(random, cell, InFrame(user, points));
            const auto p = TaughtBy(Kine_JointToFlangePos, held.joints, {held.stationary, HeldWobj()});
            const WobjCalibOutcome found = Solved(kGripUser3P, {{p[0], p[1], p[2]}});
            EXPECT_TRUE(IsNearFrame(found.frame, user));
            ExpectTilt(found.tilt, MatrixOf(user));
            if (tilt == HeldTilt(cell))
                ExpectPointsIn({held.stationary, HeldWobj(found.frame)}, held.joints, points);
        }
    });
}

TEST(Kine_CalcGripWobj_ObjPrm_3P, touched_points_recover_the_object_frame_in_its_user_frame)
{
    ForBothFamilies(7106, [](SeededRandom& random, const TaughtCell& cell) {
        for (const double tilt : {HeldTilt(cell), 80.0}) {
            const KineFrame user = DrawFrame(random, 80.0, tilt);
            const KineFrame object = DrawFrame(random, 80.0, tilt);
            const Corner points = DrawCorner(random);
            const HeldTouches held = TouchHeldPoints(random, cell, InFrame(user, InFrame(object, points)));
            const auto p = TaughtBy(Kine_JointToFlangePos, held.joints, {held.stationary, HeldWobj()});
            const WobjCalibOutcome found = Solved(kGripObject, {{p[0], p[1], p[2]}, user});
            EXPECT_TRUE(IsNearFrame(found.frame, object));
            ExpectTilt(found.tilt, MatrixOf(object));
            if (tilt == HeldTilt(cell))
                ExpectPointsIn({held.stationary, HeldWobj(user, found.frame)}, held.joints, points);
        }
    });
}

// ---- On a mechanical unit ------------------------------------------------------------------------------

TEST(Kine_CalcUnFixWobj_ObjPrm_3P, points_touched_at_three_angles_recover_the_object_frame_on_the_unit)
{
    ForTaughtCells(7107, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        for (const int kind : {1, 2, 3}) {
            KineMechUnit unit = DrawCarrier(random, kind, 80.0);
            unit.AxisParamIndex[0] = 0;
            unit.AxisParamIndex[1] = 5;
            KineFrame object = DrawFrame(random, 1.0, 80.0);
            const Corner points = DrawCorner(random);
            const auto joints = DrawJoints(random, cell, [&](KineJoint like, const Mat4& tip) {
                // The unit stands close by, so that its points stay in reach while it moves.
                unit.AxisFrame[0] = At(tip * DrawCorner(random)[2], unit.AxisFrame[0]);
                object = At(RigidInverse(UnitMatrix(unit, like.ExtAxis)) * PositionOf(tip), object);
                std::vector<Target> targets;
                for (const Point& point : points) {
                    const Point inWorld = UnitMatrix(unit, like.ExtAxis) * (MatrixOf(object) * point);
                    targets.push_back({Shift(inWorld) * RotationOf(tip), like});
                    MoveExtAxes(random, cell, like);
                }
                return targets;
            });
            StoreUnit(kPositioner, unit);
            const auto p = TipsInWorld(cell, joints);
            const WobjCalibOutcome found = Solved(kUnFixObject, {{p[0], p[1], p[2]}, {}, kPositioner});
            EXPECT_TRUE(IsNearFrame(found.frame, object));
            ExpectTilt(found.tilt, MatrixOf(object));
            ExpectPointsIn({cell.tool, WobjOnUnit(kPositioner, found.frame)}, joints, points);
        }
    });
}

}  // namespace
}  // namespace kine::test
