// Short forms of the exports for arms without work objects of interest.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>

#include "KineDll.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/stdout_capture.h"

namespace kine::test {

constexpr std::uint32_t kFourAxisTypes[] = {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110};

inline void Initialise(std::uint32_t type, const KineKinematicParam& param)
{
    ASSERT_EQ(Kine_InitKinematicParam(type, &param), KINE_OK);
}

inline KinePose BasePose(std::initializer_list<double> axes, const KineTool& tool, const KineLoad& load = {})
{
    const KineJoint joints = MakeJoints(axes);
    const KineWobj wobj = FixedWobj();
    KinePose pose{};
    EXPECT_EQ(Kine_JointToBasePos(&joints, &tool, &wobj, &load, &pose), KINE_OK);
    return pose;
}

inline KinePose Target(double x, double y, double z, double a, const KineArmConfig& config)
{
    KinePose pose{};
    pose.Frame = {x, y, z, a, 0.0, 0.0};
    pose.Cfg1 = config.Cfg1;
    pose.Cfg2 = config.Cfg2;
    pose.Cfg3 = config.Cfg3;
    pose.Cfg4 = config.Cfg4;
    return pose;
}

inline KineResult Solve(const KinePose& target, KineJoint& joints, const KineTool& tool = HeldTool())
{
    const KineWobj wobj = FixedWobj();
    const KineLoad load{};
    return Kine_WobjPosToJoint(&target, &tool, &wobj, &load, &joints);
}

}  // namespace kine::test
