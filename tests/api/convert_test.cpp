// Conversion of the public records.
#include "api/convert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "support/records.h"
#include "support/rigid_matrix.h"
#include "support/seeded_random.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr double kDegToRad = 0.017453292519943295;
constexpr double kRadToDeg = 57.29577951308232;

KineFrame SomeFrame() { return {11.0, -12.0, 13.0, 14.0, -15.0, 16.0}; }

}  // namespace

TEST(ToRadians, frame_scales_the_angles_only)
{
    const Pose pose = ToRadians(SomeFrame());
    EXPECT_EQ(pose.x, 11.0);
    EXPECT_EQ(pose.y, -12.0);
    EXPECT_EQ(pose.z, 13.0);
    EXPECT_EQ(pose.a, 14.0 * kDegToRad);
    EXPECT_EQ(pose.b, -15.0 * kDegToRad);
    EXPECT_EQ(pose.c, 16.0 * kDegToRad);
}

TEST(ToRadians, pose_keeps_configuration_and_external_axes)
{
    KinePose pose{};
    pose.Frame = SomeFrame();
    pose.Cfg1 = std::numeric_limits<int32_t>::min();
    pose.Cfg2 = -2;
    pose.Cfg3 = 3;
    pose.Cfg4 = std::numeric_limits<int32_t>::max();
    for (std::size_t i = 0; i < 6; ++i) pose.ExtAxis[i] = 100.0 + static_cast<double>(i);
    const PoseRecord record = ToRadians(pose);
    const Pose frame = record.frame;
    EXPECT_EQ(frame.z, 13.0);
    EXPECT_EQ(frame.c, 16.0 * kDegToRad);
    EXPECT_EQ(record.config.Cfg1, pose.Cfg1);
    EXPECT_EQ(record.config.Cfg2, -2);
    EXPECT_EQ(record.config.Cfg3, 3);
    EXPECT_EQ(record.config.Cfg4, pose.Cfg4);
    EXPECT_EQ(std::memcmp(record.extAxis.data(), pose.ExtAxis, sizeof pose.ExtAxis), 0);
}

TEST(ToRadians, joints_scale_all_eight_axes_and_keep_the_external_ones)
{
    KineJoint joints{};
    for (std::size_t i = 0; i < 8; ++i) joints.Axis[i] = 10.0 + static_cast<double>(i);
    for (std::size_t i = 0; i < 6; ++i) joints.ExtAxis[i] = 100.0 + static_cast<double>(i);
    const Joints result = ToRadians(joints);
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(result.axis[i], joints.Axis[i] * kDegToRad);
    EXPECT_EQ(std::memcmp(result.extAxis.data(), joints.ExtAxis, sizeof joints.ExtAxis), 0);
}

TEST(ToRadians, load_scales_the_inertia_and_leaves_the_axes_of_moment_in_degrees)
{
    const KineLoad load = {1.5, {2.0, 3.0, 4.0}, {50.0, 60.0, 70.0}, {80.0, 90.0, 100.0}};
    const Load result = ToRadians(load);
    EXPECT_EQ(result.mass, 1.5);
    EXPECT_EQ(result.centre.x, 2.0);
    EXPECT_EQ(result.centre.y, 3.0);
    EXPECT_EQ(result.centre.z, 4.0);
    EXPECT_EQ(result.aomDeg.x, 50.0);
    EXPECT_EQ(result.aomDeg.y, 60.0);
    EXPECT_EQ(result.aomDeg.z, 70.0);
    EXPECT_EQ(result.inertia.x, 80.0 * kDegToRad);
    EXPECT_EQ(result.inertia.y, 90.0 * kDegToRad);
    EXPECT_EQ(result.inertia.z, 100.0 * kDegToRad);
}

TEST(ToRadians, tool_is_always_fixed_in_the_world_and_keeps_its_byte)
{
    for (const int byte : {0, 1, 2, 255}) {
        KineTool tool = Untouched<KineTool>();
        tool.HeldByRobot = static_cast<uint8_t>(byte);
        tool.TFrame = SomeFrame();
        tool.TLoad = {1.5, {2.0, 3.0, 4.0}, {50.0, 60.0, 70.0}, {80.0, 90.0, 100.0}};
        const Tool result = ToRadians(tool);
        EXPECT_EQ(result.heldByRobot, byte);
        EXPECT_EQ(result.fixedInWorld, 1);
        EXPECT_EQ(result.unit, 0);
        EXPECT_EQ(result.frame.x, 11.0);
        EXPECT_EQ(result.frame.b, -15.0 * kDegToRad);
        EXPECT_EQ(result.load.aomDeg.y, 60.0);
        EXPECT_EQ(result.load.inertia.z, 100.0 * kDegToRad);
    }
}

TEST(ToRadians, work_object_with_fixed_user_frame)
{
    KineWobj wobj = Untouched<KineWobj>();
    wobj.HeldByRobot = 7;
    wobj.UFFix = 1;
    wobj.MechUnitIndex = -128;
    wobj.UFrame = SomeFrame();
    wobj.OFrame = {-1.0, 2.0, 3.0, 44.0, 55.0, 66.0};
    const Wobj result = ToRadians(wobj);
    EXPECT_EQ(result.heldByRobot, 7);
    EXPECT_EQ(result.userFixed, 1);
    EXPECT_EQ(result.mechUnit, -128);
    EXPECT_EQ(result.user.x, 11.0);
    EXPECT_EQ(result.user.a, 14.0 * kDegToRad);
    EXPECT_EQ(result.object.z, 3.0);
    EXPECT_EQ(result.object.c, 66.0 * kDegToRad);
    const Pose p = CombinedFrame(result);
    EXPECT_TRUE(IsFrame({p.x, p.y, p.z, p.a * kRadToDeg, p.b * kRadToDeg, p.c * kRadToDeg},
                        MatrixOf(wobj.UFrame) * MatrixOf(wobj.OFrame)));
}

TEST(ToRadians, work_object_with_any_other_user_frame_byte_has_a_zero_user_frame)
{
    for (const int byte : {0, 2, 255}) {
        KineWobj wobj{};
        wobj.UFFix = static_cast<uint8_t>(byte);
        wobj.MechUnitIndex = 127;
        wobj.UFrame = SomeFrame();
        wobj.OFrame = {-1.0, 2.0, 3.0, 44.0, 55.0, 66.0};
        const Wobj result = ToRadians(wobj);
        EXPECT_EQ(result.userFixed, byte);
        EXPECT_EQ(result.mechUnit, 127);
        for (const double value :
             {result.user.x, result.user.y, result.user.z, result.user.a, result.user.b, result.user.c}) {
            EXPECT_EQ(value, 0.0);
        }
        const Pose p = CombinedFrame(result);
        EXPECT_TRUE(IsFrame({p.x, p.y, p.z, p.a * kRadToDeg, p.b * kRadToDeg, p.c * kRadToDeg},
                            MatrixOf(wobj.OFrame)));
    }
}

TEST(ToSlot, mechanical_unit_widens_its_header_without_signs)
{
    KineMechUnit unit = Untouched<KineMechUnit>();
    unit.Active = -5;
    unit.UnitKind = 65535;
    unit.Option1 = 255;
    unit.Option2 = 254;
    unit.AxisCount = 253;
    for (std::size_t i = 0; i < 6; ++i) {
        unit.AxisFrame[i] = SomeFrame();
        unit.AxisFrame[i].X = 100.0 * static_cast<double>(i);
        unit.AxisFrame[i].A = 10.0 * static_cast<double>(i);
        unit.AxisParamIndex[i] = static_cast<uint8_t>(250 + i);
    }
    const MechUnitSlot slot = ToSlot(unit);
    EXPECT_EQ(slot.active, -5);
    EXPECT_EQ(slot.unitKind, 65535);
    EXPECT_EQ(slot.option1, 255);
    EXPECT_EQ(slot.option2, 254);
    EXPECT_EQ(slot.axisCount, 253);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(slot.axisParamIndex[i], 250 + static_cast<int>(i));
        const HomMatrix& m = slot.axisFrame[i];
        const Mat4 expected = MatrixOf(unit.AxisFrame[i]);
        EXPECT_EQ(m.t.x, unit.AxisFrame[i].X);
        EXPECT_EQ(m.t.y, -12.0);
        EXPECT_EQ(m.t.z, 13.0);
        const double actual[9] = {m.r.r00, m.r.r01, m.r.r02, m.r.r10, m.r.r11,
                                  m.r.r12, m.r.r20, m.r.r21, m.r.r22};
        for (std::size_t k = 0; k < 9; ++k) EXPECT_NEAR(actual[k], expected[k / 3][k % 3], 1e-15) << k;
    }
}

TEST(ToSlot, external_axis_extends_signs_and_copies_bits)
{
    SeededRandom random(7001);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        KineExtAxisParam param = random.AnyBits<KineExtAxisParam>();
        param.AngleA = 0.0f;
        param.AngleB = 0.0f;
        const ExtAxisSlot slot = ToSlot(param);
        for (std::size_t k = 0; k < 4; ++k) EXPECT_EQ(slot.word[k], int32_t{param.Word[k]});
        EXPECT_EQ(slot.raw0, param.Raw0);
        EXPECT_EQ(slot.raw1, param.Raw1);
        for (std::size_t k = 0; k < 7; ++k) EXPECT_EQ(slot.value[k], param.Value[k]);
        for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(slot.tail[k], int32_t{param.Tail[k]});
    }
}

TEST(ToSlot, external_axis_ends_of_the_int16_range)
{
    KineExtAxisParam param{};
    param.Word[0] = -32768;
    param.Word[3] = 32767;
    param.Tail[0] = -1;
    param.Tail[2] = -32768;
    const ExtAxisSlot slot = ToSlot(param);
    EXPECT_EQ(slot.word[0], -32768);
    EXPECT_EQ(slot.word[3], 32767);
    EXPECT_EQ(slot.tail[0], -1);
    EXPECT_EQ(slot.tail[2], -32768);
}

// The product is formed in double precision: with a single-precision factor, or a product rounded to single
// on the way, some of these values come out one unit in the last place off.
TEST(ToSlot, external_axis_angles_are_scaled_in_double_precision_and_rounded_once)
{
    bool singleFactorDiffers = false;
    for (int degrees = -3600; degrees <= 3600; ++degrees) {
        KineExtAxisParam param{};
        param.AngleA = static_cast<float>(degrees) * 0.1f;
        param.AngleB = static_cast<float>(-degrees) * 0.3f;
        const ExtAxisSlot slot = ToSlot(param);
        EXPECT_EQ(slot.angleA, static_cast<float>(static_cast<double>(param.AngleA) * kDegToRad));
        EXPECT_EQ(slot.angleB, static_cast<float>(static_cast<double>(param.AngleB) * kDegToRad));
        singleFactorDiffers |= slot.angleA != param.AngleA * static_cast<float>(kDegToRad);
    }
    EXPECT_TRUE(singleFactorDiffers);
}

TEST(ToSlot, external_axis_angle_beyond_the_range_of_single_precision_stays_what_it_is)
{
    KineExtAxisParam param{};
    param.AngleA = std::numeric_limits<float>::infinity();
    param.AngleB = std::numeric_limits<float>::quiet_NaN();
    const ExtAxisSlot slot = ToSlot(param);
    EXPECT_EQ(slot.angleA, std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(slot.angleB));
}

TEST(ToDegrees, pose_scales_the_angles_only)
{
    const PoseRecord record = {
        Pose{1.0, 2.0, 3.0, 0.4, -0.5, 0.6}, {-1, 2, -3, 4}, {5.0, 6.0, 7.0, 8.0, 9.0, 10.0}};
    const KinePose pose = ToDegrees(record);
    EXPECT_EQ(pose.Frame.X, 1.0);
    EXPECT_EQ(pose.Frame.Y, 2.0);
    EXPECT_EQ(pose.Frame.Z, 3.0);
    EXPECT_EQ(pose.Frame.A, 0.4 * kRadToDeg);
    EXPECT_EQ(pose.Frame.B, -0.5 * kRadToDeg);
    EXPECT_EQ(pose.Frame.C, 0.6 * kRadToDeg);
    EXPECT_EQ(pose.Cfg1, -1);
    EXPECT_EQ(pose.Cfg2, 2);
    EXPECT_EQ(pose.Cfg3, -3);
    EXPECT_EQ(pose.Cfg4, 4);
    EXPECT_EQ(std::memcmp(record.extAxis.data(), pose.ExtAxis, sizeof pose.ExtAxis), 0);
}

TEST(ToDegrees, joints_scale_all_eight_axes_and_keep_the_external_ones)
{
    const Joints joints = {{0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8}, {5.0, 6.0, 7.0, 8.0, 9.0, 10.0}};
    const KineJoint result = ToDegrees(joints);
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(result.Axis[i], joints.axis[i] * kRadToDeg);
    EXPECT_EQ(std::memcmp(joints.extAxis.data(), result.ExtAxis, sizeof result.ExtAxis), 0);
}

// Which NaN a sum gives depends on the order of its operands, which is the compiler's choice.
TEST(ToDegrees, computed_values_show_one_nan_and_external_axes_keep_theirs)
{
    const double one = std::numeric_limits<double>::quiet_NaN();
    const double other = std::copysign(one, -1.0);
    ASSERT_FALSE(SameBits(one, other));

    const KineJoint joints =
        ToDegrees(Joints{{other, other, other, other, other, other, other, other}, {other}});
    for (const double axis : joints.Axis) EXPECT_TRUE(SameBits(axis, one));
    EXPECT_TRUE(SameBits(joints.ExtAxis[0], other));

    const KineFrame frame = ToDegrees(Pose{other, other, other, other, other, other});
    for (const double value : {frame.X, frame.Y, frame.Z, frame.A, frame.B, frame.C}) {
        EXPECT_TRUE(SameBits(value, one));
    }
}
