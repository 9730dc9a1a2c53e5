// Chains and solvers of Orocos KDL.
#include "kdl_arms.h"

namespace kine::bench {

namespace {

double InMetres(double mm) { return mm * kMetresPerMm; }
double InRadians(double deg) { return deg * kRadPerDeg; }

// A joint about Z and the link behind it.
KDL::Segment Turning(const KDL::Frame& link) { return KDL::Segment(KDL::Joint(KDL::Joint::RotZ), link); }

// Tz(d) * Tx(a) * Rx(alpha).
KDL::Frame LinkOf(double d, double a, double alphaDeg)
{
    return {KDL::Rotation::RotX(InRadians(alphaDeg)), KDL::Vector(InMetres(a), 0.0, InMetres(d))};
}

// Only the nominal parameters: the chain is that of the rigid arm without link errors.
KDL::Chain SixAxisChain(const KineSixAxisParam& p, const KDL::Frame& tool)
{
    // Joint 2 of the library counts from the upright upper arm.
    const KDL::Frame upright(KDL::Rotation::RotZ(InRadians(90.0)));
    KDL::Chain chain;
    chain.addSegment(Turning(LinkOf(p.d1, p.a1, 90.0) * upright));
    chain.addSegment(Turning(LinkOf(0.0, p.a2, 0.0)));
    chain.addSegment(Turning(LinkOf(p.lateralOffset, p.a3, 90.0)));
    chain.addSegment(Turning(LinkOf(p.d4, 0.0, -90.0)));
    chain.addSegment(Turning(LinkOf(0.0, 0.0, 90.0)));
    chain.addSegment(Turning(LinkOf(p.d6, 0.0, 0.0) * tool));
    return chain;
}

// A link of the length along X, then the tilts of the axis behind it.
KDL::Frame TiltedLink(double length, double tiltXDeg, double tiltYDeg)
{
    return {KDL::Rotation::RotX(InRadians(tiltXDeg)) * KDL::Rotation::RotY(InRadians(tiltYDeg)),
            KDL::Vector(InMetres(length), 0.0, 0.0)};
}

KDL::Chain FourAxisChain(const KineFourAxisParam& p, const KDL::Frame& tool)
{
    KDL::Chain chain;
    chain.addSegment(Turning(TiltedLink(p.Link1Length, p.Link1TiltX, p.Link1TiltY)));
    chain.addSegment(Turning(TiltedLink(p.Link2Length, p.Link2TiltX, p.Link2TiltY)));
    chain.addSegment(
        KDL::Segment(KDL::Joint(KDL::Joint::TransZ), KDL::Frame(KDL::Vector(0.0, 0.0, InMetres(p.ZOffset)))));
    chain.addSegment(Turning(tool));
    return chain;
}

Rotation RotationOf(const KDL::Rotation& m)
{
    return {{{m(0, 0), m(0, 1), m(0, 2)}, {m(1, 0), m(1, 1), m(1, 2)}, {m(2, 0), m(2, 1), m(2, 2)}}};
}

// Ten degrees wider than the joints that are drawn.
KDL::JntArray LimitsOf(const Arm& arm, bool upper)
{
    const KineJoint low = test::MakeJoints({-180.0, -120.0, -95.0, -180.0, -130.0, -180.0});
    const KineJoint high = test::MakeJoints({180.0, 120.0, 255.0, 180.0, 130.0, 180.0});
    const KineJoint lowFour = test::MakeJoints({-170.0, -160.0, -1510.0, -180.0});
    const KineJoint highFour = test::MakeJoints({170.0, 160.0, 1510.0, 180.0});
    if (arm.type == KINE_ARM_SIX_AXIS) return KdlJointsOf(arm, upper ? high : low);
    return KdlJointsOf(arm, upper ? highFour : lowFour);
}

}  // namespace

KDL::Frame KdlFrameOf(const KineFrame& frame)
{
    return {KDL::Rotation::RPY(InRadians(frame.C), InRadians(frame.B), InRadians(frame.A)),
            KDL::Vector(InMetres(frame.X), InMetres(frame.Y), InMetres(frame.Z))};
}

KDL::Chain KdlChainOf(const Arm& arm, const KineFrame& tool)
{
    return arm.type == KINE_ARM_SIX_AXIS ? SixAxisChain(arm.param.SixAxis, KdlFrameOf(tool))
                                         : FourAxisChain(arm.param.FourAxis, KdlFrameOf(tool));
}

KDL::JntArray KdlJointsOf(const Arm& arm, const KineJoint& joints)
{
    const bool isSixAxis = arm.type == KINE_ARM_SIX_AXIS;
    KDL::JntArray q(isSixAxis ? 6 : 4);
    for (unsigned i = 0; i < q.rows(); ++i) q(i) = InRadians(joints.Axis[i]);
    if (!isSixAxis) q(2) = InMetres(arm.param.FourAxis.ScrewLead * joints.Axis[2] / 360.0);
    return q;
}

Residual KdlResidualOf(const KDL::Frame& a, const KDL::Frame& b)
{
    return {(a.p - b.p).Norm() / kMetresPerMm, AngleBetween(RotationOf(a.M), RotationOf(b.M))};
}

KdlArm::KdlArm(const Arm& arm, const KineFrame& tool)
    : chain_(KdlChainOf(arm, tool)),
      forward_(chain_),
      jacobian_(chain_),
      velocity_(chain_),
      levenbergMarquardt_(chain_),
      newton_(chain_, LimitsOf(arm, false), LimitsOf(arm, true), forward_, velocity_)
{}

}  // namespace kine::bench
