// Setting up arm types 4 and 4110 through the exports.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "support/four_axis_calls.h"
#include "support/guarded_memory.h"

namespace kine::test {
namespace {

KineResult InitWith(std::uint32_t type, double l1, double l2, double lead)
{
    KineKinematicParam param{};
    param.FourAxis.Link1Length = l1;
    param.FourAxis.Link2Length = l2;
    param.FourAxis.ScrewLead = lead;
    return Kine_InitKinematicParam(type, &param);
}

bool IsReady()
{
    const KineJoint joints{};
    KineArmConfig config{};
    return Kine_GetArmType(&joints, &config) == KINE_OK;
}

TEST(FourAxisSetup, a_length_at_its_bound_is_accepted_and_below_it_0x6000)
{
    const double bound = 1e-5;
    const double below = std::nextafter(bound, 0.0);
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        EXPECT_EQ(InitWith(type, bound, bound, bound), KINE_OK);
        EXPECT_TRUE(IsReady());
        EXPECT_EQ(InitWith(type, below, 1.0, 1.0), KINE_ERR_MODEL_PARAM);
        EXPECT_FALSE(IsReady());
        EXPECT_EQ(InitWith(type, 1.0, below, 1.0), KINE_ERR_MODEL_PARAM);
        EXPECT_EQ(InitWith(type, 1.0, 0.0, 1.0), KINE_ERR_MODEL_PARAM);
        EXPECT_EQ(InitWith(type, 1.0, 1.0, below), KINE_ERR_MODEL_PARAM);
        EXPECT_EQ(InitWith(type, std::nan(""), 1.0, 1.0), KINE_OK);
    }
}

TEST(FourAxisSetup, null_parameters_are_0x6000)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        EXPECT_EQ(Kine_InitKinematicParam(type, nullptr), KINE_ERR_MODEL_PARAM);
        EXPECT_FALSE(IsReady());
    }
}

TEST(FourAxisSetup, nothing_is_printed)
{
    EXPECT_EQ(PrintedBy([] {
                  (void)InitWith(4, 1.0, 1.0, 1.0);
                  (void)InitWith(4110, 0.0, 1.0, 1.0);
              }),
              "");
}

TEST(FourAxisSetup, a_record_of_96_bytes_is_enough)
{
    const KineKinematicParam param = TiltedScara();
    const GuardedBytes record(&param, 96);
    const ForbiddenBytes gap(record.As<unsigned char>() + 32, 32);
    for (const std::uint32_t type : kFourAxisTypes) {
        EXPECT_EQ(Kine_InitKinematicParam(type, record.As<KineKinematicParam>()), KINE_OK);
        EXPECT_TRUE(IsReady());
    }
}

TEST(FourAxisSetup, the_unread_bytes_do_not_count)
{
    KineKinematicParam dirty = TiltedScara();
    auto* bytes = reinterpret_cast<unsigned char*>(&dirty);
    std::memset(bytes + 32, 0xFF, 32);
    std::memset(bytes + 96, 0xFF, sizeof dirty - 96);
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, TiltedScara());
        const KinePose clean = BasePose({30, 40, 500, 60}, HeldTool());
        Initialise(type, dirty);
        EXPECT_TRUE(SameBits(BasePose({30, 40, 500, 60}, HeldTool()), clean));
    }
}

TEST(FourAxisSetup, the_arm_types_keep_their_parameters_apart)
{
    // Each start takes the parameters it is given, whatever the other arm had before.
    KineKinematicParam other = Scara();
    other.FourAxis.Link1Length = 500.0;
    Initialise(4, Scara());
    Initialise(4110, other);
    EXPECT_NEAR(BasePose({0, -180, 0, 0}, HeldTool()).Frame.X, 775.0, 1e-10);
    Initialise(4, Scara());
    EXPECT_NEAR(BasePose({0, 0, 0, 0}, HeldTool()).Frame.X, 600.0, 1e-10);
}

TEST(FourAxisSetup, default_limits_never_bind)
{
    // +-999 rad of axis 4: 635 quarters above, 636 below, and 2 to spare.
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, Scara());
        KinePose pose{};
        pose.Cfg1 = 1;
        pose.Cfg4 = 637;  // 2 * 999 / pi = 635.98
        EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_OK);
        pose.Cfg4 = 638;
        EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_CONFIG);
        pose.Cfg4 = -638;  // -635.98 - 1
        EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_OK);
        pose.Cfg4 = -639;
        EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_CONFIG);
    }
}

TEST(FourAxisSetup, an_empty_range_of_an_axis_is_opened)
{
    Initialise(4, Scara());
    KineJoint upper{}, lower{};
    for (double& axis : upper.Axis) axis = 100.0;
    for (double& axis : lower.Axis) axis = -100.0;
    upper.Axis[3] = lower.Axis[3] = 10.0;
    ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
    KinePose pose{};
    pose.Cfg4 = 637;
    EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_OK);
}

}  // namespace
}  // namespace kine::test
