// The exports that convert poses between frames, apply offsets and compare poses. None of them asks whether
// the library is initialised.
#include "KineDll.h"
#include "api/arguments.h"
#include "api/convert.h"
#include "api/record_access.h"
#include "chain/frame_conversions.h"
#include "config/store.h"
#include "math/transform.h"

using namespace kine;

namespace {

KineResult Succeed(const PoseRecord& result, KinePose* out)
{
    CopyOut(ToDegrees(result), out);
    return KINE_OK;
}

// The common sequence of the two offsets; apply is the one of the export.
template <class Apply>
KineResult RunOffset(const KinePose* pose, const KineFrame* offset, KinePose* out, Apply apply)
{
    Arguments in(Library());
    const PoseRecord start = in.Take(pose);
    const Pose change = in.Take(offset);
    in.Require(out != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;
    return Succeed(apply(start, change), out);
}

}  // namespace

KineResult Kine_WorldPosToFixWobjPos(const KinePose* pose, const KineWobj* wobj, KinePose* out)
{
    Arguments in(Library());
    const Wobj object = in.Take(wobj);
    // Exactly 1 is held here: a byte of 2 passes.
    in.Require(object.userFixed != 0 && object.heldByRobot != 1, KINE_ERR_WOBJ);
    const PoseRecord inWorld = in.Take(pose);
    in.Require(out != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;
    return Succeed(WorldToFixedWobj(inWorld, object), out);
}

KineResult Kine_WorldPosToGripWobjPos(const KinePose* pose, const KineWobj* wobj, const KinePose* flange,
                                      KinePose* out)
{
    Arguments in(Library());
    const Wobj object = in.Take(wobj);
    in.Require(IsHeld(object), KINE_ERR_WOBJ);
    const PoseRecord inWorld = in.Take(pose);
    const PoseRecord flangeInWorld = in.Take(flange);
    in.Require(out != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;
    return Succeed(WorldToHeldWobj(inWorld, object, flangeInWorld.frame), out);
}

KineResult Kine_GripWobjPosToWorldPos(const KinePose* pose, const KineWobj* wobj, const KinePose* flange,
                                      KinePose* out)
{
    Arguments in(Library());
    // Unlike the way there, the way back takes a work object that is not held too.
    const Wobj object = in.Take(wobj);
    const PoseRecord inWobj = in.Take(pose);
    const PoseRecord flangeInWorld = in.Take(flange);
    in.Require(out != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;
    return Succeed(HeldWobjToWorld(inWobj, object, flangeInWorld.frame), out);
}

KineResult Kine_CrdPosToWobjPos(const KinePose* pose, int32_t mode, const KineTool* tool,
                                const KineWobj* wobj, const KineLoad* load, KinePose* out)
{
    const Store& store = Library();
    Arguments in(store);
    const PoseRecord start = in.Take(pose);
    const Tool t = in.Take(tool);
    const Wobj object = in.Take(wobj);
    // The load must be there but is not looked at: no conversion depends on it.
    in.Require(load != nullptr, KINE_ERR_LOAD);
    in.Require(out != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;

    PoseRecord result{};
    if (const KineResult code = CoordinateToWobj(store, mode, start, t, object, result)) return code;
    return Succeed(result, out);
}

KineResult Kine_ToolCoordOffset(const KinePose* pose, const KineFrame* offset, KinePose* out)
{
    return RunOffset(pose, offset, out, OffsetInOwnFrame);
}

KineResult Kine_WobjCoordOffset(const KinePose* pose, const KineFrame* offset, KinePose* out)
{
    return RunOffset(pose, offset, out, OffsetInReference);
}
