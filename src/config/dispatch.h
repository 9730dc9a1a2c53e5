// The way to the arm models: every operation checks that the library is initialised, then goes to the model
// of the configured arm type. Codes of all: KINE_ERR_NOT_INITIALISED; for an arm type without a model
// KINE_ERR_UNKNOWN_ARM_TYPE, except where an operation says otherwise; then the model's own.
#pragma once

#include <cstdint>

#include "KineDll.h"
#include "config/store.h"
#include "models/arm_model.h"

namespace kine {

// KINE_ERR_NOT_INITIALISED unless the library is initialised.
[[nodiscard]] KineResult CheckInitialised(const Store& store);

// The model of the configured arm type, null for an unknown type. Does not look at the state.
ArmModel* ModelOf(Store& store);
const ArmModel* ModelOf(const Store& store);

// Selects the model of the stored arm type and hands it its parameters. Does not look at the state.
[[nodiscard]] KineResult InitModel(Store& store, const KineKinematicParam* param);

// The model may change the joints it is given, hence by value.
[[nodiscard]] KineResult ForwardKinematics(const Store& store, Joints joints, const ToolBlock& tool,
                                           LazyPose& pose);

// Pose and configuration at once.
[[nodiscard]] KineResult ForwardKinematics(const Store& store, const Joints& joints, const ToolBlock& tool,
                                           LazyPose& pose, KineArmConfig& config);

[[nodiscard]] KineResult FlangePose(const Store& store, const Joints& joints, Pose& pose);

// KINE_OK with config untouched for an unknown type.
[[nodiscard]] KineResult GetArmConfig(const Store& store, Joints joints, KineArmConfig& config);

// Writes the limits of the axes the arm has.
[[nodiscard]] KineResult GetAxisLimits(const Store& store, AxisLimits& limits);

// Replaces every pair of the first six axes with lower >= upper by an open range, then stores the limits.
// The pairs are replaced in the caller's limits for an unknown type too.
[[nodiscard]] KineResult SetAxisLimits(Store& store, AxisLimits& limits);

// Takes the configuration at the limits once more: SetAxisLimits does when it has stored them.
[[nodiscard]] KineResult StoreLimitConfigs(Store& store);

[[nodiscard]] KineResult InverseKinematics(const Store& store, const LazyPose& target, const ToolBlock& tool,
                                           const KineArmConfig& config, Joints& joints);

// KINE_SINGULAR or KINE_OK; KINE_OK for an unknown type.
[[nodiscard]] KineResult IsSingularity(const Store& store, const Joints& joints, std::uint32_t kind);

[[nodiscard]] KineResult GetModelFamily(const Store& store, std::int32_t& family);

// Says whether the integers that an arm type looks at lie at most 2 outside those of its limits. An arm type
// without a model looks at none.
[[nodiscard]] bool IsConfigWithin(std::int32_t armType, const KineArmConfig& config,
                                  const KineArmConfig& lower, const KineArmConfig& upper);

// Compares the configuration integers of a target with those of the axis limits: KINE_ERR_CONFIG when they
// are not within. An unknown type already fails in the look-up of its limits.
[[nodiscard]] KineResult CheckArmConfig(const Store& store, const KineArmConfig& config);

}  // namespace kine
