// Conversion of the public records.
#include "api/convert.h"

#include "math/angles.h"

namespace kine {

namespace {

// Multiplied in double precision, then rounded back.
float ToRadiansSingle(float degrees) { return static_cast<float>(static_cast<double>(degrees) * DEG2RAD); }

}  // namespace

MechUnitSlot ToSlot(const KineMechUnit& unit)
{
    MechUnitSlot slot{};
    slot.active = unit.Active;
    slot.unitKind = unit.UnitKind;
    slot.option1 = unit.Option1;
    slot.option2 = unit.Option2;
    slot.axisCount = unit.AxisCount;
    for (std::size_t i = 0; i < slot.axisFrame.size(); ++i) {
        slot.axisFrame[i] = PoseToMatrix(ToRadians(unit.AxisFrame[i]));
        slot.axisParamIndex[i] = unit.AxisParamIndex[i];
    }
    return slot;
}

ExtAxisSlot ToSlot(const KineExtAxisParam& param)
{
    ExtAxisSlot slot{};
    for (std::size_t i = 0; i < slot.word.size(); ++i) slot.word[i] = param.Word[i];
    slot.raw0 = param.Raw0;
    slot.raw1 = param.Raw1;
    slot.angleA = ToRadiansSingle(param.AngleA);
    slot.angleB = ToRadiansSingle(param.AngleB);
    for (std::size_t i = 0; i < slot.value.size(); ++i) slot.value[i] = param.Value[i];
    for (std::size_t i = 0; i < slot.tail.size(); ++i) slot.tail[i] = param.Tail[i];
    return slot;
}

KineFrame ToDegrees(const Pose& pose)
{
    return {WithOneNaN(pose.x),           WithOneNaN(pose.y),           WithOneNaN(pose.z),
            WithOneNaN(pose.a * RAD2DEG), WithOneNaN(pose.b * RAD2DEG), WithOneNaN(pose.c * RAD2DEG)};
}

KinePose ToDegrees(const PoseRecord& pose)
{
    KinePose result{};
    result.Frame = ToDegrees(pose.frame.AsPose());
    result.Cfg1 = pose.config.Cfg1;
    result.Cfg2 = pose.config.Cfg2;
    result.Cfg3 = pose.config.Cfg3;
    result.Cfg4 = pose.config.Cfg4;
    for (std::size_t i = 0; i < pose.extAxis.size(); ++i) result.ExtAxis[i] = pose.extAxis[i];
    return result;
}

KineJoint ToDegrees(const Joints& joints)
{
    KineJoint result{};
    for (std::size_t i = 0; i < joints.axis.size(); ++i)
        result.Axis[i] = WithOneNaN(joints.axis[i] * RAD2DEG);
    for (std::size_t i = 0; i < joints.extAxis.size(); ++i) result.ExtAxis[i] = joints.extAxis[i];
    return result;
}

}  // namespace kine
