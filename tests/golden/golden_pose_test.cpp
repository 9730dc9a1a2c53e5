// Poses, matrices, inverses and products, against the table.
#include <gtest/gtest.h>

#include "golden_table.h"
#include "math/transform.h"

namespace kine::test {
namespace {

constexpr double kRotTolerance = 1e-15;
constexpr double kLengthTolerance = 1e-12;  // of up to 2000
constexpr double kAngleTolerance = 1e-13;   // rad

std::array<double, 12> Flat(const HomMatrix& m)
{
    return {m.r.r00, m.r.r01, m.r.r02, m.r.r10, m.r.r11, m.r.r12,
            m.r.r20, m.r.r21, m.r.r22, m.t.x,   m.t.y,   m.t.z};
}

void ExpectMatrix(const HomMatrix& actual, const std::array<double, 12>& expected)
{
    const auto flat = Flat(actual);
    for (std::size_t i = 0; i < 12; ++i)
        EXPECT_NEAR(flat[i], expected[i], i < 9 ? kRotTolerance : kLengthTolerance) << "element " << i;
}

Pose PoseOf(const std::array<double, 6>& v) { return {v[0], v[1], v[2], v[3], v[4], v[5]}; }

TEST(GoldenPose, conversions_inverse_and_product)
{
    auto rows = ReadTable("poses.txt");
    ASSERT_GE(rows.size(), 30U);
    for (Row& row : rows) {
        SCOPED_TRACE(row.Place());
        const Pose first = PoseOf(row.Numbers<6>());
        const Pose second = PoseOf(row.Numbers<6>());
        const HomMatrix matrix = PoseToMatrix(first);
        ExpectMatrix(matrix, row.Numbers<12>());
        const Pose back = MatrixToPose(matrix);
        const auto angles = row.Numbers<3>();
        EXPECT_NEAR(back.a, angles[0], kAngleTolerance);
        EXPECT_NEAR(back.b, angles[1], kAngleTolerance);
        EXPECT_NEAR(back.c, angles[2], kAngleTolerance);
        ExpectMatrix(MatrixInverse(matrix), row.Numbers<12>());
        const Pose product = MatrixToPose(MatrixMultiply(matrix, PoseToMatrix(second)));
        const auto expected = row.Numbers<6>();
        EXPECT_NEAR(product.x, expected[0], kLengthTolerance);
        EXPECT_NEAR(product.y, expected[1], kLengthTolerance);
        EXPECT_NEAR(product.z, expected[2], kLengthTolerance);
        EXPECT_NEAR(product.a, expected[3], kAngleTolerance);
        EXPECT_NEAR(product.b, expected[4], kAngleTolerance);
        EXPECT_NEAR(product.c, expected[5], kAngleTolerance);
        ASSERT_TRUE(row.AtEnd());
    }
}

}  // namespace
}  // namespace kine::test
