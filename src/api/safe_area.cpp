// The safe-area check.
#include "api/safe_area.h"

#include <limits>

#include "api/record_access.h"
#include "motion/safe_area.h"

namespace kine {

namespace {

constexpr std::int32_t kInside = 1;
constexpr std::int32_t kOutside = 0;

Vec3 CentreOf(const double* centre)
{
    // Nothing is inside a cube that is nowhere.
    constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();
    if (centre == nullptr) return {kNowhere, kNowhere, kNowhere};
    return CopyIn(reinterpret_cast<const Vec3*>(centre));
}

}  // namespace

std::int32_t SafeAreaAnswer(KineResult code, const KinePose& position, const double* centre, double size)
{
    if (code != KINE_OK) return static_cast<std::int32_t>(code);
    const Vec3 point{position.Frame.X, position.Frame.Y, position.Frame.Z};
    return IsInCube(point, CentreOf(centre), size) ? kInside : kOutside;
}

}  // namespace kine

using namespace kine;

int32_t SafeArea_Check(const KineJoint* joints, const double* centre, double size)
{
    const KineJoint copy = joints == nullptr ? KineJoint{} : CopyIn(joints);
    const KineTool tool{};
    const KineWobj wobj{};
    const KineLoad load{};
    KinePose position{};
    // The work object of zeros names mechanical unit 0 and is refused: every call ends with its code and
    // its line.
    const KineResult code = Kine_JointToWorldPos(&copy, &tool, &wobj, &load, &position);
    return SafeAreaAnswer(code, position, centre, size);
}
