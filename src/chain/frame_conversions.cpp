// Frame conversions and offsets.
#include "chain/frame_conversions.h"

#include "chain/frame_services.h"

namespace kine {

namespace {

// On its way record is given in the base, the world and the frame of the object in the cell.
KineResult BaseToWobj(const Store& store, const Tool& tool, const Wobj& wobj, PoseRecord& record)
{
    FrameDescriptor descriptor{};
    if (const KineResult code = FrameToWorld(store.mechUnits, store.mounting, record)) return code;
    if (const KineResult code = MakeFrameDescriptor(tool, wobj, descriptor)) return code;
    if (const KineResult code = WorldToFrame(store.mechUnits, descriptor, record)) return code;
    return ToolRelativePose(tool, wobj, record);
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
    PoseRecord converted = pose;
    if (mode == kFromBaseToWobj) {
        if (const KineResult code = BaseToWobj(store, tool, wobj, converted)) return code;
    } else if (mode == kFromWorldToFixedWobj) {
        if (IsHeld(tool)) return KINE_ERR_CRD_WOBJ;
        converted = WorldToFixedWobj(pose, wobj);
    }
    result = converted;
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
