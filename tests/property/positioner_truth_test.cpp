// Axes of positioners and the base on a track from taught points: a mark turned by a known axis, or a fixed
// mark seen from a moving base, is touched by joints that really reach it, see support/taught_touches.h. The
// calibrations know no frame of the unit; what they find goes into it, and the mark has to stand still.
#include "support/positioner_calib_calls.h"
#include "support/taught_touches.h"

namespace kine::test {
namespace {

constexpr double kAxisTilt = 35.0;

Mat4 AxisTurned(const KineFrame& axis, double reading) { return MatrixOf(axis) * TurnZDeg(reading); }

// Three readings in the sense of the axis.
Values DrawReadings(SeededRandom& random, double first)
{
    const double second = first + random.Uniform(60, 130);
    return {first, second, second + random.Uniform(60, 130)};
}

bool IsWellTaught(const Mat4& axisAtZero, const Point& mark, const Values& readings)
{
    const double phase = InDegrees(std::atan2(mark[1], mark[0]));
    return IsWellPlaced(axisAtZero, phase + 0.5 * (readings[0] + readings[1]), 0.4, 0.4);
}

// A positioner close to where the tip is, with an axis frame to find.
KineFrame DrawAxis(SeededRandom& random, const Mat4& tip)
{
    const Point beside = {random.Uniform(-80, 80), random.Uniform(-80, 80), random.Uniform(-80, 80)};
    return At(Shift(PositionOf(tip)) * beside, DrawFrame(random, 1.0, kAxisTilt));
}

// The unit as the calibrations see it: its axes and what drives them, without a frame.
KineMechUnit WithoutFrames(KineMechUnit unit)
{
    for (KineFrame& frame : unit.AxisFrame) frame = {};
    return unit;
}

KineMechUnit DrawTwoAxisUnit(SeededRandom& random)
{
    const std::array<int, 4> free = {0, 2, 3, 5};
    const std::size_t first = random.Below(4);
    return TwoRotaryUnit({}, {}, free[first], free[(first + 1 + random.Below(3)) % 4]);
}

// ---- First axis ----------------------------------------------------------------------------------------

struct TurnedMark
{
    KineFrame axis;
    std::vector<KineJoint> joints;
};

// Joints that touch the mark, given in the axis, at three readings of the unit's first axis.
TurnedMark TouchTurnedMark(SeededRandom& random, const TaughtCell& cell, const KineMechUnit& unit,
                           const Point& mark)
{
    TurnedMark turned{};
    turned.joints = DrawJoints(random, cell, [&](KineJoint like, const Mat4& tip) {
        Values readings{};
        do {
            turned.axis = DrawAxis(random, tip);
            readings = DrawReadings(random, random.Uniform(-180, 180));
        } while (!IsWellTaught(MatrixOf(turned.axis), mark, readings));
        std::vector<Target> targets;
        for (const double reading : readings) {
            MoveExtAxes(random, cell, like);
            like.ExtAxis[unit.AxisParamIndex[0]] = reading;
            const Point point = AxisTurned(turned.axis, reading) * mark;
            targets.push_back({TipAt(random, cell, tip, point), like});
        }
        return targets;
    });
    return turned;
}

// On the unit with its calibrated frames the mark stays where it is, whatever the joints.
void ExpectMarkAt(const TaughtCell& cell, const KineMechUnit& unit, const std::vector<KineJoint>& joints,
                  const Point& mark)
{
    StoreUnit(kPositioner, unit);
    const Rig rig{cell.tool, WobjOnUnit(kPositioner)};
    for (const KineJoint& q : joints)
        EXPECT_TRUE(IsPoint(PositionOf(TaughtBy(Kine_JointToWobjPos, q, rig)), mark));
}

TEST(Kine_CalcPositionerJ1Prm_3P, mark_on_x_at_height_0_recovers_the_axis_frame)
{
    ForTaughtCells(7201, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        for (const uint16_t kind : {kRotaryKind, kTwoRotaryKind}) {
            KineMechUnit unit = DrawTwoAxisUnit(random);
            unit.UnitKind = kind;
            unit.AxisCount = static_cast<uint8_t>(kind - 1);
            const Point mark = {random.Uniform(60, 150), 0.0, 0.0};
            const TurnedMark turned = TouchTurnedMark(random, cell, unit, mark);
            StoreUnit(kPositioner, WithoutFrames(unit));
            const auto p = TaughtBy(Kine_JointToWorldPos, turned.joints, TipOf(cell));
            const KineFrame frame = Solved(kJ1, {{p[0], p[1], p[2]}, {}, kPositioner}).frame;
            EXPECT_TRUE(IsNearFrame(frame, turned.axis));
            unit.AxisFrame[0] = frame;
            unit.UnitKind = kRotaryKind;  // the mark rides on the first axis alone
            ExpectMarkAt(cell, unit, turned.joints, mark);
        }
    });
}

TEST(Kine_CalcPositionerJ1Prm_3P, mark_anywhere_gives_the_axis_frame_turned_to_the_mark_and_at_its_height)
{
    ForTaughtCells(7202, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        KineMechUnit unit = RotaryUnit({}, 0);
        const double radius = random.Uniform(60, 150);
        const double heading = random.Uniform(-180, 180);
        const double height = random.Uniform(-50, 50);
        const Mat4 axisFromMark = TurnZDeg(heading) * Shift(0.0, 0.0, height);
        const Point mark = axisFromMark * Point{radius, 0.0, 0.0};
        const TurnedMark turned = TouchTurnedMark(random, cell, unit, mark);
        StoreUnit(kPositioner, WithoutFrames(unit));
        const auto p = TaughtBy(Kine_JointToWorldPos, turned.joints, TipOf(cell));
        const KineFrame frame = Solved(kJ1, {{p[0], p[1], p[2]}, {}, kPositioner}).frame;
        EXPECT_TRUE(IsNearFrame(frame, FrameOf(MatrixOf(turned.axis) * axisFromMark)));
        unit.AxisFrame[0] = frame;
        ExpectMarkAt(cell, unit, turned.joints, {radius, 0.0, 0.0});
    });
}

// ---- Second axis ---------------------------------------------------------------------------------------

// Values of both axes of a unit.
struct Stance
{
    double first, second;
};

// The first axis turns while the second stands; nothing when the mark's circle lies badly.
std::vector<Stance> FirstAxisTurning(SeededRandom& random, const KineMechUnit& unit, const Point& mark)
{
    const Values readings = DrawReadings(random, random.Uniform(-180, 180));
    const double still = random.Uniform(-170, 170);
    const Point onFirst = AxisTurned(unit.AxisFrame[1], still) * mark;
    if (!IsWellTaught(MatrixOf(unit.AxisFrame[0]), onFirst, readings)) return {};
    return {{readings[0], still}, {readings[1], still}, {readings[2], still}};
}

// The second axis turns from start on while the first stands.
std::vector<Stance> SecondAxisTurning(SeededRandom& random, const KineMechUnit& unit, const Point& mark,
                                      double start)
{
    const Values readings = DrawReadings(random, start);
    const double still = random.Uniform(-170, 170);
    const Mat4 axis = AxisTurned(unit.AxisFrame[0], still) * MatrixOf(unit.AxisFrame[1]);
    if (!IsWellTaught(axis, mark, readings)) return {};
    return {{still, readings[0]}, {still, readings[1]}, {still, readings[2]}};
}

// Joints that touch a mark on the table of a unit whose frames are drawn here, in the stances drawn for them.
template <class DrawStances>
std::vector<KineJoint> TouchTable(SeededRandom& random, const TaughtCell& cell, KineMechUnit& unit,
                                  const Point& mark, DrawStances drawStances)
{
    return DrawJoints(random, cell, [&](KineJoint like, const Mat4& tip) {
        std::vector<Stance> stances;
        while (stances.empty()) {
            unit.AxisFrame[0] = DrawAxis(random, tip);
            unit.AxisFrame[1] = DrawFrame(random, 60.0, kAxisTilt);
            unit.AxisFrame[1].C /= 4.0;
            stances = drawStances();
        }
        std::vector<Target> targets;
        for (const Stance& stance : stances) {
            MoveExtAxes(random, cell, like);
            like.ExtAxis[unit.AxisParamIndex[0]] = stance.first;
            like.ExtAxis[unit.AxisParamIndex[1]] = stance.second;
            targets.push_back({TipAt(random, cell, tip, UnitMatrix(unit, like.ExtAxis) * mark), like});
        }
        return targets;
    });
}

TEST(Kine_CalcPositionerJnPrm_3P, reference_on_the_first_axis_recovers_the_second_axis_frame)
{
    ForTaughtCells(7203, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        for (const bool fromZero : {true, false}) {
            KineMechUnit unit = DrawTwoAxisUnit(random);
            const Point mark = {random.Uniform(60, 150), 0.0, 0.0};
            const double start = fromZero ? 0.0 : random.Uniform(-170, 170);
            const auto joints = TouchTable(random, cell, unit, mark,
                                           [&] { return SecondAxisTurning(random, unit, mark, start); });
            StoreUnit(kPositioner, WithoutFrames(unit));
            const auto p = TaughtBy(Kine_JointToWorldPos, joints, TipOf(cell));
            // Where the first axis stands, turned backward by the number of degrees taken as radians.
            const double first = p[0].ExtAxis[unit.AxisParamIndex[0]];
            const KineFrame reference = FrameOf(TurnZ(-start) * AxisTurned(unit.AxisFrame[0], first));
            const KineFrame frame = Solved(kJn, {{p[0], p[1], p[2]}, reference, kPositioner, 2}).frame;
            EXPECT_TRUE(IsNearFrame(frame, unit.AxisFrame[1]));
            unit.AxisFrame[1] = frame;
            ExpectMarkAt(cell, unit, joints, mark);
        }
    });
}

TEST(Kine_CalcPositionerJnPrm_3P, both_axes_calibrated_in_turn_hold_a_mark_of_the_table_still)
{
    ForTaughtCells(7204, AllTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        KineMechUnit unit = DrawTwoAxisUnit(random);
        const Point mark = {random.Uniform(-80, 80), random.Uniform(50, 100), random.Uniform(-40, 40)};
        const auto joints = TouchTable(random, cell, unit, mark, [&] {
            std::vector<Stance> stances = FirstAxisTurning(random, unit, mark);
            const std::vector<Stance> second = SecondAxisTurning(random, unit, mark, 0.0);
            if (stances.empty() || second.empty()) return std::vector<Stance>{};
            stances.insert(stances.end(), second.begin(), second.end());
            for (int i = 0; i < 2; ++i)
                stances.push_back({random.Uniform(-170, 170), random.Uniform(-170, 170)});
            return stances;
        });
        const auto p = TaughtBy(Kine_JointToWorldPos, joints, TipOf(cell));
        unit = WithoutFrames(unit);
        StoreUnit(kPositioner, unit);
        unit.AxisFrame[0] = Solved(kJ1, {{p[0], p[1], p[2]}, {}, kPositioner}).frame;
        const double first = p[3].ExtAxis[unit.AxisParamIndex[0]];
        const KineFrame reference = FrameOf(AxisTurned(unit.AxisFrame[0], first));
        unit.AxisFrame[1] = Solved(kJn, {{p[3], p[4], p[5]}, reference, kPositioner, 2}).frame;
        // The frames count their angles from the mark. The mark keeps its place on the table: on X, at the
        // radius of its circle about the second axis, height 0.
        ExpectMarkAt(cell, unit, joints, {std::hypot(mark[0], mark[1]), 0.0, 0.0});
    });
}

// ---- Base on a track -----------------------------------------------------------------------------------

TEST(Kine_CalcRobotBasePrm_3P, fixed_mark_touched_from_the_track_recovers_the_turn_of_the_base)
{
    ForTaughtCells(7205, AllTaughtArms(), 0.0, 80.0, [](SeededRandom& random, TaughtCell cell) {
        Track track = TouchFromTrack(random, cell);
        StoreUnit(kCarrier, WithoutFrames(track.unit));
        StoreAxisType(4, kLinearType);
        const auto p = TaughtBy(Kine_JointToBasePos, track.joints, TipOf(cell));
        const PositionerCalibOutcome found = Solved(kRobotBase, {{p[0], p[1], p[2]}, {}, kCarrier});
        EXPECT_TRUE(IsNearFrame(found.frame, track.unit.AxisFrame[1]));
        ExpectNoSpread(found.report);
        // With the turn in the track the mark stands still in the world, wherever the rail lies.
        track.unit.AxisFrame[1] = found.frame;
        StoreUnit(kCarrier, track.unit);
        const auto marks = TaughtBy(Kine_JointToWorldPos, track.joints, TipOf(cell));
        for (const KinePose& mark : marks) EXPECT_TRUE(IsPoint(PositionOf(mark), PositionOf(marks[0])));
    });
}

}  // namespace
}  // namespace kine::test
