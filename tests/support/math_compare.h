// Comparisons of the math types, element by element.
#pragma once

#include <gtest/gtest.h>

#include "math/matrix6.h"
#include "math/transform.h"
#include "support/numbers.h"
#include "support/records.h"

namespace kine::test {

inline void ExpectNear(const Vec3& actual, const Vec3& expected, double tolerance)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

inline void ExpectNear(const RotMatrix& actual, const RotMatrix& expected, double tolerance)
{
    EXPECT_NEAR(actual.r00, expected.r00, tolerance);
    EXPECT_NEAR(actual.r01, expected.r01, tolerance);
    EXPECT_NEAR(actual.r02, expected.r02, tolerance);
    EXPECT_NEAR(actual.r10, expected.r10, tolerance);
    EXPECT_NEAR(actual.r11, expected.r11, tolerance);
    EXPECT_NEAR(actual.r12, expected.r12, tolerance);
    EXPECT_NEAR(actual.r20, expected.r20, tolerance);
    EXPECT_NEAR(actual.r21, expected.r21, tolerance);
    EXPECT_NEAR(actual.r22, expected.r22, tolerance);
}

inline void ExpectNear(const HomMatrix& actual, const HomMatrix& expected, double tolerance)
{
    ExpectNear(actual.r, expected.r, tolerance);
    ExpectNear(actual.t, expected.t, tolerance);
}

inline void ExpectNear(const EulerAngles& actual, const EulerAngles& expected, double tolerance)
{
    EXPECT_NEAR(actual.a, expected.a, tolerance);
    EXPECT_NEAR(actual.b, expected.b, tolerance);
    EXPECT_NEAR(actual.c, expected.c, tolerance);
}

// Positions and angles of a pose have tolerances of their own.
inline void ExpectNear(const Pose& actual, const Pose& expected, double lengthTolerance,
                       double angleTolerance)
{
    EXPECT_NEAR(actual.x, expected.x, lengthTolerance);
    EXPECT_NEAR(actual.y, expected.y, lengthTolerance);
    EXPECT_NEAR(actual.z, expected.z, lengthTolerance);
    EXPECT_NEAR(actual.a, expected.a, angleTolerance);
    EXPECT_NEAR(actual.b, expected.b, angleTolerance);
    EXPECT_NEAR(actual.c, expected.c, angleTolerance);
}

}  // namespace kine::test
