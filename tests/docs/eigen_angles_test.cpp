// What docs/frames.md says about Eigen, tried against the library: the product of three turns is its rotation,
// and eulerAngles(2, 1, 0) gives the same rotation as another triple of angles.
#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <cmath>
#include <random>

#include "KineDll.h"

namespace {

using Eigen::AngleAxisd;
using Eigen::Matrix3d;
using Eigen::Vector3d;

constexpr unsigned kSeed = 21;
constexpr int kSets = 2000;
constexpr double kTolerance = 1e-14;
constexpr double kToleranceDeg = 1e-9;
constexpr double kDegrees = 3.141592653589793 / 180.0;

KineFrame Offset(double a, double b, double c, const KineFrame& by)
{
    KinePose pose{};
    pose.Frame.A = a;
    pose.Frame.B = b;
    pose.Frame.C = c;
    KinePose result{};
    EXPECT_EQ(Kine_ToolCoordOffset(&pose, &by, &result), KINE_OK);
    return result.Frame;
}

// A unit offset along each axis of the pose gives the columns.
Matrix3d RotationOfLibrary(double a, double b, double c)
{
    const KineFrame unit[3] = {
        {1.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {0.0, 1.0, 0.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0, 0.0, 0.0}};
    Matrix3d r;
    for (int i = 0; i < 3; ++i) {
        const KineFrame column = Offset(a, b, c, unit[i]);
        r.col(i) = Vector3d(column.X, column.Y, column.Z);
    }
    return r;
}

Matrix3d RotationOfEigen(double a, double b, double c)
{
    return (AngleAxisd(a * kDegrees, Vector3d::UnitZ()) * AngleAxisd(b * kDegrees, Vector3d::UnitY()) *
            AngleAxisd(c * kDegrees, Vector3d::UnitX()))
        .toRotationMatrix();
}

TEST(docs_angles_eigen, product_of_turns_about_z_y_x_is_the_rotation_of_a_b_c)
{
    std::mt19937 random(kSeed);
    std::uniform_real_distribution<double> angle(-180.0, 180.0);
    for (int i = 0; i < kSets; ++i) {
        const double a = angle(random), b = angle(random), c = angle(random);
        const Matrix3d difference = RotationOfLibrary(a, b, c) - RotationOfEigen(a, b, c);
        EXPECT_LT(difference.cwiseAbs().maxCoeff(), kTolerance) << a << ' ' << b << ' ' << c;
    }
}

TEST(docs_angles_eigen, euler_angles_are_the_same_rotation_with_a_first_angle_of_0_to_180)
{
    std::mt19937 random(kSeed);
    std::uniform_real_distribution<double> angle(-180.0, 180.0);
    int otherTriples = 0;
    for (int i = 0; i < kSets; ++i) {
        const double a = angle(random), b = angle(random), c = angle(random);
        const Matrix3d r = RotationOfEigen(a, b, c);
        const Vector3d theirs = r.eulerAngles(2, 1, 0) / kDegrees;
        EXPECT_GE(theirs[0], 0.0);
        EXPECT_LE(theirs[0], 180.0);
        const Matrix3d again = RotationOfLibrary(theirs[0], std::remainder(theirs[1], 360.0), theirs[2]);
        EXPECT_LT((again - r).cwiseAbs().maxCoeff(), kTolerance);
        otherTriples += std::fabs(theirs[0] - Offset(a, b, c, {}).A) > 1.0 ? 1 : 0;
    }
    EXPECT_GT(otherTriples, kSets / 4);
}

TEST(docs_angles_eigen, arc_tangents_of_the_elements_are_the_librarys_triple)
{
    std::mt19937 random(kSeed);
    std::uniform_real_distribution<double> angle(-180.0, 180.0);
    for (int i = 0; i < kSets; ++i) {
        const double a = angle(random), b = angle(random), c = angle(random);
        const Matrix3d r = RotationOfEigen(a, b, c);
        const KineFrame result = Offset(a, b, c, {});
        if (std::fabs(std::fabs(result.B) - 90.0) < 0.01) continue;
        EXPECT_NEAR(result.A, std::atan2(r(1, 0), r(0, 0)) / kDegrees, kToleranceDeg);
        EXPECT_NEAR(result.B, std::atan2(-r(2, 0), std::hypot(r(0, 0), r(1, 0))) / kDegrees, kToleranceDeg);
        EXPECT_NEAR(result.C, std::atan2(r(2, 1), r(2, 2)) / kDegrees, kToleranceDeg);
    }
}

}  // namespace
