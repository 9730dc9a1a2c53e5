// Posture and singularity of the six-axis arm.
#include "models/six_axis_posture.h"

#include <cmath>

#include "models/quadrant.h"

namespace kine {

namespace {

// A joint set is singular strictly below these; NaN is not.
struct SingularityLimits
{
    double shoulder;  // mm, wrist centre to the joint-1 axis
    double elbow;     // cosine of the elbow angle
    double wrist;     // sine of q5
};

constexpr SingularityLimits kLimitsKind0And1{20.0, 0.05, 0.05};
// 0.087266 is not exactly the sine of 5 degrees, nor 5 degrees.
constexpr SingularityLimits kLimitsKind2{30.0, 0.087266, 0.087266};
// Nothing is below zero: nothing is ever singular.
constexpr SingularityLimits kLimitsOtherKinds{0.0, 0.0, 0.0};

SingularityLimits LimitsOf(std::uint32_t kind)
{
    if (kind <= 1) return kLimitsKind0And1;
    if (kind == 2) return kLimitsKind2;
    return kLimitsOtherKinds;
}

// Signed distance of the wrist centre from the joint-1 axis, in the plane of the arm.
double WristDistance(const SixAxisParams& p, const SixAngles& q)
{
    const double s2 = SinCosOf(q[1]).sin;
    const auto [s23, c23] = SinCosOf(q[1] + q[2]);
    return p.a1 - p.a2 * s2 + p.d4 * c23 - p.a3 * s23;
}

}  // namespace

KineArmConfig SixAxisArmConfig(const SixAxisParams& params, const SixAngles& q)
{
    const bool isShoulderBack = WristDistance(params, q) < 0.0;
    const bool isElbowFar = q[2] >= kHalfPi - params.elbowAngle;
    const bool isWristFlipped = !(q[4] >= 0.0);  // NaN counts as flipped
    return {QuadrantOf(q[0]), QuadrantOf(q[3]), QuadrantOf(q[5]),
            (isShoulderBack ? kShoulderBack : 0) + (isElbowFar ? kElbowFar : 0) +
                (isWristFlipped ? kWristFlipped : 0)};
}

std::uint32_t SixAxisSingularity(const SixAxisParams& params, const SixAngles& q, std::uint32_t kind)
{
    const SingularityLimits limits = LimitsOf(kind);
    const auto [s3, c3] = SinCosOf(q[2]);
    const double shoulder = std::fabs(WristDistance(params, q));
    const double elbow = std::fabs((params.d4 * c3 - params.a3 * s3) / params.wristReach);
    const double wrist = std::fabs(SinCosOf(q[4]).sin);

    return (shoulder < limits.shoulder ? 1U : 0U) | (elbow < limits.elbow ? 2U : 0U) |
           (wrist < limits.wrist ? 4U : 0U);
}

}  // namespace kine
