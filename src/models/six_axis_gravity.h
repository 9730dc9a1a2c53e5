// Elastic deflection of joints 2, 3 and 5 of the six-axis arm under its own weight and the payload.
#pragma once

#include "KineDll.h"
#include "models/arm_model.h"
#include "models/six_axis_params.h"

namespace kine {

// What the joints give way, in radians; the other joints are stiff.
struct Deflection
{
    double q2, q3, q5;
};

// Derivative of the deflection by the six joint angles.
struct DeflectionGradient
{
    SixAngles q2, q3, q5;
};

// Deflection at joint angles q. KINE_ERR_IK_1 with a zero deflection when a joint would give way by 2
// degrees or more (or by NaN): the model then counts as rigid.
[[nodiscard]] KineResult GravityDeflection(const SixAxisParams& params, const JointSines& q,
                                           const CombinedLoad& load, Deflection& deflection);

// The same with the gradient; both are zero on failure.
[[nodiscard]] KineResult GravityDeflection(const SixAxisParams& params, const JointSines& q,
                                           const CombinedLoad& load, Deflection& deflection,
                                           DeflectionGradient& gradient);

}  // namespace kine
