// The difference of two poses.
#include "KineDll.h"
#include "api/arguments.h"
#include "api/convert.h"
#include "api/record_access.h"
#include "config/store.h"
#include "math/transform.h"

using namespace kine;

namespace {

constexpr std::int32_t kDiffInFirst = -1;

}  // namespace

KineResult Kine_CalcPosDif(const KinePose* first, const KinePose* second, int32_t frame, KineFrame* out)
{
    Arguments in(Library());
    const PoseRecord p1 = in.Take(first);
    const PoseRecord p2 = in.Take(second);
    in.Require(frame == kDiffInReference || frame == kDiffInFirst, KINE_ERR_DIRECTION);
    in.Require(out != nullptr, KINE_ERR_POSE);
    if (const KineResult code = in.Code()) return code;
    CopyOut(ToDegrees(PoseDiff(p1.frame.AsPose(), p2.frame.AsPose(), frame)), out);
    return KINE_OK;
}
