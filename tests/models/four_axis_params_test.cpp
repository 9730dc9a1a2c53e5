// Reading, checking and storing the parameter record of the four-axis arms.
#include "models/four_axis_params.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "support/guarded_memory.h"
#include "support/math_compare.h"
#include "support/naive_four_axis.h"
#include "support/naive_transform.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

constexpr double kBound = 1e-5;

FourAxisParams Filled()
{
    FourAxisParams params{};
    std::array<unsigned char, sizeof params> bytes;
    bytes.fill(0x5A);
    std::memcpy(&params, bytes.data(), sizeof params);
    return params;
}

bool SameBlock(const FourAxisParams& a, const FourAxisParams& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

KineResult InitWith(double l1, double l2, double lead)
{
    NaiveArm arm;
    arm.l1 = l1;
    arm.l2 = l2;
    arm.lead = lead;
    const KineKinematicParam param = ParamOf(arm);
    FourAxisParams params{};
    return InitFourAxisParams(4, 4, &param, params);
}

TEST(FourAxisParams, every_length_comes_from_its_offset)
{
    KineKinematicParam param{};
    const double doubles[12] = {11.0, 12.0, 13.0, 14.0, -1, -2, -3, -4, 15.0, 16.0, 17.0, 18.0};
    std::memcpy(&param, doubles, sizeof doubles);
    FourAxisParams params = Filled();
    ASSERT_EQ(InitFourAxisParams(4, 4, &param, params), KINE_OK);
    EXPECT_EQ(params.l1, 11.0);
    EXPECT_EQ(params.l2, 12.0);
    EXPECT_EQ(params.z0, 13.0);
    EXPECT_EQ(params.lead, 14.0);
    // Tilts about X of link 1 and 2, then about Y of link 1 and 2: about X first.
    ExpectNear(params.tilt1, ToHom(TurnXDeg(15.0) * TurnYDeg(17.0)).r, 1e-15);
    ExpectNear(params.tilt2, ToHom(TurnXDeg(16.0) * TurnYDeg(18.0)).r, 1e-15);
}

TEST(FourAxisParams, limits_are_zero_after_init)
{
    const KineKinematicParam param = ParamOf({});
    FourAxisParams params = Filled();
    ASSERT_EQ(InitFourAxisParams(4, 4, &param, params), KINE_OK);
    EXPECT_EQ(params.upperLimit, (FourAngles{0, 0, 0, 0}));
    EXPECT_EQ(params.lowerLimit, (FourAngles{0, 0, 0, 0}));
}

TEST(FourAxisParams, a_foreign_arm_type_is_0x6000_and_changes_nothing)
{
    const KineKinematicParam param = ParamOf({});
    for (const std::uint32_t own : {4U, 4110U}) {
        for (const std::uint32_t type : {0U, 3U, 4U, 5U, 6U, 4110U, 4111U, 0xFFFFFFFFU}) {
            if (type == own) continue;
            FourAxisParams params = Filled();
            EXPECT_EQ(InitFourAxisParams(own, type, &param, params), KINE_ERR_MODEL_PARAM);
            EXPECT_TRUE(SameBlock(params, Filled()));
        }
    }
}

TEST(FourAxisParams, a_foreign_arm_type_is_found_before_a_bad_length)
{
    NaiveArm arm;
    arm.l1 = 0.0;
    const KineKinematicParam param = ParamOf(arm);
    FourAxisParams params = Filled();
    EXPECT_EQ(InitFourAxisParams(4, 4110, &param, params), KINE_ERR_MODEL_PARAM);
    EXPECT_TRUE(SameBlock(params, Filled()));  // a bad length would have stored the lengths
}

TEST(FourAxisParams, null_is_0x6000_and_changes_nothing)
{
    FourAxisParams params = Filled();
    EXPECT_EQ(InitFourAxisParams(4, 4, nullptr, params), KINE_ERR_MODEL_PARAM);
    EXPECT_TRUE(SameBlock(params, Filled()));
}

TEST(FourAxisParams, each_length_may_be_exactly_its_bound)
{
    EXPECT_EQ(InitWith(kBound, 1.0, 1.0), KINE_OK);
    EXPECT_EQ(InitWith(1.0, kBound, 1.0), KINE_OK);
    EXPECT_EQ(InitWith(1.0, 1.0, kBound), KINE_OK);
    const double above = std::nextafter(kBound, 1.0);
    EXPECT_EQ(InitWith(above, above, above), KINE_OK);
}

TEST(FourAxisParams, each_length_just_below_its_bound_is_0x6000)
{
    for (const double bad : {std::nextafter(kBound, 0.0), 0.0, -0.0, -1.0, -400.0}) {
        EXPECT_EQ(InitWith(bad, 1.0, 1.0), KINE_ERR_MODEL_PARAM) << bad;
        EXPECT_EQ(InitWith(1.0, bad, 1.0), KINE_ERR_MODEL_PARAM) << bad;
        EXPECT_EQ(InitWith(1.0, 1.0, bad), KINE_ERR_MODEL_PARAM) << bad;
    }
    EXPECT_EQ(InitWith(0.0, 0.0, 0.0), KINE_ERR_MODEL_PARAM);
}

TEST(FourAxisParams, a_length_that_is_not_a_number_passes)
{
    // "Below the bound" is false for NaN.
    EXPECT_EQ(InitWith(kNan, 1.0, 1.0), KINE_OK);
    EXPECT_EQ(InitWith(1.0, kNan, 1.0), KINE_OK);
    EXPECT_EQ(InitWith(1.0, 1.0, kNan), KINE_OK);
    EXPECT_EQ(InitWith(kNan, 0.0, 1.0), KINE_ERR_MODEL_PARAM);
}

TEST(FourAxisParams, the_height_may_be_anything)
{
    for (const double z0 : {-300.0, 0.0, 1e300, kNan}) {
        NaiveArm arm;
        arm.z0 = z0;
        const KineKinematicParam param = ParamOf(arm);
        FourAxisParams params{};
        EXPECT_EQ(InitFourAxisParams(4, 4, &param, params), KINE_OK) << z0;
    }
}

TEST(FourAxisParams, after_a_bad_length_the_lengths_stay_and_the_rest_is_zero)
{
    NaiveArm arm = SteepArm();
    arm.lead = 0.0;
    const KineKinematicParam param = ParamOf(arm);
    FourAxisParams params = Filled();
    EXPECT_EQ(InitFourAxisParams(4110, 4110, &param, params), KINE_ERR_MODEL_PARAM);
    FourAxisParams expected{};
    expected.l1 = arm.l1;
    expected.l2 = arm.l2;
    expected.z0 = arm.z0;
    EXPECT_TRUE(SameBlock(params, expected));
}

TEST(FourAxisParams, both_arm_types_store_the_same)
{
    const KineKinematicParam param = ParamOf(SteepArm());
    FourAxisParams type4{}, type4110{};
    ASSERT_EQ(InitFourAxisParams(4, 4, &param, type4), KINE_OK);
    ASSERT_EQ(InitFourAxisParams(4110, 4110, &param, type4110), KINE_OK);
    EXPECT_TRUE(SameBlock(type4, type4110));
}

TEST(FourAxisParams, bytes_in_the_gap_and_behind_the_view_have_no_effect)
{
    const KineKinematicParam clean = ParamOf(SteepArm());
    KineKinematicParam dirty = clean;
    auto* bytes = reinterpret_cast<unsigned char*>(&dirty);
    std::memset(bytes + 32, 0xFF, 32);
    std::memset(bytes + 96, 0xFF, sizeof dirty - 96);
    FourAxisParams a{}, b{};
    ASSERT_EQ(InitFourAxisParams(4, 4, &clean, a), KINE_OK);
    ASSERT_EQ(InitFourAxisParams(4, 4, &dirty, b), KINE_OK);
    EXPECT_TRUE(SameBlock(a, b));
}

TEST(FourAxisParams, a_record_of_96_bytes_is_enough)
{
    const KineKinematicParam param = ParamOf(SteepArm());
    const GuardedBytes record(&param, 96);
    FourAxisParams params{};
    EXPECT_EQ(InitFourAxisParams(4, 4, record.As<KineKinematicParam>(), params), KINE_OK);
    EXPECT_EQ(params.lead, 25.0);
}

TEST(FourAxisParams, the_gap_of_the_record_is_not_read)
{
    const KineKinematicParam param = ParamOf(SteepArm());
    const GuardedBytes record(&param, 96);
    const ForbiddenBytes gap(record.As<unsigned char>() + 32, 32);
    FourAxisParams params{};
    EXPECT_EQ(InitFourAxisParams(4, 4, record.As<KineKinematicParam>(), params), KINE_OK);
    EXPECT_EQ(params.l2, 375.0);
}

}  // namespace
}  // namespace kine::test
