// The Jacobian against complex-step derivatives, which are exact to rounding, and its inverse against a
// general elimination.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_geometry.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

using Complex = std::complex<double>;
constexpr double kStep = 1e-40;
constexpr double kMinDet = 1e-5;

// Derivatives of x, y, z and the heading by one axis, from the imaginary parts of one evaluation.
std::array<double, 4> ComplexStep(const NaiveArm& arm, const FourAngles& q, const Pose& tool,
                                  std::size_t axis)
{
    std::array<Complex, 4> moved{q[0], q[1], q[2], q[3]};
    moved[axis] += Complex(0.0, kStep);
    const auto state = NaiveForward<Complex>(arm, moved, tool);
    const Complex hx = state.tool[0][0];
    const Complex hy = state.tool[1][0];
    // Of the heading, the derivative of the arc tangent is written out: not every C library keeps so small an
    // imaginary part in its own.
    const double heading =
        (hx.real() * hy.imag() - hy.real() * hx.imag()) / (hx.real() * hx.real() + hy.real() * hy.real());
    return {state.tip[0].imag() / kStep, state.tip[1].imag() / kStep, state.tip[2].imag() / kStep,
            heading / kStep};
}

struct Case
{
    NaiveArm arm;
    FourAngles q;
    Pose tool;
};

Matrix4 JacobianOf(const Case& c)
{
    const FourAxisParams params = BlockOf(c.arm);
    return FourAxisJacobian(params, StateOf(params, c.q, c.tool));
}

Case RandomCase(SeededRandom& random)
{
    Case c;
    for (double* tilt : {&c.arm.tiltX1, &c.arm.tiltX2, &c.arm.tiltY1, &c.arm.tiltY2})
        *tilt = random.Uniform(-25, 25);
    c.q = {random.Uniform(-4, 4), random.Uniform(-4, 4), random.Uniform(-60, 60), random.Uniform(-9, 9)};
    c.tool = {random.Uniform(-90, 90),
              random.Uniform(-90, 90),
              random.Uniform(-90, 90),
              random.Uniform(-3, 3),
              0.7,
              -0.7};
    return c;
}

TEST(FourAxisJacobian, every_entry_is_the_derivative)
{
    SeededRandom random(31);
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        const Case c = RandomCase(random);
        const Matrix4 jacobian = JacobianOf(c);
        for (std::size_t axis = 0; axis < 4; ++axis) {
            const auto expected = ComplexStep(c.arm, c.q, c.tool, axis);
            for (std::size_t row = 0; row < 4; ++row)
                EXPECT_NEAR(jacobian.m[row][axis], expected[row], 2e-12)
                    << "row " << row << " axis " << axis + 1;
        }
    }
}

TEST(FourAxisJacobian, height_by_axis_1_and_heading_by_axis_3_are_exactly_zero)
{
    SeededRandom random(32);
    for (int i = 0; i < 100; ++i) {
        const Case c = RandomCase(random);
        const Matrix4 jacobian = JacobianOf(c);
        EXPECT_EQ(jacobian.m[2][0], 0.0);
        EXPECT_EQ(jacobian.m[3][2], 0.0);
    }
}

TEST(FourAxisJacobian, axis_3_moves_along_the_screw_by_the_lead_per_turn)
{
    SeededRandom random(33);
    for (int i = 0; i < 50; ++i) {
        const Case c = RandomCase(random);
        const Matrix4 jacobian = JacobianOf(c);
        const auto naive = NaiveForward<double>(c.arm, c.q, c.tool);
        for (std::size_t row = 0; row < 3; ++row)
            EXPECT_NEAR(jacobian.m[row][2], naive.forearm[row][2] * c.arm.lead / (2 * InRadians(180.0)),
                        1e-14);
    }
}

TEST(FourAxisJacobian, of_a_plane_arm_by_hand)
{
    // q1 = 0, q2 = 90 degrees: the tool point at (425 - ty, 375 + tx) with q4 = 0 and tool (tx, ty) turned
    // by 90.
    const Pose tool{20.0, 5.0, 1.0, 0.0, 0.0, 0.0};
    const Matrix4 j = JacobianOf({{}, {0.0, InRadians(90.0), 0.0, 0.0}, tool});
    const double expected[4][4] = {{-395.0, -395.0, 0.0, -20.0},
                                   {420.0, -5.0, 0.0, -5.0},
                                   {0.0, 0.0, 25.0 / (2 * InRadians(180.0)), 0.0},
                                   {1.0, 1.0, 0.0, 1.0}};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t col = 0; col < 4; ++col) EXPECT_NEAR(j.m[row][col], expected[row][col], 1e-12);
}

// Gauss-Jordan with row pivoting.
Matrix4 GeneralInverse(Matrix4 a)
{
    Matrix4 b{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    for (std::size_t k = 0; k < 4; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k + 1; i < 4; ++i)
            if (std::fabs(a.m[i][k]) > std::fabs(a.m[pivot][k])) pivot = i;
        std::swap(a.m[k], a.m[pivot]);
        std::swap(b.m[k], b.m[pivot]);
        const double scale = 1.0 / a.m[k][k];
        for (std::size_t j = 0; j < 4; ++j) {
            a.m[k][j] *= scale;
            b.m[k][j] *= scale;
        }
        for (std::size_t i = 0; i < 4; ++i) {
            if (i == k) continue;
            const double factor = a.m[i][k];
            for (std::size_t j = 0; j < 4; ++j) {
                a.m[i][j] -= factor * a.m[k][j];
                b.m[i][j] -= factor * b.m[k][j];
            }
        }
    }
    return b;
}

TEST(Jacobian4Inverse, agrees_with_a_general_inverse)
{
    SeededRandom random(34);
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        Matrix4 a{};
        for (auto& row : a.m)
            for (double& value : row) value = random.Uniform(-10, 10);
        a.m[2][0] = 0.0;
        a.m[3][2] = 0.0;
        const Matrix4 expected = GeneralInverse(a);
        Matrix4 inverse{};
        ASSERT_EQ(Jacobian4Inverse(a, inverse), KINE_OK);
        double size = 1.0;
        for (const auto& row : expected.m)
            for (const double value : row) size = std::fmax(size, std::fabs(value));
        for (std::size_t r = 0; r < 4; ++r)
            for (std::size_t c = 0; c < 4; ++c)
                EXPECT_NEAR(inverse.m[r][c], expected.m[r][c], 1e-11 * size * size) << r << "," << c;
    }
}

TEST(Jacobian4Inverse, of_a_jacobian_times_it_is_the_identity)
{
    SeededRandom random(35);
    for (int i = 0; i < 100; ++i) {
        SCOPED_TRACE(i);
        Case c = RandomCase(random);
        c.q[1] = random.Uniform(0.3, 2.8);
        const Matrix4 j = JacobianOf(c);
        Matrix4 inverse{};
        ASSERT_EQ(Jacobian4Inverse(j, inverse), KINE_OK);
        for (std::size_t r = 0; r < 4; ++r) {
            for (std::size_t k = 0; k < 4; ++k) {
                double sum = 0.0;
                for (std::size_t m = 0; m < 4; ++m) sum += inverse.m[r][m] * j.m[m][k];
                EXPECT_NEAR(sum, r == k ? 1.0 : 0.0, 1e-11);
            }
        }
    }
}

TEST(Jacobian4Inverse, the_two_structural_zeros_are_never_read)
{
    Matrix4 a{{{2, 1, 0.5, 1}, {-1, 3, 0.25, 2}, {0, 1, 4, -1}, {1, 1, 0, 5}}};
    Matrix4 clean{};
    ASSERT_EQ(Jacobian4Inverse(a, clean), KINE_OK);
    a.m[2][0] = kNan;
    a.m[3][2] = kNan;
    Matrix4 marked{};
    ASSERT_EQ(Jacobian4Inverse(a, marked), KINE_OK);
    for (std::size_t r = 0; r < 4; ++r)
        for (std::size_t c = 0; c < 4; ++c) EXPECT_EQ(clean.m[r][c], marked.m[r][c]);
}

Matrix4 WithDeterminant(double det) { return {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, det}}}; }

Matrix4 Marked()
{
    Matrix4 m{};
    for (auto& row : m.m)
        for (double& value : row) value = 7.125;
    return m;
}

TEST(Jacobian4Inverse, a_determinant_exactly_at_the_bound_passes)
{
    for (const double det : {kMinDet, -kMinDet, std::nextafter(kMinDet, 1.0), 1.0, -1.0}) {
        Matrix4 inverse = Marked();
        EXPECT_EQ(Jacobian4Inverse(WithDeterminant(det), inverse), KINE_OK) << det;
        EXPECT_DOUBLE_EQ(inverse.m[3][3], 1.0 / det);
        EXPECT_EQ(inverse.m[0][0], 1.0);
    }
}

TEST(Jacobian4Inverse, a_determinant_below_the_bound_is_0x6095_and_writes_nothing)
{
    for (const double det : {std::nextafter(kMinDet, 0.0), -std::nextafter(kMinDet, 0.0), 0.0, -0.0, kNan}) {
        Matrix4 inverse = Marked();
        EXPECT_EQ(Jacobian4Inverse(WithDeterminant(det), inverse), KINE_ERR_SINGULAR) << det;
        for (const auto& row : inverse.m)
            for (const double value : row) EXPECT_EQ(value, 7.125);
    }
}

}  // namespace
}  // namespace kine::test
