// Dispatch to the arm models.
#include "config/dispatch.h"

namespace kine {

namespace {

// Jog and alignment treat both four-axis arms alike.
constexpr std::int32_t kFamilyFourAxis = 4;
constexpr std::int32_t kFamilySixAxis = 6;

// rad. Stands for an axis without limits.
constexpr double kOpenLimit = 999.0;
// Axes whose limits are put in order; the joint record has more.
constexpr std::size_t kLimitedAxes = 6;

// How far a configuration integer may lie beyond that of the limit; equal passes.
constexpr std::int64_t kConfigTolerance = 2;

// The one switch over arm types that leads to a model; SomeStore is Store or const Store.
template <class Model, class SomeStore>
Model* SelectModel(SomeStore& store)
{
    switch (store.arm.armType) {
        case kArmTypeFourAxis: return &store.fourAxis;
        case kArmTypeSixAxis: return &store.sixAxis;
        case kArmTypeFourAxis4110: return &store.fourAxis4110;
        default: return nullptr;
    }
}

// The model behind an operation, or the code that stands for it: onUnknown for an arm type without a model.
KineResult FindModel(const Store& store, KineResult onUnknown, const ArmModel*& model)
{
    if (const KineResult code = CheckInitialised(store)) return code;
    model = ModelOf(store);
    return model == nullptr ? onUnknown : KINE_OK;
}

bool IsBetween(std::int32_t lower, std::int32_t value, std::int32_t upper)
{
    return value <= upper + kConfigTolerance && value >= lower - kConfigTolerance;
}

}  // namespace

KineResult CheckInitialised(const Store& store)
{
    return store.arm.initState == kInitStateReady ? KINE_OK : KINE_ERR_NOT_INITIALISED;
}

ArmModel* ModelOf(Store& store) { return SelectModel<ArmModel>(store); }

const ArmModel* ModelOf(const Store& store) { return SelectModel<const ArmModel>(store); }

KineResult InitModel(Store& store, const KineKinematicParam* param)
{
    ArmModel* model = ModelOf(store);
    if (model == nullptr) return KINE_ERR_UNKNOWN_ARM_TYPE;
    store.arm.modelFamily = store.arm.armType == kArmTypeSixAxis ? kFamilySixAxis : kFamilyFourAxis;
    return model->InitModel(static_cast<std::uint32_t>(store.arm.armType), param);
}

KineResult ForwardKinematics(const Store& store, Joints joints, const ToolBlock& tool, LazyPose& pose)
{
    const ArmModel* model = nullptr;
    if (const KineResult code = FindModel(store, KINE_ERR_UNKNOWN_ARM_TYPE, model)) return code;
    pose = model->ForwardKinematics(joints, tool);
    return KINE_OK;
}

KineResult ForwardKinematics(const Store& store, const Joints& joints, const ToolBlock& tool, LazyPose& pose,
                             KineArmConfig& config)
{
    const ArmModel* model = nullptr;
    if (const KineResult code = FindModel(store, KINE_ERR_UNKNOWN_ARM_TYPE, model)) return code;
    model->ForwardWithConfig(joints, tool, pose, config);
    return KINE_OK;
}

KineResult FlangePose(const Store& store, const Joints& joints, Pose& pose)
{
    const ArmModel* model = nullptr;
    if (const KineResult code = FindModel(store, KINE_ERR_UNKNOWN_ARM_TYPE, model)) return code;
    pose = model->FlangePose(joints);
    return KINE_OK;
}

KineResult GetArmConfig(const Store& store, Joints joints, KineArmConfig& config)
{
    if (const KineResult code = CheckInitialised(store)) return code;
    if (const ArmModel* model = ModelOf(store)) config = model->GetArmConfig(joints);
    return KINE_OK;
}

KineResult GetAxisLimits(const Store& store, AxisLimits& limits)
{
    const ArmModel* model = nullptr;
    if (const KineResult code = FindModel(store, KINE_ERR_UNKNOWN_ARM_TYPE, model)) return code;
    model->GetAxisLimits(limits);
    return KINE_OK;
}

KineResult StoreLimitConfigs(Store& store)
{
    AxisLimits limits{};
    if (const KineResult code = GetAxisLimits(store, limits)) return code;
    // An arm that has limits has a configuration at them.
    static_cast<void>(GetArmConfig(store, limits.upper, store.limitConfigs.upper));
    return GetArmConfig(store, limits.lower, store.limitConfigs.lower);
}

KineResult SetAxisLimits(Store& store, AxisLimits& limits)
{
    if (const KineResult code = CheckInitialised(store)) return code;
    for (std::size_t i = 0; i < kLimitedAxes; ++i) {
        double& upper = limits.upper.axis[i];
        double& lower = limits.lower.axis[i];
        if (lower >= upper) {
            upper = kOpenLimit;
            lower = -kOpenLimit;
        }
    }
    ArmModel* model = ModelOf(store);
    if (model == nullptr) return KINE_ERR_UNKNOWN_ARM_TYPE;
    model->SetAxisLimits(limits);
    return StoreLimitConfigs(store);
}

KineResult InverseKinematics(const Store& store, const LazyPose& target, const ToolBlock& tool,
                             const KineArmConfig& config, Joints& joints)
{
    const ArmModel* model = nullptr;
    if (const KineResult code = FindModel(store, KINE_ERR_UNKNOWN_ARM_TYPE, model)) return code;
    return model->InverseKinematics(target, tool, config, joints);
}

KineResult IsSingularity(const Store& store, const Joints& joints, std::uint32_t kind)
{
    if (const KineResult code = CheckInitialised(store)) return code;
    const ArmModel* model = ModelOf(store);
    if (model == nullptr) return KINE_OK;
    return model->IsSingularity(joints, kind) == 0 ? KINE_OK : KINE_SINGULAR;
}

KineResult GetModelFamily(const Store& store, std::int32_t& family)
{
    if (const KineResult code = CheckInitialised(store)) return code;
    family = store.arm.modelFamily;
    return KINE_OK;
}

bool IsConfigWithin(std::int32_t armType, const KineArmConfig& config, const KineArmConfig& lower,
                    const KineArmConfig& upper)
{
    const bool cfg1 = IsBetween(lower.Cfg1, config.Cfg1, upper.Cfg1);
    const bool cfg2 = IsBetween(lower.Cfg2, config.Cfg2, upper.Cfg2);
    const bool cfg3 = IsBetween(lower.Cfg3, config.Cfg3, upper.Cfg3);
    const bool cfg4 = IsBetween(lower.Cfg4, config.Cfg4, upper.Cfg4);
    switch (armType) {
        case kArmTypeFourAxis: return cfg4;
        case kArmTypeSixAxis: return cfg1 && cfg2 && cfg3;
        case kArmTypeFourAxis4110: return cfg2 && cfg3 && cfg4;
        default: return true;
    }
}

KineResult CheckArmConfig(const Store& store, const KineArmConfig& config)
{
    const ArmModel* model = nullptr;
    if (const KineResult code = FindModel(store, KINE_ERR_UNKNOWN_ARM_TYPE, model)) return code;
    const auto& [upper, lower] = store.limitConfigs;
    return IsConfigWithin(store.arm.armType, config, lower, upper) ? KINE_OK : KINE_ERR_CONFIG;
}

}  // namespace kine
