// Parameter blocks and joint sets of the six-axis arm for tests of the inside.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "models/six_axis_params.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"

namespace kine::test {

inline SixAxisParams ParamsOf(const KineKinematicParam& param)
{
    SixAxisParams params{};
    EXPECT_EQ(InitSixAxisParams(KINE_ARM_SIX_AXIS, &param, params), KINE_OK);
    return params;
}

// Every joint uniform within the given size.
inline SixAngles RandomAngles(SeededRandom& random, double size = 4.0)
{
    SixAngles q{};
    for (double& angle : q) angle = random.Uniform(-size, size);
    return q;
}

// A nominal arm that bends: every length, tilt, weight and stiffness at random.
inline KineKinematicParam RandomGravityArm(SeededRandom& random)
{
    KineKinematicParam param = NominalSixAxis(
        {random.Uniform(0, 300), random.Uniform(200, 900), random.Uniform(0, 200), random.Uniform(200, 900),
         random.Uniform(0, 200), random.Uniform(0, 600), random.Uniform(-50, 50)});
    KineSixAxisParam& p = param.SixAxis;
    p.mountX = random.Uniform(-180.0, 180.0);
    p.mountY = random.Uniform(-180.0, 180.0);
    for (double& weight : p.G) weight = random.Uniform(-3e5, 3e5);
    p.k2 = random.Uniform(1e5, 9e5);
    p.k3 = random.Uniform(1e5, 9e5);
    p.k5 = random.Uniform(1e5, 9e5);
    return param;
}

// Links with every length between 10 mm and longest, and every angle anywhere.
inline KineKinematicParam RandomLinks(SeededRandom& random, double longest)
{
    KineKinematicParam param{};
    KineSixAxisParam& p = param.SixAxis;
    for (auto field :
         {&KineSixAxisParam::a1, &KineSixAxisParam::a2, &KineSixAxisParam::a3, &KineSixAxisParam::d4,
          &KineSixAxisParam::d6, &KineSixAxisParam::d1, &KineSixAxisParam::d3, &KineSixAxisParam::d5,
          &KineSixAxisParam::a4, &KineSixAxisParam::a5}) {
        p.*field = random.Uniform(10.0, longest);
    }
    for (auto field : {&KineSixAxisParam::alpha1, &KineSixAxisParam::alpha2, &KineSixAxisParam::alpha3,
                       &KineSixAxisParam::alpha4, &KineSixAxisParam::alpha5, &KineSixAxisParam::beta2,
                       &KineSixAxisParam::mountX, &KineSixAxisParam::mountY}) {
        p.*field = random.Uniform(-180.0, 180.0);
    }
    return param;
}

// For SCOPED_TRACE.
inline std::string Shown(const SixAngles& q)
{
    ::testing::Message message;
    message << "joints";
    for (const double angle : q) message << ' ' << angle;
    return message.GetString();
}

}  // namespace kine::test
