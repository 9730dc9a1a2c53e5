// All 44 exports behind one face: one set of records goes into any of them, one set of results comes out. For
// tests of what holds for every call. Without the test framework, and without an allocation, so that a call
// can be watched.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "KineDll.h"

namespace kine::test {

// The pointers that a call may be given as null, as bits of CallInputs::missing. Pose and frame i follow
// kPose and kFrame.
enum Missing : std::uint32_t
{
    kJoints = 1U << 0U,
    kLower = 1U << 1U,
    kTool = 1U << 2U,
    kWobj = 1U << 3U,
    kLoad = 1U << 4U,
    kDir = 1U << 5U,
    kSteps = 1U << 6U,
    kCentre = 1U << 7U,
    kArm = 1U << 8U,
    kUnit = 1U << 9U,
    kExtAxis = 1U << 10U,
    kResult = 1U << 11U,  // what the call is made for
    kReport = 1U << 12U,  // what a calibration says besides
    kPose = 1U << 13U,
    kFrame = 1U << 19U,
    kLastMissing = 1U << 21U,
};

// Every call takes what it has an argument for.
struct CallInputs
{
    KineJoint joints{};  // also the upper axis limits
    KineJoint lower{};
    std::array<KinePose, 6> poses{};    // the first is a target; taught poses in the order of the call
    std::array<KineFrame, 3> frames{};  // the first is an offset, a user or a reference frame
    KineTool tool{};
    KineWobj wobj{};
    KineLoad load{};
    KineInchDir dir{};
    double steps[3] = {};
    double centre[3] = {};
    double length = 0.0;  // of a normal, of the edge of a cube
    std::int32_t mode = 0;
    std::int32_t index = 0;  // of a mechanical unit or an external axis
    std::int32_t axis = 0;
    std::uint32_t kind = 0;
    std::uint32_t armType = 0;
    std::uint32_t unitCount = 0;
    std::uint32_t extAxisCount = 0;
    std::uint32_t enable = 0;
    KineKinematicParam arm{};
    KineMechUnit unit{};
    KineExtAxisParam extAxis{};
    std::uint32_t missing = 0;
};

// What a call leaves behind: its code, and every record it may have written. Without padding: two of them are
// the same when their bytes are.
struct CallResults
{
    KinePose pose;
    KineJoint joints;
    KineFrame frame;
    KineCalibError report;
    KineTool tool;    // changed in place
    KineWobj wobj;    // changed in place
    double steps[3];  // changed in place
    double numbers[3];
    KineArmConfig config;
    std::uint64_t code;
};
static_assert(sizeof(CallResults) == sizeof(KinePose) + sizeof(KineJoint) + sizeof(KineFrame) +
                                         sizeof(KineCalibError) + sizeof(KineTool) + sizeof(KineWobj) +
                                         6 * sizeof(double) + sizeof(KineArmConfig) + sizeof(std::uint64_t));

inline bool SameResults(const CallResults& a, const CallResults& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// The addresses that one call is given.
class CallArguments
{
public:
    CallArguments(const CallInputs& in, CallResults& out) : in_(in), out_(out) {}

    [[nodiscard]] const CallInputs& In() const { return in_; }
    [[nodiscard]] const KineJoint* Joints() const { return Unless(kJoints, &in_.joints); }
    [[nodiscard]] const KineJoint* Lower() const { return Unless(kLower, &in_.lower); }
    [[nodiscard]] const KineTool* Tool() const { return Unless(kTool, &in_.tool); }
    [[nodiscard]] const KineWobj* Wobj() const { return Unless(kWobj, &in_.wobj); }
    [[nodiscard]] const KineLoad* Load() const { return Unless(kLoad, &in_.load); }
    [[nodiscard]] const KineInchDir* Dir() const { return Unless(kDir, &in_.dir); }
    [[nodiscard]] const double* Centre() const { return Unless(kCentre, in_.centre); }
    [[nodiscard]] const KineKinematicParam* Arm() const { return Unless(kArm, &in_.arm); }
    [[nodiscard]] const KineMechUnit* Unit() const { return Unless(kUnit, &in_.unit); }
    [[nodiscard]] const KineExtAxisParam* ExtAxis() const { return Unless(kExtAxis, &in_.extAxis); }
    [[nodiscard]] const KinePose* Pose(std::size_t i) const { return Unless(kPose << i, &in_.poses[i]); }
    [[nodiscard]] const KineFrame* Frame(std::size_t i) const { return Unless(kFrame << i, &in_.frames[i]); }

    [[nodiscard]] KinePose* OutPose() const { return Unless(kResult, &out_.pose); }
    [[nodiscard]] KineJoint* OutJoints() const { return Unless(kResult, &out_.joints); }
    [[nodiscard]] KineFrame* OutFrame() const { return Unless(kResult, &out_.frame); }
    [[nodiscard]] KineArmConfig* OutConfig() const { return Unless(kResult, &out_.config); }
    [[nodiscard]] double* OutNormal() const { return Unless(kResult, out_.numbers); }
    [[nodiscard]] KineCalibError* OutReport() const { return Unless(kReport, &out_.report); }
    [[nodiscard]] double* OutTilt() const { return Unless(kReport, out_.numbers); }

    // Copies for the calls that change what they are given.
    [[nodiscard]] KineTool* ChangedTool() const
    {
        out_.tool = in_.tool;
        return Unless(kTool, &out_.tool);
    }
    [[nodiscard]] KineWobj* ChangedWobj() const
    {
        out_.wobj = in_.wobj;
        return Unless(kWobj, &out_.wobj);
    }
    [[nodiscard]] double* ChangedSteps() const
    {
        std::memcpy(out_.steps, in_.steps, sizeof out_.steps);
        return Unless(kSteps, out_.steps);
    }

private:
    template <class Record>
    Record* Unless(std::uint32_t missing, Record* record) const
    {
        return (in_.missing & missing) != 0 ? nullptr : record;
    }

    const CallInputs& in_;
    CallResults& out_;
};

using Args = const CallArguments&;

struct ExportCall
{
    const char* name;
    std::uint32_t (*run)(Args a);
};

// In the order of the header: those that write the configuration come first.
inline constexpr std::size_t kSetupCount = 5;
inline constexpr ExportCall kExportCalls[] = {
    {"Kine_InitKinematicParam", [](Args a) { return Kine_InitKinematicParam(a.In().armType, a.Arm()); }},
    {"Kine_SetAxisLimit", [](Args a) { return Kine_SetAxisLimit(a.Joints(), a.Lower()); }},
    {"Kine_SetMechUnitGlobalCfg",
     [](Args a) { return Kine_SetMechUnitGlobalCfg(a.In().unitCount, a.In().extAxisCount, a.In().enable); }},
    {"Kine_SetMechUnitParam", [](Args a) { return Kine_SetMechUnitParam(a.In().index, a.Unit()); }},
    {"Kine_SetExtAxisParam", [](Args a) { return Kine_SetExtAxisParam(a.In().index, a.ExtAxis()); }},
    {"Kine_GetArmType", [](Args a) { return Kine_GetArmType(a.Joints(), a.OutConfig()); }},
    {"Kine_IsArmTypeValid", [](Args a) { return Kine_IsArmTypeValid(a.Pose(0)); }},
    {"Kine_IsSingularity", [](Args a) { return Kine_IsSingularity(a.Joints(), a.In().kind); }},
    {"Kine_JointToBasePos",
     [](Args a) { return Kine_JointToBasePos(a.Joints(), a.Tool(), a.Wobj(), a.Load(), a.OutPose()); }},
    {"Kine_JointToFlangePos",
     [](Args a) { return Kine_JointToFlangePos(a.Joints(), a.Tool(), a.Wobj(), a.Load(), a.OutPose()); }},
    {"Kine_JointToWorldPos",
     [](Args a) { return Kine_JointToWorldPos(a.Joints(), a.Tool(), a.Wobj(), a.Load(), a.OutPose()); }},
    {"Kine_JointToWobjPos",
     [](Args a) { return Kine_JointToWobjPos(a.Joints(), a.Tool(), a.Wobj(), a.Load(), a.OutPose()); }},
    {"Kine_FKineVision", [](Args a) { return Kine_FKineVision(a.Joints(), a.OutPose()); }},
    {"Kine_WobjPosToJoint",
     [](Args a) { return Kine_WobjPosToJoint(a.Pose(0), a.Tool(), a.Wobj(), a.Load(), a.OutJoints()); }},
    {"Kine_WorldPosToFixWobjPos",
     [](Args a) { return Kine_WorldPosToFixWobjPos(a.Pose(0), a.Wobj(), a.OutPose()); }},
    {"Kine_WorldPosToGripWobjPos",
     [](Args a) { return Kine_WorldPosToGripWobjPos(a.Pose(0), a.Wobj(), a.Pose(1), a.OutPose()); }},
    {"Kine_GripWobjPosToWorldPos",
     [](Args a) { return Kine_GripWobjPosToWorldPos(a.Pose(0), a.Wobj(), a.Pose(1), a.OutPose()); }},
    {"Kine_CrdPosToWobjPos",
     [](Args a) {
         return Kine_CrdPosToWobjPos(a.Pose(0), a.In().mode, a.Tool(), a.Wobj(), a.Load(), a.OutPose());
     }},
    {"Kine_ToolCoordOffset", [](Args a) { return Kine_ToolCoordOffset(a.Pose(0), a.Frame(0), a.OutPose()); }},
    {"Kine_WobjCoordOffset", [](Args a) { return Kine_WobjCoordOffset(a.Pose(0), a.Frame(0), a.OutPose()); }},
    {"Kine_CalcExtToolPrm_1P", [](Args a) { return Kine_CalcExtToolPrm_1P(a.Pose(0), a.OutFrame()); }},
    {"Kine_CalcExtToolPrm_1PZX",
     [](Args a) { return Kine_CalcExtToolPrm_1PZX(a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame()); }},
    {"Kine_CalcExtToolPrm_3P",
     [](Args a) {
         return Kine_CalcExtToolPrm_3P(a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame(), a.OutReport());
     }},
    {"Kine_CalcExtToolPrm_3PZX",
     [](Args a) {
         return Kine_CalcExtToolPrm_3PZX(a.Pose(0), a.Pose(1), a.Pose(2), a.Pose(3), a.Pose(4), a.Pose(5),
                                         a.OutFrame(), a.OutReport());
     }},
    {"Kine_CalcGripToolPrm_3P",
     [](Args a) {
         return Kine_CalcGripToolPrm_3P(a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame(), a.OutReport());
     }},
    {"Kine_CalcGripToolPrm_3PZX",
     [](Args a) {
         return Kine_CalcGripToolPrm_3PZX(a.Pose(0), a.Pose(1), a.Pose(2), a.Pose(3), a.Pose(4), a.Pose(5),
                                          a.OutFrame(), a.OutReport());
     }},
    {"Kine_CalcGripToolPrm_5P",
     [](Args a) {
         return Kine_CalcGripToolPrm_5P(a.Pose(0), a.Pose(1), a.Pose(2), a.Pose(3), a.Pose(4), a.OutFrame(),
                                        a.OutReport());
     }},
    {"Kine_CalcGripToolPrm_Scara2P",
     [](Args a) { return Kine_CalcGripToolPrm_Scara2P(a.Pose(0), a.Pose(1), a.OutFrame()); }},
    {"Kine_CalcExtWobj_UserPrm_2P",
     [](Args a) { return Kine_CalcExtWobj_UserPrm_2P(a.Pose(0), a.Pose(1), a.OutFrame(), a.OutTilt()); }},
    {"Kine_CalcExtWobj_UserPrm_3P",
     [](Args a) {
         return Kine_CalcExtWobj_UserPrm_3P(a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame(), a.OutTilt());
     }},
    {"Kine_CalcExtWobj_UserPrm_Cirle3P",
     [](Args a) {
         return Kine_CalcExtWobj_UserPrm_Cirle3P(a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame(), a.OutTilt());
     }},
    {"Kine_CalcExtWobj_ObjPrm_3P",
     [](Args a) {
         return Kine_CalcExtWobj_ObjPrm_3P(a.Pose(0), a.Pose(1), a.Pose(2), a.Frame(0), a.OutFrame(),
                                           a.OutTilt());
     }},
    {"Kine_CalcGripWobj_UserPrm_3P",
     [](Args a) {
         return Kine_CalcGripWobj_UserPrm_3P(a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame(), a.OutTilt());
     }},
    {"Kine_CalcGripWobj_ObjPrm_3P",
     [](Args a) {
         return Kine_CalcGripWobj_ObjPrm_3P(a.Pose(0), a.Pose(1), a.Pose(2), a.Frame(0), a.OutFrame(),
                                            a.OutTilt());
     }},
    {"Kine_CalcUnFixWobj_ObjPrm_3P",
     [](Args a) {
         return Kine_CalcUnFixWobj_ObjPrm_3P(a.In().index, a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame(),
                                             a.OutTilt());
     }},
    {"Kine_CalcPositionerJ1Prm_3P",
     [](Args a) {
         return Kine_CalcPositionerJ1Prm_3P(a.In().index, a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame());
     }},
    {"Kine_CalcPositionerJnPrm_3P",
     [](Args a) {
         return Kine_CalcPositionerJnPrm_3P(a.In().index, a.In().axis, a.Pose(0), a.Pose(1), a.Pose(2),
                                            a.Frame(0), a.OutFrame());
     }},
    {"Kine_CalcRobotBasePrm_3P",
     [](Args a) {
         return Kine_CalcRobotBasePrm_3P(a.In().index, a.Pose(0), a.Pose(1), a.Pose(2), a.OutFrame(),
                                         a.OutReport());
     }},
    {"Kine_InchMovePosCalc",
     [](Args a) {
         return Kine_InchMovePosCalc(a.Dir(), a.In().mode, a.Tool(), a.Wobj(), a.Load(), a.ChangedSteps(),
                                     a.Joints(), a.OutJoints());
     }},
    {"Kine_CalcAlignPos",
     [](Args a) {
         return Kine_CalcAlignPos(a.In().mode, a.Joints(), a.Tool(), a.Wobj(), a.Load(), a.OutJoints());
     }},
    {"Kine_CalcAlignCoordProc",
     [](Args a) { return Kine_CalcAlignCoordProc(a.ChangedTool(), a.ChangedWobj()); }},
    {"Kine_CalcZVec",
     [](Args a) { return Kine_CalcZVec(a.Frame(0), a.Frame(1), a.Frame(2), a.In().length, a.OutNormal()); }},
    {"SafeArea_Check",
     [](Args a) {
         return static_cast<std::uint32_t>(SafeArea_Check(a.Joints(), a.Centre(), a.In().length));
     }},
    {"Kine_CalcPosDif",
     [](Args a) { return Kine_CalcPosDif(a.Pose(0), a.Pose(1), a.In().mode, a.OutFrame()); }},
};

inline constexpr std::size_t kExportCount = sizeof kExportCalls / sizeof *kExportCalls;

// The place of an export in the table.
inline std::size_t ExportCalled(std::string_view name)
{
    for (std::size_t i = 0; i < kExportCount; ++i) {
        if (name == kExportCalls[i].name) return i;
    }
    throw std::out_of_range("no export has this name");
}

// Records that the call does not write keep a pattern that no result has.
inline void MakeCall(const ExportCall& call, const CallInputs& in, CallResults& out)
{
    std::memset(static_cast<void*>(&out), 0xA5, sizeof out);
    out.code = call.run({in, out});
}

}  // namespace kine::test
