// How far two frames are apart.
#pragma once

#include "KineDll.h"

namespace kine_cli {

struct FrameDifference
{
    double mm = 0.0;
    double deg = 0.0;  // angle of the one rotation that leads from one to the other
};

FrameDifference DifferenceOf(const KineFrame& a, const KineFrame& b);

}  // namespace kine_cli
