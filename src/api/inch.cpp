// The jog export.
#include "motion/inch.h"

#include "KineDll.h"
#include "api/arguments.h"
#include "api/convert.h"
#include "api/record_access.h"
#include "config/store.h"
#include "math/angles.h"

using namespace kine;

namespace {

// The caller's three steps.
struct Steps
{
    double joint;
    double linear;
    double rotation;
};

// Converts the caller's own array, which holds radians after every call.
Steps ConvertInPlace(double* steps)
{
    auto* record = reinterpret_cast<Steps*>(steps);
    Steps converted = CopyIn(record);
    converted.joint *= DEG2RAD;
    converted.rotation *= DEG2RAD;
    CopyOut(converted, record);
    return converted;
}

std::array<double, kInchSlots> SlotsOf(const KineInchDir& dir)
{
    std::array<double, kInchSlots> slots{};
    for (std::size_t i = 0; i < slots.size(); ++i) slots[i] = dir.Slot[i];
    return slots;
}

}  // namespace

KineResult Kine_InchMovePosCalc(const KineInchDir* dir, int32_t mode, const KineTool* tool,
                                const KineWobj* wobj, const KineLoad* load, double* steps,
                                const KineJoint* current, KineJoint* target)
{
    if (dir == nullptr || steps == nullptr) return KINE_ERR_DIRECTION;
    const Store& store = Library();
    Arguments in(store);
    InchRequest request{};
    request.mode = mode;
    request.slots = SlotsOf(CopyIn(dir));
    const Steps converted = ConvertInPlace(steps);
    request.jointStep = converted.joint;
    request.linearStep = converted.linear;
    request.rotationStep = converted.rotation;
    request.tool = in.Take(tool);
    request.wobj = in.Take(wobj);
    request.payload = in.Take(load);
    request.current = in.Take(current);
    in.Require(target != nullptr, KINE_ERR_JOINT);
    if (const KineResult code = in.Code()) return code;

    Joints result{};
    if (const KineResult code = InchTarget(store, request, result)) return code;
    CopyOut(ToDegrees(result), target);
    return KINE_OK;
}
