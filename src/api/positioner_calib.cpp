// The exports that calibrate positioners and the robot base.
#include "calib/positioner_calib.h"

#include "KineDll.h"
#include "api/calib_frame.h"

using namespace kine;

KineResult Kine_CalcPositionerJ1Prm_3P(int32_t unit, const KinePose* p0, const KinePose* p1,
                                       const KinePose* p2, KineFrame* frame)
{
    return CalibFrame({p0, p1, p2}, frame, [&](const auto& taught, Pose& result) {
        return CalcPositionerJ1(Library().mechUnits, unit, taught, result);
    });
}

KineResult Kine_CalcPositionerJnPrm_3P(int32_t unit, int32_t axis, const KinePose* p0, const KinePose* p1,
                                       const KinePose* p2, const KineFrame* reference, KineFrame* frame)
{
    const auto solve = [&](const auto& taught, const Pose& given, Pose& result) {
        return CalcPositionerJn(Library().mechUnits, unit, axis, taught, given, result);
    };
    return CalibFrameIn({p0, p1, p2}, reference, frame, solve);
}

KineResult Kine_CalcRobotBasePrm_3P(int32_t unit, const KinePose* p0, const KinePose* p1, const KinePose* p2,
                                    KineFrame* frame, KineCalibError* error)
{
    return CalibFrame({p0, p1, p2}, frame, [&](const auto& taught, Pose& result) -> KineResult {
        KineCalibError report{};
        if (const KineResult code = CalcRobotBase(Library().mechUnits, unit, taught, result, report))
            return code;
        CopyOutIfWanted(report, error);
        return KINE_OK;
    });
}
