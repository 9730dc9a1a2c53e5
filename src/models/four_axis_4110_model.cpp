// Arm type 4110 behind the model interface: what differs from arm type 4.
#include "models/four_axis_4110_model.h"

#include "models/four_axis_geometry.h"
#include "models/four_axis_inverse.h"
#include "models/four_axis_model.h"
#include "models/quadrant.h"

namespace kine {

namespace {

// Bias of the turn windows of axes 1, 2 and 4; arm type 4 has a larger one.
constexpr double kTurnBias = 5.555555556e-6;

// Whole turns are counted in double, so that any angle can be wrapped.
double WrapToHalfTurn(double angle)
{
    const double turns = angle / kPi * 0.5;
    const double wholeTurns = std::trunc(angle > 0.0 ? turns + 0.5 : turns - 0.5);
    return angle - kTwoPi * wholeTurns;
}

// Public axis 2 from the elbow angle. The terms are summed in this order because the window keeps the first
// value it reaches.
double Axis2OfElbow(double elbow, std::int32_t turn)
{
    const double halfTurns = turn * kPi;
    return 2.0 * halfTurns + elbow - kPi - (turn % 4) * kHalfPi + halfTurns * 0.5;
}

}  // namespace

KineResult Select4110Turns(const KineArmConfig& config, FourAngles& q)
{
    q[3] = ShiftByTurn(q[3], config.Cfg4);
    if (!QuadrantWindow(q[3], config.Cfg4, kTurnBias)) return KINE_ERR_IK_REACH;
    q[0] = ShiftByTurn(q[0], config.Cfg2);
    if (!QuadrantWindow(q[0], config.Cfg2, kTurnBias)) return KINE_ERR_IK_REACH;
    q[1] = Axis2OfElbow(q[1], config.Cfg3);
    if (!QuadrantWindow(q[1], config.Cfg3, kTurnBias)) return KINE_ERR_IK_REACH;
    return KINE_OK;
}

KineResult FourAxis4110Model::InitModel(std::uint32_t armType, const KineKinematicParam* param)
{
    return InitFourAxisParams(KINE_ARM_FOUR_AXIS_4110, armType, param, params_);
}

LazyPose FourAxis4110Model::ForwardKinematics(Joints& joints, const ToolBlock& tool) const
{
    joints.axis[1] += kPi;
    return FourAxisToolPose(FourAxisStateOf(params_, FourAnglesOf(joints), FourAxisToolOf(tool.frame)));
}

Pose FourAxis4110Model::FlangePose(const Joints& joints) const
{
    return FourAxisPlanarPose(params_, FourAnglesOf(joints));
}

KineArmConfig FourAxis4110Model::GetArmConfig(Joints& joints) const
{
    KineArmConfig config{};
    config.Cfg2 = QuadrantOf(joints.axis[0]);
    config.Cfg3 = QuadrantOf(joints.axis[1]);  // before wrapping
    joints.axis[1] = WrapToHalfTurn(joints.axis[1]);
    config.Cfg1 = joints.axis[1] < 0.0 ? 1 : -1;  // the opposite sense of arm type 4
    config.Cfg4 = QuadrantOf(joints.axis[3]);
    return config;
}

void FourAxis4110Model::GetAxisLimits(AxisLimits& limits) const { ReadFourAxisLimits(params_, limits); }

void FourAxis4110Model::SetAxisLimits(const AxisLimits& limits) { StoreFourAxisLimits(limits, params_); }

KineResult FourAxis4110Model::InverseKinematics(const LazyPose& target, const ToolBlock& tool,
                                                const KineArmConfig& config, Joints& joints) const
{
    if (!IsTurnNumberServed(config.Cfg2) || !IsTurnNumberServed(config.Cfg3) ||
        !IsTurnNumberServed(config.Cfg4)) {
        return KINE_ERR_CONFIG;
    }
    const Pose goal = FourAxisGoal(target);
    FourAxisSeed seed{};
    if (const KineResult code = FourAxisClosedForm(params_, goal, tool.frame, config.Cfg1, seed)) return code;
    // The test is made on the elbow less the quarter turns of Cfg3: with Cfg3 = 1 it fires near 90 degrees
    // and not near 0.
    if (std::fabs(seed.elbow - (config.Cfg3 % 4) * kHalfPi) < kMinElbowAngle) return KINE_ERR_IK_SINGULAR;

    FourAngles q{ShiftByTurn(seed.q1, config.Cfg2), ShiftByTurn(seed.elbow, config.Cfg3), seed.q3,
                 ShiftByTurn(seed.q4, config.Cfg4)};
    if (const KineResult code = FourAxisRefine(params_, goal, tool.frame, q)) return code;

    if (const KineResult code = Select4110Turns(config, q)) return code;
    return WriteFourAxes(q, joints.axis);
}

std::uint32_t FourAxis4110Model::IsSingularity(const Joints& joints, std::uint32_t kind) const
{
    return FourAxisSingularity(joints.axis[1], kind);
}

}  // namespace kine
