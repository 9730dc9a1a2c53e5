// Positions to the work object from the world or the base, through the export.
#include <gtest/gtest.h>

#include <limits>

#include "support/cell_setup.h"
#include "support/pose_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

Mat4 CombinedMatrix(const KineWobj& wobj) { return MatrixOf(wobj.UFrame) * MatrixOf(wobj.OFrame); }

PoseRequest RandomRequest(SeededRandom& random)
{
    PoseRequest request = GoodPoseRequest(kCrdCall);
    request.pose.Frame = AnyFrame(random);
    request.wobj.UFrame = AnyFrame(random);
    request.wobj.OFrame = AnyFrame(random);
    request.tool.TFrame = AnyFrame(random);
    return request;
}

PoseRequest CrdRequest(int32_t mode)
{
    PoseRequest request = GoodPoseRequest(kCrdCall);
    request.mode = mode;
    return request;
}

// A table turned by its one rotary axis, and a rail, for the cells of the base conversion.
const KineMechUnit kTable = RotaryUnit({900.0, -400.0, 300.0, 10.0, 20.0, 30.0}, 0);
const KineMechUnit kRail =
    LinearUnit({-100.0, 50.0, 25.0, 5.0, -15.0, 25.0}, {0.0, 0.0, 0.0, 40.0, 0.0, 10.0}, 4);

}  // namespace

TEST(Kine_CrdPosToWobjPos_mode_minus_1, is_the_conversion_to_a_fixed_work_object)
{
    SetUpArm(WristArm());
    SeededRandom random(504);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        PoseRequest request = RandomRequest(random);
        request.mode = -1;
        request.wobj.HeldByRobot = static_cast<uint8_t>(i % 3);
        const KinePose result = Converted(kCrdCall, request);
        EXPECT_TRUE(
            IsFrame(result.Frame, RigidInverse(CombinedMatrix(request.wobj)) * MatrixOf(request.pose.Frame)));
        EXPECT_TRUE(SameBesideFrame(result, request.pose));
    }
}

TEST(Kine_CrdPosToWobjPos_mode_minus_1, needs_a_stationary_tool)
{
    SetUpArm(WristArm());
    for (const int held : {1, 2, 255}) {
        PoseRequest request = CrdRequest(-1);
        request.tool.HeldByRobot = static_cast<uint8_t>(held);
        ExpectRefused(kCrdCall, request, KINE_ERR_CRD_WOBJ);
        request.wobj.HeldByRobot = 1;
        ExpectRefused(kCrdCall, request, KINE_ERR_CRD_WOBJ);
    }
    // The second byte of the caller's tool is reserved: it does not say where the tool stands.
    PoseRequest request = CrdRequest(-1);
    const KinePose expected = Converted(kCrdCall, request);
    request.tool.Reserved[0] = 200;
    EXPECT_TRUE(SameBits(Converted(kCrdCall, request), expected));
}

TEST(Kine_CrdPosToWobjPos_mode_minus_1, takes_a_work_object_on_a_unit_as_its_object_frame)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    StoreUnit(2, kTable);
    PoseRequest request = CrdRequest(-1);
    request.wobj = WobjOnUnit(2, {5.0, 6.0, 7.0, 8.0, 9.0, 10.0});
    request.wobj.UFrame = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    EXPECT_TRUE(IsFrame(Converted(kCrdCall, request).Frame,
                        RigidInverse(MatrixOf(request.wobj.OFrame)) * MatrixOf(request.pose.Frame)));
}

TEST(Kine_CrdPosToWobjPos_other_modes, leave_the_pose_as_it_is)
{
    SetUpArm(WristArm());
    constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
    constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
    for (const int32_t mode : {0, 1, 2, 3, -3, 254, 255, 65534, 65535, kMin, kMax}) {
        for (const int held : {0, 1, 2}) {
            PoseRequest request = CrdRequest(mode);
            request.pose = FullPose({0.1, -0.2, 1e300, 180.0, -179.5, 33.3});
            request.tool.HeldByRobot = static_cast<uint8_t>(held);
            request.wobj.HeldByRobot = static_cast<uint8_t>(held);
            const KinePose result = Converted(kCrdCall, request);
            EXPECT_EQ(result.Frame.X, 0.1);
            EXPECT_EQ(result.Frame.Y, -0.2);
            EXPECT_EQ(result.Frame.Z, 1e300);
            // To radians and back.
            EXPECT_NEAR(result.Frame.A, 180.0, 1e-13);
            EXPECT_NEAR(result.Frame.B, -179.5, 1e-13);
            EXPECT_NEAR(result.Frame.C, 33.3, 1e-13);
            EXPECT_TRUE(SameBesideFrame(result, request.pose));
        }
    }
}

TEST(Kine_CrdPosToWobjPos_mode_minus_2, without_units_starts_from_the_world_origin)
{
    SetUpArm(WristArm());
    SeededRandom random(505);
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        PoseRequest request = RandomRequest(random);
        request.mode = -2;
        request.tool.HeldByRobot = 1;
        const KinePose held = Converted(kCrdCall, request);
        EXPECT_TRUE(
            IsFrame(held.Frame, RigidInverse(CombinedMatrix(request.wobj)) * MatrixOf(request.pose.Frame)));
        EXPECT_TRUE(SameBesideFrame(held, request.pose));

        // The pose is that of the held work object: the result is the stationary tool seen from it.
        request.tool.HeldByRobot = 0;
        request.wobj.HeldByRobot = 1;
        const KinePose stationary = Converted(kCrdCall, request);
        EXPECT_TRUE(IsFrame(stationary.Frame,
                            RigidInverse(MatrixOf(request.pose.Frame)) * MatrixOf(request.tool.TFrame)));
        EXPECT_TRUE(SameBesideFrame(stationary, request.pose));
    }
}

TEST(Kine_CrdPosToWobjPos_mode_minus_2, goes_through_every_kind_of_unit_at_the_axes_of_the_pose)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    const KineFrame first = {-300.0, 150.0, 80.0, 20.0, -10.0, 5.0};
    const KineFrame second = {40.0, -60.0, 120.0, -15.0, 25.0, -35.0};
    const KineMechUnit kinds[] = {LinearUnit(first, second, 4), RotaryUnit(first, 3),
                                  TwoRotaryUnit(first, second, 1, 5)};
    SeededRandom random(506);
    for (const KineMechUnit& carrier : kinds) {
        for (const KineMechUnit& positioner : kinds) {
            StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
            StoreUnit(1, carrier);
            StoreUnit(2, positioner);
            for (int i = 0; i < 50; ++i) {
                PoseRequest request = RandomRequest(random);
                request.mode = -2;
                request.tool.HeldByRobot = 1;
                for (double& value : request.pose.ExtAxis) value = random.Uniform(-400.0, 400.0);
                const Mat4 tcpInWorld =
                    UnitMatrix(carrier, request.pose.ExtAxis) * MatrixOf(request.pose.Frame);

                request.wobj.UFFix = 0;
                request.wobj.MechUnitIndex = 2;
                const Mat4 worldFromWobj =
                    UnitMatrix(positioner, request.pose.ExtAxis) * MatrixOf(request.wobj.OFrame);
                const KinePose moved = Converted(kCrdCall, request);
                EXPECT_TRUE(IsFrame(moved.Frame, RigidInverse(worldFromWobj) * tcpInWorld));
                EXPECT_TRUE(SameBesideFrame(moved, request.pose));

                // A byte of 2 is neither: no index is checked, the user frame is zero, the unit is asked.
                request.wobj.UFFix = 2;
                EXPECT_TRUE(SameBits(Converted(kCrdCall, request), moved));

                request.wobj.UFFix = 1;
                EXPECT_TRUE(IsFrame(Converted(kCrdCall, request).Frame,
                                    RigidInverse(CombinedMatrix(request.wobj)) * tcpInWorld));

                request.tool.HeldByRobot = 0;
                request.wobj.HeldByRobot = 1;
                EXPECT_TRUE(IsFrame(Converted(kCrdCall, request).Frame,
                                    RigidInverse(tcpInWorld) * MatrixOf(request.tool.TFrame)));
            }
        }
    }
}

TEST(Kine_CrdPosToWobjPos_mode_minus_2, continues_what_the_base_position_starts)
{
    for (const uint32_t type : {KINE_ARM_FOUR_AXIS, KINE_ARM_SIX_AXIS, KINE_ARM_FOUR_AXIS_4110}) {
        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(3, 6, 1), KINE_OK);
        const KineKinematicParam arm = type == KINE_ARM_SIX_AXIS ? WristArm() : Scara();
        ASSERT_EQ(Kine_InitKinematicParam(type, &arm), KINE_OK);
        SetUnitCounts(3, 6);
        StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
        StoreUnit(1, kRail);
        StoreUnit(2, kTable);
        KineJoint joints = MakeJoints({35.0, 25.0, 20.0, 40.0, 55.0, -70.0});
        joints.ExtAxis[0] = 33.0;
        joints.ExtAxis[4] = -150.0;
        PoseRequest request = CrdRequest(-2);
        request.tool = HeldTool({10.0, 20.0, 30.0, 40.0, 0.0, 0.0});
        request.wobj = WobjOnUnit(2, {5.0, 6.0, 7.0, 8.0, 9.0, 10.0});
        KinePose inWobj{};
        ASSERT_EQ(Kine_JointToBasePos(&joints, &request.tool, &request.wobj, &request.load, &request.pose),
                  KINE_OK);
        ASSERT_EQ(Kine_JointToWobjPos(&joints, &request.tool, &request.wobj, &request.load, &inWobj),
                  KINE_OK);
        const KinePose result = Converted(kCrdCall, request);
        EXPECT_TRUE(IsFrame(result.Frame, MatrixOf(inWobj.Frame))) << type;
        EXPECT_TRUE(SameBesideFrame(result, inWobj)) << type;
    }
}

TEST(Kine_CrdPosToWobjPos_mode_minus_2, returns_the_first_failing_step_without_a_line)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    StoreUnit(2, RotaryUnit({}, 0));  // at the origin: never set up
    PoseRequest request = CrdRequest(-2);
    request.tool.HeldByRobot = 1;
    request.wobj = WobjOnUnit(2);
    ExpectRefused(kCrdCall, request, KINE_ERR_AXIS_ORIGIN);
    request.wobj = WobjOnUnit(-1);
    ExpectRefused(kCrdCall, request, KINE_ERR_W2F_UNIT_KIND);
    request.wobj = WobjOnUnit(1);  // nothing stored there
    ExpectRefused(kCrdCall, request, KINE_ERR_W2F_UNIT_KIND);
    for (const int held : {1, 2, 255}) {
        request.wobj.HeldByRobot = static_cast<uint8_t>(held);
        ExpectRefused(kCrdCall, request, KINE_ERR_HOLD_CONFLICT);
    }
    request.tool.HeldByRobot = request.wobj.HeldByRobot = 0;
    ExpectRefused(kCrdCall, request, KINE_ERR_HOLD_CONFLICT);
    // Behind the mounting, whose unit is asked first.
    for (const int carrier : {1, 3, 255}) {
        StoreUnit(0, CarryingRobot(KineMechUnit{}, carrier));
        ExpectRefused(kCrdCall, request, KINE_ERR_F2W_UNIT_KIND);
    }
}
