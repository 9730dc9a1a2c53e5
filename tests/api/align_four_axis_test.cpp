// Alignment of the four-axis arms: they cannot tilt, so that their heading follows the turn.
#include <gtest/gtest.h>

#include <vector>

#include "support/motion_cells.h"
#include "support/naive_align.h"

using namespace kine::test;

// Solutions for several numbers of the turn are the same one here, and the first of them counts: Cfg4 = 0.
// The solve for 0, 1 and 2 gives the same bits while axis 4 lies between pi - 2 rad (65.4 degrees) and 90
// degrees, where taking pi / 2 and pi off and adding them again is exact.
class FourAxisAlign : public ::testing::Test
{
protected:
    static std::vector<MovedArm> Arms() { return {MovedScara(), MovedScara4110()}; }

    // Heading 95 degrees and the 20 of the tool: 115.
    static MotionRequest Upright(const MovedArm& arm)
    {
        MotionRequest request = ToolOnRobot(arm);
        request.tool.TFrame = {0.0, 0.0, 150.0, 20.0, 0.0, 0.0};
        return request;
    }
};

TEST_F(FourAxisAlign, the_tool_of_a_four_axis_arm_is_upright_already)
{
    for (const MovedArm& arm : Arms()) {
        Initialise(arm);
        MotionRequest uprightWobj = WobjOnRobot(arm);
        uprightWobj.wobj = HeldWobj({20.0, 35.0, 110.0, -30.0, 0.0, 0.0}, {15.0, -10.0, 5.0, 10.0, 0.0, 0.0});
        for (MotionRequest request : {Upright(arm), ToolOnRobot(arm), uprightWobj}) {
            for (const int32_t mode : {2, 5}) {
                SCOPED_TRACE(::testing::Message() << arm.name << ", mode " << mode);
                request.mode = mode;
                const MotionOutcome outcome = Align(request);
                ExpectOutcome(outcome, KINE_OK);
                EXPECT_TRUE(IsJoints(outcome.target, arm.start, 1e-8, 4));
            }
        }
    }
}

// A work object turned by A about the vertical and then tilted by 30 degrees about its Y: the smallest turn
// of the vertical to its Z axis is about that Y, and takes a heading d off A to atan2(sin d, cos 30 cos d)
// off A.
TEST_F(FourAxisAlign, axis_4_follows_the_heading_of_the_tool_tilted_with_its_work_object)
{
    for (const MovedArm& arm : Arms()) {
        Initialise(arm);
        MotionRequest request = Upright(arm);
        for (const double d : {20.0, -15.0, 0.0}) {
            request.wobj =
                FixedWobj({0.0, 0.0, 0.0, 115.0 - d, 0.0, 0.0}, {50.0, 60.0, 70.0, 0.0, 30.0, 0.0});
            const double heading = InDegrees(
                std::atan2(std::sin(InRadians(d)), std::cos(InRadians(30.0)) * std::cos(InRadians(d))));
            for (const int32_t mode : {4, -1}) {
                SCOPED_TRACE(::testing::Message() << arm.name << ", mode " << mode << ", d " << d);
                request.mode = mode;
                KineJoint expected = arm.start;
                expected.Axis[3] += heading - d;
                const MotionOutcome outcome = Align(request);
                ExpectOutcome(outcome, KINE_OK);
                EXPECT_TRUE(IsJoints(outcome.target, expected, 1e-8, 4));
            }
        }
    }
}

// World mode on a carrier tilted by 30 degrees about its Y: the vertical of the base is nearest to that of
// the world, the base turned by -30 degrees about Y.
TEST_F(FourAxisAlign, axis_4_follows_the_heading_on_a_tilted_carrier)
{
    for (const MovedArm& arm : Arms()) {
        Initialise(arm);
        const KineMechUnit carrier = LinearUnit({100.0, 0.0, 0.0, 0.0, 30.0, 0.0}, {}, 2);
        PutRobotOn(carrier);
        MotionRequest request = Upright(arm);
        request.mode = 5;
        const double heading = InDegrees(
            std::atan2(std::sin(InRadians(115.0)), std::cos(InRadians(30.0)) * std::cos(InRadians(115.0))));
        KineJoint expected = arm.start;
        expected.Axis[3] += heading - 115.0;
        const MotionOutcome outcome = Align(request);
        ExpectOutcome(outcome, KINE_OK);
        EXPECT_TRUE(IsJoints(outcome.target, expected, 1e-8, 4));
        request.mode = 2;
        EXPECT_TRUE(IsJoints(Align(request).target, arm.start, 1e-8, 4));
    }
}

// The frame of a held work object is tilted in the flange, but the arm gives it as upright: the procedure
// then takes the flange for tilted, in base and world mode too.
TEST_F(FourAxisAlign, a_tilted_held_work_object_follows_the_procedure_step_by_step)
{
    for (const MovedArm& arm : Arms()) {
        Initialise(arm);
        MotionRequest request = WobjOnRobot(arm);
        request.tool.TFrame = {500.0, 150.0, 300.0, 40.0, 12.0, 0.0};
        for (const int32_t mode : {2, 5, 4, -1}) {
            SCOPED_TRACE(::testing::Message() << arm.name << ", mode " << mode);
            request.mode = mode;
            const MotionOutcome outcome = ExpectAligns(arm, request, StandingCell(request));
            // Where the turn is the same for the numbers tried, see above.
            EXPECT_GT(outcome.target.Axis[3], 65.5);
            EXPECT_LT(outcome.target.Axis[3], 90.0);
        }
    }
}
