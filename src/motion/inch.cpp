// Targets of jog steps.
//
// n: axes of the arm; L: linear direction; W: rotation axis; T: current pose of the jogged frame; S: step.
#include "motion/inch.h"

#include <cmath>

#include "chain/combine_load.h"
#include "chain/forward_chain.h"
#include "chain/frame_services.h"
#include "chain/inverse_chain.h"
#include "config/dispatch.h"
#include "math/angles.h"
#include "motion/axis_angle.h"

namespace kine {

namespace {

constexpr std::int32_t kSixAxes = 6;
constexpr std::size_t kFirstRotationSlot = 3;
// A rotation slot turns the step of a held work object round when it is larger than this in size.
constexpr double kMinRotationSlot = 1e-5;
// The thresholds by which a target counts as singular.
constexpr std::uint32_t kSingularityKind = 2;

Vec3 LinearDirection(const InchRequest& request)
{
    return {request.slots[0], request.slots[1], request.slots[2]};
}

// The four-axis arms have their one rotation, about Z, in the slot after the linear ones.
Vec3 RotationAxis(const InchRequest& request, std::int32_t n)
{
    const auto& slots = request.slots;
    if (n == kSixAxes) return {slots[3], slots[4], slots[5]};
    return {slots[5], slots[4], slots[3]};
}

Joints JogJoints(const InchRequest& request, std::size_t n)
{
    Joints target = request.current;
    for (std::size_t i = 0; i < target.axis.size(); ++i) {
        target.axis[i] += (i < n ? request.slots[i] : 0.0) * request.jointStep;
    }
    // External axes move by the step in the caller's own unit.
    for (std::size_t j = 0; j < target.extAxis.size(); ++j) {
        const double moved = target.extAxis[j] + request.slots[n + j] * request.jointStep * RAD2DEG;
        target.extAxis[j] = WithOneNaN(moved);
    }
    return target;
}

Pose PoseOf(const RotMatrix& rotation, const Vec3& position)
{
    const auto [a, b, c] = RotMatrixToEulerExact(rotation);
    return {position.x, position.y, position.z, a, b, c};
}

HomMatrix RigidInverse(const HomMatrix& m)
{
    const Vec3 moved = RotateBack(m.r, m.t);
    return {Transpose(m.r), {-moved.x, -moved.y, -moved.z}};
}

// A step in the work-object frame. With a held work object every rotation slot in use turns the sense of the
// rotation round once more, so that two of them cancel, and the tool point stays in place.
HomMatrix StepInWobj(const InchRequest& request, std::int32_t n, const HomMatrix& t, HomMatrix s)
{
    HomMatrix moved = s * t;
    if (request.wobj.heldByRobot != 1) return moved;
    Vec3 w = RotationAxis(request, n);
    for (std::size_t i = kFirstRotationSlot; i < static_cast<std::size_t>(n); ++i) {
        if (!(std::fabs(request.slots[i]) > kMinRotationSlot)) continue;
        w = Scale(-1.0, w);
        s.r = AxisAngleMatrix(w, request.rotationStep);
        moved = s * t;
        moved.t = t.t;
    }
    return moved;
}

// A step in the tool frame. Past a stationary tool the held work object makes the opposite one.
HomMatrix StepInTool(const InchRequest& request, const HomMatrix& t, const HomMatrix& s)
{
    return IsHeld(request.tool) ? t * s : t * RigidInverse(s);
}

// Tool and work-object mode, through the work-object chains.
KineResult JogInWobj(const Store& store, const InchRequest& request, std::int32_t n, Joints& target)
{
    const ForwardRequest forward{request.current, request.tool, request.wobj, request.payload};
    PoseRecord pose{};
    if (const KineResult code = JointToWobj(store, forward, pose)) return code;

    const HomMatrix t = pose.frame.AsMatrix();
    const HomMatrix s{AxisAngleMatrix(RotationAxis(request, n), request.rotationStep),
                      Scale(request.linearStep, LinearDirection(request))};
    const bool isWobjMode = request.mode == static_cast<std::int32_t>(InchMode::kWobj);
    const HomMatrix moved = isWobjMode ? StepInWobj(request, n, t, s) : StepInTool(request, t, s);

    // pose carries the configuration and the external axes of the current joints.
    pose.frame = PoseOf(moved.r, moved.t);
    return WobjToJoint(store, {request.tool, request.wobj, request.payload, pose}, target);
}

// The robot base in the world, as the external axes carry it.
KineResult WorldFromBase(const Store& store, const Joints& current, RotMatrix& rotation)
{
    PoseRecord base{};
    base.extAxis = current.extAxis;
    if (const KineResult code = FrameToWorld(store.mechUnits, store.mounting, base)) return code;
    rotation = base.frame.AsMatrix().r;
    return KINE_OK;
}

// Base and world mode, through the arm alone. Forward and inverse carry the same load, so that the deflection
// cancels and a step of nothing stays where it is.
KineResult JogInBase(const Store& store, const InchRequest& request, std::int32_t n, Joints& target)
{
    ToolBlock block{};
    // With nothing on the flange the flange itself is jogged.
    static_cast<void>(FrameOnFlange(request.tool, request.wobj, block.frame));
    block.load = CombineLoad(request.tool.load, request.payload, block.frame);

    LazyPose current;
    KineArmConfig config{};
    if (const KineResult code = ForwardKinematics(store, request.current, block, current, config))
        return code;

    Vec3 direction = LinearDirection(request);
    Vec3 axis = RotationAxis(request, n);
    if (request.mode == static_cast<std::int32_t>(InchMode::kWorld)) {
        RotMatrix m{};
        if (const KineResult code = WorldFromBase(store, request.current, m)) return code;
        direction = Rotate(m, direction);
        axis = Rotate(m, axis);
    }
    const HomMatrix t = current.AsMatrix();
    const RotMatrix rotation = RotMultiply(AxisAngleMatrix(axis, request.rotationStep), t.r);
    const Pose moved = PoseOf(rotation, t.t + Scale(request.linearStep, direction));

    return InverseKinematics(store, moved, block, config, target);
}

// The joints that a mode other than joint jog leads to, without the test for singularity.
KineResult CartesianTarget(const Store& store, const InchRequest& request, std::int32_t n, Joints& target)
{
    switch (static_cast<InchMode>(request.mode)) {
        case InchMode::kTool:
            // With neither tool nor work object on the robot there is no tool frame to move in.
            if (!IsHeld(request.tool) && !IsHeld(request.wobj)) return KINE_OK;
            return JogInWobj(store, request, n, target);
        case InchMode::kWobj: return JogInWobj(store, request, n, target);
        case InchMode::kBase:
        case InchMode::kWorld: return JogInBase(store, request, n, target);
        case InchMode::kJoint:
        default: return KINE_OK;
    }
}

}  // namespace

KineResult InchTarget(const Store& store, const InchRequest& request, Joints& target)
{
    std::int32_t n = 0;
    if (const KineResult code = GetModelFamily(store, n)) return code;
    if (request.mode == static_cast<std::int32_t>(InchMode::kJoint)) {
        target = JogJoints(request, static_cast<std::size_t>(n));
        return KINE_OK;
    }

    // The external axes stay: the chains hand through those of the pose, the model leaves them alone.
    Joints result = request.current;
    if (const KineResult code = CartesianTarget(store, request, n, result)) return code;
    if (IsSingularity(store, result, kSingularityKind) != KINE_OK) return KINE_ERR_INCH_SINGULAR;
    target = result;
    return KINE_OK;
}

}  // namespace kine
