// Queries and forward calls of arm types 4 and 4110 through the exports.
#include <gtest/gtest.h>

#include <cmath>

#include "support/four_axis_calls.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

KineArmConfig ConfigOf(std::initializer_list<double> axes)
{
    const KineJoint joints = MakeJoints(axes);
    KineArmConfig config = Untouched<KineArmConfig>();
    EXPECT_EQ(Kine_GetArmType(&joints, &config), KINE_OK);
    return config;
}

bool IsConfig(const KineArmConfig& c, std::int32_t c1, std::int32_t c2, std::int32_t c3, std::int32_t c4)
{
    return c.Cfg1 == c1 && c.Cfg2 == c2 && c.Cfg3 == c3 && c.Cfg4 == c4;
}

TEST(FourAxisQueries, configuration_of_type_4)
{
    Initialise(4, Scara());
    EXPECT_TRUE(IsConfig(ConfigOf({500, 30, 0, 100}), 1, 0, 0, 1));
    EXPECT_TRUE(IsConfig(ConfigOf({500, 0, 0, -0.1}), -1, 0, 0, -1));
    EXPECT_TRUE(IsConfig(ConfigOf({500, -30, 0, -450.1}), -1, 0, 0, -6));
}

TEST(FourAxisQueries, configuration_of_type_4110)
{
    Initialise(4110, Scara());
    EXPECT_TRUE(IsConfig(ConfigOf({100, 370, 0, -100}), -1, 1, 4, -2));
    EXPECT_TRUE(IsConfig(ConfigOf({-10, -10, 0, 0}), 1, -1, -1, 0));
    const KineJoint joints = MakeJoints({100, 370, 0, -100});
    const KineJoint copy = joints;
    KineArmConfig config{};
    ASSERT_EQ(Kine_GetArmType(&joints, &config), KINE_OK);
    EXPECT_TRUE(SameBits(joints, copy));  // the wrap of axis 2 stays inside
}

TEST(FourAxisQueries, validity_of_type_4_looks_at_cfg4_only)
{
    Initialise(4, Scara());
    KineJoint upper = MakeJoints({200, 200, 200, 100});      // axis 4: quarter 1
    KineJoint lower = MakeJoints({-200, -200, -200, -100});  // quarter -2
    ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
    const struct
    {
        KineArmConfig config;
        KineResult code;
    } cases[] = {{{99, 99, 99, 3}, KINE_OK},
                 {{INT32_MIN, INT32_MAX, INT32_MIN, -4}, KINE_OK},
                 {{1, 0, 0, 4}, KINE_ERR_CONFIG},
                 {{1, 0, 0, -5}, KINE_ERR_CONFIG},
                 {{1, 0, 0, INT32_MAX}, KINE_ERR_CONFIG},
                 {{1, 0, 0, INT32_MIN}, KINE_ERR_CONFIG}};
    for (const auto& c : cases) {
        const KinePose pose = Target(0, 0, 0, 0, c.config);
        EXPECT_EQ(Kine_IsArmTypeValid(&pose), c.code) << c.config.Cfg4;
    }
}

TEST(FourAxisQueries, validity_of_type_4110_looks_at_cfg2_to_cfg4)
{
    Initialise(4110, Scara());
    KineJoint upper = MakeJoints({100, 200, 999, 300});     // quarters 1, 2 and 3 of axes 1, 2, 4
    KineJoint lower = MakeJoints({-10, -100, -999, -200});  // -1, -2, -3
    ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
    const struct
    {
        KineArmConfig config;
        KineResult code;
    } cases[] = {{{99, 3, 4, 5}, KINE_OK},        {{-99, -3, -4, -5}, KINE_OK},
                 {{1, 4, 0, 0}, KINE_ERR_CONFIG}, {{1, -4, 0, 0}, KINE_ERR_CONFIG},
                 {{1, 0, 5, 0}, KINE_ERR_CONFIG}, {{1, 0, -5, 0}, KINE_ERR_CONFIG},
                 {{1, 0, 0, 6}, KINE_ERR_CONFIG}, {{1, 0, 0, -6}, KINE_ERR_CONFIG}};
    for (const auto& c : cases) {
        const KinePose pose = Target(0, 0, 0, 0, c.config);
        EXPECT_EQ(Kine_IsArmTypeValid(&pose), c.code)
            << c.config.Cfg2 << " " << c.config.Cfg3 << " " << c.config.Cfg4;
    }
}

TEST(FourAxisQueries, singularity_is_0_or_0xFFFFFFFF)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Initialise(type, Scara());
        const struct
        {
            double q2;
            std::uint32_t kind;
            KineResult code;
        } cases[] = {{0.0, 0, KINE_SINGULAR},    {-0.573, 0, KINE_SINGULAR}, {1.09, 1, KINE_SINGULAR},
                     {1.11, 1, KINE_OK},         {2.99, 2, KINE_SINGULAR},   {3.01, 2, KINE_OK},
                     {179.9, 0, KINE_OK},        {180.1, 0, KINE_SINGULAR},  {0.0, 3, KINE_OK},
                     {-181.0, 1, KINE_SINGULAR}, {90.0, 2, KINE_OK},         {kNan, 0, KINE_OK}};
        for (const auto& c : cases) {
            const KineJoint joints = MakeJoints({10, c.q2, 0, 0});
            EXPECT_EQ(Kine_IsSingularity(&joints, c.kind), c.code) << c.q2 << " " << c.kind;
        }
    }
}

TEST(FourAxisQueries, vision_pose_is_flat_and_without_axis_4)
{
    Initialise(4, Scara());
    const KineJoint joints = MakeJoints({30, 45, 777, 123, 5, 6, 7, 8});
    KinePose pose = Untouched<KinePose>();
    ASSERT_EQ(Kine_FKineVision(&joints, &pose), KINE_OK);
    // 325 cos 30 + 275 cos 75 and 325 sin 30 + 275 sin 75.
    EXPECT_NEAR(pose.Frame.X, 352.633494, 1e-6);
    EXPECT_NEAR(pose.Frame.Y, 428.129602, 1e-6);
    EXPECT_EQ(pose.Frame.Z, 0.0);
    EXPECT_NEAR(pose.Frame.A, 75.0, 1e-12);
    EXPECT_EQ(pose.Frame.B, 0.0);
    EXPECT_EQ(pose.Frame.C, 0.0);
    EXPECT_EQ(pose.Cfg1, 1);
    EXPECT_EQ(pose.Cfg4, 1);
    for (const double ext : pose.ExtAxis) EXPECT_EQ(ext, 0.0);
}

TEST(FourAxisQueries, vision_pose_of_type_4110_takes_axis_2_as_the_elbow)
{
    Initialise(4110, Scara());
    const KineJoint joints = MakeJoints({30, 45, 777, 123});
    KinePose pose{};
    ASSERT_EQ(Kine_FKineVision(&joints, &pose), KINE_OK);
    EXPECT_NEAR(pose.Frame.X, 352.633494, 1e-6);
    EXPECT_NEAR(pose.Frame.A, 75.0, 1e-12);
    EXPECT_EQ(pose.Cfg1, -1);
    // The tool point adds half a turn: 325 cos 30 - 275 cos 75.
    const KinePose base = BasePose({30, 45, 777, 123}, HeldTool());
    EXPECT_NEAR(base.Frame.X, 2 * 325 * std::cos(std::acos(-1.0) / 6) - 352.633494, 1e-6);
}

TEST(FourAxisQueries, forward_sees_the_callers_axis_2_in_every_step)
{
    // Axis 2 a turn further: another number, the same place.
    Initialise(4110, TiltedScara());
    const KinePose once = BasePose({20, 10, 100, 30}, HeldTool({10, 20, 30, 40, 0, 0}));
    const KinePose twice = BasePose({20, 370, 100, 30}, HeldTool({10, 20, 30, 40, 0, 0}));
    EXPECT_EQ(once.Cfg3, 0);
    EXPECT_EQ(twice.Cfg3, 4);
    EXPECT_EQ(once.Cfg1, twice.Cfg1);
    EXPECT_NEAR(once.Frame.X, twice.Frame.X, 1e-9);
    EXPECT_NEAR(once.Frame.Y, twice.Frame.Y, 1e-9);
    EXPECT_NEAR(once.Frame.A, twice.Frame.A, 1e-9);
}

TEST(FourAxisQueries, a_load_does_not_bend_the_arm)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, TiltedScara());
        const KinePose empty = BasePose({20, 50, 100, 30}, HeldTool());
        const KinePose loaded = BasePose({20, 50, 100, 30}, HeldTool(), MakeLoad(80, 10, 20, 30));
        EXPECT_TRUE(SameBits(empty, loaded));
    }
}

TEST(FourAxisQueries, tool_angles_b_and_c_count_in_the_flange_only)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, TiltedScara());
        const KineFrame flat{10, 20, 30, 40, 0, 0};
        const KineFrame tipped{10, 20, 30, 40, 25, -35};
        EXPECT_TRUE(SameBits(BasePose({20, 50, 100, 30}, HeldTool(flat)),
                             BasePose({20, 50, 100, 30}, HeldTool(tipped))));
        const KineJoint joints = MakeJoints({20, 50, 100, 30});
        const KineTool tool = HeldTool(tipped);
        const KineWobj wobj = FixedWobj();
        const KineLoad load{};
        KinePose pose{};
        ASSERT_EQ(Kine_JointToFlangePos(&joints, &tool, &wobj, &load, &pose), KINE_OK);
        EXPECT_NEAR(pose.Frame.B, 25.0, 1e-12);
        EXPECT_NEAR(pose.Frame.C, -35.0, 1e-12);
    }
}

TEST(FourAxisQueries, not_a_number_in_a_used_axis_is_passed_on)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, Scara());
        EXPECT_TRUE(std::isnan(BasePose({kNan, 50, 100, 30}, HeldTool()).Frame.X));
        EXPECT_TRUE(std::isnan(BasePose({20, kNan, 100, 30}, HeldTool()).Frame.Y));
        EXPECT_TRUE(std::isnan(BasePose({20, 50, kNan, 30}, HeldTool()).Frame.Z));
        EXPECT_TRUE(std::isnan(BasePose({20, 50, 100, kNan}, HeldTool()).Frame.A));
        EXPECT_EQ(BasePose({20, 50, 100, kNan}, HeldTool()).Cfg4, INT32_MIN);
        EXPECT_FALSE(std::isnan(BasePose({20, 50, 100, 30, kNan, kNan, kNan, kNan}, HeldTool()).Frame.X));
    }
}

}  // namespace
}  // namespace kine::test
