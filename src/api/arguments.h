// Arguments: takes the caller's records one after the other. Each Take copies a record, checks it unless an
// earlier check failed, and returns the internal form. The statements of an export are the order of its
// checks: keep one Take per statement, or in braces, which are evaluated from left to right. The order of
// arguments inside a call is not defined.
#pragma once

#include "KineDll.h"
#include "chain/records.h"
#include "config/store.h"

namespace kine {

class Arguments
{
public:
    explicit Arguments(const Store& store) : store_(store) {}

    // The codes of refused records: KINE_ERR_JOINT, _POSE, _TOOL, _WOBJ, _LOAD. Null is refused. A refused
    // record, and every record after it, comes back as zeros.
    Joints Take(const KineJoint* joints);
    PoseRecord Take(const KinePose* pose);
    Tool Take(const KineTool* tool);
    Wobj Take(const KineWobj* wobj);
    Load Take(const KineLoad* load);

    // An offset frame: KINE_ERR_OFFSET_FRAME.
    Pose Take(const KineFrame* offset);

    // A check that is not about one record.
    void Require(bool condition, KineResult code);

    // The code of the first check that failed.
    [[nodiscard]] KineResult Code() const { return code_; }

private:
    const Store& store_;
    KineResult code_ = KINE_OK;
};

}  // namespace kine
