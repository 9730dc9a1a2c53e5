// The exports around alignment.
#include "motion/align.h"

#include "KineDll.h"
#include "api/arguments.h"
#include "api/convert.h"
#include "api/record_access.h"
#include "api/validate.h"
#include "config/store.h"
#include "motion/z_vector.h"

using namespace kine;

KineResult Kine_CalcAlignPos(int32_t mode, const KineJoint* current, const KineTool* tool,
                             const KineWobj* wobj, const KineLoad* load, KineJoint* target)
{
    const Store& store = Library();
    Arguments in(store);
    AlignRequest request{};
    request.mode = mode;
    request.current = in.Take(current);
    request.wobj = in.Take(wobj);
    request.tool = in.Take(tool);
    request.payload = in.Take(load);
    in.Require(target != nullptr, KINE_ERR_JOINT);
    if (const KineResult code = in.Code()) return code;

    Joints result{};
    if (const KineResult code = AlignTarget(store, request, result)) return code;
    CopyOut(ToDegrees(result), target);
    return KINE_OK;
}

KineResult Kine_CalcAlignCoordProc(KineTool* tool, KineWobj* wobj)
{
    if (wobj == nullptr) return KINE_ERR_WOBJ;
    KineWobj object = CopyIn(wobj);
    if (!IsLegalWobj(Library(), object)) return KINE_ERR_WOBJ;
    if (tool == nullptr) return KINE_ERR_TOOL;
    KineTool swapped = CopyIn(tool);
    if (!IsLegalTool(swapped) || swapped.HeldByRobot != 0) return KINE_ERR_TOOL;

    // The tool is held from here on, also when the work object turns out not to be.
    swapped.HeldByRobot = 1;
    CopyOut(swapped, tool);
    if (object.HeldByRobot == 0) return KINE_ERR_WOBJ;

    const KineFrame stationary = swapped.TFrame;
    swapped.TFrame = ToDegrees(CombinedFrame(ToRadians(object)).AsPose());
    object.HeldByRobot = 0;
    object.UFrame = stationary;
    object.OFrame = {};
    CopyOut(swapped, tool);
    CopyOut(object, wobj);
    return KINE_OK;
}

KineResult Kine_CalcZVec(const KineFrame* p1, const KineFrame* p2, const KineFrame* p3, double length,
                         double* out)
{
    if (p1 == nullptr || p2 == nullptr || p3 == nullptr || out == nullptr) return KINE_OK;
    const KineFrame f1 = CopyIn(p1);
    const KineFrame f2 = CopyIn(p2);
    const KineFrame f3 = CopyIn(p3);
    Vec3 normal{};
    if (PlaneNormal({f1.X, f1.Y, f1.Z}, {f2.X, f2.Y, f2.Z}, {f3.X, f3.Y, f3.Z}, length, normal)) {
        CopyOut(normal, reinterpret_cast<Vec3*>(out));
    }
    return KINE_OK;
}
