// Tool points from one and from three taught poses, on cases that can be worked out by hand: turns by 90 and
// 180 degrees, whose matrices hold only 0 and +-1.
//
// R0, R1, R2 and p0, p1, p2 are the rotations and positions of the three poses, d1 = p1 - p0, d2 = p2 - p0
// and t the tool point. The solution is the t for which (R0 - R1) * t = d1 and (R0 - R2) * t = d2 agree best.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "support/seeded_random.h"
#include "support/tool_calib_calls.h"

using namespace kine::test;

namespace {

constexpr Point kTool = {10.0, 20.0, 30.0};
constexpr Point kTouched = {100.0, 200.0, 300.0};

// Turns by +90 degrees about X, Y, Z: what they make of a point, and the angles of the pose.
struct QuarterTurn
{
    Angles angles;
    Point (*turned)(const Point& p);
};

const QuarterTurn kQuarterTurns[] = {{{0.0, 0.0, 90.0},
                                      [](const Point& p) {
                                          return Point{p[0], -p[2], p[1]};
                                      }},
                                     {{0.0, 90.0, 0.0},
                                      [](const Point& p) {
                                          return Point{p[2], p[1], -p[0]};
                                      }},
                                     {{90.0, 0.0, 0.0}, [](const Point& p) {
                                          return Point{-p[1], p[0], p[2]};
                                      }}};

KinePose Touching(const QuarterTurn& turn) { return TaughtPose(kTouched - turn.turned(kTool), turn.angles); }

const KinePose kUnturned = TaughtPose(kTouched - kTool);

// Calls body with every two of the three quarter turns, in both orders.
template <class Body>
void ForTwoQuarterTurns(Body&& body)
{
    for (const QuarterTurn& first : kQuarterTurns) {
        for (const QuarterTurn& second : kQuarterTurns) {
            if (&first != &second) body(first, second);
        }
    }
}

ToolCalibRequest TaughtInSteps(const Point& p0, const Angles& a0, const Point& d1, const Angles& a1,
                               const Point& d2, const Angles& a2)
{
    return {{TaughtPose(p0, a0), TaughtPose(p0 + d1, a1), TaughtPose(p0 + d2, a2)}};
}

// Half turns about Z and X beside an unturned pose: R0 - R1 = diag(2, 2, 0), R0 - R2 = diag(0, 2, 2), normal
// equations diag(4, 8, 4) * t = (2 d1x, 2 d1y + 2 d2y, 2 d2z), so t = (d1x / 2, (d1y + d2y) / 4, d2z / 2).
// The tips, seen from p0, are t, (-10, -20, 30) + d1 and (10, -20, -30) + d2: (10, 20, 30), (10, 24, 33) and
// (6, 16, 30).
const Point kHalfTurnStep1 = {20.0, 44.0, 3.0};
const Point kHalfTurnStep2 = {-4.0, 36.0, 60.0};

ToolCalibRequest DisagreeingHalfTurns()
{
    return TaughtInSteps(kTouched, {}, kHalfTurnStep1, {180.0, 0.0, 0.0}, kHalfTurnStep2, {0.0, 0.0, 180.0});
}

}  // namespace

TEST(Kine_CalcExtToolPrm_1P, gives_the_taught_position_bit_for_bit_with_zero_angles)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const Angles& angles : {Angles{0.0, 0.0, 0.0}, Angles{180.0, -180.0, 180.0},
                                     Angles{-33.3, 90.0, 12.0}, Angles{kNan, -kNan, kNan}}) {
            for (const Point& at : {Point{1.5, -2.25, 3.125}, Point{-0.0, 0.0, 4.9e-324},
                                    Point{1e308, -1e-308, 0.1}, Point{kInf, -kInf, -0.0}}) {
                const KineFrame expected = {at[0], at[1], at[2], 0.0, 0.0, 0.0};
                EXPECT_TRUE(SameBits(Solved(kExt1P, {{TaughtPose(at, angles)}}).frame, expected));
            }
        }
    }
}

TEST(Kine_CalcGripToolPrm_3P, quarter_turns_about_any_two_axes_give_the_tool_point)
{
    UseArm(KINE_ARM_SIX_AXIS);
    ForTwoQuarterTurns([](const QuarterTurn& first, const QuarterTurn& second) {
        const ToolCalibOutcome outcome = Solved(kGrip3P, {{kUnturned, Touching(first), Touching(second)}});
        EXPECT_TRUE(IsPointFrame(outcome.frame, kTool));
        ExpectReport(outcome.report, {0.0, 0.0, 0.0});
        // Any of the three may come first.
        const ToolCalibRequest rotated{{Touching(second), kUnturned, Touching(first)}};
        EXPECT_TRUE(IsPointFrame(Solved(kGrip3P, rotated).frame, kTool));
    });
}

TEST(Kine_CalcGripToolPrm_3P, quarter_turns_about_three_axes_give_the_tool_point)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibRequest request{
        {Touching(kQuarterTurns[0]), Touching(kQuarterTurns[1]), Touching(kQuarterTurns[2])}};
    EXPECT_TRUE(IsPointFrame(Solved(kGrip3P, request).frame, kTool));
    EXPECT_TRUE(IsPointFrame(Solved(kExt3P, request).frame, kTouched));
}

TEST(Kine_CalcExtToolPrm_3P, quarter_turns_give_the_touched_point)
{
    UseArm(KINE_ARM_SIX_AXIS);
    ForTwoQuarterTurns([](const QuarterTurn& first, const QuarterTurn& second) {
        const ToolCalibOutcome outcome = Solved(kExt3P, {{Touching(first), kUnturned, Touching(second)}});
        EXPECT_TRUE(IsPointFrame(outcome.frame, kTouched));
        ExpectReport(outcome.report, {0.0, 0.0, 0.0});
    });
}

TEST(Kine_CalcGripToolPrm_3P, disagreeing_poses_give_the_least_squares_point_and_its_report)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibOutcome outcome = Solved(kGrip3P, DisagreeingHalfTurns());
    EXPECT_TRUE(IsPointFrame(outcome.frame, kTool));
    // Between the tips (0, 4, 3), (-4, -4, 0) and (-4, -8, -3).
    const double far = std::sqrt(89.0);
    ExpectReport(outcome.report, {far, (5.0 + std::sqrt(32.0) + far) / 3.0, 5.0});
}

TEST(Kine_CalcExtToolPrm_3P, disagreeing_poses_give_the_tip_of_the_first)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibOutcome outcome = Solved(kExt3P, DisagreeingHalfTurns());
    EXPECT_TRUE(IsPointFrame(outcome.frame, kTouched + kTool));
    EXPECT_NEAR(outcome.report.Largest, std::sqrt(89.0), 1e-10);
}

// The same poses with the first two exchanged: R0 - R1 = diag(-2, -2, 0), R0 - R2 = diag(-2, 0, 2), normal
// equations diag(8, 4, 4) * t = (-2 d1x - 2 d2x, -2 d1y, 2 d2z) with d1 = (-20, -44, -3), d2 = (-24, -8, 57),
// so t = (11, 22, 28.5). The tips, seen from the unturned pose: (9, 22, 31.5), (11, 22, 28.5), (7, 14, 31.5).
TEST(Kine_CalcGripToolPrm_3P, compares_with_the_first_pose)
{
    UseArm(KINE_ARM_SIX_AXIS);
    ToolCalibRequest request = DisagreeingHalfTurns();
    std::swap(request.poses[0], request.poses[1]);
    const ToolCalibOutcome outcome = Solved(kGrip3P, request);
    EXPECT_TRUE(IsPointFrame(outcome.frame, {11.0, 22.0, 28.5}));
    const double pairs[3] = {std::sqrt(13.0), std::sqrt(68.0), std::sqrt(89.0)};
    ExpectReport(outcome.report, {pairs[2], (pairs[0] + pairs[1] + pairs[2]) / 3.0, pairs[0]});
    EXPECT_TRUE(IsPointFrame(Solved(kExt3P, request).frame, kTouched + Point{9.0, 22.0, 31.5}));
}

// Headings 0, 180 and 90: R0 - R1 = 2 and R0 - R2 = ((1, 1), (-1, 1)) in the plane, normal equations
// 6 t = (2 d1x + d2x - d2y, 2 d1y + d2x + d2y). The heights of the tips are those of the poses.
TEST(Kine_CalcGripToolPrm_3P, planar_solution_has_zero_height_and_a_spatial_report)
{
    const ToolCalibRequest request = TaughtInSteps(kTouched, {}, {21.0, 37.0, 6.0}, {180.0, 0.0, 0.0},
                                                   {32.0, 14.0, 4.0}, {90.0, 0.0, 0.0});
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        const ToolCalibOutcome outcome = Solved(kGrip3P, request);
        EXPECT_TRUE(IsPointFrame(outcome.frame, {10.0, 20.0, 0.0}));
        // The tips, seen from p0: (10, 20, 0), (-10, -20, 0) + d1 and (-20, 10, 0) + d2.
        const double pairs[3] = {std::sqrt(1.0 + 9.0 + 36.0), std::sqrt(4.0 + 16.0 + 16.0),
                                 std::sqrt(1.0 + 49.0 + 4.0)};
        ExpectReport(outcome.report, {pairs[2], (pairs[0] + pairs[1] + pairs[2]) / 3.0, pairs[1]});
        EXPECT_TRUE(IsPointFrame(Solved(kExt3P, request).frame, {110.0, 220.0, 300.0}));
    }
}

TEST(Kine_CalcGripToolPrm_3P, planar_solution_is_the_same_bits_at_any_heights)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        const ToolCalibRequest request = GoodRequest(kGrip3P, armType);
        const KineFrame level = Solved(kGrip3P, request).frame;
        EXPECT_TRUE(IsPointFrame(level, {kGoodTool[0], kGoodTool[1], 0.0}));
        EXPECT_TRUE(SameBits(level.Z, 0.0));
        for (const Point& heights : {Point{0.0, 1.0, 2.0}, Point{-1e6, 1e6, 0.0}, Point{kInf, 0.0, -kInf},
                                     Point{kNan, kNan, kNan}, Point{1e300, -1e300, 5.0}}) {
            ToolCalibRequest raised = request;
            for (std::size_t i = 0; i < 3; ++i) raised.poses[i].Frame.Z = heights[i];
            EXPECT_TRUE(SameBits(Solved(kGrip3P, raised).frame, level));
        }
    }
}

// Only the two by two blocks of the rotations are solved, and the whole rotations go into the report.
// Unturned pose, quarter turns about X and Y: blocks diag(1, 1), diag(1, 0) and diag(0, 1), so
// t = (d2x, d1y, 0) and the tips, seen from p0, are t, (t.x, 0, t.y) + d1 and (0, t.y, -t.x) + d2:
// (10, 20, 0), (12, 20, 3) and (10, 26, 5).
TEST(Kine_CalcGripToolPrm_3P, planar_solution_of_tilted_poses_reads_the_blocks_in_the_plane)
{
    const ToolCalibRequest request = TaughtInSteps(kTouched, {}, {2.0, 20.0, -17.0}, {0.0, 0.0, 90.0},
                                                   {10.0, 6.0, 15.0}, {0.0, 90.0, 0.0});
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        const ToolCalibOutcome outcome = Solved(kGrip3P, request);
        EXPECT_TRUE(IsPointFrame(outcome.frame, {10.0, 20.0, 0.0}));
        const double pairs[3] = {std::sqrt(13.0), std::sqrt(61.0), std::sqrt(44.0)};
        ExpectReport(outcome.report, {pairs[1], (pairs[0] + pairs[1] + pairs[2]) / 3.0, pairs[0]});
    }
}

// Quarter turn about Y first, then the unturned pose and a quarter turn about X: blocks diag(0, 1),
// diag(1, 1) and diag(1, 0), so 2 t.x = -d1x - d2x and t.y = d2y. The first turn takes t = (10, 20, 0) to
// (0, 20, -10).
TEST(Kine_CalcExtToolPrm_3P, planar_solution_turns_the_point_in_space)
{
    const ToolCalibRequest request = TaughtInSteps(kTouched, {0.0, 90.0, 0.0}, {-10.0, 0.0, 8.0}, {},
                                                   {-10.0, 20.0, -3.0}, {0.0, 0.0, 90.0});
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        EXPECT_TRUE(IsPointFrame(Solved(kGrip3P, request).frame, {10.0, 20.0, 0.0}));
        EXPECT_TRUE(IsPointFrame(Solved(kExt3P, request).frame, {100.0, 220.0, 290.0}));
    }
}

TEST(Kine_CalcGripToolPrm_3P, perfect_poses_recover_the_tool_with_a_report_of_zeros)
{
    SeededRandom random(6101);
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (int round = 0; round < 100; ++round) {
            const Point tool = AnyPoint(random, 400.0);
            const Point touched = AnyPoint(random, 1500.0);
            ToolCalibRequest request;
            // Headings a third of a turn apart, tilted for the six-axis arm.
            for (int i = 0; i < 3; ++i) {
                const Angles angles = {120.0 * i - 150.0 + random.Uniform(-20.0, 20.0),
                                       random.Uniform(20.0, 40.0), random.Uniform(-40.0, 40.0)};
                request.poses.push_back(TouchingPose(tool, touched, AsFor(armType, angles)));
            }
            const double height = IsFlat(armType) ? 0.0 : tool[2];
            const ToolCalibOutcome grip = Solved(kGrip3P, request);
            EXPECT_TRUE(IsPointFrame(grip.frame, {tool[0], tool[1], height}, 1e-9));
            ExpectReport(grip.report, {0.0, 0.0, 0.0}, 1e-9);
            const ToolCalibOutcome ext = Solved(kExt3P, request);
            EXPECT_TRUE(
                IsPointFrame(ext.frame, {touched[0], touched[1], touched[2] - (tool[2] - height)}, 1e-9));
            EXPECT_TRUE(SameBits(ext.report, grip.report));
        }
    }
}

// The tips are the taught positions: 30, 40 and 50 apart.
TEST(Kine_CalcGripToolPrm_3P, report_of_a_zero_tool_is_exact)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        const ToolCalibOutcome outcome = Solved(kGrip3P, ZeroToolRequest(armType));
        EXPECT_TRUE(IsPointFrame(outcome.frame, {0.0, 0.0, 0.0}, 0.0));
        ExpectReport(outcome.report, {50.0, 40.0, 30.0}, 0.0);
    }
}

TEST(Kine_CalcGripToolPrm_3P, smallest_distance_reads_10000_beyond_10000_mm)
{
    struct Case
    {
        double scale;
        double smallest;
    };
    const double third = 10000.0 / 30.0;
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const auto& [scale, smallest] :
             {Case{1000.0, 10000.0}, Case{third * 1.001, 10000.0}, Case{333.0, 9990.0}, Case{1e9, 10000.0}}) {
            ToolCalibRequest request = ZeroToolRequest(armType);
            for (KinePose& pose : request.poses) {
                pose.Frame.X *= scale;
                pose.Frame.Y *= scale;
                pose.Frame.Z *= scale;
            }
            const KineCalibError report = Solved(kGrip3P, request).report;
            EXPECT_NEAR(report.Largest, 50.0 * scale, 1e-15 * 50.0 * scale);
            EXPECT_NEAR(report.Mean, 40.0 * scale, 1e-15 * 50.0 * scale);
            EXPECT_EQ(report.Smallest, smallest);
        }
    }
}
