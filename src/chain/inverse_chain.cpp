// The inverse chain.
#include "chain/inverse_chain.h"

#include "chain/combine_load.h"
#include "chain/frame_services.h"
#include "config/dispatch.h"
#include "config/print.h"

namespace kine {

namespace {

// Prints the line of a step that failed; passes the code on.
KineResult IkStep(int step, KineResult code)
{
    if (code != KINE_OK) Print("IK error %d:%d\n", {step, static_cast<std::int32_t>(code)});
    return code;
}

// The frame on the flange with the load behind it; the hold is checked once more.
KineResult MakeToolBlock(const Tool& tool, const Wobj& wobj, const Load& payload, ToolBlock& block)
{
    if (const KineResult code = CheckHold(tool, wobj)) return code;
    if (const KineResult code = FrameOnFlange(tool, wobj, block.frame)) return code;
    block.load = CombineLoad(tool.load, payload, block.frame);
    return KINE_OK;
}

}  // namespace

KineResult RelativeTarget(const Tool& tool, const Wobj& wobj, PoseRecord& target)
{
    if (IsHoldConflict(tool, wobj)) return KINE_ERR_CHAIN_4;
    if (!IsHeld(tool)) InvertFrame(target);
    return KINE_OK;
}

KineResult WobjToJoint(const Store& store, const InverseRequest& request, Joints& joints)
{
    const auto& [tool, wobj, payload, target] = request;
    // A configuration out of reach ends the call before anything else, without a line.
    if (const KineResult code = CheckArmConfig(store, target.config)) return code;

    // The target on its way: in the frame of the object in the cell, in the world, in the base.
    PoseRecord pose = target;
    FrameDescriptor descriptor{};
    ToolBlock block{};
    if (const KineResult code = IkStep(0, CheckHold(tool, wobj))) return code;
    if (const KineResult code = IkStep(0, RelativeTarget(tool, wobj, pose))) return code;
    if (const KineResult code = IkStep(1, MakeFrameDescriptor(tool, wobj, descriptor))) return code;
    if (const KineResult code = IkStep(2, FrameToWorld(store.mechUnits, descriptor, pose))) return code;
    if (const KineResult code = IkStep(3, WorldToFrame(store.mechUnits, store.mounting, pose))) return code;
    if (const KineResult code = IkStep(4, MakeToolBlock(tool, wobj, payload, block))) return code;
    if (const KineResult code = IkStep(5, InverseKinematics(store, pose.frame, block, pose.config, joints)))
        return code;
    joints.extAxis = pose.extAxis;
    return KINE_OK;
}

}  // namespace kine
