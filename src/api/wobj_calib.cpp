// The exports that calibrate work objects.
#include "calib/wobj_calib.h"

#include "KineDll.h"
#include "api/calib_frame.h"
#include "calib/taught_points.h"
#include "math/angles.h"

using namespace kine;

namespace {

// What every solver here ends with: its frame is the result and its tilt, which stays in radians, is written
// beside it.
KineResult Deliver(KineResult code, const CalibratedFrame& solved, Pose& result, double* tilt)
{
    if (code != KINE_OK) return code;
    result = solved.frame;
    CopyOutIfWanted(WithOneNaN(solved.tilt), tilt);
    return KINE_OK;
}

KineResult UserFrame3P(const FramePoints& points, Pose& result, double* tilt)
{
    CalibratedFrame solved{};
    const KineResult code = CalcUserFrame3P(points, solved);
    return Deliver(code, solved, result, tilt);
}

}  // namespace

KineResult Kine_CalcExtWobj_UserPrm_2P(const KinePose* origin, const KinePose* xPoint, KineFrame* frame,
                                       double* tilt)
{
    return CalibFrame({origin, xPoint}, frame, [&](const auto& taught, Pose& result) {
        CalibratedFrame solved{};
        const KineResult code = CalcUserFrame2P(PointOf(taught[0]), PointOf(taught[1]), solved);
        return Deliver(code, solved, result, tilt);
    });
}

KineResult Kine_CalcExtWobj_UserPrm_3P(const KinePose* origin, const KinePose* xPoint,
                                       const KinePose* xyPoint, KineFrame* frame, double* tilt)
{
    return CalibFrame({origin, xPoint, xyPoint}, frame, [&](const auto& taught, Pose& result) {
        return UserFrame3P(PointsOf(taught), result, tilt);
    });
}

KineResult Kine_CalcExtWobj_UserPrm_Cirle3P(const KinePose* p1, const KinePose* p2, const KinePose* p3,
                                            KineFrame* frame, double* tilt)
{
    return CalibFrame({p1, p2, p3}, frame, [&](const auto& taught, Pose& result) {
        CalibratedFrame solved{};
        const KineResult code = CalcCircleFrame3P(PointsOf(taught), solved);
        return Deliver(code, solved, result, tilt);
    });
}

KineResult Kine_CalcExtWobj_ObjPrm_3P(const KinePose* origin, const KinePose* xPoint, const KinePose* xyPoint,
                                      const KineFrame* user, KineFrame* frame, double* tilt)
{
    const auto solve = [&](const auto& taught, const Pose& userFrame, Pose& result) -> KineResult {
        Pose object{};
        if (const KineResult code = UserFrame3P(PointsOf(taught), object, tilt)) return code;
        result = MatrixToPose(MatrixInverse(PoseToMatrix(userFrame)) * PoseToMatrix(object));
        return KINE_OK;
    };
    return CalibFrameIn({origin, xPoint, xyPoint}, user, frame, solve);
}

KineResult Kine_CalcGripWobj_UserPrm_3P(const KinePose* origin, const KinePose* xPoint,
                                        const KinePose* xyPoint, KineFrame* frame, double* tilt)
{
    return Kine_CalcExtWobj_UserPrm_3P(origin, xPoint, xyPoint, frame, tilt);
}

KineResult Kine_CalcGripWobj_ObjPrm_3P(const KinePose* origin, const KinePose* xPoint,
                                       const KinePose* xyPoint, const KineFrame* user, KineFrame* frame,
                                       double* tilt)
{
    // The points go into the user frame first, and the tilt with them; for a fixed work object the finished
    // frame does, and the tilt stays.
    const auto solve = [&](const auto& taught, const Pose& userFrame, Pose& result) {
        return UserFrame3P(CalcPointsInFrame(userFrame, PointsOf(taught)), result, tilt);
    };
    return CalibFrameIn({origin, xPoint, xyPoint}, user, frame, solve);
}

KineResult Kine_CalcUnFixWobj_ObjPrm_3P(int32_t unit, const KinePose* origin, const KinePose* xPoint,
                                        const KinePose* xyPoint, KineFrame* frame, double* tilt)
{
    return CalibFrame({origin, xPoint, xyPoint}, frame, [&](const auto& taught, Pose& result) {
        return UserFrame3P(PointsOnMechUnit(Library().mechUnits, unit, taught), result, tilt);
    });
}
