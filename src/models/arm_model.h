// What every arm model is asked for, and the values that go in and out. Radians and millimetres.
#pragma once

#include <array>
#include <cstdint>

#include "KineDll.h"
#include "math/lazy_pose.h"
#include "math/vec3.h"

namespace kine {

// KINE_ARM_... as the store keeps them.
inline constexpr std::int32_t kArmTypeFourAxis = 4;
inline constexpr std::int32_t kArmTypeSixAxis = 6;
inline constexpr std::int32_t kArmTypeFourAxis4110 = 4110;

// An axis position. Axes in radians; external axes stay in degrees (rotary) or millimetres (linear).
struct Joints
{
    std::array<double, 8> axis;
    std::array<double, 6> extAxis;
};

// A load as the caller gives it: kg, centre in millimetres.
struct Load
{
    double mass;
    Vec3 centre;
    Vec3 aomDeg;
    Vec3 inertia;
};

// Tool load and payload together: kg, centre in METRES in the flange, no inertia-axes angles.
struct CombinedLoad
{
    double mass;
    Vec3 centre;
    Vec3 aom;
    Vec3 inertia;
};

// What the flange carries: the frame whose pose is wanted (in the flange) and the load that bends the arm.
struct ToolBlock
{
    Pose frame;
    CombinedLoad load;
};

// Limits of all axes in the layout of a joint set; a model reads and writes the axes it has.
struct AxisLimits
{
    Joints upper;
    Joints lower;
};

// One model holds one parameter set. What cannot fail returns its value.
class ArmModel
{
public:
    // Takes the parameters of the arm. KINE_ERR_MODEL_PARAM when armType is not the model's own, param is
    // null or a length is below its bound. Axis limits are zero afterwards.
    [[nodiscard]] virtual KineResult InitModel(std::uint32_t armType, const KineKinematicParam* param) = 0;

    // Pose of the tool block's frame in the base. A model may change the joints it is given (arm type 4110
    // moves axis 2), so callers hand over a copy of their own.
    [[nodiscard]] virtual LazyPose ForwardKinematics(Joints& joints, const ToolBlock& tool) const = 0;

    // The model's reduced pose for vision calibration; see Kine_FKineVision.
    [[nodiscard]] virtual Pose FlangePose(const Joints& joints) const = 0;

    // Posture and turns. May change the joints it is given, like ForwardKinematics.
    [[nodiscard]] virtual KineArmConfig GetArmConfig(Joints& joints) const = 0;

    // ForwardKinematics and GetArmConfig of one joint set, for models that share work between them.
    virtual void ForwardWithConfig(const Joints& joints, const ToolBlock& tool, LazyPose& pose,
                                   KineArmConfig& config) const
    {
        Joints own = joints;
        pose = ForwardKinematics(own, tool);
        own = joints;
        config = GetArmConfig(own);
    }

    // Writes the limits of the axes the model has and leaves the others alone.
    virtual void GetAxisLimits(AxisLimits& limits) const = 0;
    virtual void SetAxisLimits(const AxisLimits& limits) = 0;

    // Joints that bring the tool block's frame to target (in the base). Writes the eight axes, unused ones
    // zero, and only on success; never an axis that is not finite.
    [[nodiscard]] virtual KineResult InverseKinematics(const LazyPose& target, const ToolBlock& tool,
                                                       const KineArmConfig& config, Joints& joints) const = 0;

    // Zero for a joint set that is not singular; kind selects the thresholds.
    [[nodiscard]] virtual std::uint32_t IsSingularity(const Joints& joints, std::uint32_t kind) const = 0;

protected:
    // Models live inside the store and are never deleted through this class.
    ArmModel() = default;
    ~ArmModel() = default;
    ArmModel(const ArmModel&) = default;
    ArmModel& operator=(const ArmModel&) = default;
};

}  // namespace kine
