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
    return WithFrame(inWorld, MatrixInverse(PoseToMatrix(wobj.combined)) * PoseToMatrix(inWorld.frame));
}

PoseRecord WorldToHeldWobj(const PoseRecord& inWorld, const Wobj& wobj, const Pose& worldFromFlange)
{
    const HomMatrix worldFromWobj = PoseToMatrix(worldFromFlange) * PoseToMatrix(wobj.combined);
    return WithFrame(inWorld, MatrixInverse(worldFromWobj) * PoseToMatrix(inWorld.frame));
}

PoseRecord HeldWobjToWorld(const PoseRecord& inWobj, const Wobj& wobj, const Pose& worldFromFlange)
{
    const HomMatrix worldFromWobj = PoseToMatrix(worldFromFlange) * PoseToMatrix(wobj.combined);
    return WithFrame(inWobj, worldFromWobj * PoseToMatrix(inWobj.frame));
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
    return WithFrame(pose, PoseToMatrix(pose.frame) * PoseToMatrix(offset));
}

PoseRecord OffsetInReference(const PoseRecord& pose, const Pose& offset)
{
    const HomMatrix current = PoseToMatrix(pose.frame);
    const HomMatrix change = PoseToMatrix(offset);
    return WithFrame(pose, {RotMultiply(change.r, current.r), current.t + change.t});
}

}  // namespace kine
