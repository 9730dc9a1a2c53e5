// Torques and deflections of the six-axis arm under gravity, against the table.
#include <gtest/gtest.h>

#include <algorithm>

#include "golden_table.h"
#include "math/angles.h"
#include "models/six_axis_forward.h"
#include "models/six_axis_gravity.h"
#include "models/six_axis_params.h"

namespace kine::test {
namespace {

// Torques come out of the deflection by giving every joint this compliance: 1 N mm is 1 prad.
constexpr double kProbeCompliance = 1e-12;
constexpr double kTorqueTolerance = 1e-6;  // N mm, of up to a million
constexpr double kRadTolerance = 1e-15;

void ExpectTorques(SixAxisParams params, const SixAngles& q, const CombinedLoad& load,
                   const std::array<double, 3>& expected)
{
    params.c2 = params.c3 = params.c5 = kProbeCompliance;
    Deflection deflection{};
    ASSERT_EQ(GravityDeflection(params, SinesOf(q), load, deflection), KINE_OK);
    EXPECT_NEAR(deflection.q2 / kProbeCompliance, expected[0], kTorqueTolerance);
    EXPECT_NEAR(deflection.q3 / kProbeCompliance, expected[1], kTorqueTolerance);
    EXPECT_NEAR(deflection.q5 / kProbeCompliance, expected[2], kTorqueTolerance);
}

TEST(GoldenGravity, payload_torques_link_torques_and_deflections)
{
    auto rows = ReadTable("six_gravity.txt");
    ASSERT_GE(rows.size(), 60U);
    int rigid = 0;
    for (Row& row : rows) {
        SCOPED_TRACE(row.Place());
        const GoldenArm arm = ArmOfTable(row.Word());
        SixAxisParams params{};
        ASSERT_EQ(InitSixAxisParams(6, &arm.param, params), KINE_OK);
        SixAngles q = row.Numbers<6>();
        for (double& angle : q) angle *= DEG2RAD;
        CombinedLoad load{};
        load.mass = row.Number();
        load.centre = {row.Number(), row.Number(), row.Number()};
        const auto payload = row.Numbers<3>();
        const auto links = row.Numbers<3>();
        const auto expected = row.Numbers<3>();
        ASSERT_TRUE(row.AtEnd());

        SixAxisParams weightless = params;
        weightless.gs = {};
        ExpectTorques(weightless, q, load, payload);
        // The own weight works against joints 2 and 3 and along joint 5.
        ExpectTorques(params, q, {}, {-links[0], -links[1], links[2]});

        Deflection deflection{1.0, 1.0, 1.0};
        const KineResult code = GravityDeflection(params, SinesOf(q), load, deflection);
        const bool tooFar = std::all_of(expected.begin(), expected.end(), [](double d) { return d == 0.0; });
        rigid += tooFar ? 1 : 0;
        EXPECT_EQ(code, tooFar ? KINE_ERR_IK_1 : KINE_OK);
        EXPECT_NEAR(deflection.q2, expected[0], kRadTolerance);
        EXPECT_NEAR(deflection.q3, expected[1], kRadTolerance);
        EXPECT_NEAR(deflection.q5, expected[2], kRadTolerance);
    }
    EXPECT_GE(rigid, 1);
}

}  // namespace
}  // namespace kine::test
