// Gravity deflection of the six-axis arm.
//
// The torques are taken on the nominal arm (twists 90, 0, 90, -90, 90) in the frame that turns with joint
// 1: X outward in the plane of the arm, Y up, Z across (the axis of joints 2 and 3), origin on joint 2.
//
// The frame of the wrist turns with joint 4 too: X along the forearm, Z along the axis of joint 5, origin
// in the wrist centre.
//
// theta2: q2 + pi/2, the upper arm over the horizontal; A: theta2 + q3, the elbow offset over it; F: weight
// of the payload, N; r: its centre of gravity seen from a joint, mm; torques in N mm.
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

ArmAngles ArmAnglesOf(const JointSines& q) { return {q[0], q[1], SumOf(q[1], q[2]), q[3], q[4], q[5]}; }

// The payload as joints 2, 3 and 5 feel it.
struct Payload
{
    double x2, y2;    // joint 2 to the centre of gravity, in the plane of the arm
    double x3, y3;    // joint 3 to it
    Vec3 force;       // F in the frame of the arm
    Vec3 fromWrist;   // wrist centre to the centre of gravity, in the frame of the wrist
    Vec3 wristForce;  // F in the frame of the wrist
};

Vec3 WeightInArmPlane(const SixAxisParams& p, double mass, const SinCos& q1)
{
    const double weight = mass * kGravity;
    const Vec3 inBase{weight * (p.mountX.cos * p.mountY.sin), weight * -p.mountX.sin,
                      weight * (-p.mountX.cos * p.mountY.cos)};
    return {q1.cos * inBase.x + q1.sin * inBase.y, inBase.z, q1.sin * inBase.x - q1.cos * inBase.y};
}

// A vector turned by an angle in the plane of two of its coordinates, u towards v.
struct PlaneVec
{
    double u, v;
};

PlaneVec Turned(const SinCos& angle, double u, double v)
{
    return {angle.cos * u - angle.sin * v, angle.sin * u + angle.cos * v};
}

Payload PayloadOf(const SixAxisParams& p, const ArmAngles& s, const CombinedLoad& load)
{
    // From the flange to the frame of the wrist: by q6 about the approach axis, then by q5.
    const PlaneVec byQ6 =
        Turned(s.q6, kMillimetresPerMetre * load.centre.x, kMillimetresPerMetre * load.centre.y);
    const double approach = p.d6 + kMillimetresPerMetre * load.centre.z;

    Payload payload{};
    payload.fromWrist = {s.q5.cos * approach - s.q5.sin * byQ6.u, s.q5.sin * approach + s.q5.cos * byQ6.u,
                         byQ6.v};

    // On to the forearm by q4, and to the plane of the arm by A.
    const PlaneVec byQ4 = Turned(s.q4, payload.fromWrist.y, payload.fromWrist.z);
    const double alongForearm = p.d4 + payload.fromWrist.x;
    const double alongElbow = p.a3 + byQ4.u;
    payload.x3 = s.a.cos * alongElbow + s.a.sin * alongForearm;
    payload.y3 = s.a.sin * alongElbow - s.a.cos * alongForearm;
    payload.x2 = p.a2 * s.theta2.cos + payload.x3;
    payload.y2 = p.a2 * s.theta2.sin + payload.y3;

    // The weight goes the other way.
    payload.force = WeightInArmPlane(p, load.mass, s.q1);
    const auto& [x, y, z] = payload.force;
    const double elbowForce = s.a.cos * x + s.a.sin * y;
    payload.wristForce = {s.a.sin * x - s.a.cos * y, s.q4.cos * elbowForce + s.q4.sin * z,
                          s.q4.cos * z - s.q4.sin * elbowForce};
    return payload;
}

struct Torques
{
    double t2, t3, t5;
};

// Moments of F about the axes of joints 2 and 3 (Z of the arm) and of joint 5 (Z of the wrist).
Torques PayloadTorques(const Payload& payload)
{
    const Vec3& r = payload.fromWrist;
    const Vec3& f = payload.wristForce;
    return {payload.x2 * payload.force.y - payload.y2 * payload.force.x,
            payload.x3 * payload.force.y - payload.y3 * payload.force.x, r.x * f.y - r.y * f.x};
}

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
    const Torques links = LinkTorques(p, s);
    const Torques load = PayloadTorques(payload);
    const Deflection d{(load.t2 - links.t2) * p.c2, (load.t3 - links.t3) * p.c3, (load.t5 + links.t5) * p.c5};
    if (!IsWithinLimit(d)) {
        deflection = {};
        return KINE_ERR_IK_1;
    }
    deflection = d;
    return KINE_OK;
}

// Derivatives of torques about joints 2, 3 and 5 by the six joint angles.
struct TorqueGradients
{
    SixAngles t2, t3, t5;
};

// By angle j + 1 the torque about joint i + 1 changes by F . (axis[a] x m[b]) = axis[a] . n[b], a the
// smaller and b the larger of i and j, m[b] = axis[b] x r the motion of the centre of gravity, n[b] = m[b]
// x F: whichever of the two joints sits nearer the base turns the motion that the other one causes. n2 and
// n3 are needed in the frame of the arm, n4 to n6 in that of the wrist, where axis 4 is X, axis 5 is Z and
// axis 6 lies in the XY plane at q5.
TorqueGradients PayloadTorqueGradients(const ArmAngles& s, const Payload& payload)
{
    const Vec3& r = payload.fromWrist;
    const Vec3& f = payload.wristForce;
    const Vec3 n4{-r.z * f.z - r.y * f.y, r.y * f.x, r.z * f.x};
    const Vec3 n5{r.x * f.z, r.y * f.z, -r.y * f.y - r.x * f.x};
    const Vec3 m6{s.q5.sin * r.z, -s.q5.cos * r.z, s.q5.cos * r.y - s.q5.sin * r.x};
    const Vec3 n6 = CrossProduct(m6, f);

    // Z of the arm is the axis of joints 2 and 3, Y of the arm that of joint 1.
    const auto armZ = [&s](const Vec3& n) { return s.q4.sin * n.y + s.q4.cos * n.z; };
    const Vec3& w = payload.force;
    const double n2Z = -(payload.x2 * w.x + payload.y2 * w.y);
    const double n3Z = -(payload.x3 * w.x + payload.y3 * w.y);
    const double n4Z = armZ(n4);
    const double n5Z = armZ(n5);
    const double n6Z = armZ(n6);
    const double n5Y = s.a.sin * (s.q4.cos * n5.y - s.q4.sin * n5.z) - s.a.cos * n5.x;
    return {{payload.y2 * w.z, n2Z, n3Z, n4Z, n5Z, n6Z},
            {payload.y3 * w.z, n3Z, n3Z, n4Z, n5Z, n6Z},
            {n5Y, n5Z, n5Z, n5.x, n5.z, n6.z}};
}

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
    const TorqueGradients links = LinkTorqueGradients(p, s);
    const TorqueGradients load = PayloadTorqueGradients(s, payload);
    DeflectionGradient gradient{};
    for (std::size_t j = 0; j < 6; ++j) {
        gradient.q2[j] = (load.t2[j] - links.t2[j]) * p.c2;
        gradient.q3[j] = (load.t3[j] - links.t3[j]) * p.c3;
        gradient.q5[j] = (load.t5[j] + links.t5[j]) * p.c5;
    }
    return gradient;
}

}  // namespace

KineResult GravityDeflection(const SixAxisParams& params, const JointSines& q, const CombinedLoad& load,
                             Deflection& deflection)
{
    const ArmAngles s = ArmAnglesOf(q);
    return DeflectionOf(params, s, PayloadOf(params, s, load), deflection);
}

KineResult GravityDeflection(const SixAxisParams& params, const JointSines& q, const CombinedLoad& load,
                             Deflection& deflection, DeflectionGradient& gradient)
{
    const ArmAngles s = ArmAnglesOf(q);
    const Payload payload = PayloadOf(params, s, load);
    const KineResult code = DeflectionOf(params, s, payload, deflection);
    gradient = code == KINE_OK ? GradientOf(params, s, payload) : DeflectionGradient{};
    return code;
}

}  // namespace kine
