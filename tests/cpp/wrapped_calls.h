// The wrappers of KineDll.hpp behind the face of support/export_calls.h: the same records go in, the same
// records come out, in the same order. A wrapper cannot leave a result untouched; what it gives for a refused
// call is zeros, so the calls are compared over results that are zero before.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "KineDll.hpp"
#include "support/export_calls.h"

namespace kine::test {

// Bundles that hand the parts of a result to the place where the C call writes them.
inline std::uint32_t Take(const kinedll::Result<KinePose>& from, CallResults& out)
{
    out.pose = from.value;
    return from.code.value;
}

inline std::uint32_t Take(const kinedll::Result<KineJoint>& from, CallResults& out)
{
    out.joints = from.value;
    return from.code.value;
}

inline std::uint32_t Take(const kinedll::Result<KineFrame>& from, CallResults& out)
{
    out.frame = from.value;
    return from.code.value;
}

inline std::uint32_t Take(const kinedll::Result<KineArmConfig>& from, CallResults& out)
{
    out.config = from.value;
    return from.code.value;
}

inline std::uint32_t Take(const kinedll::Result<kinedll::CalibratedFrame>& from, CallResults& out)
{
    out.frame = from.value.frame;
    out.report = from.value.error;
    return from.code.value;
}

inline std::uint32_t Take(const kinedll::Result<kinedll::TiltedFrame>& from, CallResults& out)
{
    out.frame = from.value.frame;
    out.numbers[0] = from.value.tiltRad;
    return from.code.value;
}

// The code of the C call behind an answer of yes or no.
inline std::uint32_t Take(const kinedll::Result<bool>& from, std::uint32_t yes)
{
    return from && from.value ? yes : from.code.value;
}

using In = const CallInputs&;
using Out = CallResults&;

struct WrappedCall
{
    const char* name;
    std::uint32_t (*run)(In in, Out out);
};

inline constexpr WrappedCall kWrappedCalls[] = {
    {"Kine_InitKinematicParam",
     [](In in, Out) {
         return kinedll::InitKinematicParam(static_cast<kinedll::ArmType>(in.armType), in.arm).value;
     }},
    {"Kine_SetAxisLimit", [](In in, Out) { return kinedll::SetAxisLimit(in.joints, in.lower).value; }},
    {"Kine_SetMechUnitGlobalCfg",
     [](In in, Out) {
         return kinedll::SetMechUnitGlobalCfg(in.unitCount, in.extAxisCount, in.enable != 0).value;
     }},
    {"Kine_SetMechUnitParam", [](In in, Out) { return kinedll::SetMechUnitParam(in.index, in.unit).value; }},
    {"Kine_SetExtAxisParam", [](In in, Out) { return kinedll::SetExtAxisParam(in.index, in.extAxis).value; }},
    {"Kine_GetArmType", [](In in, Out out) { return Take(kinedll::GetArmType(in.joints), out); }},
    {"Kine_IsArmTypeValid", [](In in, Out) { return kinedll::IsArmTypeValid(in.poses[0]).value; }},
    {"Kine_IsSingularity",
     [](In in, Out) {
         return Take(kinedll::IsSingularity(in.joints, static_cast<kinedll::SingularityKind>(in.kind)),
                     KINE_SINGULAR);
     }},
    {"Kine_JointToBasePos",
     [](In in, Out out) { return Take(kinedll::JointToBasePos(in.joints, in.tool, in.wobj, in.load), out); }},
    {"Kine_JointToFlangePos",
     [](In in, Out out) {
         return Take(kinedll::JointToFlangePos(in.joints, in.tool, in.wobj, in.load), out);
     }},
    {"Kine_JointToWorldPos",
     [](In in, Out out) {
         return Take(kinedll::JointToWorldPos(in.joints, in.tool, in.wobj, in.load), out);
     }},
    {"Kine_JointToWobjPos",
     [](In in, Out out) { return Take(kinedll::JointToWobjPos(in.joints, in.tool, in.wobj, in.load), out); }},
    {"Kine_FKineVision", [](In in, Out out) { return Take(kinedll::FKineVision(in.joints), out); }},
    {"Kine_WobjPosToJoint",
     [](In in, Out out) {
         return Take(kinedll::WobjPosToJoint(in.poses[0], in.tool, in.wobj, in.load), out);
     }},
    {"Kine_WorldPosToFixWobjPos",
     [](In in, Out out) { return Take(kinedll::WorldPosToFixWobjPos(in.poses[0], in.wobj), out); }},
    {"Kine_WorldPosToGripWobjPos",
     [](In in, Out out) {
         return Take(kinedll::WorldPosToGripWobjPos(in.poses[0], in.wobj, in.poses[1]), out);
     }},
    {"Kine_GripWobjPosToWorldPos",
     [](In in, Out out) {
         return Take(kinedll::GripWobjPosToWorldPos(in.poses[0], in.wobj, in.poses[1]), out);
     }},
    {"Kine_CrdPosToWobjPos",
     [](In in, Out out) {
         return Take(kinedll::CrdPosToWobjPos(in.poses[0], static_cast<kinedll::CrdMode>(in.mode), in.tool,
                                              in.wobj, in.load),
                     out);
     }},
    {"Kine_ToolCoordOffset",
     [](In in, Out out) { return Take(kinedll::ToolCoordOffset(in.poses[0], in.frames[0]), out); }},
    {"Kine_WobjCoordOffset",
     [](In in, Out out) { return Take(kinedll::WobjCoordOffset(in.poses[0], in.frames[0]), out); }},
    {"Kine_CalcExtToolPrm_1P",
     [](In in, Out out) { return Take(kinedll::CalcExtToolPrm_1P(in.poses[0]), out); }},
    {"Kine_CalcExtToolPrm_1PZX",
     [](In in, Out out) {
         return Take(kinedll::CalcExtToolPrm_1PZX(in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_CalcExtToolPrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcExtToolPrm_3P(in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_CalcExtToolPrm_3PZX",
     [](In in, Out out) {
         return Take(kinedll::CalcExtToolPrm_3PZX(in.poses[0], in.poses[1], in.poses[2], in.poses[3],
                                                  in.poses[4], in.poses[5]),
                     out);
     }},
    {"Kine_CalcGripToolPrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcGripToolPrm_3P(in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_CalcGripToolPrm_3PZX",
     [](In in, Out out) {
         return Take(kinedll::CalcGripToolPrm_3PZX(in.poses[0], in.poses[1], in.poses[2], in.poses[3],
                                                   in.poses[4], in.poses[5]),
                     out);
     }},
    {"Kine_CalcGripToolPrm_5P",
     [](In in, Out out) {
         return Take(
             kinedll::CalcGripToolPrm_5P(in.poses[0], in.poses[1], in.poses[2], in.poses[3], in.poses[4]),
             out);
     }},
    {"Kine_CalcGripToolPrm_Scara2P",
     [](In in, Out out) { return Take(kinedll::CalcGripToolPrm_Scara2P(in.poses[0], in.poses[1]), out); }},
    {"Kine_CalcExtWobj_UserPrm_2P",
     [](In in, Out out) { return Take(kinedll::CalcExtWobj_UserPrm_2P(in.poses[0], in.poses[1]), out); }},
    {"Kine_CalcExtWobj_UserPrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcExtWobj_UserPrm_3P(in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_CalcExtWobj_UserPrm_Cirle3P",
     [](In in, Out out) {
         return Take(kinedll::CalcExtWobj_UserPrm_Cirle3P(in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_CalcExtWobj_ObjPrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcExtWobj_ObjPrm_3P(in.poses[0], in.poses[1], in.poses[2], in.frames[0]),
                     out);
     }},
    {"Kine_CalcGripWobj_UserPrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcGripWobj_UserPrm_3P(in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_CalcGripWobj_ObjPrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcGripWobj_ObjPrm_3P(in.poses[0], in.poses[1], in.poses[2], in.frames[0]),
                     out);
     }},
    {"Kine_CalcUnFixWobj_ObjPrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcUnFixWobj_ObjPrm_3P(in.index, in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_CalcPositionerJ1Prm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcPositionerJ1Prm_3P(in.index, in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_CalcPositionerJnPrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcPositionerJnPrm_3P(in.index, in.axis, in.poses[0], in.poses[1], in.poses[2],
                                                     in.frames[0]),
                     out);
     }},
    {"Kine_CalcRobotBasePrm_3P",
     [](In in, Out out) {
         return Take(kinedll::CalcRobotBasePrm_3P(in.index, in.poses[0], in.poses[1], in.poses[2]), out);
     }},
    {"Kine_InchMovePosCalc",
     [](In in, Out out) {
         return Take(
             kinedll::InchMovePosCalc(in.dir, static_cast<kinedll::InchMode>(in.mode), in.tool, in.wobj,
                                      in.load, {in.steps[0], in.steps[1], in.steps[2]}, in.joints),
             out);
     }},
    {"Kine_CalcAlignPos",
     [](In in, Out out) {
         return Take(kinedll::CalcAlignPos(static_cast<kinedll::AlignMode>(in.mode), in.joints, in.tool,
                                           in.wobj, in.load),
                     out);
     }},
    {"Kine_CalcAlignCoordProc",
     [](In in, Out out) {
         out.tool = in.tool;
         out.wobj = in.wobj;
         return kinedll::CalcAlignCoordProc(out.tool, out.wobj).value;
     }},
    {"Kine_CalcZVec",
     [](In in, Out out) {
         const kinedll::Vector normal =
             kinedll::CalcZVec(in.frames[0], in.frames[1], in.frames[2], in.length);
         std::memcpy(out.numbers, normal.data(), sizeof out.numbers);
         return KINE_OK;
     }},
    {"SafeArea_Check",
     [](In in, Out) {
         return Take(
             kinedll::SafeArea_Check(in.joints, {in.centre[0], in.centre[1], in.centre[2]}, in.length), 1U);
     }},
    {"Kine_CalcPosDif",
     [](In in, Out out) {
         return Take(
             kinedll::CalcPosDif(in.poses[0], in.poses[1], static_cast<kinedll::PosDifFrame>(in.mode)), out);
     }},
};

static_assert(sizeof kWrappedCalls / sizeof *kWrappedCalls == kExportCount);

// Every result zero before the call, so that both sides leave the same bits where a call is refused.
inline void MakeCallOverZeros(const ExportCall& call, const CallInputs& in, CallResults& out)
{
    std::memset(static_cast<void*>(&out), 0, sizeof out);
    out.code = call.run({in, out});
    std::memset(out.steps, 0, sizeof out.steps);  // a wrapper changes a copy of its own
}

inline void MakeWrappedCall(std::size_t place, const CallInputs& in, CallResults& out)
{
    std::memset(static_cast<void*>(&out), 0, sizeof out);
    out.code = kWrappedCalls[place].run(in, out);
}

}  // namespace kine::test
