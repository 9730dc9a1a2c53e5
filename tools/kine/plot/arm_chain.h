// Where the parts of an arm are in its base, for pictures: the chain of the header without gravity. The
// library tells only where the flange is.
#pragma once

#include <vector>

#include "cell/cell.h"
#include "plot/transform.h"

namespace kine_cli {

struct ArmShape
{
    Transform base;             // of the foot
    std::vector<Vec3> outline;  // from the foot to the flange, through the corners of the links
    std::vector<Vec3> joints;   // of axes 1 to N
    Transform flange;
};

ArmShape ArmInBase(const Cell& cell, const KineJoint& joints);

// The same arm with its base somewhere.
ArmShape Placed(const Transform& base, const ArmShape& arm);

// The point of the base that the arm reaches out from, and how far its flange gets from there at most in the
// plane of the links. The screw of a four-axis arm is not counted.
Vec3 ShoulderOf(const Cell& cell);
double ReachOf(const Cell& cell);

}  // namespace kine_cli
