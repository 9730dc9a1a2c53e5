// Axis limits bound the configuration a target may ask for and nothing else.
#include <gtest/gtest.h>

#include "six_axis_cases.h"

namespace kine::test {
namespace {

struct Arm
{
    std::uint32_t type;
    KineKinematicParam param;
};

void SetLimits(double size)
{
    KineJoint upper{}, lower{};
    for (double& axis : upper.Axis) axis = size;
    for (double& axis : lower.Axis) axis = -size;
    ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
}

TEST(AxisLimits, results_do_not_depend_on_them)
{
    SeededRandom random(5001);
    for (const Arm& arm : {Arm{6, CalibratedWristArm()}, Arm{4, TiltedScara()}, Arm{4110, TiltedScara()}}) {
        for (int i = 0; i < 200; ++i) {
            ASSERT_EQ(Kine_InitKinematicParam(arm.type, &arm.param), KINE_OK);
            // Up to 250 degrees; limits of 100 degrees leave room for the numbers of up to 270.
            KineJoint q = RegularJoints(random, arm.param.SixAxis, 250.0);
            if (arm.type != 6)
                q = MakeJoints(
                    {random.Uniform(-170, 170), random.Uniform(20, 160), 100, random.Uniform(-170, 170)});
            SCOPED_TRACE(::testing::Message() << arm.type << " " << i << " " << q);
            const KineTool tool = HeldTool(RandomFrame(random, 50.0, 80.0));
            const KineWobj wobj = FixedWobj();
            const KineLoad load{};
            KinePose free{}, bound{};
            KineJoint freeJoints{}, boundJoints{};
            ASSERT_EQ(Kine_JointToWobjPos(&q, &tool, &wobj, &load, &free), KINE_OK);
            const KineResult freeCode = Kine_WobjPosToJoint(&free, &tool, &wobj, &load, &freeJoints);
            SetLimits(100.0);
            ASSERT_EQ(Kine_JointToWobjPos(&q, &tool, &wobj, &load, &bound), KINE_OK);
            EXPECT_TRUE(SameBits(free, bound));
            EXPECT_EQ(Kine_WobjPosToJoint(&bound, &tool, &wobj, &load, &boundJoints), freeCode);
            EXPECT_EQ(freeCode, KINE_OK);
            EXPECT_TRUE(SameBits(freeJoints, boundJoints));
            const KineResult singular = Kine_IsSingularity(&q, 2);
            SetLimits(3.0);
            EXPECT_EQ(Kine_IsSingularity(&q, 2), singular);
        }
    }
}

}  // namespace
}  // namespace kine::test
