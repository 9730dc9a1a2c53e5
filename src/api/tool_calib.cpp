// The exports that calibrate tools.
#include "calib/tool_calib.h"

#include <span>

#include "KineDll.h"
#include "api/calib_frame.h"
#include "calib/taught_points.h"

using namespace kine;

namespace {

std::int32_t ArmType() { return Library().arm.armType; }

Pose WithoutRotation(const Vec3& point) { return {point.x, point.y, point.z, 0.0, 0.0, 0.0}; }

template <std::size_t N>
std::array<HomMatrix, N> ToMatrices(const std::array<PoseRecord, N>& taught)
{
    std::array<HomMatrix, N> matrices{};
    for (std::size_t i = 0; i < N; ++i) matrices[i] = taught[i].frame.AsMatrix();
    return matrices;
}

// The tip from the first three poses, with its report, which stands even when a later step fails.
KineResult TipFrom3P(std::span<const HomMatrix, 3> touching, Vec3& tip, KineCalibError* error)
{
    KineCalibError report{};
    if (const KineResult code = CalcTcp3P(ArmType(), touching, tip, report)) return code;
    CopyOutIfWanted(report, error);
    return KINE_OK;
}

}  // namespace

KineResult Kine_CalcExtToolPrm_1P(const KinePose* p0, KineFrame* frame)
{
    return CalibFrame({p0}, frame, [](const auto& taught, Pose& result) {
        result = WithoutRotation(PointOf(taught[0]));
        return KINE_OK;
    });
}

KineResult Kine_CalcExtToolPrm_1PZX(const KinePose* origin, const KinePose* zPoint, const KinePose* xPoint,
                                    KineFrame* frame)
{
    return CalibFrame({origin, zPoint, xPoint}, frame, [](const auto& taught, Pose& result) {
        const auto [o, z, x] = ToMatrices(taught);
        return CalcFrameZX(o.t, ZPoseFor(ArmType(), o, z).t, x.t, result);
    });
}

KineResult Kine_CalcExtToolPrm_3P(const KinePose* p0, const KinePose* p1, const KinePose* p2,
                                  KineFrame* frame, KineCalibError* error)
{
    return CalibFrame({p0, p1, p2}, frame, [&](const auto& taught, Pose& result) -> KineResult {
        const auto touching = ToMatrices(taught);
        Vec3 tip{};
        if (const KineResult code = TipFrom3P(touching, tip, error)) return code;
        result = WithoutRotation(TipAt(touching[0], tip));
        return KINE_OK;
    });
}

KineResult Kine_CalcExtToolPrm_3PZX(const KinePose* p0, const KinePose* p1, const KinePose* p2,
                                    const KinePose* origin, const KinePose* zPoint, const KinePose* xPoint,
                                    KineFrame* frame, KineCalibError* error)
{
    const auto solve = [&](const auto& taught, Pose& result) -> KineResult {
        const auto poses = ToMatrices(taught);
        const auto& [t0, t1, t2, o, z, x] = poses;
        Vec3 tip{};
        if (const KineResult code = TipFrom3P(std::span(poses).template first<3>(), tip, error)) return code;
        return CalcFrameZX(TipAt(o, tip), TipAt(ZPoseFor(ArmType(), o, z), tip), TipAt(x, tip), result);
    };
    return CalibFrame({p0, p1, p2, origin, zPoint, xPoint}, frame, solve);
}

KineResult Kine_CalcGripToolPrm_3P(const KinePose* p0, const KinePose* p1, const KinePose* p2,
                                   KineFrame* frame, KineCalibError* error)
{
    return CalibFrame({p0, p1, p2}, frame, [&](const auto& taught, Pose& result) -> KineResult {
        Vec3 tip{};
        if (const KineResult code = TipFrom3P(ToMatrices(taught), tip, error)) return code;
        result = WithoutRotation(tip);
        return KINE_OK;
    });
}

KineResult Kine_CalcGripToolPrm_3PZX(const KinePose* p0, const KinePose* p1, const KinePose* p2,
                                     const KinePose* origin, const KinePose* zPoint, const KinePose* xPoint,
                                     KineFrame* frame, KineCalibError* error)
{
    const auto solve = [&](const auto& taught, Pose& result) -> KineResult {
        const auto poses = ToMatrices(taught);
        Vec3 tip{};
        if (const KineResult code = TipFrom3P(std::span(poses).template first<3>(), tip, error)) return code;
        return CalcToolFrameZX(tip, poses[3], ZPoseFor(ArmType(), poses[3], poses[4]), poses[5], result);
    };
    return CalibFrame({p0, p1, p2, origin, zPoint, xPoint}, frame, solve);
}

KineResult Kine_CalcGripToolPrm_5P(const KinePose* p0, const KinePose* p1, const KinePose* p2,
                                   const KinePose* p3, const KinePose* p4, KineFrame* frame,
                                   KineCalibError* error)
{
    return CalibFrame({p0, p1, p2, p3, p4}, frame, [&](const auto& taught, Pose& result) -> KineResult {
        Vec3 tip{};
        KineCalibError report{};
        if (const KineResult code = CalcTcp5P(ArmType(), ToMatrices(taught), tip, report)) return code;
        CopyOutIfWanted(report, error);
        result = WithoutRotation(tip);
        return KINE_OK;
    });
}

KineResult Kine_CalcGripToolPrm_Scara2P(const KinePose* p0, const KinePose* p1, KineFrame* frame)
{
    return CalibFrame({p0, p1}, frame, [](const auto& taught, Pose& result) -> KineResult {
        Vec3 tip{};
        if (const KineResult code = CalcTcpScara2P(ArmType(), ToMatrices(taught), tip)) return code;
        result = WithoutRotation(tip);
        return KINE_OK;
    });
}
