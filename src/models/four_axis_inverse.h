// The steps of the inverse that the four-axis arms share. Each arm turns the seed into its own axes and
// selects its own turns. Radians and millimetres, base frame.
#pragma once

#include "KineDll.h"
#include "math/transform.h"
#include "models/four_axis_params.h"

namespace kine {

// Solution of the arm without tilts, before any turn is selected.
struct FourAxisSeed
{
    double q1;     // in [-pi, pi]
    double elbow;  // in (-pi, pi); 0 for a stretched arm
    double q3;
    double q4;  // flange heading less q1 and elbow
};

// An elbow angle strictly below this, rad, is singular; NaN never arrives.
inline constexpr double kMinElbowAngle = 0.0005;

// Codes in this order: KINE_ERR_CONFIG for a posture other than 1 and -1, which is the sign of the elbow;
// KINE_ERR_IK_REACH for a target out of reach or NaN. Of target and tool only x, y, z and a count.
[[nodiscard]] KineResult FourAxisClosedForm(const FourAxisParams& params, const Pose& target,
                                            const Pose& tool, std::int32_t posture, FourAxisSeed& seed);

// At most five Newton steps on the tilted arm from q; q[1] is the elbow angle. Ends early when the target is
// met; not meeting it is no error. KINE_ERR_SINGULAR, with q in an unspecified state, for a singular
// Jacobian.
//
// The heading error is the raw difference, so that for a heading within rounding of +-pi and a tool point off
// the flange axis the steps may lead to another solution.
[[nodiscard]] KineResult FourAxisRefine(const FourAxisParams& params, const Pose& target, const Pose& tool,
                                        FourAngles& q);

// Writes the four axes and four zeros. KINE_ERR_IK_REACH, with nothing written, when one is not finite in
// degrees.
[[nodiscard]] KineResult WriteFourAxes(const FourAngles& q, std::array<double, 8>& axes);

}  // namespace kine
