// The parameter block of the four-axis arms. Radians and millimetres.
#pragma once

#include <array>
#include <cstdint>

#include "KineDll.h"
#include "math/rotation.h"

namespace kine {

// Axes 1 to 4 in radians; axis 3 is the angle of the screw.
using FourAngles = std::array<double, 4>;

struct FourAxisParams
{
    double l1, l2;
    double z0;    // height of the flange at screw angle 0
    double lead;  // travel per revolution of the screw

    // Tilts of the axes behind link 1 and link 2: Rx * Ry of each.
    RotMatrix tilt1, tilt2;

    FourAngles upperLimit;
    FourAngles lowerLimit;
};

// Fills the block for the arm type ownType. KINE_ERR_MODEL_PARAM for another armType or a null param, both
// without a change; for a length below its bound the lengths stay stored and the rest is zero.
[[nodiscard]] KineResult InitFourAxisParams(std::uint32_t ownType, std::uint32_t armType,
                                            const KineKinematicParam* param, FourAxisParams& params);

}  // namespace kine
