// Posture and singularity of the six-axis arm.
//
// theta2: q2 + pi/2, which the sines of joint 2 are those of; a: theta2 + q3.
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

// Share of the largest wrist distance, and rad. Nearer to the axis, or with larger angles, the rounding of
// sums may decide the side, which is then taken from WristDistance itself.
constexpr double kCertainSide = 1e-6;
constexpr double kCertainAngles = 1e6;

// WristDistance(p, q) < 0, most often without a sine of its own.
bool IsShoulderBack(const SixAxisParams& p, const SixAngles& q, const JointSines& sines)
{
    const SinCos theta2 = sines[1];
    const SinCos a = SumOf(theta2, sines[2]);
    const double distance = p.a1 + p.a2 * theta2.cos + p.d4 * a.sin + p.a3 * a.cos;
    const double largest = std::fabs(p.a1) + std::fabs(p.a2) + p.wristReach;
    const bool isCertain =
        std::fabs(distance) > kCertainSide * largest && std::fabs(q[1]) + std::fabs(q[2]) < kCertainAngles;
    return (isCertain ? distance : WristDistance(p, q)) < 0.0;
}

KineArmConfig ConfigOf(const SixAxisParams& params, const SixAngles& q, bool isShoulderBack)
{
    const bool isElbowFar = q[2] >= kHalfPi - params.elbowAngle;
    const bool isWristFlipped = !(q[4] >= 0.0);  // NaN counts as flipped
    return {QuadrantOf(q[0]), QuadrantOf(q[3]), QuadrantOf(q[5]),
            (isShoulderBack ? kShoulderBack : 0) + (isElbowFar ? kElbowFar : 0) +
                (isWristFlipped ? kWristFlipped : 0)};
}

}  // namespace

KineArmConfig SixAxisArmConfig(const SixAxisParams& params, const SixAngles& q)
{
    return ConfigOf(params, q, WristDistance(params, q) < 0.0);
}

KineArmConfig SixAxisArmConfig(const SixAxisParams& params, const SixAngles& q, const JointSines& sines)
{
    return ConfigOf(params, q, IsShoulderBack(params, q, sines));
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
