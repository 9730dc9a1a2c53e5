// The limits of the tool calibrations, each just inside, exactly on and just outside: neighbouring doubles.
//
// Lengths are hit exactly by steps along one axis. Cosines and sines are hit exactly by steps whose length is
// 1 to the last bit although one coordinate is the limit. Determinants are hit by angles for which every
// order of its sums and products gives the same double.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "support/tool_calib_calls.h"

using namespace kine::test;

namespace {

// The second coordinate of a step of length 1 whose first one is a sine at its limit or a double next to it.
constexpr double kBesideSine = 0.99994999874993749;  // to 0.01
constexpr double kBesideSmallSine = 0.99999999995;   // to 1e-5

double LengthOf(double x, double y) { return std::sqrt(x * x + y * y); }

// Orientations that determine a tool in space and in the plane, at given places.
ToolCalibRequest TouchesAt(std::uint32_t armType, const Point& p0, const Point& p1, const Point& p2)
{
    ToolCalibRequest request = ZeroToolRequest(armType);
    const Point places[] = {p0, p1, p2};
    for (std::size_t i = 0; i < 3; ++i) request.poses[i].Frame = At(places[i], request.poses[i].Frame);
    return request;
}

void ExpectTouchCode(const ToolCalibRequest& request, KineResult code)
{
    if (code != KINE_OK) {
        ExpectRefused(kGrip3P, request, code);
        ExpectRefused(kExt3P, request, code);
        return;
    }
    Solved(kGrip3P, request);
    Solved(kExt3P, request);
}

// The squared length of either column that a turn by this angle changes in I - R.
double TurnTerm(double degrees)
{
    const double angle = degrees * 0.017453292519943295;
    const double level = 1.0 - std::cos(angle);
    const double side = std::sin(angle);
    return level * level + side * side;
}

// A turn about Z and one about X: normal equations diag(u, u + v, v).
double SpatialDeterminant(double aboutZ, double aboutX)
{
    const double u = TurnTerm(aboutZ);
    const double v = TurnTerm(aboutX);
    return u * ((u + v) * v);
}

// A turn about X and one about Y: in the plane diag((1 - cos)^2, (1 - cos)^2).
double PlanarDeterminant(double aboutX, double aboutY)
{
    const double x = 1.0 - std::cos(aboutX * 0.017453292519943295);
    const double y = 1.0 - std::cos(aboutY * 0.017453292519943295);
    return (x * x) * (y * y);
}

struct Turns
{
    double first;
    double second;
};

// Origin, Z point and X point with unturned poses, after touches that solve to a tool of (0, 0, 0).
ToolCalibRequest FramePoses(const ToolCalib& call, std::uint32_t armType, const Point& origin,
                            const Point& zPoint, const Point& xPoint)
{
    const KinePose poses[] = {TaughtPose(origin), TaughtPose(zPoint), TaughtPose(xPoint)};
    if (call.touches == 0) return {{poses[0], poses[1], poses[2]}};
    return ZeroToolRequest(armType, {poses[0], poses[1], poses[2]});
}

void ExpectFrameCode(const ToolCalib& call, const ToolCalibRequest& request, KineResult code)
{
    if (code == KINE_OK) {
        Solved(call, request);
    } else if (call.reports) {
        ExpectRefusedAfterReport(call, request, code);
    } else {
        ExpectRefused(call, request, code);
    }
}

}  // namespace

TEST(tool_calibrations, three_touches_nearer_than_1e_minus_5_mm_are_0x6065)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        // Four-axis arms look at X and Y: the poses differ much in height.
        const double height = IsFlat(armType) ? 500.0 : 0.0;
        const std::size_t axes = IsFlat(armType) ? 2 : 3;
        for (std::size_t axis = 0; axis < axes; ++axis) {
            const Point aside = Along((axis + 1) % axes, 40.0);
            const Point up = {0.0, 0.0, height};
            const Point near = Along((axis + 1) % axes, 2e-5);
            for (const double sign : {1.0, -1.0}) {
                for (const auto& [length, code] : {std::pair{JustBelow(1e-5), KINE_ERR_CALIB_POINTS_CLOSE},
                                                   {1e-5, KINE_OK},
                                                   {JustAbove(1e-5), KINE_OK}}) {
                    const Point step = Along(axis, sign * length);
                    ExpectTouchCode(TouchesAt(armType, {}, step + up, aside), code);
                    ExpectTouchCode(TouchesAt(armType, {}, aside, step + up), code);
                    ExpectTouchCode(TouchesAt(armType, {}, near, near + step + up), code);
                }
            }
        }
    }
}

TEST(tool_calibrations, three_touches_at_equal_positions_are_0x6065)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        const Point a = {100.0, 200.0, 300.0};
        const Point b = {140.0, 190.0, 280.0};
        for (const auto& [p1, p2] : {std::pair{a, b}, {b, a}, {b, b}, {a, a}}) {
            ExpectTouchCode(TouchesAt(armType, a, p1, p2), KINE_ERR_CALIB_POINTS_CLOSE);
        }
    }
}

TEST(tool_calibrations, height_does_not_keep_touches_of_four_axis_arms_apart)
{
    const ToolCalibRequest stacked =
        TouchesAt(KINE_ARM_SIX_AXIS, {5.0, 5.0, 0.0}, {5.0, 5.0, 100.0}, {50.0, 5.0, 0.0});
    UseArm(KINE_ARM_SIX_AXIS);
    ExpectTouchCode(stacked, KINE_OK);
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        ExpectTouchCode(stacked, KINE_ERR_CALIB_POINTS_CLOSE);
    }
}

TEST(tool_calibrations, three_touches_with_directions_of_cosine_beyond_0_99999_are_0x6066)
{
    struct Case
    {
        double along;
        double beside;
        KineResult code;
    };
    const Case cases[] = {{JustBelow(0.99999), 0.00447212477467, KINE_OK},
                          {0.99999, 0.00447212477463, KINE_OK},
                          {JustAbove(0.99999), 0.00447212477463, KINE_ERR_CALIB_COLLINEAR}};
    for (const Case& c : cases) ASSERT_EQ(LengthOf(c.along, c.beside), 1.0);
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        const double height = IsFlat(armType) ? 70.0 : 0.0;
        const std::size_t axes = IsFlat(armType) ? 2 : 3;
        for (std::size_t axis = 0; axis < axes; ++axis) {
            // The second direction lies on the same side, then on the other.
            for (const double side : {1.0, -1.0}) {
                for (const auto& [along, beside, code] : cases) {
                    const Point one = Along(axis, 1.0) + Point{0.0, 0.0, height};
                    const Point other = Along(axis, side * along) + Along((axis + 1) % axes, beside);
                    ExpectTouchCode(TouchesAt(armType, {}, one, other), code);
                    ExpectTouchCode(TouchesAt(armType, {}, other, one), code);
                }
            }
        }
    }
}

TEST(tool_calibrations, height_does_not_take_touches_of_four_axis_arms_off_a_line)
{
    const ToolCalibRequest inOneHeading =
        TouchesAt(KINE_ARM_SIX_AXIS, {0.0, 0.0, 0.0}, {30.0, 40.0, 0.0}, {60.0, 80.0, 90.0});
    UseArm(KINE_ARM_SIX_AXIS);
    ExpectTouchCode(inOneHeading, KINE_OK);
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        ExpectTouchCode(inOneHeading, KINE_ERR_CALIB_COLLINEAR);
    }
}

TEST(tool_calibrations, three_touches_with_a_determinant_up_to_0_01_are_0x6064_on_a_six_axis_arm)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const Turns below = {23.856, 23.874020777750736};
    const Turns on = {19.412, 28.665223513271712};
    const Turns above = {27.128, 20.763078014611818};
    ASSERT_EQ(SpatialDeterminant(below.first, below.second), JustBelow(0.01));
    ASSERT_EQ(SpatialDeterminant(on.first, on.second), 0.01);
    ASSERT_EQ(SpatialDeterminant(above.first, above.second), JustAbove(0.01));
    for (const auto& [turns, code] :
         {std::pair{below, KINE_ERR_CALIB_4}, {on, KINE_ERR_CALIB_4}, {above, KINE_OK}}) {
        ExpectTouchCode({{TaughtPose({}), TaughtPose({50.0, 0.0, 0.0}, {turns.first, 0.0, 0.0}),
                          TaughtPose({0.0, 50.0, 0.0}, {0.0, 0.0, turns.second})}},
                        code);
    }
}

TEST(tool_calibrations, three_touches_in_one_orientation_or_about_one_axis_are_0x6064_on_a_six_axis_arm)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const Point p1 = {50.0, 0.0, 0.0};
    const Point p2 = {0.0, 50.0, 0.0};
    const Angles any = {20.0, 30.0, 40.0};
    ExpectTouchCode({{TaughtPose({}, any), TaughtPose(p1, any), TaughtPose(p2, any)}}, KINE_ERR_CALIB_4);
    ExpectTouchCode({{TaughtPose({}), TaughtPose(p1, {90.0, 0.0, 0.0}), TaughtPose(p2, {180.0, 0.0, 0.0})}},
                    KINE_ERR_CALIB_4);
}

TEST(tool_calibrations, touches_with_a_determinant_up_to_1e_minus_10_are_0x6060_on_a_four_axis_arm)
{
    const Turns below = {4.158, 4.996014331637157};
    const Turns on = {3.959, 5.247203879874321};
    const Turns above = {3.534, 5.8785208617409};
    ASSERT_EQ(PlanarDeterminant(below.first, below.second), JustBelow(1e-10));
    ASSERT_EQ(PlanarDeterminant(on.first, on.second), 1e-10);
    ASSERT_EQ(PlanarDeterminant(above.first, above.second), JustAbove(1e-10));
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        for (const auto& [turns, code] :
             {std::pair{below, KINE_ERR_CALIB_SINGULAR}, {on, KINE_ERR_CALIB_SINGULAR}, {above, KINE_OK}}) {
            const KinePose aboutX = TaughtPose({50.0, 0.0, 0.0}, {0.0, 0.0, turns.first});
            const KinePose aboutY = TaughtPose({0.0, 50.0, 0.0}, {0.0, turns.second, 0.0});
            ExpectTouchCode({{TaughtPose({}), aboutX, aboutY}}, code);
            // The same two blocks in the plane subtracted from each other.
            const ToolCalibRequest twoHeadings{{aboutX, aboutY}};
            if (code == KINE_OK) {
                Solved(kScara2P, twoHeadings);
            } else {
                ExpectRefused(kScara2P, twoHeadings, code);
            }
        }
    }
}

// Turns by w about the vertical: normal equations (2 - 2 cos w) times the number of turned poses, determinant
// its square. 1e-10 is reached at 0.1812 degrees by one turned pose, at 0.1281 by two.
TEST(tool_calibrations, headings_too_much_alike_are_0x6060_on_a_four_axis_arm)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        const auto heading = [](double x, double y, double degrees) {
            return TaughtPose({x, y, 0.0}, {degrees, 0.0, 0.0});
        };
        ExpectTouchCode({{heading(0, 0, 0), heading(50, 0, 0.128), heading(0, 50, -0.128)}},
                        KINE_ERR_CALIB_SINGULAR);
        ExpectTouchCode({{heading(0, 0, 0), heading(50, 0, 0.1283), heading(0, 50, -0.1283)}}, KINE_OK);
        ExpectTouchCode({{heading(0, 0, 7), heading(50, 0, 7), heading(0, 50, 7)}}, KINE_ERR_CALIB_SINGULAR);
        ExpectRefused(kScara2P, {{heading(0, 0, 0), heading(50, 0, 0.1811)}}, KINE_ERR_CALIB_SINGULAR);
        Solved(kScara2P, {{heading(0, 0, 0), heading(50, 0, 0.1813)}});
    }
}

TEST(Kine_CalcGripToolPrm_5P, determinant_up_to_1e_minus_10_is_0x6060)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const Turns below = {0.904, 1.3083917966532361};
    const Turns on = {1.12378, 1.07587879955263};
    const Turns above = {1.098, 1.101485706347868};
    ASSERT_EQ(SpatialDeterminant(below.first, below.second), JustBelow(1e-10));
    ASSERT_EQ(SpatialDeterminant(on.first, on.second), 1e-10);
    ASSERT_EQ(SpatialDeterminant(above.first, above.second), JustAbove(1e-10));
    const auto request = [](const Turns& turns) {
        return ToolCalibRequest{{TaughtPose({}), TaughtPose({1.0, 0.0, 0.0}, {turns.first, 0.0, 0.0}),
                                 TaughtPose({0.0, 1.0, 0.0}, {0.0, 0.0, turns.second}), TaughtPose({}),
                                 TaughtPose({})}};
    };
    ExpectRefused(kGrip5P, request(below), KINE_ERR_CALIB_SINGULAR);
    ExpectRefused(kGrip5P, request(on), KINE_ERR_CALIB_SINGULAR);
    Solved(kGrip5P, request(above));
    // Between the limits of three and of five poses.
    const ToolCalibRequest between = request({10.0, 10.0});
    Solved(kGrip5P, between);
    ExpectTouchCode({{between.poses[0], between.poses[1], between.poses[2]}}, KINE_ERR_CALIB_4);
}

TEST(Kine_CalcGripToolPrm_Scara2P, positions_nearer_than_1e_minus_5_mm_in_the_plane_are_0x6065)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        for (const Point& direction : {Point{1.0, 0.0, 0.0}, Point{-1.0, 0.0, 0.0}, Point{0.0, 1.0, 0.0}}) {
            const auto request = [&](double length) {
                const Point at = {direction[0] * length, direction[1] * length, 800.0};
                return ToolCalibRequest{{TaughtPose({}), TaughtPose(at, {90.0, 0.0, 0.0})}};
            };
            ExpectRefused(kScara2P, request(JustBelow(1e-5)), KINE_ERR_CALIB_POINTS_CLOSE);
            ExpectRefused(kScara2P, request(0.0), KINE_ERR_CALIB_POINTS_CLOSE);
            Solved(kScara2P, request(1e-5));
            Solved(kScara2P, request(JustAbove(1e-5)));
        }
    }
}

TEST(tool_calibrations, directions_of_an_external_tool_shorter_than_0_01_mm_are_0x6070)
{
    for (const ToolCalib& call : {kExt1PZX, kExt3PZX}) {
        for (const std::uint32_t armType : kCalibArmTypes) {
            UseArm(armType);
            for (const auto& [length, code] : {std::pair{JustBelow(0.01), KINE_ERR_ZERO_VECTOR},
                                               {0.01, KINE_OK},
                                               {JustAbove(0.01), KINE_OK}}) {
                for (const Point& xPoint : {Along(0, length), Along(1, -length)}) {
                    ExpectFrameCode(call, FramePoses(call, armType, {}, {0.0, 0.0, 30.0}, xPoint), code);
                }
                // On a four-axis arm the Z point does not matter.
                const ToolCalibRequest shortZ =
                    FramePoses(call, armType, {}, Along(2, length), Along(0, 30.0));
                ExpectFrameCode(call, shortZ, IsFlat(armType) ? KINE_OK : code);
            }
        }
    }
}

TEST(tool_calibrations, directions_of_an_external_tool_of_sine_below_0_01_are_0x6066)
{
    for (const double sine : {JustBelow(0.01), 0.01, JustAbove(0.01)}) {
        ASSERT_EQ(LengthOf(sine, kBesideSine), 1.0);
        const KineResult code = sine < 0.01 ? KINE_ERR_CALIB_COLLINEAR : KINE_OK;
        for (const ToolCalib& call : {kExt1PZX, kExt3PZX}) {
            for (const std::uint32_t armType : kCalibArmTypes) {
                UseArm(armType);
                for (const double up : {1.0, -1.0}) {
                    const Point xPoint = {sine, 0.0, up * kBesideSine};
                    ExpectFrameCode(call, FramePoses(call, armType, {}, {0.0, 0.0, 5.0}, xPoint), code);
                }
            }
        }
    }
}

// The origin lies 10 mm below the Z pose, so that four-axis arms raise it onto the same place.
TEST(Kine_CalcGripToolPrm_3PZX, travels_shorter_than_1e_minus_5_mm_are_0x6065)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const auto& [length, code] : {std::pair{JustBelow(1e-5), KINE_ERR_CALIB_POINTS_CLOSE},
                                           {1e-5, KINE_OK},
                                           {JustAbove(1e-5), KINE_OK}}) {
            for (const Point& xPoint : {Along(0, length), Along(1, -length)}) {
                ExpectFrameCode(kGrip3PZX, FramePoses(kGrip3PZX, armType, {0.0, 0.0, -10.0}, {}, xPoint),
                                code);
            }
            const ToolCalibRequest shortZ =
                FramePoses(kGrip3PZX, armType, {}, Along(2, length), Along(0, 40.0));
            ExpectFrameCode(kGrip3PZX, shortZ, IsFlat(armType) ? KINE_OK : code);
        }
    }
}

TEST(Kine_CalcGripToolPrm_3PZX, travels_of_sine_below_1e_minus_5_are_0x6066)
{
    for (const double sine : {JustBelow(1e-5), 1e-5, JustAbove(1e-5)}) {
        ASSERT_EQ(LengthOf(sine, kBesideSmallSine), 1.0);
        const KineResult code = sine < 1e-5 ? KINE_ERR_CALIB_COLLINEAR : KINE_OK;
        for (const std::uint32_t armType : kCalibArmTypes) {
            UseArm(armType);
            for (const double up : {1.0, -1.0}) {
                const Point xPoint = {sine, 0.0, up * kBesideSmallSine};
                ExpectFrameCode(kGrip3PZX, FramePoses(kGrip3PZX, armType, {0.0, 0.0, -10.0}, {}, xPoint),
                                code);
            }
        }
    }
}
