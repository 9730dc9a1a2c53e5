// Alignment of the tool.
//
// T: pose of the aligned frame in the base; M: rotation whose columns are the axes of the reference frame
// seen from the aligned one; z: the Z axis; u: the chosen column of M; theta: angle between them.
#include "motion/align.h"

#include <cmath>
#include <limits>

#include "chain/combine_load.h"
#include "chain/forward_chain.h"
#include "chain/frame_services.h"
#include "config/dispatch.h"
#include "math/angles.h"
#include "motion/axis_angle.h"
#include "motion/z_vector.h"

namespace kine {

namespace {

// rad. An axis must be nearer than the best one by more than this; of nearly equal ones the first stays.
constexpr double kNearerBy = 1e-5;
// Turn numbers, or postures, that the search tries: 0 to 7.
constexpr std::int32_t kTriedTurns = 8;
// rad, summed over the axes: no solution counts from here on.
constexpr double kMaxAxisSum = 2160.0;

struct NearestAxis
{
    std::size_t index;
    double sign;   // -1: the negative axis is the nearest
    double angle;  // rad, from the Z axis
};

NearestAxis FindNearestAxis(const RotMatrix& m)
{
    const double cosines[3] = {m.r20, m.r21, m.r22};
    // Without any axis, which NaN alone can do, the angle stays NaN and no solution is found.
    NearestAxis best{0, 1.0, std::numeric_limits<double>::quiet_NaN()};
    double smallest = kPi;
    for (std::size_t i = 0; i < 3; ++i) {
        const double angle = SafeAcos(cosines[i]);
        const bool isNegative = angle > kHalfPi;
        const double nearest = isNegative ? kPi - angle : angle;
        if (nearest < smallest - kNearerBy) {
            smallest = nearest;
            best = {i, isNegative ? -1.0 : 1.0, nearest};
        }
    }
    return best;
}

// The rotation, in coordinates of the aligned frame, that brings its Z axis onto the nearest column of m.
RotMatrix AligningRotation(const RotMatrix& m)
{
    const NearestAxis nearest = FindNearestAxis(m);
    const Vec3 columns[3] = {AxisX(m), AxisY(m), AxisZ(m)};
    const Vec3 origin{0.0, 0.0, 0.0};
    const Vec3 z{0.0, 0.0, 1.0};
    // Along z there is no normal and no angle: any axis will do.
    Vec3 axis{1.0, 0.0, 0.0};
    static_cast<void>(PlaneNormal(origin, z, columns[nearest.index], 1.0, axis));
    return AxisAngleMatrix(Scale(nearest.sign, axis), nearest.angle);
}

bool IsWobjMode(std::int32_t mode)
{
    return mode == static_cast<std::int32_t>(AlignMode::kWobj) ||
           mode == static_cast<std::int32_t>(AlignMode::kWobjThroughFlange);
}

bool IsDefined(const AlignRequest& request)
{
    if (IsWobjMode(request.mode)) return IsHeld(request.tool) || IsHeld(request.wobj);
    return request.mode == static_cast<std::int32_t>(AlignMode::kBase) ||
           request.mode == static_cast<std::int32_t>(AlignMode::kWorld);
}

// Rotation of the carried frame in the reference frame of the mode; carriedInBase is its pose in the base.
KineResult CarriedInReference(const Store& store, const AlignRequest& request, const LazyPose& carriedInBase,
                              RotMatrix& rotation)
{
    PoseRecord inReference{};
    inReference.frame = carriedInBase;
    if (IsWobjMode(request.mode)) {
        const ForwardRequest forward{request.current, request.tool, request.wobj, request.payload};
        if (const KineResult code = JointToWobj(store, forward, inReference)) return code;
    } else if (request.mode == static_cast<std::int32_t>(AlignMode::kWorld)) {
        inReference.extAxis = request.current.extAxis;
        if (const KineResult code = FrameToWorld(store.mechUnits, store.mounting, inReference)) return code;
    }
    // By way of the angles, here and below: it brings elements that rounding left next to 1 back to 1,
    // where the angle of an arc cosine would make a turn of them.
    rotation = PoseToMatrix(inReference.frame.AsPose()).r;
    return KINE_OK;
}

double AxisSum(const Joints& a, const Joints& b, std::size_t axes)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < axes; ++i) sum += std::fabs(a.axis[i] - b.axis[i]);
    return sum;
}

// The Cfg4 whose solution is nearest to the current axes, 0 when there is none.
std::int32_t NearestTurn(const Store& store, const Pose& pose, const ToolBlock& block, KineArmConfig config,
                         const Joints& current)
{
    const auto axes = static_cast<std::size_t>(store.arm.modelFamily);
    double smallest = kMaxAxisSum;
    std::int32_t nearest = 0;
    for (config.Cfg4 = 0; config.Cfg4 < kTriedTurns; ++config.Cfg4) {
        Joints solution{};
        if (InverseKinematics(store, pose, block, config, solution) != KINE_OK) continue;
        const double sum = AxisSum(solution, current, axes);
        if (sum < smallest) {
            smallest = sum;
            nearest = config.Cfg4;
        }
    }
    return nearest;
}

// The joints for a pose of the block's frame, provided that the current configuration is the nearest to them.
KineResult SolveNearCurrent(const Store& store, const Pose& pose, const ToolBlock& block,
                            const KineArmConfig& config, const Joints& current, Joints& target)
{
    Joints solution{};
    if (InverseKinematics(store, pose, block, config, solution) != KINE_OK) return KINE_ERR_ALIGN_NO_SOLUTION;
    if (NearestTurn(store, pose, block, config, current) != config.Cfg4) return KINE_ERR_ALIGN_TURN;
    target = solution;
    target.extAxis = current.extAxis;
    return KINE_OK;
}

}  // namespace

KineResult AlignTarget(const Store& store, const AlignRequest& request, Joints& target)
{
    ToolBlock block{};
    // With nothing on the flange the flange itself is aligned.
    static_cast<void>(FrameOnFlange(request.tool, request.wobj, block.frame));
    block.load = CombineLoad(request.tool.load, request.payload, block.frame);

    LazyPose aligned;
    KineArmConfig config{};
    if (const KineResult code = ForwardKinematics(store, request.current, block, aligned, config))
        return code;
    if (!IsDefined(request)) return KINE_ERR_DIRECTION;

    RotMatrix carriedInReference{};
    if (const KineResult code = CarriedInReference(store, request, aligned, carriedInReference)) return code;
    RotMatrix m = Transpose(carriedInReference);

    const bool isWobjCarried = IsHeld(request.wobj) && !IsHeld(request.tool);
    const bool isThroughFlange = request.mode == static_cast<std::int32_t>(AlignMode::kWobjThroughFlange);
    if (isWobjCarried && request.mode != static_cast<std::int32_t>(AlignMode::kWobj)) {
        // The flange takes the place of the work object; the load behind it stays.
        const RotMatrix w = PoseToMatrix(CombinedFrame(request.wobj).AsPose()).r;
        m = isThroughFlange ? Transpose(RotMultiply(w, carriedInReference)) : RotMultiply(w, m);
        block.frame = {};
        // The same joints of the same arm as above: there is nothing to fail.
        static_cast<void>(ForwardKinematics(store, request.current, block, aligned));
    }

    RotMatrix turn = AligningRotation(m);
    // Seen from the held work object the reference turns the other way.
    if (IsHeld(request.wobj) && IsWobjMode(request.mode)) turn = Transpose(turn);

    const HomMatrix t = PoseToMatrix(aligned.AsPose());
    const auto [a, b, c] = RotMatrixToEulerExact(RotMultiply(t.r, turn));
    return SolveNearCurrent(store, Pose{t.t.x, t.t.y, t.t.z, a, b, c}, block, config, request.current,
                            target);
}

}  // namespace kine
