// Principal directions, best figures and turns, against values worked out by hand.
#include "calib/fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "calib/analysis.h"

namespace kine_cli {
namespace {

constexpr double kTight = 1e-12;
constexpr double kPi = std::numbers::pi;

TEST(PrincipalOf, two_by_two_block_has_the_eigenvalues_of_its_closed_form)
{
    // [[2, 1], [1, 2]] has 1 along (1, -1) and 3 along (1, 1); the third stands alone.
    const Principal principal = PrincipalOf({2.0, 1.0, 0.0, 2.0, 0.0, 5.0});
    EXPECT_NEAR(principal.values[0], 1.0, kTight);
    EXPECT_NEAR(principal.values[1], 3.0, kTight);
    EXPECT_NEAR(principal.values[2], 5.0, kTight);
    EXPECT_NEAR(std::fabs(principal.directions[1].x), std::sqrt(0.5), kTight);
    EXPECT_NEAR(principal.directions[1].x, principal.directions[1].y, kTight);
    EXPECT_NEAR(std::fabs(principal.directions[2].z), 1.0, kTight);
}

TEST(PrincipalOf, full_matrix_has_the_eigenvalues_of_its_polynomial)
{
    // Second differences: eigenvalues 2 - sqrt(2), 2, 2 + sqrt(2).
    const Symmetric matrix = {2.0, -1.0, 0.0, 2.0, -1.0, 2.0};
    const Principal principal = PrincipalOf(matrix);
    const double root = std::sqrt(2.0);
    const double expected[] = {2.0 - root, 2.0, 2.0 + root};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(principal.values[i], expected[i], kTight);
        const Vec3& v = principal.directions[i];
        EXPECT_NEAR(Norm(v), 1.0, kTight);
        EXPECT_NEAR(2.0 * v.x - v.y, expected[i] * v.x, kTight);
        EXPECT_NEAR(2.0 * v.y - v.x - v.z, expected[i] * v.y, kTight);
    }
}

TEST(PrincipalOf, zero_equal_and_not_finite_matrices_end)
{
    EXPECT_EQ(PrincipalOf({}).values[2], 0.0);
    const Principal equal = PrincipalOf({4.0, 0.0, 0.0, 4.0, 0.0, 4.0});
    EXPECT_EQ(equal.values[0], 4.0);
    EXPECT_EQ(equal.values[2], 4.0);
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(PrincipalOf({kNan, kNan, kNan, kNan, kNan, kNan}).values[0]));
}

TEST(OffPlane, corners_of_a_square_raised_in_turn_are_off_by_their_height)
{
    const std::vector<double> off = OffPlane({{0, 0, 1}, {50, 0, -1}, {50, 50, 1}, {0, 50, -1}});
    for (const double distance : off) EXPECT_NEAR(distance, 1.0, kTight);
}

TEST(OffLine, points_beside_a_diagonal_are_off_by_their_distance)
{
    // On x = y, two of them moved across it by sqrt(2) to either side, at equal places along it.
    const std::vector<double> off = OffLine({{0, 0, 0}, {11, 9, 0}, {9, 11, 0}, {20, 20, 0}});
    EXPECT_NEAR(off[0], 0.0, kTight);
    EXPECT_NEAR(off[1], std::sqrt(2.0), kTight);
    EXPECT_NEAR(off[2], std::sqrt(2.0), kTight);
}

TEST(OffCircle, rim_with_points_in_and_out_by_turns_has_the_radius_of_the_mean_square)
{
    // Radii 9 and 11 at every quarter and eighth: the algebraic fit has the mean of the squares, 101.
    std::vector<Vec3> points;
    for (int i = 0; i < 8; ++i) {
        const double radius = i % 2 == 0 ? 9.0 : 11.0;
        const double angle = i * kPi / 4.0;
        points.push_back({7.0, 3.0 + radius * std::cos(angle), -2.0 + radius * std::sin(angle)});
    }
    const CircleFit fit = OffCircle(points);
    EXPECT_NEAR(fit.radius, std::sqrt(101.0), 1e-9);
    EXPECT_NEAR(fit.off[0], std::sqrt(101.0) - 9.0, 1e-9);
    EXPECT_NEAR(fit.off[1], 11.0 - std::sqrt(101.0), 1e-9);
}

TEST(AngleBetween, rotations_keep_their_digits_at_both_ends)
{
    for (const double degrees : {0.0, 1e-9, 1e-5, 1.0, 90.0, 179.0, 180.0 - 1e-5, 180.0 - 1e-9, 180.0}) {
        KineFrame turned{};
        turned.C = degrees;
        EXPECT_NEAR(Degrees(AngleBetween(RotationOf({}), RotationOf(turned))), degrees, 1e-10);
    }
}

KinePose Turned(double b, double c)
{
    KinePose pose{};
    pose.Frame.B = b;
    pose.Frame.C = c;
    return pose;
}

TEST(ConditioningOf, turns_about_perpendicular_axes_have_the_condition_root_two)
{
    for (const double turn : {20.0, 60.0, 120.0}) {
        const Conditioning found =
            ConditioningOf({Turned(0.0, 0.0), Turned(0.0, turn), Turned(turn, 0.0)}, false);
        EXPECT_NEAR(found.condition, std::sqrt(2.0), 1e-9);
        EXPECT_NEAR(found.amplification, 1.0 / (2.0 * std::sin(Radians(turn) / 2.0)), 1e-9);
        EXPECT_EQ(found.verdict, turn < 30.0 ? "weak" : "good");
    }
}

TEST(ConditioningOf, turns_about_one_axis_or_none_have_no_finite_condition)
{
    for (const double turn : {0.0, 60.0}) {
        const Conditioning found =
            ConditioningOf({Turned(0.0, 0.0), Turned(0.0, turn), Turned(0.0, 2.0 * turn)}, false);
        EXPECT_TRUE(std::isinf(found.condition));
        EXPECT_TRUE(std::isinf(found.amplification));
        EXPECT_EQ(found.verdict, "do not use");
    }
}

}  // namespace
}  // namespace kine_cli
