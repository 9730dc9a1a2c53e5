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

// Step 0.
KineResult CheckedRelativeTarget(const Tool& tool, const Wobj& wobj, PoseRecord& target)
{
    if (const KineResult code = CheckHold(tool, wobj)) return code;
    return RelativeTarget(tool, wobj, target);
}

}  // namespace

KineResult RelativeTarget(const Tool& tool, const Wobj& wobj, PoseRecord& target)
{
    if (IsHoldConflict(tool, wobj)) return KINE_ERR_CHAIN_4;
    if (!IsHeld(tool)) InvertFrame(target);
    return KINE_OK;
}

KineResult RelativeToBase(const Store& store, const Tool& tool, const Wobj& wobj, PoseRecord& pose)
{
    FrameDescriptor descriptor{};
    if (const KineResult code = IkStep(1, MakeFrameDescriptor(tool, wobj, descriptor))) return code;
    if (const KineResult code = IkStep(2, FrameToWorld(store.mechUnits, descriptor, pose))) return code;
    return IkStep(3, WorldToFrame(store.mechUnits, store.mounting, pose));
}

KineResult BaseToJoint(const Store& store, const Tool& tool, const Wobj& wobj, const Load& payload,
                       const PoseRecord& inBase, Joints& joints)
{
    ToolBlock block{};
    if (const KineResult code = IkStep(4, CheckedFrameOnFlange(tool, wobj, block.frame))) return code;
    block.load = CombineLoad(tool.load, payload, block.frame);
    if (const KineResult code =
            IkStep(5, InverseKinematics(store, inBase.frame, block, inBase.config, joints)))
        return code;
    joints.extAxis = inBase.extAxis;
    return KINE_OK;
}

KineResult WobjToJoint(const Store& store, const InverseRequest& request, Joints& joints)
{
    const auto& [tool, wobj, payload, target] = request;
    // A configuration out of reach ends the call before anything else, without a line.
    if (const KineResult code = CheckArmConfig(store, target.config)) return code;

    PoseRecord pose = target;
    if (const KineResult code = IkStep(0, CheckedRelativeTarget(tool, wobj, pose))) return code;
    if (const KineResult code = RelativeToBase(store, tool, wobj, pose)) return code;
    return BaseToJoint(store, tool, wobj, payload, pose, joints);
}

}  // namespace kine
