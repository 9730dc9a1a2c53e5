// The link chain of the six-axis arm and its forward operations. Radians and millimetres, base frame.
#pragma once

#include <array>

#include "math/lazy_pose.h"
#include "models/arm_model.h"
#include "models/six_axis_gravity.h"
#include "models/six_axis_params.h"

namespace kine {

// The line a joint turns about.
struct JointAxis
{
    Vec3 direction;
    Vec3 origin;
};

// The full chain at one joint set: every joint's axis, and the flange.
struct LinkChain
{
    std::array<JointAxis, 6> joints;
    HomMatrix baseFromFlange;
};

JointSines SinesOf(const SixAngles& q);

// Walks the chain at joint angles that already contain the deflection.
LinkChain WalkLinks(const SixAxisParams& params, const JointSines& deflected);

// The angles with the deflection added.
JointSines Deflected(const JointSines& q, const Deflection& deflection);

// Pose of the tool frame, with the arm bent by its weight and the load of the tool block.
LazyPose SixAxisToolPose(const SixAxisParams& params, const JointSines& q, const ToolBlock& tool);

// Pose of frame 5, the arm bent by its own weight only. Joint 6 and d6 are not part of it, so this is not
// SixAxisToolPose with a zero tool.
Pose SixAxisFrame5Pose(const SixAxisParams& params, const SixAngles& q);

}  // namespace kine
