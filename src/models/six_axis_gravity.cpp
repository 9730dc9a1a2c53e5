// Gravity deflection of the six-axis arm.
//
// The torques are taken on the nominal arm (twists 90, 0, 90, -90, 90) in the frame that turns with joint
// 1: X outward in the plane of the arm, Y up, Z across (the axis of joints 2 and 3), origin on joint 2.
//
// theta2: q2 + pi/2, the upper arm over the horizontal; A: theta2 + q3, the elbow offset over it; F: weight
// of the payload, N; m[i]: motion of its centre of gravity per radian of joint i + 1; P: torques of F,
// T: torques of the links, N mm.
#include "models/six_axis_gravity.h"

#include <cmath>

#include "math/vec3.h"

namespace kine {

namespace {

// rad, 2 degrees. A larger deflection is not that of a stiff arm; equal fails, NaN fails.
constexpr double kMaxDeflection = 0.03490658503988659;
// m/s^2.
constexpr double kGravity = 9.8;
// The centre of gravity comes in metres, the geometry in millimetres.
constexpr double kMillimetresPerMetre = 1000.0;

struct ArmAngles
{
    SinCos q1, theta2, a, q4, q5, q6;
};

ArmAngles ArmAnglesOf(const SixAngles& q)
{
    const double theta2 = q[1] + kHalfPi;
    return {SinCosOf(q[0]), SinCosOf(theta2), SinCosOf(theta2 + q[2]),
            SinCosOf(q[3]), SinCosOf(q[4]),   SinCosOf(q[5])};
}

struct Payload
{
    Vec3 force;
    std::array<Vec3, 6> axis;
    std::array<Vec3, 6> m;
};

Vec3 WeightInArmPlane(const SixAxisParams& p, double mass, const SinCos& q1)
{
    const double weight = mass * kGravity;
    const Vec3 inBase{weight * (p.mountX.cos * p.mountY.sin), weight * -p.mountX.sin,
                      weight * (-p.mountX.cos * p.mountY.cos)};
    return {q1.cos * inBase.x + q1.sin * inBase.y, inBase.z, q1.sin * inBase.x - q1.cos * inBase.y};
}

Payload PayloadOf(const SixAxisParams& p, const ArmAngles& s, const CombinedLoad& load)
{
    const Vec3 across{0.0, 0.0, 1.0};
    const Vec3 up{0.0, 1.0, 0.0};

    // Axes of the links: elbow offset, forearm, and the wrist turned by q4, q5 and q6.
    const Vec3 upperArm{s.theta2.cos, s.theta2.sin, 0.0};
    const Vec3 elbow{s.a.cos, s.a.sin, 0.0};
    const Vec3 forearm{s.a.sin, -s.a.cos, 0.0};
    const Vec3 x4 = Scale(s.q4.cos, elbow) + Scale(s.q4.sin, across);
    const Vec3 axis5 = Scale(s.q4.cos, across) - Scale(s.q4.sin, elbow);
    const Vec3 x5 = Scale(s.q5.cos, x4) - Scale(s.q5.sin, forearm);
    const Vec3 approach = Scale(s.q5.sin, x4) + Scale(s.q5.cos, forearm);
    const Vec3 x6 = Scale(s.q6.cos, x5) + Scale(s.q6.sin, axis5);
    const Vec3 y6 = Scale(s.q6.cos, axis5) - Scale(s.q6.sin, x5);

    // Centre of gravity seen from the wrist centre, from joint 3, from joint 2 and from joint 1.
    const Vec3 fromWrist = Scale(kMillimetresPerMetre * load.centre.x, x6) +
                           Scale(kMillimetresPerMetre * load.centre.y, y6) +
                           Scale(p.d6 + kMillimetresPerMetre * load.centre.z, approach);
    const Vec3 fromJoint3 = Scale(p.a3, elbow) + Scale(p.d4, forearm) + fromWrist;
    const Vec3 fromJoint2 = Scale(p.a2, upperArm) + fromJoint3;
    const Vec3 fromJoint1 = Vec3{p.a1, 0.0, 0.0} + fromJoint2;

    Payload payload{};
    payload.force = WeightInArmPlane(p, load.mass, s.q1);
    payload.axis = {up, across, across, forearm, axis5, approach};
    payload.m = {CrossProduct(up, fromJoint1),     CrossProduct(across, fromJoint2),
                 CrossProduct(across, fromJoint3), CrossProduct(forearm, fromWrist),
                 CrossProduct(axis5, fromWrist),   CrossProduct(approach, fromWrist)};
    return payload;
}

struct Torques
{
    double t2, t3, t5;
};

// The arm's own weight is tilted only through cos(mountX), which gs contains: mountY leaves it alone.
Torques LinkTorques(const SixAxisParams& p, const ArmAngles& s)
{
    const double w = s.q4.cos * s.a.cos * s.q5.sin + s.q5.cos * s.a.sin;
    return {
        s.theta2.sin * p.gs[1] + s.theta2.cos * p.gs[0] + s.a.cos * p.gs[2] + s.a.sin * p.gs[3] + w * p.gs[4],
        s.a.cos * p.gs[2] + s.a.sin * p.gs[3] + w * p.gs[4],
        -(s.q4.cos * s.a.sin * s.q5.cos + s.q5.sin * s.a.cos) * p.gs[5]};
}

bool IsWithinLimit(const Deflection& d)
{
    return std::fabs(d.q2) < kMaxDeflection && std::fabs(d.q3) < kMaxDeflection &&
           std::fabs(d.q5) < kMaxDeflection;
}

KineResult DeflectionOf(const SixAxisParams& p, const ArmAngles& s, const Payload& payload,
                        Deflection& deflection)
{
    const Torques t = LinkTorques(p, s);
    const Deflection d{(Dot(payload.m[1], payload.force) - t.t2) * p.c2,
                       (Dot(payload.m[2], payload.force) - t.t3) * p.c3,
                       (Dot(payload.m[4], payload.force) + t.t5) * p.c5};
    if (!IsWithinLimit(d)) {
        deflection = {};
        return KINE_ERR_IK_1;
    }
    deflection = d;
    return KINE_OK;
}

// Derivative of the payload torque about joint i + 1 by angle j + 1: whichever of the two joints sits
// nearer the base turns the motion that the other one causes.
double PayloadTorqueBy(const Payload& payload, std::size_t i, std::size_t j)
{
    const Vec3 turned =
        j <= i ? CrossProduct(payload.axis[j], payload.m[i]) : CrossProduct(payload.axis[i], payload.m[j]);
    return Dot(turned, payload.force);
}

// Derivatives of the link torques by q2, q3, q4 and q5, at the same places as in SixAngles.
struct TorqueGradients
{
    SixAngles t2, t3, t5;
};

TorqueGradients LinkTorqueGradients(const SixAxisParams& p, const ArmAngles& s)
{
    const double wByA = s.q5.cos * s.a.cos - s.q4.cos * s.a.sin * s.q5.sin;
    const double wByQ4 = -s.q4.sin * s.a.cos * s.q5.sin;
    const double wByQ5 = s.q4.cos * s.a.cos * s.q5.cos - s.q5.sin * s.a.sin;

    const double t3ByA = s.a.cos * p.gs[3] - s.a.sin * p.gs[2] + wByA * p.gs[4];
    const double t2ByTheta2 = s.theta2.cos * p.gs[1] - s.theta2.sin * p.gs[0] + t3ByA;
    const double t5ByA = (s.q5.sin * s.a.sin - s.q4.cos * s.a.cos * s.q5.cos) * p.gs[5];
    const double t5ByQ4 = s.q4.sin * s.a.sin * s.q5.cos * p.gs[5];
    const double t5ByQ5 = (s.q4.cos * s.a.sin * s.q5.sin - s.q5.cos * s.a.cos) * p.gs[5];

    return {{0.0, t2ByTheta2, t3ByA, wByQ4 * p.gs[4], wByQ5 * p.gs[4], 0.0},
            {0.0, t3ByA, t3ByA, wByQ4 * p.gs[4], wByQ5 * p.gs[4], 0.0},
            {0.0, t5ByA, t5ByA, t5ByQ4, t5ByQ5, 0.0}};
}

DeflectionGradient GradientOf(const SixAxisParams& p, const ArmAngles& s, const Payload& payload)
{
    const TorqueGradients t = LinkTorqueGradients(p, s);
    DeflectionGradient gradient{};
    for (std::size_t j = 0; j < 6; ++j) {
        gradient.q2[j] = (PayloadTorqueBy(payload, 1, j) - t.t2[j]) * p.c2;
        gradient.q3[j] = (PayloadTorqueBy(payload, 2, j) - t.t3[j]) * p.c3;
        gradient.q5[j] = (PayloadTorqueBy(payload, 4, j) + t.t5[j]) * p.c5;
    }
    return gradient;
}

}  // namespace

KineResult GravityDeflection(const SixAxisParams& params, const SixAngles& q, const CombinedLoad& load,
                             Deflection& deflection)
{
    const ArmAngles s = ArmAnglesOf(q);
    return DeflectionOf(params, s, PayloadOf(params, s, load), deflection);
}

KineResult GravityDeflection(const SixAxisParams& params, const SixAngles& q, const CombinedLoad& load,
                             Deflection& deflection, DeflectionGradient& gradient)
{
    const ArmAngles s = ArmAnglesOf(q);
    const Payload payload = PayloadOf(params, s, load);
    const KineResult code = DeflectionOf(params, s, payload, deflection);
    gradient = code == KINE_OK ? GradientOf(params, s, payload) : DeflectionGradient{};
    return code;
}

}  // namespace kine
