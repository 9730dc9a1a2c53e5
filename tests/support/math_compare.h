// Comparisons of the math types, element by element, and a few plain numbers that tests share.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "math/matrix6.h"
#include "math/transform.h"

namespace kine::test {

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInf = std::numeric_limits<double>::infinity();

// The neighbouring doubles.
inline double JustBelow(double x) { return std::nextafter(x, -kInf); }
inline double JustAbove(double x) { return std::nextafter(x, kInf); }

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

// A value of any trivially copyable type filled with a pattern that no result has.
template <class Value>
Value Pattern()
{
    Value value;
    std::memset(static_cast<void*>(&value), 0xA5, sizeof value);
    return value;
}

template <class Value>
bool HasSameBits(const Value& a, const Value& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Value>
bool IsPattern(const Value& value)
{
    return HasSameBits(value, Pattern<Value>());
}

}  // namespace kine::test
