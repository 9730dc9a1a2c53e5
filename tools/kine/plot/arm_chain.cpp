// Six-axis arms are standard Denavit-Hartenberg links Rz(theta) Tz(d) Tx(a) Rx(alpha), so that a link has a
// corner between its d and its a.
#include "plot/arm_chain.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kine_cli {
namespace {

// How far above the flange the links of a four-axis arm are drawn, as a part of their length. The model has
// them in the base plane, below the flange; such arms are built with the screw hanging from the links.
constexpr double kLinkLevel = 0.12;

ArmShape SixAxisArm(const KineSixAxisParam& p, const KineJoint& q)
{
    struct Link
    {
        double theta, d, a, alpha, beta;
    };
    const std::array<Link, 5> links = {{{q.Axis[0], p.d1, p.a1, p.alpha1, 0.0},
                                        {q.Axis[1] + 90.0, 0.0, p.a2, p.alpha2, p.beta2},
                                        {q.Axis[2], p.d3, p.a3, p.alpha3, 0.0},
                                        {q.Axis[3], p.d4, p.a4, p.alpha4, 0.0},
                                        {q.Axis[4], p.d5, p.a5, p.alpha5, 0.0}}};
    ArmShape arm;
    arm.outline.push_back({});
    Transform frame;
    for (const Link& link : links) {
        arm.joints.push_back(frame.origin);
        const Transform corner = frame * TurnZ(link.theta) * Move({0.0, 0.0, link.d});
        frame = corner * Move({link.a, 0.0, 0.0}) * TurnX(link.alpha) * TurnY(link.beta);
        arm.outline.push_back(corner.origin);
        arm.outline.push_back(frame.origin);
    }
    arm.joints.push_back(frame.origin);
    arm.flange = frame * TurnZ(q.Axis[5]) * Move({0.0, 0.0, p.d6});
    arm.outline.push_back(arm.flange.origin);
    return arm;
}

ArmShape FourAxisArm(const KineFourAxisParam& p, const KineJoint& q, double elbow)
{
    const double lift = p.ZOffset + p.ScrewLead * q.Axis[2] / 360.0;
    const double level = std::max(p.ZOffset, lift) + kLinkLevel * (p.Link1Length + p.Link2Length);
    const Transform second =
        TurnZ(q.Axis[0]) * Move({p.Link1Length, 0.0, 0.0}) * TurnX(p.Link1TiltX) * TurnY(p.Link1TiltY);
    const Transform screw =
        second * TurnZ(elbow) * Move({p.Link2Length, 0.0, 0.0}) * TurnX(p.Link2TiltX) * TurnY(p.Link2TiltY);
    ArmShape arm;
    arm.flange = screw * Move({0.0, 0.0, lift}) * TurnZ(q.Axis[3]);
    const Vec3 up = {0.0, 0.0, level};
    arm.outline = {{}, up, second.At(up), screw.At(up), arm.flange.origin};
    arm.joints = {up, second.At(up), screw.At(up), arm.flange.origin};
    return arm;
}

}  // namespace

ArmShape ArmInBase(const Cell& cell, const KineJoint& joints)
{
    if (cell.IsSixAxis()) return SixAxisArm(cell.param.SixAxis, joints);
    const double folded = cell.armType == KINE_ARM_FOUR_AXIS_4110 ? 180.0 : 0.0;
    return FourAxisArm(cell.param.FourAxis, joints, joints.Axis[1] + folded);
}

ArmShape Placed(const Transform& base, const ArmShape& arm)
{
    ArmShape placed;
    placed.base = base * arm.base;
    for (const Vec3& point : arm.outline) placed.outline.push_back(base.At(point));
    for (const Vec3& point : arm.joints) placed.joints.push_back(base.At(point));
    placed.flange = base * arm.flange;
    return placed;
}

Vec3 ShoulderOf(const Cell& cell)
{
    return {0.0, 0.0, cell.IsSixAxis() ? cell.param.SixAxis.d1 : cell.param.FourAxis.ZOffset};
}

double ReachOf(const Cell& cell)
{
    if (!cell.IsSixAxis()) return cell.param.FourAxis.Link1Length + cell.param.FourAxis.Link2Length;
    const KineSixAxisParam& p = cell.param.SixAxis;
    return std::fabs(p.a1) + p.a2 + std::hypot(p.a3, p.d4) + std::fabs(p.d3) + std::fabs(p.a4) +
           std::fabs(p.d5) + std::fabs(p.a5) + std::fabs(p.d6);
}

}  // namespace kine_cli
