// Four-axis arms in their cell, by hand: held work objects, units under the work object and the robot.
#include <gtest/gtest.h>

#include <cmath>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/four_axis_calls.h"

namespace kine::test {
namespace {

constexpr double kMm = 1e-9;
constexpr double kDeg = 1e-9;

// Joints that put the flange of the sample arm at (325, 275, 50) with a heading of 90 + axis 4 degrees.
KineJoint RightAngle(std::uint32_t type, double axis4)
{
    return MakeJoints({0.0, type == KINE_ARM_FOUR_AXIS ? 90.0 : -90.0, 0.0, axis4});
}

void Configure(std::uint32_t type)
{
    Initialise(type, Scara());
    ASSERT_EQ(Kine_SetMechUnitGlobalCfg(3, 6, 1), KINE_OK);
}

KinePose Forward(ForwardCall call, const KineJoint& joints, const KineTool& tool, const KineWobj& wobj)
{
    const KineLoad load{};
    KinePose pose{};
    EXPECT_EQ(call(&joints, &tool, &wobj, &load, &pose), KINE_OK);
    return pose;
}

void ExpectFrame(const KinePose& pose, double x, double y, double z, double a, double b, double c)
{
    EXPECT_NEAR(pose.Frame.X, x, kMm);
    EXPECT_NEAR(pose.Frame.Y, y, kMm);
    EXPECT_NEAR(pose.Frame.Z, z, kMm);
    EXPECT_NEAR(pose.Frame.A, a, kDeg);
    EXPECT_NEAR(pose.Frame.B, b, kDeg);
    EXPECT_NEAR(pose.Frame.C, c, kDeg);
}

// Solving the pose in the work object gives the joints back.
void ExpectRoundTrip(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj)
{
    const KinePose target = Forward(Kine_JointToWobjPos, joints, tool, wobj);
    const KineLoad load{};
    KineJoint solved{};
    ASSERT_EQ(Kine_WobjPosToJoint(&target, &tool, &wobj, &load, &solved), KINE_OK);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(solved.Axis[i], joints.Axis[i], kDeg) << "axis " << i + 1;
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(solved.ExtAxis[i], joints.ExtAxis[i]);
}

TEST(FourAxisCell, held_tool_over_a_fixed_work_object)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Configure(type);
        const KineJoint joints = RightAngle(type, -60.0);  // heading 30
        const KineTool tool = HeldTool({0, 0, -30, 15, 0, 0});
        const KineWobj wobj = FixedWobj({300, 200, 10, 90, 0, 0}, {5, 0, 0, 0, 0, 0});
        ExpectFrame(Forward(Kine_JointToBasePos, joints, tool, wobj), 325, 275, 20, 45, 0, 0);
        ExpectFrame(Forward(Kine_JointToWorldPos, joints, tool, wobj), 325, 275, 20, 45, 0, 0);
        ExpectFrame(Forward(Kine_JointToFlangePos, joints, tool, wobj), 0, 0, -30, 15, 0, 0);
        // The work object lies at (300, 205): (25, 70) seen along its axes turned by 90 is (70, -25).
        ExpectFrame(Forward(Kine_JointToWobjPos, joints, tool, wobj), 70, -25, 10, -45, 0, 0);
        ExpectRoundTrip(joints, tool, wobj);
    }
}

TEST(FourAxisCell, held_work_object_past_a_stationary_tool)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Configure(type);
        const KineJoint joints = RightAngle(type, 0.0);  // heading 90
        const KineTool tool = StationaryTool({325, 375, 60, 0, 0, 0});
        const KineWobj wobj = HeldWobj({40, 0, 0, 0, 0, 0}, {0, 0, -20, 0, 0, 0});
        // The work object: 40 mm along the heading (+Y) and 20 down: (325, 315, 30), turned by 90.
        // The tool is (0, 60, 30) from there: (60, 0, 30) along its axes.
        ExpectFrame(Forward(Kine_JointToWobjPos, joints, tool, wobj), 60, 0, 30, -90, 0, 0);
        ExpectFrame(Forward(Kine_JointToFlangePos, joints, tool, wobj), 100, 0, 10, -90, 0, 0);
        ExpectFrame(Forward(Kine_JointToBasePos, joints, tool, wobj), 325, 375, 60, 0, 0, 0);
        ExpectFrame(Forward(Kine_JointToWorldPos, joints, tool, wobj), 325, 375, 60, 0, 0, 0);
        ExpectRoundTrip(joints, tool, wobj);
    }
}

TEST(FourAxisCell, a_held_work_object_counts_with_position_and_heading_only)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Configure(type);
        const KineJoint joints = RightAngle(type, 10.0);
        const KineTool tool = StationaryTool({325, 375, 60, 0, 0, 0});
        const KinePose flat = Forward(Kine_JointToWobjPos, joints, tool, HeldWobj({40, 5, 6, 20, 0, 0}));
        const KinePose tipped = Forward(Kine_JointToWobjPos, joints, tool, HeldWobj({40, 5, 6, 20, 30, -40}));
        EXPECT_NEAR(flat.Frame.X, tipped.Frame.X, kMm);
        EXPECT_NEAR(flat.Frame.Z, tipped.Frame.Z, kMm);
        EXPECT_NEAR(flat.Frame.A, tipped.Frame.A, kDeg);
        EXPECT_NEAR(tipped.Frame.B, 0.0, kDeg);
        ExpectRoundTrip(joints, tool, HeldWobj({40, 5, 6, 20, 30, -40}));
    }
}

TEST(FourAxisCell, work_object_on_a_turntable)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Configure(type);
        StoreUnit(1, RotaryUnit({300, 275, 0, 0, 0, 0}, 2));
        KineJoint joints = RightAngle(type, -90.0);  // heading 0
        joints.ExtAxis[2] = 90.0;
        // 25 mm off the centre along X; the table turned by 90 sees that along its -Y.
        ExpectFrame(Forward(Kine_JointToWobjPos, joints, HeldTool(), WobjOnUnit(1)), 0, -25, 50, -90, 0, 0);
        ExpectRoundTrip(joints, HeldTool(), WobjOnUnit(1));
    }
}

TEST(FourAxisCell, work_object_on_two_rotary_axes)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Configure(type);
        StoreUnit(1, TwoRotaryUnit({300, 275, 0, 0, 0, 0}, {0, 10, 0, 0, 0, 0}, 2, 4));
        KineJoint joints = RightAngle(type, -90.0);
        joints.ExtAxis[2] = 30.0;
        joints.ExtAxis[4] = -30.0;
        // The axes cancel; the second centre is 10 mm along the turned Y of the first.
        const double x = 25.0 + 10.0 * std::sin(std::acos(-1.0) / 6);
        const double y = -10.0 * std::cos(std::acos(-1.0) / 6);
        ExpectFrame(Forward(Kine_JointToWobjPos, joints, HeldTool(), WobjOnUnit(1)), x, y, 50, 0, 0, 0);
        ExpectRoundTrip(joints, HeldTool(), WobjOnUnit(1));
    }
}

TEST(FourAxisCell, work_object_on_a_slide)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Configure(type);
        // The slide runs along +Y of the world; its second frame turns the table by 90 more, its place is not
        // used.
        StoreUnit(1, LinearUnit({300, 200, 0, 90, 0, 0}, {500, 500, 500, 90, 0, 0}, 2));
        KineJoint joints = RightAngle(type, -90.0);
        joints.ExtAxis[2] = 60.0;
        // Table at (300, 260) turned by 180: (25, 15) is seen as (-25, -15).
        const KinePose pose = Forward(Kine_JointToWobjPos, joints, HeldTool(), WobjOnUnit(1));
        EXPECT_NEAR(pose.Frame.X, -25, kMm);
        EXPECT_NEAR(pose.Frame.Y, -15, kMm);
        EXPECT_NEAR(std::fabs(pose.Frame.A), 180, kDeg);
        joints.Axis[3] += 20.0;
        ExpectRoundTrip(joints, HeldTool(), WobjOnUnit(1));
    }
}

TEST(FourAxisCell, robot_on_a_track)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Configure(type);
        StoreUnit(1, LinearUnit({0, 0, 100, 90, 0, 0}, {}, 2));
        StoreUnit(0, CarryingRobot({}, 1));
        KineJoint joints = RightAngle(type, -90.0);
        joints.ExtAxis[2] = 1000.0;
        // Base at (0, 1000, 100) turned by 90: (325, 275) of the base is (-275, 325) of the world.
        ExpectFrame(Forward(Kine_JointToBasePos, joints, HeldTool(), FixedWobj()), 325, 275, 50, 0, 0, 0);
        ExpectFrame(Forward(Kine_JointToWorldPos, joints, HeldTool(), FixedWobj()), -275, 1325, 150, 90, 0,
                    0);
        ExpectRoundTrip(joints, HeldTool(), FixedWobj({-200, 1300, 0, 20, 0, 0}));
    }
}

TEST(FourAxisCell, robot_on_a_turning_column_with_a_stationary_tool)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Configure(type);
        StoreUnit(2, RotaryUnit({10, 0, 0, 0, 0, 0}, 2));
        StoreUnit(0, CarryingRobot({}, 2));
        KineJoint joints = RightAngle(type, -90.0);
        joints.ExtAxis[2] = -90.0;
        // The base turned by -90: the flange (325, 275) stands at (10 + 275, -325), heading -90.
        const KineTool tool = StationaryTool({285, -425, 50, 0, 0, 0});
        ExpectFrame(Forward(Kine_JointToWobjPos, joints, tool, HeldWobj()), 100, 0, 0, 90, 0, 0);
        ExpectFrame(Forward(Kine_JointToBasePos, joints, tool, HeldWobj()), 425, 275, 50, 90, 0, 0);
        ExpectFrame(Forward(Kine_JointToWorldPos, joints, tool, HeldWobj()), 285, -425, 50, 0, 0, 0);
        ExpectRoundTrip(joints, tool, HeldWobj());
    }
}

TEST(FourAxisCell, forward_fails_before_initialisation_with_its_line)
{
    const KineKinematicParam bad{};
    for (const std::uint32_t type : kFourAxisTypes) {
        ASSERT_EQ(Kine_InitKinematicParam(type, &bad), KINE_ERR_MODEL_PARAM);
        const KineJoint joints{};
        const KineTool tool = HeldTool();
        const KineWobj wobj = FixedWobj();
        const KineLoad load{};
        KinePose pose = Untouched<KinePose>();
        const std::string printed = PrintedBy([&] {
            EXPECT_EQ(Kine_JointToWorldPos(&joints, &tool, &wobj, &load, &pose), KINE_ERR_NOT_INITIALISED);
        });
        EXPECT_EQ(printed, "FK Error 1:24577\n");
        EXPECT_TRUE(IsUntouched(pose));
    }
}

TEST(FourAxisCell, a_held_byte_of_2_on_both_sides_conflicts_inside)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        Configure(type);
        const KineJoint joints = RightAngle(type, 0.0);
        const KineTool tool = HeldTool();
        KineWobj wobj = FixedWobj();
        wobj.HeldByRobot = 2;
        const KineLoad load{};
        KinePose pose = Untouched<KinePose>();
        const std::string printed = PrintedBy([&] {
            EXPECT_EQ(Kine_JointToBasePos(&joints, &tool, &wobj, &load, &pose), KINE_ERR_HOLD_CONFLICT);
        });
        EXPECT_EQ(printed, "FK Error 2:24656\n");
        EXPECT_TRUE(IsUntouched(pose));
    }
}

}  // namespace
}  // namespace kine::test
