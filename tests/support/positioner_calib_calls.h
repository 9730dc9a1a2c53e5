// The calibrations of positioner and robot base behind one face, so that rules they share are tested on each.
// Every run also checks that the inputs keep their bits and that nothing is printed.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "KineDll.h"
#include "support/calib_results.h"
#include "support/records.h"
#include "support/stdout_capture.h"
#include "support/taught_marks.h"

namespace kine::test {

inline constexpr int32_t kInt32Min = std::numeric_limits<int32_t>::min();
inline constexpr int32_t kInt32Max = std::numeric_limits<int32_t>::max();

struct PositionerCalibRequest
{
    ThreePoses poses{};
    KineFrame reference{};  // of Jn only
    int32_t unit = 0;
    int32_t axis = 2;  // of Jn only
    std::array<bool, 3> nullPose{};
    bool nullReference = false;
    bool nullFrame = false;
    bool nullReport = false;
};

// Where the records of one call lie. A call leaves what it has no argument for.
struct PositionerArguments
{
    std::array<const KinePose*, 3> poses;
    const KineFrame* reference;
    int32_t unit;
    int32_t axis;
    KineFrame* frame;
    KineCalibError* report;
};

struct PositionerCalib
{
    const char* name;
    bool reports;  // writes an error report
    KineResult (*run)(const PositionerArguments& at);
};

inline bool operator==(const PositionerCalib& a, const PositionerCalib& b) { return a.run == b.run; }

inline const PositionerCalib kJ1 = {"Kine_CalcPositionerJ1Prm_3P", false, [](const PositionerArguments& at) {
                                        return Kine_CalcPositionerJ1Prm_3P(at.unit, at.poses[0], at.poses[1],
                                                                           at.poses[2], at.frame);
                                    }};
inline const PositionerCalib kJn = {"Kine_CalcPositionerJnPrm_3P", false, [](const PositionerArguments& at) {
                                        return Kine_CalcPositionerJnPrm_3P(at.unit, at.axis, at.poses[0],
                                                                           at.poses[1], at.poses[2],
                                                                           at.reference, at.frame);
                                    }};
inline const PositionerCalib kRobotBase = {
    "Kine_CalcRobotBasePrm_3P", true, [](const PositionerArguments& at) {
        return Kine_CalcRobotBasePrm_3P(at.unit, at.poses[0], at.poses[1], at.poses[2], at.frame, at.report);
    }};

inline const std::vector<PositionerCalib> kPositionerCalibs = {kJ1, kJn, kRobotBase};

struct PositionerCalibOutcome
{
    KineResult code;
    KineFrame frame;
    KineCalibError report;
};

inline PositionerCalibOutcome Perform(const PositionerCalib& call, const PositionerCalibRequest& request)
{
    SCOPED_TRACE(call.name);
    const PositionerCalibRequest given = request;
    PositionerCalibOutcome outcome{0, Untouched<KineFrame>(), Untouched<KineCalibError>()};
    const PositionerArguments at = {
        {AddressUnless(given.nullPose[0], given.poses[0]), AddressUnless(given.nullPose[1], given.poses[1]),
         AddressUnless(given.nullPose[2], given.poses[2])},
        AddressUnless(given.nullReference, given.reference),
        given.unit,
        given.axis,
        given.nullFrame ? nullptr : &outcome.frame,
        given.nullReport ? nullptr : &outcome.report};
    EXPECT_EQ(PrintedBy([&] { outcome.code = call.run(at); }), "");
    EXPECT_TRUE(SameBits(given.poses, request.poses));
    EXPECT_TRUE(SameBits(given.reference, request.reference));
    const bool isSolved = outcome.code == KINE_OK;
    EXPECT_TRUE(isSolved || IsUntouched(outcome.frame)) << "a refused call wrote its frame";
    EXPECT_TRUE((isSolved && call.reports) || IsUntouched(outcome.report)) << "a report that is not due";
    return outcome;
}

// The outcome of a call that succeeds.
inline PositionerCalibOutcome Solved(const PositionerCalib& call, const PositionerCalibRequest& request)
{
    const PositionerCalibOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, KINE_OK) << call.name << std::hex << " " << outcome.code;
    return outcome;
}

// A refusal: this code, and both result records keep every bit.
inline void ExpectRefused(const PositionerCalib& call, const PositionerCalibRequest& request, KineResult code)
{
    const KineResult actual = Perform(call, request).code;
    EXPECT_EQ(actual, code) << call.name << std::hex << " " << actual;
}

inline bool SameResult(const PositionerCalibOutcome& a, const PositionerCalibOutcome& b)
{
    return a.code == b.code && SameBits(a.frame, b.frame) && SameBits(a.report, b.report);
}

// Whether a frame is that of an axis, to kTruthMm and kTruthDeg.
inline ::testing::AssertionResult IsAxisFrame(const KineFrame& frame, const Mat4& axis)
{
    return IsFrame(frame, axis, kTruthMm, InRadians(kTruthDeg));
}

// The type of external axis that a call wants.
inline int TypeFor(const PositionerCalib& call) { return call == kRobotBase ? kLinearType : kRotaryType; }

// Unit 0 with two axes, both driven by external axis 0.
inline void StoreGoodUnit(const PositionerCalib& call)
{
    SetUnitCounts(1, 6);
    StoreUnitWithAxes(0, {{0, TypeFor(call)}, {0, TypeFor(call)}});
}

// Good for this unit: a table that stands upright at (100, 200, 50) with its mark at 30 mm, or a mark beside
// a track.
inline PositionerCalibRequest GoodRequest(const PositionerCalib& call)
{
    PositionerCalibRequest request{
        call == kRobotBase ? MarkBesideTrack(25.0, {700.0, -900.0, 400.0}, {0.0, 400.0, 1000.0}, 0)
                           : MarkOnTable(Shift(100.0, 200.0, 50.0), {30.0, 0.0, 0.0}, {0.0, 90.0, 180.0}, 0)};
    request.reference = {10.0, 20.0, 30.0, 40.0, 50.0, 60.0};
    return request;
}

inline PositionerCalibRequest SetUpGoodRequest(const PositionerCalib& call)
{
    SetUpArm(WristArm());
    StoreGoodUnit(call);
    return GoodRequest(call);
}

}  // namespace kine::test
