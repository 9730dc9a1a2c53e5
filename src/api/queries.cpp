// Queries about the arm.
#include "KineDll.h"
#include "api/arguments.h"
#include "api/record_access.h"
#include "config/dispatch.h"
#include "config/store.h"

using namespace kine;

KineResult Kine_GetArmType(const KineJoint* joints, KineArmConfig* config)
{
    const Store& store = Library();
    Arguments in(store);
    const Joints q = in.Take(joints);
    in.Require(config != nullptr, KINE_ERR_CONFIG);
    if (const KineResult code = in.Code()) return code;

    // An arm type without a model succeeds and leaves the caller's record as it is.
    KineArmConfig result = CopyIn(config);
    if (const KineResult code = GetArmConfig(store, q, result)) return code;
    CopyOut(result, config);
    return KINE_OK;
}

KineResult Kine_IsArmTypeValid(const KinePose* pose)
{
    const Store& store = Library();
    Arguments in(store);
    const PoseRecord target = in.Take(pose);
    if (const KineResult code = in.Code()) return code;
    return CheckArmConfig(store, target.config);
}

KineResult Kine_IsSingularity(const KineJoint* joints, uint32_t kind)
{
    const Store& store = Library();
    Arguments in(store);
    const Joints q = in.Take(joints);
    if (const KineResult code = in.Code()) return code;
    return IsSingularity(store, q, kind);
}
