#include "models/six_axis_params.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "support/guarded_memory.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::JustAbove;
using test::JustBelow;
using test::kInf;
using test::kNan;
using test::ParamsOf;

// Gaps of the record that no field owns.
struct Gap
{
    std::size_t begin, end;
};
constexpr Gap kGaps[] = {{56, 64}, {160, 192}};
constexpr std::size_t kRecordSize = 272;

void PutAt(KineKinematicParam& param, std::size_t offset, double value)
{
    std::memcpy(reinterpret_cast<unsigned char*>(&param) + offset, &value, sizeof value);
}

// A 3-4-5 arm in which every field has a value of its own.
KineKinematicParam SampleRecord()
{
    KineKinematicParam param{};
    const struct
    {
        std::size_t offset;
        double value;
    } fields[] = {{0, 100.0},   {8, 500.0},  {16, 300.0}, {24, 400.0}, {32, 80.0},  {40, 310.0},
                  {48, -7.0},   {64, 30.0},  {72, -30.0}, {80, 60.0},  {88, -60.0}, {96, 150.0},
                  {104, 120.0}, {112, 1.25}, {120, -1.5}, {128, 1.75}, {136, 2.25}, {144, 60.0},
                  {152, 30.0},  {192, 10.0}, {200, 20.0}, {208, 30.0}, {216, 40.0}, {224, 50.0},
                  {232, 60.0},  {240, 70.0}, {248, 2e5},  {256, 1e5},  {264, 4e4}};
    for (const auto& field : fields) PutAt(param, field.offset, field.value);
    return param;
}

TEST(InitSixAxisParams, of_another_arm_type_is_0x6000_and_changes_nothing)
{
    const KineKinematicParam param = SampleRecord();
    for (const std::uint32_t armType : {0U, 4U, 5U, 7U, 4110U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(armType);
        auto params = test::Untouched<SixAxisParams>();
        EXPECT_EQ(InitSixAxisParams(armType, &param, params), 0x6000U);
        EXPECT_TRUE(test::IsUntouched(params));
    }
}

TEST(InitSixAxisParams, of_a_null_record_is_0x6000_and_changes_nothing)
{
    auto params = test::Untouched<SixAxisParams>();
    EXPECT_EQ(InitSixAxisParams(6, nullptr, params), 0x6000U);
    EXPECT_TRUE(test::IsUntouched(params));
}

TEST(InitSixAxisParams, reads_the_lengths_at_their_offsets)
{
    const SixAxisParams params = ParamsOf(SampleRecord());
    EXPECT_EQ(params.a1, 100.0);
    EXPECT_EQ(params.a2, 500.0);
    EXPECT_EQ(params.a3, 300.0);
    EXPECT_EQ(params.d4, 400.0);
    EXPECT_EQ(params.d6, 80.0);
    EXPECT_EQ(params.d1, 310.0);
    EXPECT_EQ(params.lateralOffset, -7.0);
    EXPECT_EQ(params.d3, 1.25);
    EXPECT_EQ(params.d5, -1.5);
    EXPECT_EQ(params.a4, 1.75);
    EXPECT_EQ(params.a5, 2.25);
}

TEST(InitSixAxisParams, derives_reach_and_elbow_angle)
{
    // 300-400-500: the angle whose sine is 3/5.
    const SixAxisParams params = ParamsOf(SampleRecord());
    EXPECT_EQ(params.wristReach, 500.0);
    EXPECT_NEAR(params.elbowAngle, 0.6435011087932844, 1e-15);
}

TEST(InitSixAxisParams, without_elbow_offset_the_elbow_angle_is_zero)
{
    KineKinematicParam param = SampleRecord();
    param.SixAxis.a3 = 0.0;
    const SixAxisParams params = ParamsOf(param);
    EXPECT_EQ(params.wristReach, 400.0);
    EXPECT_EQ(params.elbowAngle, 0.0);
}

TEST(InitSixAxisParams, converts_the_six_angles_from_degrees)
{
    const SixAxisParams params = ParamsOf(SampleRecord());
    const double h = std::sqrt(0.75);
    const struct
    {
        SinCos actual;
        double sin, cos;
    } cases[] = {{params.alpha1, 0.5, h},  {params.alpha2, -0.5, h}, {params.alpha3, h, 0.5},
                 {params.alpha4, -h, 0.5}, {params.alpha5, 0.5, -h}, {params.beta2, h, -0.5},
                 {params.mountX, h, 0.5},  {params.mountY, 0.5, h}};
    for (const auto& c : cases) {
        EXPECT_NEAR(c.actual.sin, c.sin, 1e-15);
        EXPECT_NEAR(c.actual.cos, c.cos, 1e-15);
    }
}

TEST(InitSixAxisParams, scales_the_weights_by_the_cosine_of_the_tilt_about_x_only)
{
    // mountX is 60 degrees; mountY (30 degrees) has no part in it.
    const SixAxisParams params = ParamsOf(SampleRecord());
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_NEAR(params.gs[i], 0.5 * 10.0 * (static_cast<double>(i) + 1.0), 1e-13);
    }
}

TEST(InitSixAxisParams, turns_stiffness_into_compliance_per_newton_millimetre)
{
    const SixAxisParams params = ParamsOf(SampleRecord());
    EXPECT_EQ(params.c2, 1.0 / 2e8);
    EXPECT_EQ(params.c3, 1.0 / 1e8);
    EXPECT_EQ(params.c5, 1.0 / 4e7);
}

TEST(InitSixAxisParams, zero_stiffness_is_infinite_compliance)
{
    KineKinematicParam param = SampleRecord();
    param.SixAxis.k2 = 0.0;
    param.SixAxis.k3 = 0.0;
    param.SixAxis.k5 = 0.0;
    const SixAxisParams params = ParamsOf(param);
    EXPECT_EQ(params.c2, kInf);
    EXPECT_EQ(params.c3, kInf);
    EXPECT_EQ(params.c5, kInf);
}

TEST(InitSixAxisParams, clears_the_axis_limits)
{
    const KineKinematicParam param = SampleRecord();
    auto params = test::Untouched<SixAxisParams>();
    EXPECT_EQ(InitSixAxisParams(6, &param, params), KINE_OK);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(params.upperLimit[i], 0.0);
        EXPECT_EQ(params.lowerLimit[i], 0.0);
    }
}

KineResult ResultWith(double KineSixAxisParam::*field, double value)
{
    KineKinematicParam param = SampleRecord();
    param.SixAxis.*field = value;
    SixAxisParams params{};
    return InitSixAxisParams(6, &param, params);
}

TEST(InitSixAxisParams, offsets_may_be_zero_or_rounding_noise_below)
{
    for (auto field : {&KineSixAxisParam::a1, &KineSixAxisParam::a3, &KineSixAxisParam::d6}) {
        EXPECT_EQ(ResultWith(field, 0.0), KINE_OK);
        EXPECT_EQ(ResultWith(field, JustAbove(-1e-5)), KINE_OK);
        EXPECT_EQ(ResultWith(field, -1e-5), KINE_OK);
        EXPECT_EQ(ResultWith(field, -0.00001), KINE_OK);
        EXPECT_EQ(ResultWith(field, JustBelow(-1e-5)), 0x6000U);
        EXPECT_EQ(ResultWith(field, -100.0), 0x6000U);
        EXPECT_EQ(ResultWith(field, -kInf), 0x6000U);
        EXPECT_EQ(ResultWith(field, kNan), KINE_OK);
    }
}

TEST(InitSixAxisParams, arm_lengths_must_not_be_zero)
{
    for (auto field : {&KineSixAxisParam::a2, &KineSixAxisParam::d4}) {
        EXPECT_EQ(ResultWith(field, JustAbove(1e-5)), KINE_OK);
        EXPECT_EQ(ResultWith(field, 1e-5), KINE_OK);
        EXPECT_EQ(ResultWith(field, JustBelow(1e-5)), 0x6000U);
        EXPECT_EQ(ResultWith(field, 0.0), 0x6000U);
        EXPECT_EQ(ResultWith(field, -500.0), 0x6000U);
        EXPECT_EQ(ResultWith(field, kNan), KINE_OK);
    }
}

TEST(InitSixAxisParams, checks_no_other_field)
{
    for (auto field :
         {&KineSixAxisParam::d1, &KineSixAxisParam::lateralOffset, &KineSixAxisParam::alpha1,
          &KineSixAxisParam::alpha2, &KineSixAxisParam::alpha3, &KineSixAxisParam::alpha4,
          &KineSixAxisParam::alpha5, &KineSixAxisParam::beta2, &KineSixAxisParam::d3, &KineSixAxisParam::d5,
          &KineSixAxisParam::a4, &KineSixAxisParam::a5, &KineSixAxisParam::mountX, &KineSixAxisParam::mountY,
          &KineSixAxisParam::k2, &KineSixAxisParam::k3, &KineSixAxisParam::k5}) {
        for (const double value : {-1e9, 0.0, 1e9, kInf, -kInf, kNan}) {
            EXPECT_EQ(ResultWith(field, value), KINE_OK);
        }
    }
}

TEST(InitSixAxisParams, refused_lengths_stay_stored_and_the_rest_is_zero)
{
    for (auto field : {&KineSixAxisParam::a1, &KineSixAxisParam::a2, &KineSixAxisParam::a3,
                       &KineSixAxisParam::d4, &KineSixAxisParam::d6}) {
        KineKinematicParam param = SampleRecord();
        param.SixAxis.*field = -9.0;
        auto params = test::Untouched<SixAxisParams>();
        EXPECT_EQ(InitSixAxisParams(6, &param, params), 0x6000U);

        SixAxisParams expected{};
        expected.a1 = param.SixAxis.a1;
        expected.a2 = param.SixAxis.a2;
        expected.a3 = param.SixAxis.a3;
        expected.d4 = param.SixAxis.d4;
        expected.d6 = param.SixAxis.d6;
        expected.d1 = 310.0;
        expected.lateralOffset = -7.0;
        EXPECT_TRUE(test::SameBits(params, expected));
    }
}

TEST(InitSixAxisParams, ignores_what_the_gaps_hold)
{
    const SixAxisParams expected = ParamsOf(SampleRecord());
    for (const double filling : {kNan, kInf, -1e308, 1.0}) {
        SCOPED_TRACE(filling);
        KineKinematicParam param = SampleRecord();
        for (const Gap& gap : kGaps) {
            for (std::size_t at = gap.begin; at < gap.end; at += sizeof filling) PutAt(param, at, filling);
        }
        EXPECT_TRUE(test::SameBits(ParamsOf(param), expected));
    }
    KineKinematicParam param = SampleRecord();
    for (const Gap& gap : kGaps) {
        std::memset(reinterpret_cast<unsigned char*>(&param) + gap.begin, 0xFF, gap.end - gap.begin);
    }
    EXPECT_TRUE(test::SameBits(ParamsOf(param), expected));
}

TEST(InitSixAxisParams, depends_on_every_byte_range_outside_the_gaps)
{
    const SixAxisParams expected = ParamsOf(SampleRecord());
    for (std::size_t at = 0; at < kRecordSize; at += sizeof(double)) {
        const bool isGap = (at >= 56 && at < 64) || (at >= 160 && at < 192);
        KineKinematicParam param = SampleRecord();
        PutAt(param, at, 12345.0);
        SCOPED_TRACE(at);
        EXPECT_EQ(test::SameBits(ParamsOf(param), expected), isGap);
    }
}

TEST(InitSixAxisParams, does_not_change_the_record)
{
    const KineKinematicParam before = SampleRecord();
    const KineKinematicParam param = before;
    static_cast<void>(ParamsOf(param));
    EXPECT_TRUE(test::SameBits(param, before));
}

#ifdef KINE_TEST_ADDRESS_CHECKS
TEST(InitSixAxisParams, reads_no_byte_of_the_gaps)
{
    // The address checks end the program at a read of a poisoned byte.
    alignas(8) KineKinematicParam param = SampleRecord();
    auto* bytes = reinterpret_cast<unsigned char*>(&param);
    SixAxisParams params{};
    KineResult code = KINE_ERR_MODEL_PARAM;
    {
        const test::ForbiddenBytes first(bytes + kGaps[0].begin, kGaps[0].end - kGaps[0].begin);
        const test::ForbiddenBytes second(bytes + kGaps[1].begin, kGaps[1].end - kGaps[1].begin);
        code = InitSixAxisParams(6, &param, params);
    }
    EXPECT_EQ(code, KINE_OK);
    EXPECT_TRUE(test::SameBits(params, ParamsOf(SampleRecord())));
}
#endif

TEST(InitSixAxisParams, touches_no_byte_before_or_behind_the_record)
{
    const KineKinematicParam source = SampleRecord();
    const SixAxisParams expected = ParamsOf(source);
    for (const test::Guard guard : {test::Guard::kBefore, test::Guard::kBehind}) {
        const test::GuardedBytes record(&source, kRecordSize, guard);
        SixAxisParams params{};
        EXPECT_EQ(InitSixAxisParams(6, record.As<KineKinematicParam>(), params), KINE_OK);
        EXPECT_TRUE(test::SameBits(params, expected));
    }
}

}  // namespace
}  // namespace kine
