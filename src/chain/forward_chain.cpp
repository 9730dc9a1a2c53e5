// The forward chains: one common head, four tails.
//
// carried: the frame on the flange (tool, or held work object); relative: the tool centre point seen from
// the carried work object of a stationary tool.
#include "chain/forward_chain.h"

#include "chain/combine_load.h"
#include "chain/frame_services.h"
#include "config/dispatch.h"
#include "config/print.h"

namespace kine {

namespace {

// Prints the line of a step that failed; passes the code on.
KineResult FkStep(int step, KineResult code)
{
    if (code != KINE_OK) Print("FK Error %d:%d\n", {step, static_cast<std::int32_t>(code)});
    return code;
}

// Steps 1 and 2: a record with the configuration of the joints and zeros, and the hold check.
KineResult StartRecord(const Store& store, const ForwardRequest& request, PoseRecord& record)
{
    record = {};
    if (const KineResult code = FkStep(1, GetArmConfig(store, request.joints, record.config))) return code;
    return FkStep(2, CheckHold(request.tool, request.wobj));
}

// Step 3 after StartRecord: the carried frame in the base, through the arm bent by its load.
KineResult MoveArm(const Store& store, const ForwardRequest& request, PoseRecord& record)
{
    ToolBlock block{};
    if (const KineResult code = FkStep(2, FrameOnFlange(request.tool, request.wobj, block.frame)))
        return code;
    block.load = CombineLoad(request.tool.load, request.payload, block.frame);
    record.extAxis = request.joints.extAxis;
    return FkStep(3, ForwardKinematics(store, request.joints, block, record.frame));
}

// Steps 1 to 3.
KineResult CarriedInBase(const Store& store, const ForwardRequest& request, PoseRecord& carried)
{
    if (const KineResult code = StartRecord(store, request, carried)) return code;
    return MoveArm(store, request, carried);
}

// Step 4.
KineResult BaseToWorld(const Store& store, const PoseRecord& inBase, PoseRecord& inWorld)
{
    // The common case at once: a robot that stands at the world origin.
    if (store.mounting.mode == kFixedInWorld && store.mounting.frame.IsZero() &&
        inBase.frame.IsFiniteMatrix()) {
        inWorld = inBase;
        return KINE_OK;
    }
    return FkStep(4, FrameToWorld(store.mechUnits, inBase, store.mounting, inWorld));
}

// Steps 5 to 7: from the carried frame in the world to the tool centre point in the work object.
KineResult WorldToRelative(const Store& store, const ForwardRequest& request, const PoseRecord& inWorld,
                           PoseRecord& relative)
{
    FrameDescriptor descriptor{};
    PoseRecord inObject{};
    if (const KineResult code = FkStep(5, MakeFrameDescriptor(request.tool, request.wobj, descriptor)))
        return code;
    if (const KineResult code = FkStep(6, WorldToFrame(store.mechUnits, inWorld, descriptor, inObject)))
        return code;
    return FkStep(7, ToolRelativePose(inObject, request.tool, request.wobj, relative));
}

// Steps 4 to 7.
KineResult BaseToRelative(const Store& store, const ForwardRequest& request, const PoseRecord& inBase,
                          PoseRecord& relative)
{
    PoseRecord inWorld{};
    if (const KineResult code = BaseToWorld(store, inBase, inWorld)) return code;
    return WorldToRelative(store, request, inWorld, relative);
}

// relative, given in the held work object, moved to the frame in which that work object is given.
PoseRecord ThroughHeldWobj(const LazyPose& heldWobj, const PoseRecord& relative)
{
    return WithFrame(relative, heldWobj.AsMatrix() * relative.frame.AsMatrix());
}

}  // namespace

KineResult JointToBase(const Store& store, const ForwardRequest& request, PoseRecord& inBase)
{
    PoseRecord carried{};
    if (const KineResult code = CarriedInBase(store, request, carried)) return code;
    if (IsOnRobot(request.tool)) {
        inBase = carried;
        return KINE_OK;
    }
    PoseRecord relative{};
    if (const KineResult code = BaseToRelative(store, request, carried, relative)) return code;
    inBase = ThroughHeldWobj(carried.frame, relative);
    inBase.extAxis = request.joints.extAxis;
    return KINE_OK;
}

KineResult JointToFlange(const Store& store, const ForwardRequest& request, PoseRecord& inFlange)
{
    PoseRecord carried{};
    if (const KineResult code = StartRecord(store, request, carried)) return code;
    if (IsOnRobot(request.tool)) {
        // The tool frame is given in the flange already. This answer carries no external axes.
        inFlange = carried;
        inFlange.frame = request.tool.frame;
        return KINE_OK;
    }
    if (const KineResult code = MoveArm(store, request, carried)) return code;
    PoseRecord relative{};
    if (const KineResult code = BaseToRelative(store, request, carried, relative)) return code;
    inFlange = ThroughHeldWobj(CombinedFrame(request.wobj), relative);
    return KINE_OK;
}

KineResult JointToWorld(const Store& store, const ForwardRequest& request, PoseRecord& inWorld)
{
    PoseRecord carriedInBase{};
    if (const KineResult code = CarriedInBase(store, request, carriedInBase)) return code;
    if (IsOnRobot(request.tool)) return BaseToWorld(store, carriedInBase, inWorld);

    PoseRecord carriedInWorld{};
    PoseRecord relative{};
    if (const KineResult code = BaseToWorld(store, carriedInBase, carriedInWorld)) return code;
    if (const KineResult code = WorldToRelative(store, request, carriedInWorld, relative)) return code;
    inWorld = ThroughHeldWobj(carriedInWorld.frame, relative);
    return KINE_OK;
}

KineResult JointToWobj(const Store& store, const ForwardRequest& request, PoseRecord& inWobj)
{
    PoseRecord carried{};
    if (const KineResult code = CarriedInBase(store, request, carried)) return code;
    return BaseToRelative(store, request, carried, inWobj);
}

KineResult JointToVision(const Store& store, const Joints& joints, PoseRecord& inBase)
{
    PoseRecord record{};
    if (const KineResult code = GetArmConfig(store, joints, record.config)) return code;
    Pose flange{};
    if (const KineResult code = FlangePose(store, joints, flange)) return code;
    record.frame = flange;
    inBase = record;
    return KINE_OK;
}

}  // namespace kine
