// Geometry of the four-axis arms.
//
// R1, R2: rotation of each link, Rz(q) * Rx(alpha) * Ry(beta); R12 = R1 * R2: forearm; R = R12 * Rz(q4):
// flange; d: vertical travel; p: flange; t: tool point; H = R * Rz(tool a): tool, whose X axis is the
// heading.
#include "models/four_axis_geometry.h"

#include <cmath>

namespace kine {

namespace {

// Smallest determinant of the Jacobian (mm^3); equal passes, NaN fails.
constexpr double kMinDeterminant = 1e-5;

// rad above a multiple of pi; singular strictly below, NaN is not.
constexpr double kSingularKind0And1 = 0.0192;
constexpr double kSingularKind2 = 0.0524;

RotMatrix RotZ(const SinCos& angle)
{
    return {angle.cos, -angle.sin, 0.0, angle.sin, angle.cos, 0.0, 0.0, 0.0, 1.0};
}

// Rz(q) * Rx(alpha) * Ry(beta).
RotMatrix LinkRotation(const SinCos& q, const SinCos& alpha, const SinCos& beta)
{
    const RotMatrix rotX{1.0, 0.0, 0.0, 0.0, alpha.cos, -alpha.sin, 0.0, alpha.sin, alpha.cos};
    const RotMatrix rotY{beta.cos, 0.0, beta.sin, 0.0, 1.0, 0.0, -beta.sin, 0.0, beta.cos};
    return RotMultiply(RotMultiply(RotZ(q), rotX), rotY);
}

struct LinkState
{
    RotMatrix r1;
    RotMatrix r12;
    Vec3 upperArm;  // not tilted: tilt 1 acts from joint 2 onward
    Vec3 forearm;   // upper arm's end to flange, with the travel
};

LinkState LinkStateOf(const FourAxisParams& params, const FourAngles& q)
{
    const SinCos q1 = SinCosOf(q[0]);
    const SinCos q2 = SinCosOf(q[1]);
    const double d = params.lead * q[2] / kTwoPi + params.z0;

    LinkState state{};
    state.r1 = LinkRotation(q1, params.alpha1, params.beta1);
    state.r12 = RotMultiply(state.r1, LinkRotation(q2, params.alpha2, params.beta2));
    state.upperArm = {params.l1 * q1.cos, params.l1 * q1.sin, 0.0};
    state.forearm =
        Rotate(state.r1, {params.l2 * q2.cos, params.l2 * q2.sin, 0.0}) + Rotate(state.r12, {0.0, 0.0, d});
    return state;
}

struct ToolState
{
    LinkState links;
    Vec3 tool;     // flange to tool point, in the base
    Vec3 heading;  // X axis of the tool, in the base
};

ToolState ToolStateOf(const FourAxisParams& params, const FourAngles& q, const Pose& tool)
{
    ToolState state{};
    state.links = LinkStateOf(params, q);
    const RotMatrix r = RotMultiply(state.links.r12, RotZ(SinCosOf(q[3])));
    state.tool = Rotate(r, {tool.x, tool.y, tool.z});
    state.heading = AxisX(RotMultiply(r, RotZ(SinCosOf(tool.a))));
    return state;
}

// Derivative of the heading angle when the X axis h of the tool moves by dh.
double HeadingRate(const Vec3& h, const Vec3& dh)
{
    return (h.x * dh.y - h.y * dh.x) / (h.x * h.x + h.y * h.y);
}

}  // namespace

Pose FourAxisToolPose(const FourAxisParams& params, const FourAngles& q, const Pose& tool)
{
    const ToolState state = ToolStateOf(params, q, tool);
    const Vec3 t = state.links.upperArm + state.links.forearm + state.tool;
    return {t.x, t.y, t.z, std::atan2(state.heading.y, state.heading.x), 0.0, 0.0};
}

Pose FourAxisPlanarPose(const FourAxisParams& params, const FourAngles& q)
{
    const LinkState state = LinkStateOf(params, q);
    const Vec3 p = state.upperArm + state.forearm;
    return {p.x, p.y, 0.0, std::atan2(state.r12.r10, state.r12.r00), 0.0, 0.0};
}

Matrix4 FourAxisJacobian(const FourAxisParams& params, const FourAngles& q, const Pose& tool)
{
    const ToolState state = ToolStateOf(params, q, tool);
    const Vec3 t = state.links.upperArm + state.links.forearm + state.tool;
    const Vec3& h = state.heading;

    // Axis 1 turns everything about the base vertical, axis 2 everything behind the upper arm about the
    // tilted vertical of link 1, axis 4 the tool about that of link 2, along which axis 3 moves.
    const Vec3 axis1{0.0, 0.0, 1.0};
    const Vec3 axis2 = AxisZ(state.links.r1);
    const Vec3 axis4 = AxisZ(state.links.r12);
    const Vec3 by1 = CrossProduct(axis1, t);
    const Vec3 by2 = CrossProduct(axis2, state.links.forearm + state.tool);
    const Vec3 by3 = Scale(params.lead / kTwoPi, axis4);
    const Vec3 by4 = CrossProduct(axis4, state.tool);

    return {{{by1.x, by2.x, by3.x, by4.x},
             {by1.y, by2.y, by3.y, by4.y},
             {0.0, by2.z, by3.z, by4.z},
             {HeadingRate(h, CrossProduct(axis1, h)), HeadingRate(h, CrossProduct(axis2, h)), 0.0,
              HeadingRate(h, CrossProduct(axis4, h))}}};
}

KineResult Jacobian4Inverse(const Matrix4& jacobian, Matrix4& inverse)
{
    const auto& j = jacobian.m;
    // Minors of the upper two rows (s) and of the lower two rows (c) by column pair, in the order
    // 01, 02, 03, 12, 13, 23. j[2][0] and j[3][2] are zero and left out of every product.
    const double s01 = j[0][0] * j[1][1] - j[1][0] * j[0][1];
    const double s02 = j[0][0] * j[1][2] - j[1][0] * j[0][2];
    const double s03 = j[0][0] * j[1][3] - j[1][0] * j[0][3];
    const double s12 = j[0][1] * j[1][2] - j[1][1] * j[0][2];
    const double s13 = j[0][1] * j[1][3] - j[1][1] * j[0][3];
    const double s23 = j[0][2] * j[1][3] - j[1][2] * j[0][3];
    const double c01 = -j[3][0] * j[2][1];
    const double c02 = -j[3][0] * j[2][2];
    const double c03 = -j[3][0] * j[2][3];
    const double c12 = -j[3][1] * j[2][2];
    const double c13 = j[2][1] * j[3][3] - j[3][1] * j[2][3];
    const double c23 = j[2][2] * j[3][3];

    const double det = s01 * c23 - s02 * c13 + s03 * c12 + s12 * c03 - s13 * c02 + s23 * c01;
    if (!(std::fabs(det) >= kMinDeterminant)) return KINE_ERR_SINGULAR;

    inverse = {
        {{(j[1][1] * c23 - j[1][2] * c13 + j[1][3] * c12) / det,
          (j[0][2] * c13 - j[0][1] * c23 - j[0][3] * c12) / det, (j[3][1] * s23 + j[3][3] * s12) / det,
          (j[2][2] * s13 - j[2][1] * s23 - j[2][3] * s12) / det},
         {(j[1][2] * c03 - j[1][0] * c23 - j[1][3] * c02) / det,
          (j[0][0] * c23 - j[0][2] * c03 + j[0][3] * c02) / det, (-j[3][0] * s23 - j[3][3] * s02) / det,
          (j[2][3] * s02 - j[2][2] * s03) / det},
         {(j[1][0] * c13 - j[1][1] * c03 + j[1][3] * c01) / det,
          (j[0][1] * c03 - j[0][0] * c13 - j[0][3] * c01) / det,
          (j[3][0] * s13 - j[3][1] * s03 + j[3][3] * s01) / det, (j[2][1] * s03 - j[2][3] * s01) / det},
         {(j[1][1] * c02 - j[1][0] * c12 - j[1][2] * c01) / det,
          (j[0][0] * c12 - j[0][1] * c02 + j[0][2] * c01) / det, (j[3][1] * s02 - j[3][0] * s12) / det,
          (j[2][2] * s01 - j[2][1] * s02) / det}}};
    return KINE_OK;
}

std::uint32_t FourAxisSingularity(double q2, std::uint32_t kind)
{
    if (kind > 2) return 0;
    const double threshold = kind == 2 ? kSingularKind2 : kSingularKind0And1;
    // Truncation is toward zero: just below a multiple of pi, seen from zero, is not singular.
    const double aboveMultiple = std::fabs(q2 - std::trunc(q2 / kPi) * kPi);
    return aboveMultiple < threshold ? 1U : 0U;
}

}  // namespace kine
