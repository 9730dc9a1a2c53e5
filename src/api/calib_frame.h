// CalibFrame: the common sequence of every calibration export. The export is its solver.
#pragma once

#include <array>
#include <cstddef>

#include "KineDll.h"
#include "api/arguments.h"
#include "api/convert.h"
#include "api/record_access.h"
#include "chain/records.h"
#include "config/store.h"
#include "math/transform.h"

namespace kine {

// Takes all poses before anything is computed, runs solve(taught, result) and writes its result. A code of
// the solver is returned at once and the frame is not written then. Solver and result are in radians.
template <std::size_t N, class Solve>
KineResult CalibFrame(const KinePose* const (&poses)[N], KineFrame* frame, Solve solve)
{
    Arguments in(Library());
    std::array<PoseRecord, N> taught{};
    for (std::size_t i = 0; i < N; ++i) taught[i] = in.Take(poses[i]);
    in.Require(frame != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;

    Pose result{};
    if (const KineResult code = solve(taught, result)) return code;
    CopyOut(ToDegrees(result), frame);
    return KINE_OK;
}

// The same with a given frame, for solve(taught, given, result). Its angles are not checked.
template <std::size_t N, class Solve>
KineResult CalibFrameIn(const KinePose* const (&poses)[N], const KineFrame* given, KineFrame* frame,
                        Solve solve)
{
    return CalibFrame(poses, frame, [&](const auto& taught, Pose& result) -> KineResult {
        if (given == nullptr) return KINE_ERR_POSE;
        return solve(taught, ToRadians(CopyIn(given)), result);
    });
}

// A result beside the frame, which the caller may leave out.
template <class Record>
void CopyOutIfWanted(const Record& record, Record* to)
{
    if (to != nullptr) CopyOut(record, to);
}

}  // namespace kine
