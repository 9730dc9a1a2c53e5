// A tool calibrated at the robot: its tip touches one spike in three orientations, then moves along its Z and
// towards its X axis. The joints are as a pendant shows them, to a hundredth of a degree, so that the poses
// disagree a little and the error report says by how much. Exits with 1 when a call fails, or when the tool
// found is not the known one within what the rounding allows.
#include <array>
#include <cstdio>

#include "KineDll.h"
#include "cell_demo.h"

namespace {

// The joints were computed for this tool.
constexpr KineFrame kKnownTool = {25.0, -10.0, 160.0, 0.0, 25.0, 0.0};
constexpr double kMaxErrorMm = 0.5;
constexpr double kMaxErrorDeg = 0.5;

struct TaughtJoints
{
    const char* label;
    KineJoint joints;
};

constexpr std::array<TaughtJoints, 5> kTaught = {{
    {"touch 1", {{-23.86, -49.37, 7.07, -10.41, -71.09, -18.43}, {}}},
    {"touch 2", {{-14.86, -50.49, 3.25, -59.19, -64.46, -36.99}, {}}},
    {"touch 3", {{-28.73, -39.98, -12.74, 32.64, -34.16, 6.79}, {}}},
    {"along Z", {{-23.86, -56.71, 7.93, -10.9, -64.72, -17.14}, {}}},
    {"towards X", {{-21.34, -58.62, 25.45, -8.97, -80.42, -18.0}, {}}},
}};

// The pose to teach: the flange in the base, which is the tool centre point of a tool of zeros.
bool FlangeOf(const KineJoint& joints, KinePose& flange)
{
    KineTool noTool{};
    noTool.HeldByRobot = 1;
    KineWobj wobj{};
    wobj.UFFix = 1;
    const KineLoad load{};
    return demo::Succeeded("Kine_JointToBasePos",
                           Kine_JointToBasePos(&joints, &noTool, &wobj, &load, &flange));
}

// Where the calibrated tool says that the tip is: the same place for every touch, had they been exact.
bool ShowTip(const TaughtJoints& taught, const KineFrame& frame)
{
    KineTool tool{};
    tool.HeldByRobot = 1;
    tool.TFrame = frame;
    KineWobj wobj{};
    wobj.UFFix = 1;
    const KineLoad load{};
    KinePose tip{};
    if (!demo::Succeeded("Kine_JointToBasePos",
                         Kine_JointToBasePos(&taught.joints, &tool, &wobj, &load, &tip)))
        return false;
    demo::PrintFrame(taught.label, tip.Frame);
    return true;
}

}  // namespace

int main()
{
    const KineKinematicParam arm = demo::Puma560();
    if (!demo::Succeeded("Kine_InitKinematicParam", Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm)))
        return 1;

    std::printf("Tool calibration, Puma 560: the flange in the base, from joints to 0.01 deg\n");
    std::array<KinePose, kTaught.size()> flange{};
    for (std::size_t i = 0; i < kTaught.size(); ++i) {
        if (!FlangeOf(kTaught[i].joints, flange[i])) return 1;
        demo::PrintFrame(kTaught[i].label, flange[i].Frame);
    }

    // The first touch is the origin pose as well.
    KineFrame tool{};
    KineCalibError error{};
    const auto& [touch1, touch2, touch3, alongZ, towardsX] = flange;
    if (!demo::Succeeded(
            "Kine_CalcGripToolPrm_3PZX",
            Kine_CalcGripToolPrm_3PZX(&touch1, &touch2, &touch3, &touch1, &alongZ, &towardsX, &tool, &error)))
        return 1;
    const demo::Residual off = demo::ResidualOf(tool, kKnownTool);
    demo::PrintFrame("tool found", tool);
    demo::PrintFrame("tool known", kKnownTool);
    std::printf("  error report: tips %.3f mm apart at most, %.3f in the mean, %.3f at least\n",
                error.Largest, error.Mean, error.Smallest);

    std::printf("The tip in the base with the tool found\n");
    for (std::size_t i = 0; i < 3; ++i) {
        if (!ShowTip(kTaught[i], tool)) return 1;
    }
    const bool isRight = off.mm < kMaxErrorMm && off.deg < kMaxErrorDeg;
    std::printf("The tool found is %.3f mm and %.3f deg off: %s\n", off.mm, off.deg,
                isRight ? "as good as the joints" : "worse than the joints allow");
    return isRight ? 0 : 1;
}
