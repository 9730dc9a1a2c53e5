// Pairs of functions that do the same, one through KineDll.h and one through KineDll.hpp: check_objects.py
// compares their instructions. The records come from outside, so that nothing is known about them.
#include <cstdint>

#include "KineDll.hpp"

extern "C" {
bool cost_forward_c(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj, const KineLoad& load,
                    KinePose& out);
bool cost_forward_cpp(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj,
                      const KineLoad& load, KinePose& out);
double cost_inverse_c(const KinePose& pose, const KineTool& tool, const KineWobj& wobj, const KineLoad& load);
double cost_inverse_cpp(const KinePose& pose, const KineTool& tool, const KineWobj& wobj,
                        const KineLoad& load);
bool cost_setup_c(std::int32_t index, const KineMechUnit& unit);
bool cost_setup_cpp(std::int32_t index, const KineMechUnit& unit);
double cost_tilt_c(const KinePose& origin, const KinePose& x, const KinePose& xy);
double cost_tilt_cpp(const KinePose& origin, const KinePose& x, const KinePose& xy);
}

bool cost_forward_c(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj, const KineLoad& load,
                    KinePose& out)
{
    KinePose pose{};
    if (Kine_JointToWobjPos(&joints, &tool, &wobj, &load, &pose) != KINE_OK) return false;
    out = pose;
    return true;
}

bool cost_forward_cpp(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj,
                      const KineLoad& load, KinePose& out)
{
    const auto pose = kinedll::JointToWobjPos(joints, tool, wobj, load);
    if (!pose) return false;
    out = pose.value;
    return true;
}

double cost_inverse_c(const KinePose& pose, const KineTool& tool, const KineWobj& wobj, const KineLoad& load)
{
    KineJoint joints{};
    if (Kine_WobjPosToJoint(&pose, &tool, &wobj, &load, &joints) != KINE_OK) return 999.0;
    return joints.Axis[5];
}

double cost_inverse_cpp(const KinePose& pose, const KineTool& tool, const KineWobj& wobj,
                        const KineLoad& load)
{
    const auto joints = kinedll::WobjPosToJoint(pose, tool, wobj, load);
    return joints ? joints.value.Axis[5] : 999.0;
}

bool cost_setup_c(std::int32_t index, const KineMechUnit& unit)
{
    return Kine_SetMechUnitParam(index, &unit) == KINE_OK;
}

bool cost_setup_cpp(std::int32_t index, const KineMechUnit& unit)
{
    return kinedll::SetMechUnitParam(index, unit).IsOk();
}

double cost_tilt_c(const KinePose& origin, const KinePose& x, const KinePose& xy)
{
    KineFrame frame{};
    double tilt = 0.0;
    if (Kine_CalcExtWobj_UserPrm_3P(&origin, &x, &xy, &frame, &tilt) != KINE_OK) return 999.0;
    return frame.X + tilt;
}

double cost_tilt_cpp(const KinePose& origin, const KinePose& x, const KinePose& xy)
{
    const auto found = kinedll::CalcExtWobj_UserPrm_3P(origin, x, xy);
    return found ? found.value.frame.X + found.value.tiltRad : 999.0;
}
