// A first program in C++17: describe an arm, ask where its tool is, bring it there with the wrist the other
// way round, jog it down, and read what a failed call has to say. Millimetres and degrees.
//
// Every answer is compared with the value that a pencil gives; the program ends with 1 when one differs.
#include <cmath>
#include <cstdio>

#include "KineDll.hpp"

namespace {

bool allRight = true;

void ExpectNear(const char* what, double value, double expected)
{
    if (std::fabs(value - expected) < 1e-6) return;
    std::fprintf(stderr, "%s is %.9f, expected %.9f\n", what, value, expected);
    allRight = false;
}

// Zero without the sign that rounding may have left.
double Shown(double value) { return std::fabs(value) < 1e-6 ? 0.0 : value; }

void ExpectPoint(const char* title, const KineFrame& f, double x, double y, double z)
{
    std::printf("%-14s X %7.2f  Y %7.2f  Z %7.2f mm\n", title, Shown(f.X), Shown(f.Y), Shown(f.Z));
    ExpectNear("X", f.X, x);
    ExpectNear("Y", f.Y, y);
    ExpectNear("Z", f.Z, z);
}

// What a program of yours would show its user.
int Failed(const char* call, kinedll::Code code)
{
    std::fprintf(stderr, "%s: %s\n  cause:  %s\n  remedy: %s\n", call, code.Name(), code.Cause(),
                 code.Remedy());
    return 1;
}

}  // namespace

int main()
{
    kinedll::SixAxisLengths lengths;
    lengths.d1 = 450.0;
    lengths.a1 = 150.0;
    lengths.a2 = 600.0;
    lengths.a3 = 100.0;
    lengths.d4 = 650.0;
    lengths.d6 = 100.0;
    const kinedll::Code ready = kinedll::InitKinematicParam(kinedll::NominalSixAxis(lengths));
    if (!ready.IsOk()) return Failed("InitKinematicParam", ready);

    const KineTool tool = kinedll::HeldTool(kinedll::MakeFrame(0, 0, 200));
    const KineWobj wobj = kinedll::FixedWobj();
    const KineLoad load{};

    // Upper arm upright, forearm level, tool straight down: X = a1 + d4, Z = d1 + a2 + a3 - d6 - 200.
    const KineJoint joints = kinedll::MakeJoints({0, 0, 0, 0, -90, 0});
    const auto pose = kinedll::JointToWobjPos(joints, tool, wobj, load);
    if (!pose) return Failed("JointToWobjPos", pose.code);
    ExpectPoint("tool at", pose.value.Frame, 800.0, 0.0, 850.0);

    // Posture 0 instead of 1: axis 5 positive, axes 4 and 6 half a turn away, towards +180 and -180 by the
    // quarter turns in Cfg2 and Cfg3.
    KinePose target = pose.value;
    target.Cfg2 = 1;
    target.Cfg3 = -1;
    target.Cfg4 = 0;
    const auto turned = kinedll::WobjPosToJoint(target, tool, wobj, load);
    if (!turned) return Failed("WobjPosToJoint", turned.code);
    const double expected[6] = {0.0, 0.0, 0.0, 180.0, 90.0, -180.0};
    std::printf("other wrist  ");
    for (int i = 0; i < 6; ++i) {
        std::printf(" %7.2f", Shown(turned.value.Axis[i]));
        ExpectNear("axis", turned.value.Axis[i], expected[i]);
    }
    std::printf(" deg\n");

    // Two jog steps of 25 mm down along Z of the base, slot 2.
    kinedll::JogSteps steps;
    steps.linearMm = 25.0;
    KineJoint jogged = joints;
    for (int i = 0; i < 2; ++i) {
        const auto next = kinedll::InchMovePosCalc(kinedll::MakeInchDir(2, -1), kinedll::InchMode::kBase,
                                                   tool, wobj, load, steps, jogged);
        if (!next) return Failed("InchMovePosCalc", next.code);
        jogged = next.value;
    }
    const auto lower = kinedll::JointToWobjPos(jogged, tool, wobj, load);
    if (!lower) return Failed("JointToWobjPos", lower.code);
    ExpectPoint("jogged to", lower.value.Frame, 800.0, 0.0, 800.0);

    // Out of reach. The library prints a line of its own before the call returns.
    target.Frame.Z += 2000.0;
    const auto tooHigh = kinedll::WobjPosToJoint(target, tool, wobj, load);
    std::printf("2 m higher: %s, %s\n", tooHigh.code.Name(), tooHigh.code.Cause());
    if (tooHigh.code != KINE_ERR_IK_7) allRight = false;

    std::printf("%s\n", allRight ? "all as expected" : "WRONG");
    return allRight ? 0 : 1;
}
