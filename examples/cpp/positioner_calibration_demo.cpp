// A positioner with two rotary axes, calibrated with a mark on its table: the robot touches the mark at three
// values of the first axis, then at three of the second. Exits with 1 when a call fails, or when the mark
// does not stand still on the calibrated positioner, also where the robot touches it at values that were not
// taught.
#include <algorithm>
#include <array>
#include <cstdio>

#include "KineDll.h"
#include "cell_demo.h"

namespace {

// The unit at index 0 tells what the robot stands on, so that work objects stand on the others.
constexpr int32_t kUnit = 1;
// The joints are rounded to 0.01 deg: some 0.1 mm at this reach.
constexpr double kMaxMarkSpreadMm = 1.0;

// Each row: the joints that touch the mark, and the two axes of the positioner. Turned in the positive sense:
// the Z axis of a calibrated axis follows the order of the points.
constexpr std::array<KineJoint, 6> kTaught = {{
    {{-21.04, -69.56, 24.58, 0.0, -45.03, -21.04}, {0.0, 0.0}},
    {{-12.08, -62.63, 8.40, 0.0, -35.77, -12.08}, {50.0, 0.0}},
    {{-11.26, -53.10, -17.05, 0.0, -19.85, -11.26}, {100.0, 0.0}},
    {{-18.01, -58.75, 10.44, 0.0, -41.69, -18.01}, {0.0, 60.0}},
    {{-20.74, -50.97, -7.36, 0.0, -31.67, -20.74}, {0.0, 120.0}},
    {{-18.29, -70.88, 19.14, 0.0, -38.26, -18.29}, {35.0, -45.0}},  // for the proof only
}};

KineTool Pointer()
{
    KineTool tool{};
    tool.HeldByRobot = 1;
    tool.TFrame.Z = 160.0;
    return tool;
}

KineMechUnit TwoAxes(const KineFrame& first, const KineFrame& second)
{
    KineMechUnit unit{};
    unit.Active = 1;
    unit.UnitKind = 3;
    unit.AxisCount = 2;
    unit.AxisFrame[0] = first;
    unit.AxisFrame[1] = second;
    unit.AxisParamIndex[0] = 0;  // driven by ExtAxis[0] and ExtAxis[1]
    unit.AxisParamIndex[1] = 1;
    return unit;
}

bool SetPositioner(const KineFrame& first, const KineFrame& second)
{
    const KineMechUnit unit = TwoAxes(first, second);
    return demo::Succeeded("Kine_SetMechUnitParam", Kine_SetMechUnitParam(kUnit, &unit));
}

bool SetUpCell()
{
    const KineKinematicParam arm = demo::Puma560();
    const KineExtAxisParam rotary{};
    // The calibration asks the store which external axes drive the unit; its frames are not known yet.
    return demo::Succeeded("Kine_InitKinematicParam", Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm)) &&
           demo::Succeeded("Kine_SetMechUnitGlobalCfg", Kine_SetMechUnitGlobalCfg(2, 2, 1)) &&
           demo::Succeeded("Kine_SetExtAxisParam", Kine_SetExtAxisParam(0, &rotary)) &&
           demo::Succeeded("Kine_SetExtAxisParam", Kine_SetExtAxisParam(1, &rotary)) && SetPositioner({}, {});
}

// The touched mark in the world; the pose carries the axes of the positioner.
bool MarkInWorld(const KineJoint& joints, KinePose& mark)
{
    const KineTool tool = Pointer();
    KineWobj wobj{};
    wobj.UFFix = 1;
    const KineLoad load{};
    return demo::Succeeded("Kine_JointToWorldPos", Kine_JointToWorldPos(&joints, &tool, &wobj, &load, &mark));
}

bool Calibrate(KineFrame& first, KineFrame& second)
{
    std::array<KinePose, 5> mark{};
    for (std::size_t i = 0; i < mark.size(); ++i) {
        if (!MarkInWorld(kTaught[i], mark[i])) return false;
    }
    // The reference of the second axis is the first where it stood, at 0.
    return demo::Succeeded("Kine_CalcPositionerJ1Prm_3P",
                           Kine_CalcPositionerJ1Prm_3P(kUnit, &mark[0], &mark[1], &mark[2], &first)) &&
           demo::Succeeded(
               "Kine_CalcPositionerJnPrm_3P",
               Kine_CalcPositionerJnPrm_3P(kUnit, 2, &mark[0], &mark[3], &mark[4], &first, &second));
}

// The mark in a work object on the positioner, for every touch. The largest distance from the first is its
// spread.
bool ShowMarkOnUnit(double& spread)
{
    const KineTool tool = Pointer();
    KineWobj onUnit{};
    onUnit.MechUnitIndex = static_cast<int8_t>(kUnit);
    const KineLoad load{};
    KineFrame firstMark{};
    spread = 0.0;
    for (const KineJoint& joints : kTaught) {
        KinePose mark{};
        if (!demo::Succeeded("Kine_JointToWobjPos",
                             Kine_JointToWobjPos(&joints, &tool, &onUnit, &load, &mark)))
            return false;
        if (&joints == kTaught.data()) firstMark = mark.Frame;
        spread = std::max(spread, demo::ResidualOf(firstMark, mark.Frame).mm);
        std::printf("  axes %6.1f %6.1f deg  mark %10.4f %10.4f %10.4f mm\n", joints.ExtAxis[0],
                    joints.ExtAxis[1], mark.Frame.X, mark.Frame.Y, mark.Frame.Z);
    }
    return true;
}

}  // namespace

int main()
{
    KineFrame first{};
    KineFrame second{};
    double spread = 0.0;
    if (!SetUpCell() || !Calibrate(first, second) || !SetPositioner(first, second)) return 1;
    std::printf("Positioner calibration, two rotary axes, from joints to 0.01 deg\n");
    demo::PrintFrame("first axis", first);
    demo::PrintFrame("second axis", second);
    std::printf("The mark on the calibrated positioner; the last touch was not used\n");
    if (!ShowMarkOnUnit(spread)) return 1;
    std::printf("The mark stands still within %.3f mm\n", spread);
    return spread < kMaxMarkSpreadMm ? 0 : 1;
}
