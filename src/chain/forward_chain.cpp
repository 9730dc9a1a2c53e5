// The forward chains: one common head, four tails. One record goes through the steps of a chain and changes
// its frame on the way.
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

// Steps 1 to 3: the carried frame in the base, through the arm bent by its load, with the configuration of
// the joints.
KineResult CarriedInBase(const Store& store, const ForwardRequest& request, PoseRecord& record)
{
    if (const KineResult code = FkStep(1, CheckInitialised(store))) return code;
    Pose frame{};
    if (const KineResult code = FkStep(2, CheckedFrameOnFlange(request.tool, request.wobj, frame)))
        return code;
    const ToolBlock block{frame, CombineLoad(request.tool.load, request.payload, frame)};
    record.extAxis = request.joints.extAxis;
    return FkStep(3, ForwardKinematics(store, request.joints, block, record.frame, record.config));
}

// Step 4: from the base to the world.
KineResult BaseToWorld(const Store& store, PoseRecord& record)
{
    return FkStep(4, FrameToWorld(store.mechUnits, store.mounting, record));
}

// Steps 4 to 7.
KineResult BaseToRelative(const Store& store, const ForwardRequest& request, PoseRecord& record)
{
    if (const KineResult code = BaseToWorld(store, record)) return code;
    return WorldToRelative(store, request.tool, request.wobj, record);
}

// A pose given in the held work object, moved to the frame in which that work object is given.
LazyPose ThroughHeldWobj(const LazyPose& heldWobj, const LazyPose& relative)
{
    return LazyPose(heldWobj.AsMatrix() * relative.AsMatrix());
}

}  // namespace

KineResult WorldToRelative(const Store& store, const Tool& tool, const Wobj& wobj, PoseRecord& record)
{
    FrameDescriptor descriptor{};
    if (const KineResult code = FkStep(5, MakeFrameDescriptor(tool, wobj, descriptor))) return code;
    if (const KineResult code = FkStep(6, WorldToFrame(store.mechUnits, descriptor, record))) return code;
    return FkStep(7, ToolRelativePose(tool, wobj, record));
}

KineResult JointToBase(const Store& store, const ForwardRequest& request, PoseRecord& inBase)
{
    if (const KineResult code = CarriedInBase(store, request, inBase)) return code;
    if (IsOnRobot(request.tool)) return KINE_OK;

    PoseRecord relative = inBase;
    if (const KineResult code = BaseToRelative(store, request, relative)) return code;
    inBase.frame = ThroughHeldWobj(inBase.frame, relative.frame);
    return KINE_OK;
}

KineResult JointToFlange(const Store& store, const ForwardRequest& request, PoseRecord& inFlange)
{
    if (IsOnRobot(request.tool)) {
        if (const KineResult code = FkStep(1, CheckInitialised(store))) return code;
        if (const KineResult code = FkStep(2, CheckHold(request.tool, request.wobj))) return code;
        // The tool frame is given in the flange already. This answer carries no external axes.
        inFlange = {};
        inFlange.frame = request.tool.frame;
        return GetArmConfig(store, request.joints, inFlange.config);
    }
    if (const KineResult code = CarriedInBase(store, request, inFlange)) return code;
    if (const KineResult code = BaseToRelative(store, request, inFlange)) return code;
    inFlange.frame = ThroughHeldWobj(CombinedFrame(request.wobj), inFlange.frame);
    return KINE_OK;
}

KineResult JointToWorld(const Store& store, const ForwardRequest& request, PoseRecord& inWorld)
{
    if (const KineResult code = CarriedInBase(store, request, inWorld)) return code;
    if (const KineResult code = BaseToWorld(store, inWorld)) return code;
    if (IsOnRobot(request.tool)) return KINE_OK;

    PoseRecord relative = inWorld;
    if (const KineResult code = WorldToRelative(store, request.tool, request.wobj, relative)) return code;
    inWorld.frame = ThroughHeldWobj(inWorld.frame, relative.frame);
    return KINE_OK;
}

KineResult JointToWobj(const Store& store, const ForwardRequest& request, PoseRecord& inWobj)
{
    if (const KineResult code = CarriedInBase(store, request, inWobj)) return code;
    return BaseToRelative(store, request, inWobj);
}

KineResult JointToVision(const Store& store, const Joints& joints, PoseRecord& inBase)
{
    inBase = {};
    if (const KineResult code = GetArmConfig(store, joints, inBase.config)) return code;
    Pose flange{};
    if (const KineResult code = FlangePose(store, joints, flange)) return code;
    inBase.frame = flange;
    return KINE_OK;
}

}  // namespace kine
