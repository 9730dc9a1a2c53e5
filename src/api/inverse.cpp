// The inverse export.
#include "KineDll.h"
#include "api/arguments.h"
#include "api/convert.h"
#include "api/record_access.h"
#include "chain/inverse_chain.h"
#include "config/store.h"

using namespace kine;

KineResult Kine_WobjPosToJoint(const KinePose* target, const KineTool* tool, const KineWobj* wobj,
                               const KineLoad* load, KineJoint* joints)
{
    const Store& store = Library();
    Arguments in(store);
    // In braces the records are taken from left to right.
    const InverseRequest request{in.Take(tool), in.Take(wobj), in.Take(load), in.Take(target)};
    // The bytes as they are, as in the forward exports.
    in.Require(request.tool.heldByRobot != request.wobj.heldByRobot, KINE_ERR_HOLD);
    in.Require(joints != nullptr, KINE_ERR_JOINT);
    if (const KineResult code = in.Code()) return code;

    Joints result{};
    if (const KineResult code = WobjToJoint(store, request, result)) return code;
    CopyOut(ToDegrees(result), joints);
    return KINE_OK;
}
