// What the calibrations of positioner and robot base refuse, at which limits and in which order. Each limit
// is met exactly, and by the doubles next to it.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "support/positioner_calib_calls.h"

using namespace kine::test;

namespace {

const std::vector<PositionerCalib> kAxisCalibs = {kJ1, kJn};

// The code for three positions; the track moves by 100 and 200 mm.
KineResult CodeFor(const PositionerCalib& call, const Point& p0, const Point& p1, const Point& p2)
{
    PositionerCalibRequest request = SetUpGoodRequest(call);
    request.poses = TaughtPoints(p0, p1, p2);
    request.poses[1].ExtAxis[0] = 100.0;
    request.poses[2].ExtAxis[0] = 200.0;
    return Perform(call, request).code;
}

// One way of being refused. Faults of a lower place answer first. Faults of one lookup exclude one another:
// an axis that is not known has no type.
struct Fault
{
    const char* name;
    int place;
    KineResult code;
    void (*make)(PositionerCalibRequest&);
    bool isLookup = false;
};

std::vector<Fault> PoseFaults()
{
    return {
        {"p0 null", 0, KINE_ERR_POSE, [](PositionerCalibRequest& r) { r.nullPose[0] = true; }},
        {"p1 null", 0, KINE_ERR_POSE, [](PositionerCalibRequest& r) { r.nullPose[1] = true; }},
        {"p2 null", 0, KINE_ERR_POSE, [](PositionerCalibRequest& r) { r.nullPose[2] = true; }},
        {"p0 angle", 0, KINE_ERR_POSE, [](PositionerCalibRequest& r) { r.poses[0].Frame.A = 180.5; }},
        {"p1 angle", 0, KINE_ERR_POSE, [](PositionerCalibRequest& r) { r.poses[1].Frame.B = -180.5; }},
        {"p2 angle", 0, KINE_ERR_POSE, [](PositionerCalibRequest& r) { r.poses[2].Frame.C = kInf; }},
        {"frame null", 1, KINE_ERR_POSE, [](PositionerCalibRequest& r) { r.nullFrame = true; }},
    };
}

void MakeClose(PositionerCalibRequest& r) { r.poses[1].Frame = r.poses[0].Frame; }

void MakeLine(PositionerCalibRequest& r)
{
    r.poses[0].Frame = At({0.0, 0.0, 0.0}, r.poses[0].Frame);
    r.poses[1].Frame = At({1.0, 2.0, 3.0}, r.poses[1].Frame);
    r.poses[2].Frame = At({2.0, 4.0, 6.0}, r.poses[2].Frame);
}

std::vector<Fault> FaultsOf(const PositionerCalib& call)
{
    std::vector<Fault> faults = PoseFaults();
    const auto add = [&](const std::vector<Fault>& more) {
        faults.insert(faults.end(), more.begin(), more.end());
    };
    const Fault noUnit = {"unit", 6, KINE_ERR_TOOL, [](PositionerCalibRequest& r) { r.unit = -1; }, true};
    if (call == kRobotBase) {
        const auto makeStill = [](PositionerCalibRequest& r) {
            r.poses[1].ExtAxis[0] = r.poses[2].ExtAxis[0] = 0.0;
        };
        const auto makeFlat = [](PositionerCalibRequest& r) {
            for (KinePose& pose : r.poses) pose.Frame = At({1.0, 2.0, pose.Frame.Z}, pose.Frame);
            r.poses[1].Frame.Z += 3.0;
            r.poses[2].Frame.Z += 6.0;
        };
        add({{"not linear", 2, KINE_ERR_POSE, [](PositionerCalibRequest&) { StoreAxisType(0, 0); }, true}});
        add({{"unit", 3, KINE_ERR_TOOL, noUnit.make, true}});
        add({{"close", 4, KINE_ERR_CALIB_POINTS_CLOSE, MakeClose}});
        add({{"still", 5, KINE_ERR_CALIB_INPUT, makeStill}});
        add({{"flat", 6, KINE_ERR_CALIB_INPUT, makeFlat}});
        return faults;
    }
    add({{"close", 4, KINE_ERR_CALIB_POINTS_CLOSE, MakeClose},
         {"line", 5, KINE_ERR_CALIB_COLLINEAR, MakeLine}});
    add({noUnit});
    if (call == kJn) {
        const auto makeSingle = [](PositionerCalibRequest& r) {
            StoreUnitWithAxes(0, {{1, kRotaryType}});
            r.axis = 1;
        };
        add({{"reference null", 0, KINE_ERR_POSE,
              [](PositionerCalibRequest& r) { r.nullReference = true; }}});
        add({{"linear", 2, KINE_ERR_POSE, [](PositionerCalibRequest&) { StoreAxisType(0, 1); }, true}});
        add({{"n = 0", 3, KINE_ERR_CALIB_INPUT, [](PositionerCalibRequest& r) { r.axis = 0; }, true}});
        add({{"n beyond", 6, KINE_ERR_TOOL, [](PositionerCalibRequest& r) { r.axis = 3; }, true}});
        add({{"no second axis", 6, KINE_ERR_TOOL, makeSingle, true}});
    }
    return faults;
}

}  // namespace

TEST(positioner_calibrations, every_fault_gives_its_code)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        Solved(call, SetUpGoodRequest(call));
        for (const Fault& fault : FaultsOf(call)) {
            SCOPED_TRACE(fault.name);
            PositionerCalibRequest request = SetUpGoodRequest(call);
            fault.make(request);
            ExpectRefused(call, request, fault.code);
        }
    }
}

TEST(positioner_calibrations, of_two_faults_the_earlier_answers)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        const std::vector<Fault> faults = FaultsOf(call);
        for (const Fault& first : faults) {
            for (const Fault& second : faults) {
                if (first.place >= second.place) continue;
                if (first.isLookup && second.isLookup) continue;
                SCOPED_TRACE(std::string(first.name) + " and " + second.name);
                PositionerCalibRequest request = SetUpGoodRequest(call);
                second.make(request);
                first.make(request);
                ExpectRefused(call, request, first.code);
            }
        }
    }
}

TEST(positioner_calibrations, angle_of_180_passes_and_beyond_is_0x6010)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        for (std::size_t pose = 0; pose < 3; ++pose) {
            for (const auto angle : kAngles) {
                for (const double side : {-1.0, 1.0}) {
                    PositionerCalibRequest request = SetUpGoodRequest(call);
                    for (const double passing : {180.0, JustBelow(180.0), kNan}) {
                        request.poses[pose].Frame.*angle = side * passing;
                        Solved(call, request);
                    }
                    for (const double refused : {JustAbove(180.0), 360.0, kInf}) {
                        request.poses[pose].Frame.*angle = side * refused;
                        ExpectRefused(call, request, KINE_ERR_POSE);
                    }
                }
            }
        }
    }
}

// The square root of a square is exact, so that a distance along an axis is exactly the difference.
TEST(positioner_calibrations, positions_nearer_than_1e_5_are_0x6065)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        const auto first = [&](double d) { return CodeFor(call, {0, 0, 0}, {d, 0, 0}, {0, 100, 0}); };
        const auto second = [&](double d) { return CodeFor(call, {0, 0, 0}, {100, 0, 0}, {0, d, 0}); };
        // Seen from 1e-3 mm away the last two are 0.57 degrees apart and not on a line with the first.
        const auto third = [&](double d) { return CodeFor(call, {0.5 * d, 1e-3, 0}, {0, 0, 0}, {d, 0, 0}); };
        const auto inHeight = [&](double d) { return CodeFor(call, {0, 0, 0}, {0, 0, d}, {60, 100, 0}); };
        for (const double refused : {JustBelow(1e-5), 1e-6, 0.0}) {
            EXPECT_EQ(first(refused), KINE_ERR_CALIB_POINTS_CLOSE) << call.name;
            EXPECT_EQ(second(refused), KINE_ERR_CALIB_POINTS_CLOSE) << call.name;
            EXPECT_EQ(third(refused), KINE_ERR_CALIB_POINTS_CLOSE) << call.name;
            EXPECT_EQ(inHeight(refused), KINE_ERR_CALIB_POINTS_CLOSE) << call.name;
        }
        for (const double passing : {1e-5, JustAbove(1e-5)}) {
            EXPECT_EQ(first(passing), KINE_OK) << call.name;
            EXPECT_EQ(second(passing), KINE_OK) << call.name;
            // The squares of these ways, 2e-6 mm^2 in all, are too little for the base.
            EXPECT_EQ(third(passing), call == kRobotBase ? KINE_ERR_CALIB_INPUT : KINE_OK) << call.name;
            EXPECT_EQ(inHeight(passing), KINE_OK) << call.name;
        }
    }
}

// Unit directions (1, 0) and (c, s): the lengths are exactly 1 and the cosine is exactly c.
TEST(positioner_calibrations, cosine_beyond_0_99999_is_0x6066)
{
    for (const PositionerCalib& call : kAxisCalibs) {
        const auto codeAt = [&](double c) {
            const double s = std::sqrt(1.0 - c * c);
            EXPECT_EQ(std::sqrt(c * c + s * s), 1.0) << "not a direction of length 1";
            return CodeFor(call, {0, 0, 0}, {1, 0, 0}, {c, s, 0});
        };
        for (const double side : {-1.0, 1.0}) {
            EXPECT_EQ(codeAt(side * JustBelow(0.99999)), KINE_OK) << call.name;
            EXPECT_EQ(codeAt(side * 0.99999), KINE_OK) << call.name;
            EXPECT_EQ(codeAt(side * JustAbove(0.99999)), KINE_ERR_CALIB_COLLINEAR) << call.name;
        }
    }
}

// The base turns about Z alone: a line is all it needs.
TEST(positioner_calibrations, positions_on_a_line_are_refused_by_the_axis_calls_only)
{
    EXPECT_EQ(CodeFor(kJ1, {5, 6, 7}, {15, 26, 37}, {25, 46, 67}), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_EQ(CodeFor(kJn, {15, 26, 37}, {5, 6, 7}, {25, 46, 67}), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_EQ(CodeFor(kRobotBase, {5, 6, 7}, {15, 26, 37}, {25, 46, 67}), KINE_OK);
}

TEST(Kine_CalcRobotBasePrm_3P, both_track_moves_below_0_1_are_0x6061)
{
    const auto codeFor = [](double start, double first, double second) {
        PositionerCalibRequest request = SetUpGoodRequest(kRobotBase);
        request.poses[0].ExtAxis[0] = start;
        request.poses[1].ExtAxis[0] = first;
        request.poses[2].ExtAxis[0] = second;
        return Perform(kRobotBase, request).code;
    };
    for (const double side : {-1.0, 1.0}) {
        for (const double passing : {0.1, JustAbove(0.1), 0.2}) {
            EXPECT_EQ(codeFor(0.0, 0.05, side * passing), KINE_OK) << passing;
            EXPECT_EQ(codeFor(0.0, side * passing, 0.05), KINE_OK) << passing;
            EXPECT_EQ(codeFor(0.0, side * passing, 0.0), KINE_OK) << passing;
            EXPECT_EQ(codeFor(side * passing, 0.0, 0.0), KINE_OK) << passing;
        }
        EXPECT_EQ(codeFor(0.0, side * 0.05, 0.09), KINE_ERR_CALIB_INPUT);
        EXPECT_EQ(codeFor(0.0, side * JustBelow(0.1), JustBelow(0.1)), KINE_ERR_CALIB_INPUT);
        // Both moves count from the first pose: 0.18 mm from the second to the third are no help.
        EXPECT_EQ(codeFor(0.0, side * 0.09, side * -0.09), KINE_ERR_CALIB_INPUT);
    }
    EXPECT_EQ(codeFor(1000.0, 1000.05, 1000.09), KINE_ERR_CALIB_INPUT);
    EXPECT_EQ(codeFor(1000.0, 1000.05, 1000.2), KINE_OK);
    EXPECT_EQ(codeFor(0.0, kNan, 0.0), KINE_OK);
    EXPECT_EQ(codeFor(0.0, 0.0, kNan), KINE_OK);
}

// S = 6.25e-6 + y * y. No double has exactly 1e-10 as its square: that of the double next below 1e-5 is less
// and refused, that of 1e-5 is more and passes.
TEST(Kine_CalcRobotBasePrm_3P, squared_ways_with_a_determinant_up_to_1e_10_are_0x6061)
{
    const auto codeFor = [](double y, double expectedSum) {
        EXPECT_EQ(0.0025 * 0.0025 + y * y, expectedSum);
        return CodeFor(kRobotBase, {0, 0, 0}, {0.0025, 0, 10}, {0, y, 20});
    };
    const double below = JustBelow(1e-5);
    ASSERT_LT(below * below, 1e-10);
    ASSERT_GT(1e-5 * 1e-5, 1e-10);
    EXPECT_EQ(codeFor(0.0019364916731037082, below), KINE_ERR_CALIB_INPUT);
    EXPECT_EQ(codeFor(0.0019364916731037087, 1e-5), KINE_OK);
    EXPECT_EQ(codeFor(0.001936491673103709, JustAbove(1e-5)), KINE_OK);
    EXPECT_EQ(CodeFor(kRobotBase, {3, 4, 0}, {3, 4, 10}, {3, 4, 20}), KINE_ERR_CALIB_INPUT);
}

TEST(Kine_CalcRobotBasePrm_3P, first_axis_of_any_type_but_1_is_0x6010)
{
    PositionerCalibRequest request = SetUpGoodRequest(kRobotBase);
    StoreUnitWithAxes(0, {{3, kLinearType}, {4, kLinearType}});
    request.poses = MarkBesideTrack(25.0, {700.0, -900.0, 400.0}, {0.0, 400.0, 1000.0}, 3);
    for (const int type : {0, 2, 3, -1, 257, 32767, -32768}) {
        StoreAxisType(3, type);
        ExpectRefused(kRobotBase, request, KINE_ERR_POSE);
    }
    StoreAxisType(3, 1);
    Solved(kRobotBase, request);
}

TEST(Kine_CalcPositionerJnPrm_3P, linear_axis_n_is_0x6010)
{
    PositionerCalibRequest request = SetUpGoodRequest(kJn);
    StoreUnitWithAxes(0, {{3, kRotaryType}, {4, kRotaryType}, {5, kRotaryType}});
    for (int axis = 1; axis <= 3; ++axis) {
        request.axis = axis;
        for (int driver = 3; driver <= 5; ++driver) StoreAxisType(driver, driver == axis + 2 ? 1 : 0);
        ExpectRefused(kJn, request, KINE_ERR_POSE);
        for (int driver = 3; driver <= 5; ++driver) StoreAxisType(driver, driver == axis + 2 ? 0 : 1);
        Solved(kJn, request);
    }
    // Before the missing second axis.
    StoreUnitWithAxes(0, {{3, kLinearType}});
    request.axis = 1;
    ExpectRefused(kJn, request, KINE_ERR_POSE);
}

// No axis is found for such a number, so none is linear; and the unit need not be known.
TEST(Kine_CalcPositionerJnPrm_3P, axis_number_below_1_is_0x6061)
{
    for (const int type : {kRotaryType, kLinearType}) {
        for (const int32_t axis : {0, -1, -2, -2147483647, kInt32Min}) {
            PositionerCalibRequest request = SetUpGoodRequest(kJn);
            StoreAxisType(0, type);
            request.axis = axis;
            ExpectRefused(kJn, request, KINE_ERR_CALIB_INPUT);
            for (const int32_t unit : {1, 2, -1, kInt32Min, kInt32Max}) {
                request.unit = unit;
                ExpectRefused(kJn, request, KINE_ERR_CALIB_INPUT);
            }
        }
    }
}

TEST(Kine_CalcPositionerJnPrm_3P, axis_number_beyond_the_unit_is_0x6011)
{
    PositionerCalibRequest request = SetUpGoodRequest(kJn);
    for (const int32_t axis : {3, 4, 6, 7, 255, 256, 257, 65537, 2147483646, kInt32Max}) {
        request.axis = axis;
        ExpectRefused(kJn, request, KINE_ERR_TOOL);
    }
}
