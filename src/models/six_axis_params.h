// The parameter block of the six-axis arm. Radians and millimetres.
#pragma once

#include <array>
#include <cstdint>

#include "KineDll.h"
#include "math/angles.h"

namespace kine {

// The six joint angles of the arm, in radians.
using SixAngles = std::array<double, 6>;

// Sines and cosines of the joint angles as the chain turns by them: of q2 + pi/2 for joint 2, of q for the
// others.
using JointSines = std::array<SinCos, 6>;

struct SixAxisParams
{
    // Nominal geometry.
    double a1, a2, a3, d4, d6, d1;
    double lateralOffset;
    double wristReach;  // joint 3 to the wrist centre
    double elbowAngle;  // between the forearm axis and the line from joint 3 to the wrist centre

    // The rest of the full chain. Twists are only ever used through their sine and cosine.
    SinCos alpha1, alpha2, alpha3, alpha4, alpha5;
    SinCos beta2;
    double d3, d5, a4, a5;

    // Gravity: tilt of the base, link coefficients scaled by cos(mountX), compliances in rad/(N mm).
    SinCos mountX, mountY;
    std::array<double, 7> gs;
    double c2, c3, c5;

    SixAngles upperLimit;
    SixAngles lowerLimit;
};

// Fills the block for arm type 6. KINE_ERR_MODEL_PARAM for another armType or a null param, both without a
// change; for a length below its bound the lengths stay stored and the rest of the block is zero.
[[nodiscard]] KineResult InitSixAxisParams(std::uint32_t armType, const KineKinematicParam* param,
                                           SixAxisParams& params);

}  // namespace kine
