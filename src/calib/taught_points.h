// The positions of taught poses, mm, and the check that three of them span a plane.
#pragma once

#include <array>
#include <cmath>
#include <span>

#include "KineDll.h"
#include "chain/records.h"
#include "math/vec3.h"

namespace kine {

inline Vec3 PointOf(const PoseRecord& pose) { return pose.frame.Position(); }

inline std::array<Vec3, 3> PointsOf(std::span<const PoseRecord, 3> taught)
{
    return {PointOf(taught[0]), PointOf(taught[1]), PointOf(taught[2])};
}

// What three points must keep to; equal passes, NaN passes. Each calibration has limits of its own.
struct TriangleLimits
{
    double minDistance;  // between any two points, mm
    double maxCosine;    // of the angle at the first point, or of its supplement
};

// Codes in this order: KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR.
[[nodiscard]] inline KineResult CheckTriangle(const Vec3& q1, const Vec3& q2, const Vec3& q3,
                                              const TriangleLimits& limits)
{
    const Vec3 d12 = q2 - q1;
    const Vec3 d13 = q3 - q1;
    const double n12 = Norm(d12);
    const double n13 = Norm(d13);
    if (n12 < limits.minDistance || n13 < limits.minDistance) return KINE_ERR_CALIB_POINTS_CLOSE;
    if (Norm(q3 - q2) < limits.minDistance) return KINE_ERR_CALIB_POINTS_CLOSE;
    if (std::fabs(Dot(d12, d13)) / (n12 * n13) > limits.maxCosine) return KINE_ERR_CALIB_COLLINEAR;
    return KINE_OK;
}

}  // namespace kine
