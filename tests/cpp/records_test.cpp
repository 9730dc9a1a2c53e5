// The records that KineDll.hpp builds, field by field against what the fields mean; its modes against the
// numbers of the header; its results.
#include <gtest/gtest.h>

#include <type_traits>

#include "KineDll.hpp"
#include "support/records.h"

using namespace kinedll;
using kine::test::SameBits;

namespace {

constexpr KineFrame kFirst = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
constexpr KineFrame kSecond = {-7.0, -8.0, -9.0, -10.0, -11.0, -12.0};

// All bytes of a record but those of some fields.
template <class Record, class... Fields>
bool RestIsZero(Record record, Fields... fields)
{
    ((record.*fields = {}), ...);
    return SameBits(record, Record{});
}

template <class Enum>
constexpr auto Number(Enum value)
{
    return static_cast<std::underlying_type_t<Enum>>(value);
}

}  // namespace

TEST(MakeFrame, fields_stand_in_their_order)
{
    EXPECT_TRUE(SameBits(MakeFrame(1.0, 2.0, 3.0, 4.0, 5.0, 6.0), kFirst));
    EXPECT_TRUE(SameBits(MakeFrame(1.0, 2.0, 3.0), KineFrame{1.0, 2.0, 3.0, 0.0, 0.0, 0.0}));
}

TEST(MakePose, holds_frame_and_configuration)
{
    const KinePose pose = MakePose(kFirst, {1, -2, 3, 4});
    EXPECT_TRUE(SameBits(pose.Frame, kFirst));
    EXPECT_EQ(pose.Cfg1, 1);
    EXPECT_EQ(pose.Cfg2, -2);
    EXPECT_EQ(pose.Cfg3, 3);
    EXPECT_EQ(pose.Cfg4, 4);
    for (const double axis : pose.ExtAxis) EXPECT_EQ(axis, 0.0);
    EXPECT_TRUE(RestIsZero(MakePose(kFirst), &KinePose::Frame));
}

TEST(MakeJoints, axes_that_are_not_named_are_zero)
{
    const KineJoint joints = MakeJoints({10.0, -20.0, 30.0});
    const double expected[8] = {10.0, -20.0, 30.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(joints.Axis[i], expected[i]) << i;
    for (const double axis : joints.ExtAxis) EXPECT_EQ(axis, 0.0);
}

TEST(WithExtAxes, replaces_all_six_and_nothing_else)
{
    const KineJoint before = WithExtAxes(MakeJoints({1.0, 2.0}), {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
    const KineJoint joints = WithExtAxes(before, {70.0, -80.0});
    const double expected[6] = {70.0, -80.0, 0.0, 0.0, 0.0, 0.0};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(joints.ExtAxis[i], expected[i]) << i;
    EXPECT_TRUE(SameBits(joints.Axis, before.Axis));
    EXPECT_EQ(before.ExtAxis[5], 6.0);

    const KinePose pose = WithExtAxes(MakePose(kFirst, {1, 2, 3, 4}), {9.0});
    EXPECT_EQ(pose.ExtAxis[0], 9.0);
    EXPECT_EQ(pose.ExtAxis[1], 0.0);
    EXPECT_TRUE(SameBits(pose.Frame, kFirst));
    EXPECT_EQ(pose.Cfg4, 4);
}

TEST(MakeLoad, holds_mass_and_centre)
{
    const KineLoad load = MakeLoad(2.5, 10.0, -20.0, 30.0);
    EXPECT_EQ(load.Mass, 2.5);
    EXPECT_EQ(load.Cog[0], 10.0);
    EXPECT_EQ(load.Cog[1], -20.0);
    EXPECT_EQ(load.Cog[2], 30.0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(load.Aom[i], 0.0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(load.Inertia[i], 0.0);
}

TEST(tools, held_byte_says_who_carries_them)
{
    const KineLoad load = MakeLoad(1.0, 2.0, 3.0, 4.0);
    const KineTool held = HeldTool(kFirst, load);
    EXPECT_EQ(held.HeldByRobot, 1);
    EXPECT_TRUE(SameBits(held.TFrame, kFirst));
    EXPECT_TRUE(SameBits(held.TLoad, load));
    EXPECT_TRUE(RestIsZero(HeldTool(), &KineTool::HeldByRobot));
    EXPECT_TRUE(SameBits(StationaryTool(kFirst).TFrame, kFirst));
    EXPECT_TRUE(RestIsZero(StationaryTool(kFirst), &KineTool::TFrame));
}

TEST(work_objects, bytes_say_who_carries_them_and_where_they_stand)
{
    const KineWobj fixed = FixedWobj(kFirst, kSecond);
    EXPECT_EQ(fixed.HeldByRobot, 0);
    EXPECT_EQ(fixed.UFFix, 1);
    EXPECT_TRUE(SameBits(fixed.UFrame, kFirst));
    EXPECT_TRUE(SameBits(fixed.OFrame, kSecond));
    EXPECT_TRUE(RestIsZero(FixedWobj(), &KineWobj::UFFix));

    const KineWobj held = HeldWobj(kFirst, kSecond);
    EXPECT_EQ(held.HeldByRobot, 1);
    EXPECT_EQ(held.UFFix, 1);
    EXPECT_TRUE(SameBits(held.UFrame, kFirst));
    EXPECT_TRUE(SameBits(held.OFrame, kSecond));
    EXPECT_TRUE(RestIsZero(HeldWobj(), &KineWobj::HeldByRobot, &KineWobj::UFFix));

    const KineWobj carried = WobjOnUnit(2, kSecond);
    EXPECT_EQ(carried.MechUnitIndex, 2);
    EXPECT_TRUE(SameBits(carried.OFrame, kSecond));
    EXPECT_TRUE(RestIsZero(carried, &KineWobj::MechUnitIndex, &KineWobj::OFrame));
}

TEST(NominalSixAxis, has_the_twists_and_the_d3_that_the_inverse_needs)
{
    SixAxisLengths lengths;
    lengths.a1 = 1.0;
    lengths.a2 = 2.0;
    lengths.a3 = 3.0;
    lengths.d4 = 4.0;
    lengths.d6 = 5.0;
    lengths.d1 = 6.0;
    lengths.lateralOffset = -7.0;
    KineSixAxisParam expected{};
    expected.a1 = 1.0;
    expected.a2 = 2.0;
    expected.a3 = 3.0;
    expected.d4 = 4.0;
    expected.d6 = 5.0;
    expected.d1 = 6.0;
    expected.lateralOffset = -7.0;
    expected.d3 = -7.0;
    expected.alpha1 = 90.0;
    expected.alpha3 = 90.0;
    expected.alpha4 = -90.0;
    expected.alpha5 = 90.0;
    EXPECT_TRUE(SameBits(NominalSixAxis(lengths), expected));
}

TEST(NominalFourAxis, has_no_tilts)
{
    KineFourAxisParam expected{};
    expected.Link1Length = 325.0;
    expected.Link2Length = 275.0;
    expected.ZOffset = 50.0;
    expected.ScrewLead = 20.0;
    EXPECT_TRUE(SameBits(NominalFourAxis(325.0, 275.0, 50.0, 20.0), expected));
}

TEST(units, kind_count_frames_and_drives_belong_together)
{
    KineMechUnit expected{};
    expected.Active = 1;
    expected.UnitKind = 1;
    expected.AxisCount = 1;
    expected.AxisFrame[0] = kFirst;
    expected.AxisParamIndex[0] = 5;
    EXPECT_TRUE(SameBits(LinearUnit(kFirst, 5), expected));
    expected.AxisFrame[1] = kSecond;
    EXPECT_TRUE(SameBits(LinearUnit(kFirst, 5, kSecond), expected));

    expected.UnitKind = 3;
    expected.AxisCount = 2;
    expected.AxisParamIndex[1] = 4;
    EXPECT_TRUE(SameBits(TwoRotaryUnit(kFirst, 5, kSecond, 4), expected));
    expected.Option1 = 1;
    expected.Option2 = 2;
    EXPECT_TRUE(SameBits(CarryingRobot(TwoRotaryUnit(kFirst, 5, kSecond, 4), 2), expected));

    expected = {};
    expected.Active = 1;
    expected.UnitKind = 2;
    expected.AxisCount = 1;
    expected.AxisFrame[0] = kFirst;
    expected.AxisParamIndex[0] = 5;
    EXPECT_TRUE(SameBits(RotaryUnit(kFirst, 5), expected));
}

TEST(external_axes, word_three_is_one_for_a_linear_axis_only)
{
    EXPECT_EQ(LinearExtAxis().Word[3], 1);
    EXPECT_TRUE(SameBits(RotaryExtAxis(), KineExtAxisParam{}));
}

TEST(MakeInchDir, sets_one_slot_and_none_beyond_the_last)
{
    for (std::size_t slot = 0; slot < 14; ++slot) {
        const KineInchDir dir = MakeInchDir(slot, -1);
        for (std::size_t i = 0; i < 14; ++i) EXPECT_EQ(dir.Slot[i], i == slot ? -1 : 0) << slot;
    }
    EXPECT_TRUE(SameBits(MakeInchDir(14, 1), KineInchDir{}));
}

TEST(modes, have_the_numbers_of_the_header)
{
    EXPECT_EQ(Number(ArmType::kFourAxis), 4U);
    EXPECT_EQ(Number(ArmType::kSixAxis), 6U);
    EXPECT_EQ(Number(ArmType::kFourAxis4110), 4110U);
    EXPECT_EQ(Number(SingularityKind::kNarrow), 1U);
    EXPECT_EQ(Number(SingularityKind::kWide), 2U);
    EXPECT_EQ(Number(InchMode::kJoints), 1);
    EXPECT_EQ(Number(InchMode::kBase), 2);
    EXPECT_EQ(Number(InchMode::kTool), 3);
    EXPECT_EQ(Number(InchMode::kWobj), 4);
    EXPECT_EQ(Number(InchMode::kWorld), 5);
    EXPECT_EQ(Number(AlignMode::kBase), 2);
    EXPECT_EQ(Number(AlignMode::kWorld), 5);
    EXPECT_EQ(Number(AlignMode::kWobj), 4);
    EXPECT_EQ(Number(AlignMode::kWobjThroughFlange), -1);
    EXPECT_EQ(Number(CrdMode::kWorldToFixedWobj), -1);
    EXPECT_EQ(Number(CrdMode::kBaseToWobj), -2);
    EXPECT_EQ(Number(PosDifFrame::kCommon), 1);
    EXPECT_EQ(Number(PosDifFrame::kFirstPose), -1);
    EXPECT_EQ(Number(UnitKind::kLinear), 1);
    EXPECT_EQ(Number(UnitKind::kRotary), 2);
    EXPECT_EQ(Number(UnitKind::kTwoRotary), 3);
}

// A code and a value side by side and nothing else; neither is a number or a truth by accident.
TEST(results, are_plain_memory)
{
    static_assert(std::is_trivially_copyable_v<Result<KineJoint>> && std::is_aggregate_v<Result<KineJoint>>);
    static_assert(std::is_trivially_copyable_v<Result<bool>> &&
                  std::is_trivially_destructible_v<Result<bool>>);
    static_assert(std::is_trivially_copyable_v<JogSteps> && std::is_trivially_copyable_v<SixAxisLengths>);
    static_assert(sizeof(Code) == sizeof(KineResult));
    static_assert(sizeof(Result<KinePose>) <= sizeof(KinePose) + sizeof(double));
    static_assert(sizeof(TiltedFrame) == sizeof(KineFrame) + sizeof(double));
    static_assert(sizeof(CalibratedFrame) == sizeof(KineFrame) + sizeof(KineCalibError));
    static_assert(!std::is_convertible_v<Result<KinePose>, bool>);
    static_assert(std::is_constructible_v<bool, Result<KinePose>>);
    static_assert(!std::is_constructible_v<bool, Code> && !std::is_convertible_v<Code, KineResult>);
    static_assert(noexcept(JointToBasePos({}, {}, {}, {}))&& noexcept(TextOf(0)));
}

TEST(results, are_true_where_the_call_has_succeeded)
{
    const Result<KineFrame> good = CalcExtToolPrm_1P(MakePose(kFirst));
    ASSERT_TRUE(good);
    EXPECT_TRUE(good.IsOk());
    EXPECT_EQ(good.code, KINE_OK);
    EXPECT_EQ(good.value.X, 1.0);

    const Result<KineFrame> bad = CalcExtToolPrm_1P(MakePose(MakeFrame(1.0, 2.0, 3.0, 180.5)));
    EXPECT_FALSE(bad);
    EXPECT_FALSE(bad.IsOk());
    EXPECT_EQ(bad.code, KINE_ERR_POSE);
    EXPECT_TRUE(SameBits(bad.value, KineFrame{})) << "zeros where the call is refused";
}

// Three touches fit, the origin and the point on Z are the same: solved, reported, and refused after that.
TEST(CalibratedFrame, keeps_the_report_of_a_call_that_fails_later)
{
    ASSERT_EQ(InitKinematicParam(NominalSixAxis({0.0, 400.0, 0.0, 400.0})), KINE_OK);
    const KinePose upright = MakePose(MakeFrame(-10.0, -20.0, -30.0));
    const KinePose aboutZ = MakePose(MakeFrame(20.0, -10.0, -29.0, 90.0));
    const KinePose aboutY = MakePose(MakeFrame(-30.0, -20.0, 10.0, 0.0, 90.0));
    const Result<CalibratedFrame> found =
        CalcGripToolPrm_3PZX(upright, aboutZ, aboutY, upright, upright, upright);
    EXPECT_EQ(found.code, KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_TRUE(SameBits(found.value.frame, KineFrame{}));
    EXPECT_GT(found.value.error.Largest, 0.1) << "one touch is 1 mm off";
}

// The second jog goes as far as the first: the caller's steps stay what they are.
TEST(InchMovePosCalc, caller_keeps_the_steps_in_degrees)
{
    ASSERT_EQ(InitKinematicParam(NominalSixAxis({0.0, 400.0, 0.0, 400.0})), KINE_OK);
    JogSteps steps;
    steps.jointDeg = 10.0;
    KineJoint joints = MakeJoints({0.0, 0.0, 0.0, 0.0, -90.0, 0.0});
    for (const double expected : {10.0, 20.0, 30.0}) {
        const Result<KineJoint> next = InchMovePosCalc(MakeInchDir(0, 1), InchMode::kJoints, HeldTool(),
                                                       FixedWobj(), KineLoad{}, steps, joints);
        ASSERT_TRUE(next) << next.code.Name();
        EXPECT_NEAR(next.value.Axis[0], expected, 1e-12);
        joints = next.value;
    }
}
