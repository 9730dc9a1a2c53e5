// The calibrations of positioner and robot base behind one face, so that rules they share are tested on each.
// Every run also checks that the inputs keep their bits and that nothing is printed.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "KineDll.h"
#include "support/records.h"
#include "support/stdout_capture.h"
#include "support/taught_marks.h"

namespace kine::test {

struct PositionerRequest
{
    int32_t unit = 0;
    int32_t axis = 2;  // of Jn only
    Taught taught{};
    KineFrame reference{};  // of Jn only
    std::array<bool, 3> nullPose{};
    bool nullReference = false;
    bool nullFrame = false;
    bool nullError = false;
};

struct PositionerOutcome
{
    KineResult code;
    KineFrame frame;
    KineCalibError error;
};

struct PositionerCall
{
    const char* name;
    bool reports;  // writes an error report
    KineResult (*run)(const PositionerRequest& r, const std::array<const KinePose*, 3>& p, KineFrame* frame,
                      KineCalibError* error);
};

inline const PositionerCall kJ1Call = {
    "Kine_CalcPositionerJ1Prm_3P", false,
    [](const PositionerRequest& r, const auto& p, KineFrame* frame, KineCalibError*) {
        return Kine_CalcPositionerJ1Prm_3P(r.unit, p[0], p[1], p[2], frame);
    }};

inline const PositionerCall kJnCall = {
    "Kine_CalcPositionerJnPrm_3P", false,
    [](const PositionerRequest& r, const auto& p, KineFrame* frame, KineCalibError*) {
        return Kine_CalcPositionerJnPrm_3P(r.unit, r.axis, p[0], p[1], p[2],
                                           r.nullReference ? nullptr : &r.reference, frame);
    }};

inline const PositionerCall kBaseCall = {
    "Kine_CalcRobotBasePrm_3P", true,
    [](const PositionerRequest& r, const auto& p, KineFrame* frame, KineCalibError* error) {
        return Kine_CalcRobotBasePrm_3P(r.unit, p[0], p[1], p[2], frame, error);
    }};

inline const std::array<PositionerCall, 3> kPositionerCalls = {{kJ1Call, kJnCall, kBaseCall}};

inline PositionerOutcome Perform(const PositionerCall& call, const PositionerRequest& request)
{
    SCOPED_TRACE(call.name);
    const PositionerRequest given = request;
    PositionerOutcome outcome{};
    outcome.frame = Untouched<KineFrame>();
    outcome.error = Untouched<KineCalibError>();
    std::array<const KinePose*, 3> poses{};
    for (std::size_t i = 0; i < 3; ++i) poses[i] = given.nullPose[i] ? nullptr : &given.taught[i];
    const std::string printed = PrintedBy([&] {
        outcome.code = call.run(given, poses, given.nullFrame ? nullptr : &outcome.frame,
                                given.nullError ? nullptr : &outcome.error);
    });
    EXPECT_EQ(printed, "");
    EXPECT_TRUE(SameBits(given.taught, request.taught));
    EXPECT_TRUE(SameBits(given.reference, request.reference));
    const bool isSolved = outcome.code == KINE_OK;
    EXPECT_TRUE(isSolved || IsUntouched(outcome.frame)) << "a refused call wrote its frame";
    EXPECT_TRUE((isSolved && call.reports) || IsUntouched(outcome.error)) << "a report that is not due";
    return outcome;
}

// The outcome of a call that succeeds.
inline PositionerOutcome Solved(const PositionerCall& call, const PositionerRequest& request)
{
    const PositionerOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, KINE_OK) << call.name << " 0x" << std::hex << outcome.code;
    return outcome;
}

inline void ExpectRefused(const PositionerCall& call, const PositionerRequest& request, KineResult code)
{
    const KineResult actual = Perform(call, request).code;
    EXPECT_EQ(actual, code) << call.name << " 0x" << std::hex << actual << " instead of 0x" << code;
}

// Elements of a frame, in turn.
inline constexpr std::array<double KineFrame::*, 6> kElements = {&KineFrame::X, &KineFrame::Y, &KineFrame::Z,
                                                                 &KineFrame::A, &KineFrame::B, &KineFrame::C};

// The one NaN that results show: quiet, positive, without a payload.
inline bool IsTheNan(double value) { return SameBits(value, std::numeric_limits<double>::quiet_NaN()); }

inline void ExpectAllNan(const KineFrame& frame)
{
    for (const auto element : kElements) EXPECT_TRUE(IsTheNan(frame.*element));
}

// The type of external axis that a call wants.
inline int TypeFor(const PositionerCall& call)
{
    return call.run == kBaseCall.run ? kLinearType : kRotaryType;
}

// Unit 0 with two axes, both driven by external axis 0.
inline void StoreGoodUnit(const PositionerCall& call)
{
    SetUnitCounts(1, 6);
    StoreUnitWithAxes(0, {{0, TypeFor(call)}, {0, TypeFor(call)}});
}

// Good for this unit: a table that stands upright at (100, 200, 50) with its mark at 30 mm, or a mark beside
// a track.
inline PositionerRequest GoodRequest(const PositionerCall& call)
{
    PositionerRequest request;
    request.taught = call.run == kBaseCall.run
                         ? MarkBesideTrack(25.0, {700.0, -900.0, 400.0}, {0.0, 400.0, 1000.0}, 0)
                         : MarkOnTable(Shift(100.0, 200.0, 50.0), {30.0, 0.0, 0.0}, {0.0, 90.0, 180.0}, 0);
    request.reference = {10.0, 20.0, 30.0, 40.0, 50.0, 60.0};
    return request;
}

inline PositionerRequest SetUpGoodRequest(const PositionerCall& call)
{
    SetUpArm(WristArm());
    StoreGoodUnit(call);
    return GoodRequest(call);
}

}  // namespace kine::test
