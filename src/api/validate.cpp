// Validation of the public records.
#include "api/validate.h"

#include <cmath>

#include "config/print.h"

namespace kine {

namespace {

// deg; equal passes, NaN passes.
constexpr double kMaxAngle = 180.0;

bool IsLegalAngle(double degrees) { return !(std::fabs(degrees) > kMaxAngle); }

bool AreLegalAngles(const double (&degrees)[3])
{
    return IsLegalAngle(degrees[0]) && IsLegalAngle(degrees[1]) && IsLegalAngle(degrees[2]);
}

// Zero passes, NaN passes.
bool IsNegative(double value) { return value < 0.0; }

}  // namespace

bool IsLegalFrame(const KineFrame& frame)
{
    return IsLegalAngle(frame.A) && IsLegalAngle(frame.B) && IsLegalAngle(frame.C);
}

bool IsLegalPose(const KinePose& pose) { return IsLegalFrame(pose.Frame); }

bool IsLegalLoad(const KineLoad& load)
{
    return AreLegalAngles(load.Aom) && !IsNegative(load.Mass) && !IsNegative(load.Inertia[0]) &&
           !IsNegative(load.Inertia[1]) && !IsNegative(load.Inertia[2]);
}

bool IsLegalTool(const KineTool& tool) { return IsLegalFrame(tool.TFrame) && IsLegalLoad(tool.TLoad); }

bool IsLegalWobj(const Store& store, const KineWobj& wobj)
{
    // Tested even where UFrame is ignored.
    if (!IsLegalFrame(wobj.UFrame)) return false;
    if (wobj.UFFix == 0) {
        // Signed: a negative index passes, and the frame services refuse it.
        const std::int32_t count = store.mechUnits.mechUnitCount;
        if (wobj.MechUnitIndex == 0 || wobj.MechUnitIndex >= count) {
            Print("IsLegalWobj,!pWobj->UFFix:%d;\n", count);
            return false;
        }
    }
    return IsLegalFrame(wobj.OFrame);
}

bool IsLegalJoint(const KineJoint& /*joints*/) { return true; }

}  // namespace kine
