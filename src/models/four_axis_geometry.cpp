// Geometry of the four-axis arms.
//
// R1, R2: rotation of each link, Rz(q) * tilt; R12 = R1 * R2: forearm; d: vertical travel; p: flange; t:
// tip; h: heading, the X axis of R12 * Rz(q4) * Rz(tool a).
#include "models/four_axis_geometry.h"

#include <cmath>

namespace kine {

namespace {

// Smallest determinant of the Jacobian (mm^3); equal passes, NaN fails.
constexpr double kMinDeterminant = 1e-5;

// rad above a multiple of pi; singular strictly below, NaN is not.
constexpr double kSingularKind0And1 = 0.0192;
constexpr double kSingularKind2 = 0.0524;

// Rz(angle) * r.
RotMatrix TurnedAboutZ(const SinCos& angle, const RotMatrix& r)
{
    const auto [s, c] = angle;
    return {c * r.r00 - s * r.r10,
            c * r.r01 - s * r.r11,
            c * r.r02 - s * r.r12,  //
            s * r.r00 + c * r.r10,
            s * r.r01 + c * r.r11,
            s * r.r02 + c * r.r12,  //
            r.r20,
            r.r21,
            r.r22};
}

struct LinkState
{
    RotMatrix r1;
    RotMatrix r12;
    Vec3 upperArm;  // not tilted: tilt 1 acts from joint 2 onward
    Vec3 forearm;   // upper arm's end to flange, with the travel
};

LinkState LinkStateOf(const FourAxisParams& params, const SinCos& q1, const SinCos& q2, double q3)
{
    const double d = params.lead * q3 / kTwoPi + params.z0;

    LinkState state{};
    state.r1 = TurnedAboutZ(q1, params.tilt1);
    state.r12 = RotMultiply(state.r1, TurnedAboutZ(q2, params.tilt2));
    state.upperArm = {params.l1 * q1.cos, params.l1 * q1.sin, 0.0};
    state.forearm =
        Rotate(state.r1, {params.l2 * q2.cos, params.l2 * q2.sin, 0.0}) + Scale(d, AxisZ(state.r12));
    return state;
}

// Minors of the upper two rows (s) and of the lower two rows (c) by column pair.
struct Minors
{
    double s01, s02, s03, s12, s13, s23;
    double c01, c02, c03, c12, c13, c23;
};

// j[2][0] and j[3][2] are zero and left out of every product.
Minors MinorsOf(const Matrix4& jacobian)
{
    const auto& j = jacobian.m;
    return {j[0][0] * j[1][1] - j[1][0] * j[0][1],
            j[0][0] * j[1][2] - j[1][0] * j[0][2],
            j[0][0] * j[1][3] - j[1][0] * j[0][3],
            j[0][1] * j[1][2] - j[1][1] * j[0][2],
            j[0][1] * j[1][3] - j[1][1] * j[0][3],
            j[0][2] * j[1][3] - j[1][2] * j[0][3],  //
            -j[3][0] * j[2][1],
            -j[3][0] * j[2][2],
            -j[3][0] * j[2][3],
            -j[3][1] * j[2][2],
            j[2][1] * j[3][3] - j[3][1] * j[2][3],
            j[2][2] * j[3][3]};
}

double Determinant(const Minors& m)
{
    return m.s01 * m.c23 - m.s02 * m.c13 + m.s03 * m.c12 + m.s12 * m.c03 - m.s13 * m.c02 + m.s23 * m.c01;
}

// Derivative of the heading angle when the X axis h of the tool moves by dh.
double HeadingRate(const Vec3& h, const Vec3& dh)
{
    return (h.x * dh.y - h.y * dh.x) / (h.x * h.x + h.y * h.y);
}

}  // namespace

FourAxisTool FourAxisToolOf(const Pose& tool) { return {{tool.x, tool.y, tool.z}, SinCosOf(tool.a)}; }

FourSines FourSinesOf(const FourAngles& q) { return {SinCosOf(q[0]), SinCosOf(q[1]), SinCosOf(q[3])}; }

FourAxisState FourAxisStateOf(const FourAxisParams& params, const FourSines& sines, double q3,
                              const FourAxisTool& tool)
{
    const LinkState links = LinkStateOf(params, sines.q1, sines.q2, q3);
    const SinCos& q4 = sines.q4;
    // What turns with joint 4 lies in its plane: first turned there, then carried to the base.
    const Vec3 turned{q4.cos * tool.tip.x - q4.sin * tool.tip.y, q4.sin * tool.tip.x + q4.cos * tool.tip.y,
                      tool.tip.z};
    const SinCos headingAngle = SumOf(q4, tool.a);

    FourAxisState state{};
    state.axis2 = AxisZ(links.r1);
    state.axis4 = AxisZ(links.r12);
    state.tool = Rotate(links.r12, turned);
    state.fromJoint2 = links.forearm + state.tool;
    state.tip = links.upperArm + links.forearm + state.tool;
    state.heading = Scale(headingAngle.cos, AxisX(links.r12)) + Scale(headingAngle.sin, AxisY(links.r12));
    return state;
}

Pose FourAxisToolPose(const FourAxisState& state)
{
    const Vec3& t = state.tip;
    return {t.x, t.y, t.z, std::atan2(state.heading.y, state.heading.x), 0.0, 0.0};
}

Pose FourAxisPlanarPose(const FourAxisParams& params, const FourAngles& q)
{
    const LinkState state = LinkStateOf(params, SinCosOf(q[0]), SinCosOf(q[1]), q[2]);
    const Vec3 p = state.upperArm + state.forearm;
    return {p.x, p.y, 0.0, std::atan2(state.r12.r10, state.r12.r00), 0.0, 0.0};
}

Matrix4 FourAxisJacobian(const FourAxisParams& params, const FourAxisState& state)
{
    const Vec3& h = state.heading;

    // Axis 1 turns everything about the base vertical, axis 2 everything behind the upper arm about the
    // tilted vertical of link 1, axis 4 the tool about that of link 2, along which axis 3 moves.
    const Vec3 axis1{0.0, 0.0, 1.0};
    const Vec3 by1 = CrossProduct(axis1, state.tip);
    const Vec3 by2 = CrossProduct(state.axis2, state.fromJoint2);
    const Vec3 by3 = Scale(params.lead / kTwoPi, state.axis4);
    const Vec3 by4 = CrossProduct(state.axis4, state.tool);

    return {{{by1.x, by2.x, by3.x, by4.x},
             {by1.y, by2.y, by3.y, by4.y},
             {0.0, by2.z, by3.z, by4.z},
             {HeadingRate(h, CrossProduct(axis1, h)), HeadingRate(h, CrossProduct(state.axis2, h)), 0.0,
              HeadingRate(h, CrossProduct(state.axis4, h))}}};
}

KineResult Jacobian4Inverse(const Matrix4& jacobian, Matrix4& inverse)
{
    const auto& j = jacobian.m;
    const Minors minors = MinorsOf(jacobian);
    const double det = Determinant(minors);
    if (!(std::fabs(det) >= kMinDeterminant)) return KINE_ERR_SINGULAR;

    const auto& [s01, s02, s03, s12, s13, s23, c01, c02, c03, c12, c13, c23] = minors;
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

KineResult Jacobian4Solve(const Matrix4& jacobian, const std::array<double, 4>& right,
                          std::array<double, 4>& solution)
{
    const auto& j = jacobian.m;
    const auto& b = right;
    const Minors minors = MinorsOf(jacobian);
    const double det = Determinant(minors);
    if (!(std::fabs(det) >= kMinDeterminant)) return KINE_ERR_SINGULAR;

    // The same with the right side in the place of a column: minors of the upper two rows (u) and of the
    // lower two (v).
    const auto& [s01, s02, s03, s12, s13, s23, c01, c02, c03, c12, c13, c23] = minors;
    const double u0 = b[0] * j[1][0] - b[1] * j[0][0];
    const double u1 = b[0] * j[1][1] - b[1] * j[0][1];
    const double u2 = b[0] * j[1][2] - b[1] * j[0][2];
    const double u3 = b[0] * j[1][3] - b[1] * j[0][3];
    const double v0 = b[2] * j[3][0];
    const double v1 = b[2] * j[3][1] - b[3] * j[2][1];
    const double v2 = -b[3] * j[2][2];
    const double v3 = b[2] * j[3][3] - b[3] * j[2][3];

    solution = {(u1 * c23 - u2 * c13 + u3 * c12 + s12 * v3 - s13 * v2 + s23 * v1) / det,
                (-u0 * c23 + u2 * c03 - u3 * c02 - s02 * v3 + s03 * v2 - s23 * v0) / det,
                (u0 * c13 - u1 * c03 + u3 * c01 + s01 * v3 - s03 * v1 + s13 * v0) / det,
                (-u0 * c12 + u1 * c02 - u2 * c01 - s01 * v2 + s02 * v1 - s12 * v0) / det};
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
