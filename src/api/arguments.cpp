// Taking the caller's records.
#include "api/arguments.h"

#include "api/convert.h"
#include "api/record_access.h"
#include "api/validate.h"

namespace kine {

namespace {

// One Take: earlier is the code so far and becomes refused when this record is refused.
template <class Record, class IsLegal>
auto TakeRecord(const Record* record, IsLegal isLegal, KineResult refused, KineResult& earlier)
    -> decltype(ToRadians(*record))
{
    if (earlier != KINE_OK) return {};
    earlier = refused;
    if (record == nullptr) return {};
    const Record copy = CopyIn(record);
    if (!isLegal(copy)) return {};
    earlier = KINE_OK;
    return ToRadians(copy);
}

}  // namespace

Joints Arguments::Take(const KineJoint* joints)
{
    return TakeRecord(joints, IsLegalJoint, KINE_ERR_JOINT, code_);
}

PoseRecord Arguments::Take(const KinePose* pose)
{
    return TakeRecord(pose, IsLegalPose, KINE_ERR_POSE, code_);
}

Tool Arguments::Take(const KineTool* tool) { return TakeRecord(tool, IsLegalTool, KINE_ERR_TOOL, code_); }

Wobj Arguments::Take(const KineWobj* wobj)
{
    const auto isLegal = [this](const KineWobj& copy) { return IsLegalWobj(store_, copy); };
    return TakeRecord(wobj, isLegal, KINE_ERR_WOBJ, code_);
}

Load Arguments::Take(const KineLoad* load) { return TakeRecord(load, IsLegalLoad, KINE_ERR_LOAD, code_); }

Pose Arguments::Take(const KineFrame* offset)
{
    return TakeRecord(offset, IsLegalFrame, KINE_ERR_OFFSET_FRAME, code_);
}

void Arguments::Require(bool condition, KineResult code)
{
    if (code_ == KINE_OK && !condition) code_ = code;
}

}  // namespace kine
