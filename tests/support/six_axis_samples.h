// Parameter blocks and joint sets of the six-axis arm for tests of the inside.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "models/six_axis_params.h"
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

// For SCOPED_TRACE.
inline std::string Shown(const SixAngles& q)
{
    ::testing::Message message;
    message << "joints";
    for (const double angle : q) message << ' ' << angle;
    return message.GetString();
}

}  // namespace kine::test
