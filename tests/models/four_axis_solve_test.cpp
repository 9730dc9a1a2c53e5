// The solution of the four-axis system by Cramer's rule against the inverse times the right side, and the
// Newton steps that use it against the same steps with the inverse and with every sine anew.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "models/four_axis_geometry.h"
#include "models/four_axis_inverse.h"
#include "support/math_compare.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

using Vector = std::array<double, 4>;

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kMinDet = 1e-5;
constexpr Vector kSomeRight{1.0, -2.0, 3.0, -4.0};

// Any matrix with the two zeros of the Jacobian.
Matrix4 RandomMatrix(SeededRandom& random)
{
    Matrix4 m{};
    for (auto& row : m.m)
        for (double& element : row) element = random.Uniform(-10, 10);
    m.m[2][0] = 0.0;
    m.m[3][2] = 0.0;
    return m;
}

Vector Multiply(const Matrix4& m, const Vector& v)
{
    Vector product{};
    for (std::size_t i = 0; i < 4; ++i)
        for (std::size_t j = 0; j < 4; ++j) product[i] += m.m[i][j] * v[j];
    return product;
}

double Largest(const Matrix4& m)
{
    double largest = 0.0;
    for (const auto& row : m.m)
        for (const double element : row) largest = std::fmax(largest, std::fabs(element));
    return largest;
}

// Whether both refuse the matrix; a test failure when only one does, or when a refusal writes.
bool IsRefusedByBoth(const Matrix4& m)
{
    auto solution = Untouched<Vector>();
    Matrix4 inverse{};
    const KineResult code = Jacobian4Solve(m, kSomeRight, solution);
    EXPECT_EQ(code, Jacobian4Inverse(m, inverse));
    EXPECT_TRUE(code == KINE_OK || code == KINE_ERR_SINGULAR);
    EXPECT_EQ(IsUntouched(solution), code != KINE_OK);
    return code != KINE_OK;
}

TEST(Jacobian4Solve, of_random_systems_is_the_inverse_times_the_right_side)
{
    SeededRandom random(3501);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const Matrix4 m = RandomMatrix(random);
        const Vector right{random.Uniform(-5, 5), random.Uniform(-5, 5), random.Uniform(-5, 5),
                           random.Uniform(-5, 5)};
        Matrix4 inverse{};
        Vector solution{};
        ASSERT_EQ(Jacobian4Inverse(m, inverse), KINE_OK);
        ASSERT_EQ(Jacobian4Solve(m, right, solution), KINE_OK);
        const Vector expected = Multiply(inverse, right);
        // Roundings times the condition, which is at most 16 times the product of the largest elements;
        // once from the determinant and once from the minors.
        const double tolerance = 16.0 * kEpsilon * 5.0 * std::pow(Largest(inverse), 2) * Largest(m) * 4.0;
        for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(solution[k], expected[k], tolerance) << k;
    }
}

// All minors of these integers are small integers, so that nothing is rounded before the division.
TEST(Jacobian4Solve, of_an_integer_system_is_exact)
{
    const Matrix4 m{{{2, 1, 3, 1}, {-1, 3, 2, 2}, {0, 1, 4, -1}, {1, 1, 0, 5}}};
    const Vector solution{3.0, -7.0, 11.0, 2.0};
    Vector x{};
    ASSERT_EQ(Jacobian4Solve(m, Multiply(m, solution), x), KINE_OK);
    EXPECT_EQ(x, solution);
}

TEST(Jacobian4Solve, each_unit_vector_gives_a_column_of_the_inverse)
{
    SeededRandom random(3502);
    for (int i = 0; i < 200; ++i) {
        const Matrix4 m = RandomMatrix(random);
        Matrix4 inverse{};
        if (Jacobian4Inverse(m, inverse) != KINE_OK) continue;
        for (std::size_t column = 0; column < 4; ++column) {
            Vector unit{};
            unit[column] = 1.0;
            Vector x{};
            ASSERT_EQ(Jacobian4Solve(m, unit, x), KINE_OK);
            for (std::size_t row = 0; row < 4; ++row)
                EXPECT_NEAR(x[row], inverse.m[row][column],
                            16.0 * kEpsilon * 10.0 * std::pow(Largest(inverse), 2) * 10.0);
        }
    }
}

TEST(Jacobian4Solve, determinant_at_the_bound_passes_and_below_is_0x6095)
{
    for (const double sign : {1.0, -1.0}) {
        Matrix4 m{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, sign * kMinDet}}};
        EXPECT_FALSE(IsRefusedByBoth(m));
        for (const double det : {JustBelow(kMinDet), 1e-300, 0.0, kNan}) {
            m.m[3][3] = sign * det;
            EXPECT_TRUE(IsRefusedByBoth(m)) << det;
        }
    }
}

// Between two neighbouring doubles of one element the verdict turns: for both at once.
TEST(Jacobian4Solve, the_last_matrix_that_is_refused_is_that_of_the_inverse)
{
    SeededRandom random(3503);
    int found = 0;
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        // Row 0 a sum of the others, but for one element.
        Matrix4 m = RandomMatrix(random);
        for (std::size_t j = 0; j < 4; ++j) m.m[0][j] = 0.5 * m.m[1][j] - 0.25 * m.m[2][j] + 0.75 * m.m[3][j];
        const double start = m.m[0][1];
        double refused = start;
        double passed = start + 1.0;
        if (!IsRefusedByBoth(m)) continue;
        m.m[0][1] = passed;
        if (IsRefusedByBoth(m)) continue;
        ++found;
        for (;;) {
            const double middle = refused + 0.5 * (passed - refused);
            if (middle == refused || middle == passed) break;
            m.m[0][1] = middle;
            (IsRefusedByBoth(m) ? refused : passed) = middle;
        }
    }
    EXPECT_GT(found, 200);
}

TEST(Jacobian4Solve, nan_and_infinity_anywhere_are_refused_where_the_inverse_refuses_them)
{
    SeededRandom random(3504);
    const Matrix4 regular = RandomMatrix(random);
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            SCOPED_TRACE(::testing::Message() << row << ' ' << column);
            const bool isRead = !(row == 2 && column == 0) && !(row == 3 && column == 2);
            Matrix4 m = regular;
            m.m[row][column] = kNan;
            EXPECT_EQ(IsRefusedByBoth(m), isRead);
            for (const double bad : {kInf, -kInf}) {
                m.m[row][column] = bad;
                static_cast<void>(IsRefusedByBoth(m));
            }
        }
    }
}

TEST(Jacobian4Solve, the_two_structural_zeros_are_never_read)
{
    Matrix4 m{{{2, 1, 0.5, 1}, {-1, 3, 0.25, 2}, {0, 1, 4, -1}, {1, 1, 0, 5}}};
    Vector clean{};
    Vector marked{};
    ASSERT_EQ(Jacobian4Solve(m, kSomeRight, clean), KINE_OK);
    m.m[2][0] = kNan;
    m.m[3][2] = kNan;
    ASSERT_EQ(Jacobian4Solve(m, kSomeRight, marked), KINE_OK);
    EXPECT_EQ(clean, marked);
}

// The refinement as it is written down.
KineResult WrittenOutRefine(const FourAxisParams& params, const Pose& target, const Pose& tool, FourAngles& q)
{
    for (int step = 0; step <= 5; ++step) {
        const FourAxisState state = StateOf(params, q, tool);
        const Pose current = FourAxisToolPose(state);
        const Vector error{target.x - current.x, target.y - current.y, target.z - current.z,
                           target.a - current.a};
        double square = 0.0;
        for (const double e : error) square += e * e;
        if (square < 1e-12 || step == 5) return KINE_OK;
        Matrix4 inverse{};
        if (const KineResult code = Jacobian4Inverse(FourAxisJacobian(params, state), inverse)) return code;
        const Vector correction = Multiply(inverse, error);
        for (std::size_t i = 0; i < 4; ++i) q[i] += correction[i];
    }
    return KINE_OK;
}

void ExpectWrittenOut(const FourAxisParams& params, const Pose& target, const Pose& tool,
                      const FourAngles& start, double tolerance)
{
    FourAngles q = start;
    FourAngles expected = start;
    const KineResult code = FourAxisRefine(params, target, tool, q);
    ASSERT_EQ(code, WrittenOutRefine(params, target, tool, expected));
    if (code != KINE_OK) return;
    for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(q[k], expected[k], tolerance) << "axis " << k + 1;
}

// 1e-11 degrees; the screw turns 0.25 rad per mm, so that its angle carries the rounding of the height.
constexpr double kTolerance = 1.7e-13;

TEST(FourAxisRefine, of_tilted_arms_is_the_written_out_one)
{
    SeededRandom random(3505);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        NaiveArm arm;
        for (double* tilt : {&arm.tiltX1, &arm.tiltX2, &arm.tiltY1, &arm.tiltY2})
            *tilt = random.Uniform(-4, 4);
        const FourAxisParams params = BlockOf(arm);
        const double elbow = (i % 2 == 0 ? 1.0 : -1.0) * random.Uniform(0.4, 2.7);
        const FourAngles known{random.Uniform(-3, 3), elbow, random.Uniform(-30, 30), 0.2 - elbow};
        const Pose tool{
            random.Uniform(-60, 60), random.Uniform(-60, 60), 20.0, random.Uniform(-0.5, 0.5), 0.0, 0.0};
        const Pose target = ToolPoseOf(params, known, tool);
        if (std::fabs(target.a) > 2.9) continue;
        FourAxisSeed seed{};
        ASSERT_EQ(FourAxisClosedForm(params, target, tool, elbow > 0 ? 1 : -1, seed), KINE_OK);
        ExpectWrittenOut(params, target, tool, {seed.q1, seed.elbow, seed.q3, seed.q4}, kTolerance);
    }
}

// Steps within the series and beyond it, and targets that are not met.
TEST(FourAxisRefine, from_anywhere_is_the_written_out_one)
{
    SeededRandom random(3506);
    const FourAxisParams params = BlockOf(SteepArm());
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const FourAngles known{random.Uniform(-1, 1), random.Uniform(0.5, 2.5), random.Uniform(-30, 30),
                               random.Uniform(-1, 1)};
        const Pose tool{30.0, -20.0, 10.0, 0.3, 0.0, 0.0};
        const Pose target = ToolPoseOf(params, known, tool);
        const double size = std::pow(10.0, random.Uniform(-6.0, -0.5));
        FourAngles start = known;
        for (double& angle : start) angle += random.Uniform(-size, size);
        ExpectWrittenOut(params, target, tool, start, 1e-12);
    }
}

TEST(FourAxisRefine, of_numbers_that_are_not_finite_has_the_code_of_the_written_out_one)
{
    const FourAxisParams params = BlockOf(SteepArm());
    const FourAngles start{0.3, 0.9, 2.0, 0.4};
    const Pose tool{30.0, -20.0, 10.0, 0.3, 0.0, 0.0};
    const Pose target = ToolPoseOf(params, start, tool);
    for (const double bad : {kNan, kInf, -kInf}) {
        for (auto field : {&Pose::x, &Pose::y, &Pose::z, &Pose::a}) {
            SCOPED_TRACE(bad);
            Pose badTarget = target;
            badTarget.*field = bad;
            Pose badTool = tool;
            badTool.*field = bad;
            FourAngles q = start;
            FourAngles expected = start;
            EXPECT_EQ(FourAxisRefine(params, badTarget, tool, q),
                      WrittenOutRefine(params, badTarget, tool, expected));
            for (std::size_t k = 0; k < 4; ++k)
                EXPECT_EQ(std::isfinite(q[k]), std::isfinite(expected[k])) << k;
            EXPECT_EQ(FourAxisRefine(params, target, badTool, q),
                      WrittenOutRefine(params, target, badTool, expected));
        }
    }
}

}  // namespace
}  // namespace kine::test
