// The forward exports.
#include "KineDll.h"
#include "api/arguments.h"
#include "api/convert.h"
#include "api/record_access.h"
#include "chain/forward_chain.h"
#include "config/store.h"

using namespace kine;

namespace {

// The common sequence of the four forward exports; chain is the one of the export.
template <class Chain>
KineResult RunForward(const KineJoint* joints, const KineTool* tool, const KineWobj* wobj,
                      const KineLoad* load, KinePose* pose, Chain chain)
{
    const Store& store = Library();
    Arguments in(store);
    // In braces the records are taken from left to right.
    const ForwardRequest request{in.Take(joints), in.Take(tool), in.Take(wobj), in.Take(load)};
    // The bytes as they are: a tool byte of 1 with a work-object byte of 2 passes here and fails in the
    // chain.
    in.Require(request.tool.heldByRobot != request.wobj.heldByRobot, KINE_ERR_HOLD);
    in.Require(pose != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;

    PoseRecord result{};
    if (const KineResult code = chain(store, request, result)) return code;
    CopyOut(ToDegrees(result), pose);
    return KINE_OK;
}

}  // namespace

KineResult Kine_JointToBasePos(const KineJoint* joints, const KineTool* tool, const KineWobj* wobj,
                               const KineLoad* load, KinePose* pose)
{
    return RunForward(joints, tool, wobj, load, pose, JointToBase);
}

KineResult Kine_JointToFlangePos(const KineJoint* joints, const KineTool* tool, const KineWobj* wobj,
                                 const KineLoad* load, KinePose* pose)
{
    return RunForward(joints, tool, wobj, load, pose, JointToFlange);
}

KineResult Kine_JointToWorldPos(const KineJoint* joints, const KineTool* tool, const KineWobj* wobj,
                                const KineLoad* load, KinePose* pose)
{
    return RunForward(joints, tool, wobj, load, pose, JointToWorld);
}

KineResult Kine_JointToWobjPos(const KineJoint* joints, const KineTool* tool, const KineWobj* wobj,
                               const KineLoad* load, KinePose* pose)
{
    return RunForward(joints, tool, wobj, load, pose, JointToWobj);
}

KineResult Kine_FKineVision(const KineJoint* joints, KinePose* pose)
{
    const Store& store = Library();
    Arguments in(store);
    const Joints q = in.Take(joints);
    in.Require(pose != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;

    PoseRecord result{};
    if (const KineResult code = JointToVision(store, q, result)) return code;
    CopyOut(ToDegrees(result), pose);
    return KINE_OK;
}
