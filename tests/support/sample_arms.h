// Arms that the tests share. Published or derivable numbers only.
#pragma once

#include <array>

#include "KineDll.h"

namespace kine::test {

// Twists of the nominal six-axis arm: the only quarter-turn set that the closed-form inverse describes.
struct NominalLengths
{
    double a1, a2, a3, d4, d6, d1, lateralOffset;
};

inline KineKinematicParam NominalSixAxis(const NominalLengths& lengths)
{
    KineKinematicParam param{};
    KineSixAxisParam& p = param.SixAxis;
    p.a1 = lengths.a1;
    p.a2 = lengths.a2;
    p.a3 = lengths.a3;
    p.d4 = lengths.d4;
    p.d6 = lengths.d6;
    p.d1 = lengths.d1;
    p.lateralOffset = lengths.lateralOffset;
    p.d3 = lengths.lateralOffset;
    p.alpha1 = 90.0;
    p.alpha2 = 0.0;
    p.alpha3 = 90.0;
    p.alpha4 = -90.0;
    p.alpha5 = 90.0;
    return param;
}

// The Puma 560 (Corke and Armstrong-Helouvry, ICRA 1994). Rigid: all stiffnesses 0.
inline KineKinematicParam Puma() { return NominalSixAxis({0.0, 431.8, 20.3, 431.8, 0.0, 0.0, -150.05}); }

// Joints of this arm in degrees from textbook joints of the Puma in radians.
inline std::array<double, 6> PumaJointsDeg(const std::array<double, 6>& t)
{
    constexpr double kDeg = 57.29577951308232;
    return {t[0] * kDeg + 180.0, 90.0 - t[1] * kDeg, -t[2] * kDeg, t[3] * kDeg, -t[4] * kDeg, t[5] * kDeg};
}

// The Puma with its published link weights (Armstrong, Khatib, Burdick, ICRA 1986; N mm) and illustrative
// stiffnesses: none are published.
inline KineKinematicParam PumaWithGravity()
{
    KineKinematicParam param = Puma();
    const double weights[7] = {37234.7, 1024.2, 248.9, 8743.9, 28.25, 28.25, 0.0};
    for (int i = 0; i < 7; ++i) param.SixAxis.G[i] = weights[i];
    param.SixAxis.k2 = 3.0e4;
    param.SixAxis.k3 = 2.0e4;
    param.SixAxis.k5 = 5.0e3;
    return param;
}

// A wrist arm with an offset shoulder and elbow. Rigid.
inline KineKinematicParam WristArm()
{
    return NominalSixAxis({100.0, 705.0, 135.0, 755.0, 85.0, 615.0, 0.0});
}

// The wrist arm as a calibration might find it: small errors in every link, gravity with a tilted base.
inline KineKinematicParam CalibratedWristArm()
{
    KineKinematicParam param = WristArm();
    KineSixAxisParam& p = param.SixAxis;
    p.alpha1 += 0.03;
    p.alpha2 -= 0.02;
    p.alpha3 += 0.04;
    p.alpha4 -= 0.05;
    p.alpha5 += 0.02;
    p.beta2 = 0.03;
    p.d3 = 0.35;
    p.d5 = -0.2;
    p.a4 = 0.15;
    p.a5 = -0.1;
    p.mountX = 2.0;
    p.mountY = -3.0;
    const double weights[7] = {420000.0, -15000.0, 60000.0, 150000.0, 4000.0, 3500.0, 0.0};
    for (int i = 0; i < 7; ++i) p.G[i] = weights[i];
    p.k2 = 4.0e5;
    p.k3 = 2.5e5;
    p.k5 = 4.0e4;
    return param;
}

// A SCARA of textbook proportions: links of 325 and 275 mm, 20 mm of travel per turn of the screw. No tilts.
inline KineKinematicParam Scara()
{
    KineKinematicParam param{};
    param.FourAxis.Link1Length = 325.0;
    param.FourAxis.Link2Length = 275.0;
    param.FourAxis.ZOffset = 50.0;
    param.FourAxis.ScrewLead = 20.0;
    return param;
}

// The same with the tilts that a calibration might find.
inline KineKinematicParam TiltedScara()
{
    KineKinematicParam param = Scara();
    param.FourAxis.Link1TiltX = 0.4;
    param.FourAxis.Link2TiltX = -0.3;
    param.FourAxis.Link1TiltY = 0.2;
    param.FourAxis.Link2TiltY = 0.5;
    return param;
}

}  // namespace kine::test
