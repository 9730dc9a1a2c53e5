// Tool solvers at their own level: arm types that no export can store, and outputs that refusals leave alone.
// The sample is a tip touching one point with the flange in quarter turns: all numbers are whole.
#include "calib/tool_calib.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "support/calib_results.h"
#include "support/math_compare.h"
#include "support/naive_transform.h"
#include "support/records.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kUnknownTypes[] = {0,
                                          1,
                                          3,
                                          5,
                                          7,
                                          -4,
                                          -6,
                                          4109,
                                          4111,
                                          41100,
                                          std::numeric_limits<std::int32_t>::min(),
                                          std::numeric_limits<std::int32_t>::max()};

// Quarter turns about Z and about X.
constexpr RotMatrix kAboutZ{0.0, -1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0};
constexpr RotMatrix kAboutX{1.0, 0.0, 0.0, 0.0, 0.0, -1.0, 0.0, 1.0, 0.0};
constexpr RotMatrix kHalfAboutZ{-1.0, 0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0, 1.0};

// Tip (10, 20, 30) at (100, 200, 300), seen from (-20, 10, 30), (10, -30, 20) and (-10, -20, 30) on the way.
constexpr HomMatrix kUpright{kIdentityRotation, {90.0, 180.0, 270.0}};
constexpr HomMatrix kTurned{kAboutZ, {120.0, 190.0, 270.0}};
constexpr HomMatrix kTilted{kAboutX, {90.0, 230.0, 280.0}};
constexpr HomMatrix kOpposite{kHalfAboutZ, {110.0, 220.0, 270.0}};

HomMatrix At(const HomMatrix& pose, const Vec3& position) { return {pose.r, position}; }

// Five orientations without a common axis.
const std::array<HomMatrix, 5> kFivePoses = {kUpright, kTurned, kTilted, kOpposite, kTurned};

// Calls a solver with outputs that show whether they were written.
template <class Solver>
void ExpectRefused(KineResult code, Solver&& solver)
{
    Vec3 tip = Untouched<Vec3>();
    KineCalibError report = Untouched<KineCalibError>();
    const KineResult actual = solver(tip, report);
    EXPECT_EQ(actual, code) << std::hex << actual;
    EXPECT_TRUE(IsUntouched(tip));
    EXPECT_TRUE(IsUntouched(report));
}

void ExpectRefused3P(std::int32_t armType, const std::array<HomMatrix, 3>& poses, KineResult code)
{
    ExpectRefused(code,
                  [&](Vec3& tip, KineCalibError& report) { return CalcTcp3P(armType, poses, tip, report); });
}

void ExpectRefused5P(std::int32_t armType, const std::array<HomMatrix, 5>& poses, KineResult code)
{
    ExpectRefused(code,
                  [&](Vec3& tip, KineCalibError& report) { return CalcTcp5P(armType, poses, tip, report); });
}

void ExpectRefused2P(std::int32_t armType, const std::array<HomMatrix, 2>& poses, KineResult code)
{
    ExpectRefused(code, [&](Vec3& tip, KineCalibError&) { return CalcTcpScara2P(armType, poses, tip); });
}

}  // namespace

TEST(TipAt, turns_and_moves_the_tip)
{
    ExpectNear(TipAt(kTurned, {10.0, 20.0, 30.0}), {100.0, 200.0, 300.0}, 0.0);
    ExpectNear(TipAt(kTilted, {10.0, 20.0, 30.0}), {100.0, 200.0, 300.0}, 0.0);
}

TEST(CalcTcp3P, six_axis_arm_finds_the_tip)
{
    Vec3 tip{};
    KineCalibError report = Untouched<KineCalibError>();
    ASSERT_EQ(CalcTcp3P(kSix, std::array{kUpright, kTurned, kTilted}, tip, report), KINE_OK);
    ExpectNear(tip, {10.0, 20.0, 30.0}, 1e-12);
    ExpectReport(report, {0.0, 0.0, 0.0}, 1e-12);
}

// Heights of 0, 7 and 11 mm leave x and y alone and show in the report: differences 7, 11 and 4.
TEST(CalcTcp3P, four_axis_arms_find_x_and_y)
{
    for (const std::int32_t type : {kFour, k4110}) {
        Vec3 tip = Untouched<Vec3>();
        KineCalibError report{};
        ASSERT_EQ(CalcTcp3P(type,
                            std::array{At(kUpright, {90.0, 180.0, 0.0}), At(kTurned, {120.0, 190.0, 7.0}),
                                       At(kOpposite, {110.0, 220.0, 11.0})},
                            tip, report),
                  KINE_OK);
        ExpectNear(tip, {10.0, 20.0, 0.0}, 1e-12);
        EXPECT_EQ(tip.z, 0.0);
        ExpectReport(report, {11.0, 22.0 / 3.0, 4.0}, 1e-12);
    }
}

// Before the positions are looked at: these coincide.
TEST(CalcTcp3P, unknown_arm_type_is_0x6001)
{
    for (const std::int32_t type : kUnknownTypes) {
        ExpectRefused3P(type, {kUpright, kTurned, kTilted}, KINE_ERR_NOT_INITIALISED);
        ExpectRefused3P(type, {kUpright, kUpright, kUpright}, KINE_ERR_NOT_INITIALISED);
    }
}

TEST(CalcTcp3P, refusal_leaves_tip_and_report)
{
    const Vec3 one = {1.0, 1.0, 1.0};
    const Vec3 two = {2.0, 2.0, 2.0};
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        ExpectRefused3P(type, {kUpright, kTurned, At(kTilted, kTurned.t)}, KINE_ERR_CALIB_POINTS_CLOSE);
        ExpectRefused3P(type, {At(kUpright, {}), At(kTurned, one), At(kTilted, two)},
                        KINE_ERR_CALIB_COLLINEAR);
        ExpectRefused3P(type, {kUpright, At(kUpright, kTurned.t), At(kUpright, kTilted.t)},
                        type == kSix ? KINE_ERR_CALIB_4 : KINE_ERR_CALIB_SINGULAR);
    }
    // About one axis only: the tip's height along it does not show.
    ExpectRefused3P(kSix, {kUpright, kTurned, kOpposite}, KINE_ERR_CALIB_4);
}

TEST(CalcTcp5P, six_axis_arm_finds_the_tip)
{
    Vec3 tip{};
    KineCalibError report = Untouched<KineCalibError>();
    ASSERT_EQ(CalcTcp5P(kSix, kFivePoses, tip, report), KINE_OK);
    ExpectNear(tip, {10.0, 20.0, 30.0}, 1e-12);
    EXPECT_NEAR(report.Largest, 0.0, 1e-12);
}

TEST(CalcTcp5P, arm_types_other_than_six_axis_are_0x6001)
{
    for (const std::int32_t type : {kFour, k4110})
        ExpectRefused5P(type, kFivePoses, KINE_ERR_NOT_INITIALISED);
    for (const std::int32_t type : kUnknownTypes) {
        ExpectRefused5P(type, kFivePoses, KINE_ERR_NOT_INITIALISED);
    }
}

TEST(CalcTcp5P, refusal_leaves_tip_and_report)
{
    ExpectRefused5P(kSix, {kUpright, kUpright, kUpright, kUpright, kUpright}, KINE_ERR_CALIB_SINGULAR);
    ExpectRefused5P(kSix, {kUpright, kTurned, kOpposite, kTurned, kOpposite}, KINE_ERR_CALIB_SINGULAR);
}

TEST(CalcTcpScara2P, four_axis_arms_find_x_and_y)
{
    for (const std::int32_t type : {kFour, k4110}) {
        Vec3 tip = Untouched<Vec3>();
        ASSERT_EQ(CalcTcpScara2P(type, std::array{kUpright, kTurned}, tip), KINE_OK);
        ExpectNear(tip, {10.0, 20.0, 0.0}, 1e-12);
        EXPECT_EQ(tip.z, 0.0);
    }
}

TEST(CalcTcpScara2P, arm_types_other_than_four_axis_are_0x6001)
{
    ExpectRefused2P(kSix, {kUpright, kTurned}, KINE_ERR_NOT_INITIALISED);
    for (const std::int32_t type : kUnknownTypes) {
        ExpectRefused2P(type, {kUpright, kTurned}, KINE_ERR_NOT_INITIALISED);
        ExpectRefused2P(type, {kUpright, kUpright}, KINE_ERR_NOT_INITIALISED);
    }
}

TEST(CalcTcpScara2P, refusal_leaves_the_tip)
{
    ExpectRefused2P(kFour, {kUpright, At(kTurned, {90.0, 180.0, 400.0})}, KINE_ERR_CALIB_POINTS_CLOSE);
    ExpectRefused2P(k4110, {kUpright, At(kUpright, {95.0, 180.0, 270.0})}, KINE_ERR_CALIB_SINGULAR);
}

// Raised by 10 mm along Z of the frame of the poses, not of the flange.
TEST(ZPoseFor, four_axis_arms_raise_the_origin)
{
    for (const std::int32_t type : {kFour, k4110}) {
        const HomMatrix pose = ZPoseFor(type, kTilted, kTurned);
        EXPECT_TRUE(SameBits(pose, At(kTilted, {90.0, 230.0, 290.0})));
    }
}

TEST(ZPoseFor, other_arm_types_take_the_pose_as_it_is)
{
    EXPECT_TRUE(SameBits(ZPoseFor(kSix, kTilted, kTurned), kTurned));
    for (const std::int32_t type : kUnknownTypes) {
        EXPECT_TRUE(SameBits(ZPoseFor(type, kTilted, kTurned), kTurned)) << type;
    }
}

// Z along Y of the points, X towards (-2, 9, 0), of which (-2, 0, 0) is square to Z: Y is Z x X = (0, 0, 2).
TEST(CalcFrameZX, turns_z_and_x_towards_their_points)
{
    Pose frame{};
    ASSERT_EQ(CalcFrameZX({1.0, 2.0, 3.0}, {1.0, 6.0, 3.0}, {-1.0, 11.0, 3.0}, frame), KINE_OK);
    const HomMatrix expected{FromAxes({-1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, {0.0, 1.0, 0.0}), {1.0, 2.0, 3.0}};
    ExpectNear(PoseToMatrix(frame), expected, 1e-14);
}

TEST(CalcFrameZX, refusal_leaves_the_frame)
{
    Pose frame = Untouched<Pose>();
    EXPECT_EQ(CalcFrameZX({}, {0.0, 0.0, 0.009}, {1.0, 0.0, 0.0}, frame), KINE_ERR_ZERO_VECTOR);
    EXPECT_EQ(CalcFrameZX({}, {0.0, 0.0, 1.0}, {0.009, 0.0, 0.0}, frame), KINE_ERR_ZERO_VECTOR);
    EXPECT_EQ(CalcFrameZX({}, {0.0, 0.0, 1.0}, {0.0, 0.0, -2.0}, frame), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_TRUE(IsUntouched(frame));
}

// The origin pose is turned by 90 degrees about Z. The tip travels along X of the poses for Z of the tool,
// then along Z for its X: X, Y, Z of the tool are Z, -X x ... = (0, 0, 1), (0, -1, 0), (1, 0, 0) in the poses
// and (0, 0, 1), (-1, 0, 0), (0, -1, 0) in the flange.
TEST(CalcToolFrameZX, turns_z_and_x_along_the_travels)
{
    const HomMatrix origin = kTurned;
    const HomMatrix zPose = At(kTurned, {220.0, 190.0, 270.0});
    const HomMatrix xPose = At(kTurned, {220.0, 190.0, 320.0});
    Pose frame{};
    ASSERT_EQ(CalcToolFrameZX({10.0, 20.0, 30.0}, origin, zPose, xPose, frame), KINE_OK);
    const HomMatrix expected{FromAxes({0.0, 0.0, 1.0}, {-1.0, 0.0, 0.0}, {0.0, -1.0, 0.0}),
                             {10.0, 20.0, 30.0}};
    ExpectNear(PoseToMatrix(frame), expected, 1e-14);
}

TEST(CalcToolFrameZX, refusal_leaves_the_frame)
{
    Pose frame = Untouched<Pose>();
    const HomMatrix away = At(kTurned, {130.0, 190.0, 270.0});
    const HomMatrix further = At(kTurned, {150.0, 190.0, 270.0});
    EXPECT_EQ(CalcToolFrameZX({}, kTurned, kTurned, away, frame), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(CalcToolFrameZX({}, kTurned, away, away, frame), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(CalcToolFrameZX({}, kTurned, away, further, frame), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_TRUE(IsUntouched(frame));
}
