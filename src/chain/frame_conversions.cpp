// Frame conversions and offsets.
#include "chain/frame_conversions.h"

#include "chain/frame_services.h"

namespace kine {

namespace {

KineResult BaseToWobj(const Store& store, const PoseRecord& inBase, const Tool& tool, const Wobj& wobj,
                      PoseRecord& inWobj)
{
    PoseRecord inWorld{};
    PoseRecord inObject{};
    FrameDescriptor descriptor{};
    if (const KineResult code = FrameToWorld(store.mechUnits, inBase, store.mounting, inWorld)) return code;
    if (const KineResult code = MakeFrameDescriptor(tool, wobj, descriptor)) return code;
    if (const KineResult code = WorldToFrame(store.mechUnits, inWorld, descriptor, inObject)) return code;
    return ToolRelativePose(inObject, tool, wobj, inWobj);
}

}  // namespace

PoseRecord WorldToFixedWobj(const PoseRecord& inWorld, const Wobj& wobj)
{
    return WithFrame(inWorld, MatrixInverse(CombinedFrame(wobj).AsMatrix()) * inWorld.frame.AsMatrix());
}

PoseRecord WorldToHeldWobj(const PoseRecord& inWorld, const Wobj& wobj, const LazyPose& worldFromFlange)
{
    const HomMatrix worldFromWobj = worldFromFlange.AsMatrix() * CombinedFrame(wobj).AsMatrix();
    return WithFrame(inWorld, MatrixInverse(worldFromWobj) * inWorld.frame.AsMatrix());
}

PoseRecord HeldWobjToWorld(const PoseRecord& inWobj, const Wobj& wobj, const LazyPose& worldFromFlange)
{
    const HomMatrix worldFromWobj = worldFromFlange.AsMatrix() * CombinedFrame(wobj).AsMatrix();
    return WithFrame(inWobj, worldFromWobj * inWobj.frame.AsMatrix());
}

KineResult CoordinateToWobj(const Store& store, std::int32_t mode, const PoseRecord& pose, const Tool& tool,
                            const Wobj& wobj, PoseRecord& result)
{
    if (mode == kFromBaseToWobj) return BaseToWobj(store, pose, tool, wobj, result);
    if (mode == kFromWorldToFixedWobj) {
        if (IsHeld(tool)) return KINE_ERR_CRD_WOBJ;
        result = WorldToFixedWobj(pose, wobj);
        return KINE_OK;
    }
    result = pose;
    return KINE_OK;
}

PoseRecord OffsetInOwnFrame(const PoseRecord& pose, const Pose& offset)
{
    return WithFrame(pose, pose.frame.AsMatrix() * PoseToMatrix(offset));
}

PoseRecord OffsetInReference(const PoseRecord& pose, const Pose& offset)
{
    const HomMatrix current = pose.frame.AsMatrix();
    const HomMatrix change = PoseToMatrix(offset);
    return WithFrame(pose, {RotMultiply(change.r, current.r), current.t + change.t});
}

}  // namespace kine
