// Conversion of the public records.
#include "api/convert.h"

#include "math/angles.h"

namespace kine {

namespace {

Vec3 ToVec3(const double (&v)[3]) { return {v[0], v[1], v[2]}; }

std::array<double, 6> ToArray(const double (&v)[6]) { return {v[0], v[1], v[2], v[3], v[4], v[5]}; }

// Multiplied in double precision, then rounded back.
float ToRadiansSingle(float degrees) { return static_cast<float>(static_cast<double>(degrees) * DEG2RAD); }

}  // namespace

Pose ToRadians(const KineFrame& frame)
{
    return {frame.X, frame.Y, frame.Z, frame.A * DEG2RAD, frame.B * DEG2RAD, frame.C * DEG2RAD};
}

PoseRecord ToRadians(const KinePose& pose)
{
    return {ToRadians(pose.Frame), {pose.Cfg1, pose.Cfg2, pose.Cfg3, pose.Cfg4}, ToArray(pose.ExtAxis)};
}

Joints ToRadians(const KineJoint& joints)
{
    Joints result{};
    for (std::size_t i = 0; i < result.axis.size(); ++i) result.axis[i] = joints.Axis[i] * DEG2RAD;
    result.extAxis = ToArray(joints.ExtAxis);
    return result;
}

Load ToRadians(const KineLoad& load)
{
    // The record is converted as if the inertias were the angles of a frame at Aom: nothing reads either.
    return {load.Mass, ToVec3(load.Cog), ToVec3(load.Aom), Scale(DEG2RAD, ToVec3(load.Inertia))};
}

Tool ToRadians(const KineTool& tool)
{
    Tool result{};
    result.heldByRobot = tool.HeldByRobot;
    result.fixedInWorld = 1;
    result.frame = ToRadians(tool.TFrame);
    result.load = ToRadians(tool.TLoad);
    return result;
}

Wobj ToRadians(const KineWobj& wobj)
{
    Wobj result{};
    result.heldByRobot = wobj.HeldByRobot;
    result.userFixed = wobj.UFFix;
    result.mechUnit = wobj.MechUnitIndex;  // NOLINT(bugprone-signed-char-misuse,cert-str34-c): with its sign
    if (wobj.UFFix == 1) result.user = ToRadians(wobj.UFrame);
    result.object = ToRadians(wobj.OFrame);
    result.combined = MatrixToPose(PoseToMatrix(result.user) * PoseToMatrix(result.object));
    return result;
}

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
    result.Frame = ToDegrees(pose.frame);
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
