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

KineResult RelativeTarget(const PoseRecord& target, const Tool& tool, const Wobj& wobj, PoseRecord& relative)
{
    if (IsHoldConflict(tool, wobj)) return KINE_ERR_CHAIN_4;
    relative = IsHeld(tool) ? target : InvertFrame(target);
    return KINE_OK;
}

KineResult WobjToJoint(const Store& store, const InverseRequest& request, Joints& joints)
{
    const auto& [tool, wobj, payload, target] = request;
    // A configuration out of reach ends the call before anything else, without a line.
    if (const KineResult code = CheckArmConfig(store, target.config)) return code;

    PoseRecord relative{};
    FrameDescriptor descriptor{};
    PoseRecord inWorld{};
    PoseRecord inBase{};
    ToolBlock block{};
    Joints solution{};
    if (const KineResult code = IkStep(0, CheckHold(tool, wobj))) return code;
    if (const KineResult code = IkStep(0, RelativeTarget(target, tool, wobj, relative))) return code;
    if (const KineResult code = IkStep(1, MakeFrameDescriptor(tool, wobj, descriptor))) return code;
    if (const KineResult code = IkStep(2, FrameToWorld(store.mechUnits, relative, descriptor, inWorld)))
        return code;
    if (const KineResult code = IkStep(3, WorldToFrame(store.mechUnits, inWorld, store.mounting, inBase)))
        return code;
    if (const KineResult code = IkStep(4, MakeToolBlock(tool, wobj, payload, block))) return code;
    if (const KineResult code =
            IkStep(5, InverseKinematics(store, inBase.frame, block, inBase.config, solution))) {
        return code;
    }
    joints = solution;
    joints.extAxis = inBase.extAxis;
    return KINE_OK;
}

}  // namespace kine
