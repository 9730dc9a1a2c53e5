// The internal forms of the public records: angles in radians, lengths in millimetres, external axes in
// degrees or millimetres.
#pragma once

#include <array>
#include <cstdint>

#include "KineDll.h"
#include "math/lazy_pose.h"
#include "models/arm_model.h"

namespace kine {

struct PoseRecord
{
    LazyPose frame;
    KineArmConfig config{};
    std::array<double, 6> extAxis{};
};

// The record at another frame; configuration and external axes stay.
inline PoseRecord WithFrame(const PoseRecord& record, const HomMatrix& frame)
{
    return {LazyPose(frame), record.config, record.extAxis};
}

struct Tool
{
    std::uint8_t heldByRobot;   // the caller's byte as it is
    std::uint8_t fixedInWorld;  // 1 for every tool that comes through an export
    std::int32_t unit;          // mechanical unit of a tool that is not fixed; 0
    Pose frame;                 // in the flange, or in the world for a stationary tool
    Load load;
};

struct Wobj
{
    std::uint8_t heldByRobot;  // the caller's byte as it is
    std::uint8_t userFixed;    // the caller's byte as it is; only exactly 1 means fixed
    std::int32_t mechUnit;
    Pose user;    // zero unless userFixed is 1
    Pose object;  // in the user frame
};

// user * object. Computed by the calls that use it.
inline LazyPose CombinedFrame(const Wobj& wobj)
{
    return LazyPose(PoseToMatrix(wobj.user) * PoseToMatrix(wobj.object));
}

// The hold checks inside the chains ask for non-zero; the forward chains choose their path by exactly 1.
// A tool byte of 2 is held for the first and not on the robot for the second.
inline bool IsHeld(const Tool& tool) { return tool.heldByRobot != 0; }
inline bool IsHeld(const Wobj& wobj) { return wobj.heldByRobot != 0; }
inline bool IsOnRobot(const Tool& tool) { return tool.heldByRobot == 1; }

// Both held, or neither.
inline bool IsHoldConflict(const Tool& tool, const Wobj& wobj) { return IsHeld(tool) == IsHeld(wobj); }

}  // namespace kine
