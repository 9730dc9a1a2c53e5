// What calibrations give - frames, points, tilts and error reports - and how it is compared with what it has
// to be. Frames in degrees and millimetres, tilts in radians.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "KineDll.h"
#include "support/numbers.h"
#include "support/points.h"
#include "support/records.h"

namespace kine::test {

// What a calibration of poses that agree has to recover. What rounding leaves of them and of the solution is
// about 1e-11 mm and degrees, in badly conditioned sets twice that.
inline constexpr double kTruthMm = 1e-9;
inline constexpr double kTruthDeg = 1e-9;

// ---- Frames --------------------------------------------------------------------------------------------

// Compared number by number. Whole turns do not count, but angles lie within +-180; NaN is a difference.
inline ::testing::AssertionResult IsNearFrame(const KineFrame& actual, const KineFrame& expected,
                                              double toleranceMm = kTruthMm, double toleranceDeg = kTruthDeg)
{
    bool same = true;
    for (const auto length : kCoordinates) {
        same = same && std::fabs(actual.*length - expected.*length) <= toleranceMm;
    }
    for (const auto angle : kAngles) {
        const double turn = std::remainder(actual.*angle - expected.*angle, 360.0);
        same = same && std::fabs(turn) <= toleranceDeg && std::fabs(actual.*angle) <= 180.0;
    }
    if (same) return ::testing::AssertionSuccess();
    ::testing::AssertionResult failure = ::testing::AssertionFailure();
    for (const auto element : kElements) {
        failure << ::testing::PrintToString(actual.*element) << " for "
                << ::testing::PrintToString(expected.*element) << ", off by "
                << actual.*element - expected.*element << "; ";
    }
    return failure;
}

inline void ExpectAllNan(const KineFrame& frame)
{
    for (const auto element : kElements) EXPECT_TRUE(IsTheNan(frame.*element));
}

// Numbers, and of all NaN only the one that results show.
inline bool HoldsOnlyTheNan(const KineFrame& frame)
{
    return std::all_of(kElements.begin(), kElements.end(),
                       [&](auto element) { return IsNumberOrTheNan(frame.*element); });
}

// ---- Points --------------------------------------------------------------------------------------------

inline ::testing::AssertionResult IsPoint(const Point& actual, const Point& expected,
                                          double tolerance = kTruthMm)
{
    if (Distance(actual, expected) <= tolerance) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << ::testing::PrintToString(actual) << " instead of " << ::testing::PrintToString(expected);
}

// A frame that holds a point and the bits of zero angles.
inline ::testing::AssertionResult IsPointFrame(const KineFrame& frame, const Point& expected,
                                               double tolerance = 1e-10)
{
    for (const auto angle : kAngles) {
        if (SameBits(frame.*angle, 0.0)) continue;
        return ::testing::AssertionFailure() << "angle " << ::testing::PrintToString(frame.*angle);
    }
    return IsPoint(PositionOf(frame), expected, tolerance);
}

// ---- Tilts ---------------------------------------------------------------------------------------------

// The angle between Z of a frame and Z of the frame it is given in, from the sine and the cosine.
inline double TiltOf(const Mat4& m) { return std::atan2(std::hypot(m[0][2], m[1][2]), m[2][2]); }

// The cosine of a tilt is exact to rounding; close to 0 and to half a turn it tells only half the digits.
inline void ExpectTilt(double actual, const Mat4& frame)
{
    const double expected = TiltOf(frame);
    EXPECT_NEAR(std::cos(actual), frame[2][2], 1e-12);
    EXPECT_NEAR(actual, expected, std::sin(expected) > 0.01 ? InRadians(kTruthDeg) : 1e-7);
}

// ---- Error reports -------------------------------------------------------------------------------------

inline std::vector<double> DistancesBetween(std::span<const Point> points)
{
    std::vector<double> distances;
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t j = i + 1; j < points.size(); ++j) {
            distances.push_back(Distance(points[i], points[j]));
        }
    }
    return distances;
}

// Largest, mean and smallest.
inline KineCalibError ReportOf(std::span<const double> distances)
{
    double sum = 0.0;
    for (const double distance : distances) sum += distance;
    return {*std::max_element(distances.begin(), distances.end()),
            sum / static_cast<double>(distances.size()),
            *std::min_element(distances.begin(), distances.end())};
}

inline void ExpectReport(const KineCalibError& report, const KineCalibError& expected,
                         double tolerance = 1e-10)
{
    EXPECT_NEAR(report.Largest, expected.Largest, tolerance);
    EXPECT_NEAR(report.Mean, expected.Mean, tolerance);
    EXPECT_NEAR(report.Smallest, expected.Smallest, tolerance);
}

// A report of poses that agree.
inline void ExpectNoSpread(const KineCalibError& report, double tolerance = kTruthMm)
{
    EXPECT_LE(report.Largest, tolerance);
    EXPECT_LE(report.Mean, report.Largest);
    EXPECT_LE(report.Smallest, report.Mean);
    EXPECT_GE(report.Smallest, 0.0);
}

// The report of distances that are all NaN: its two ends stay where they start.
inline void ExpectNanReport(const KineCalibError& report)
{
    EXPECT_EQ(report.Largest, 0.0);
    EXPECT_TRUE(IsTheNan(report.Mean));
    EXPECT_EQ(report.Smallest, 10000.0);
}

inline bool HoldsOnlyTheNan(const KineCalibError& report)
{
    return IsNumberOrTheNan(report.Largest) && IsNumberOrTheNan(report.Mean) &&
           IsNumberOrTheNan(report.Smallest);
}

}  // namespace kine::test
