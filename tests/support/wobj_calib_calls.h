// The seven work-object calibrations behind one face, so that rules they share are tested on each, and the
// taught points they start from. Every run also checks that the inputs keep their bits.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "KineDll.h"
#include "support/calib_results.h"
#include "support/cell_setup.h"
#include "support/random_records.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/stdout_capture.h"
#include "support/taught_poses.h"

namespace kine::test {

// Where SetUpPlainUnit puts a unit that stands at the world origin.
inline constexpr int32_t kPlainUnit = 1;

struct WobjCalibRequest
{
    ThreePoses poses{};  // origin, X point, XY point; or three points of a circle
    KineFrame user{};
    int32_t unit = kPlainUnit;
    std::array<bool, 3> nullPose{};
    bool nullUser = false;
    bool nullFrame = false;
    bool nullTilt = false;
};

// Where the records of one call lie. A call leaves what it has no argument for.
struct WobjArguments
{
    std::array<const KinePose*, 3> poses;
    const KineFrame* user;
    int32_t unit;
    KineFrame* frame;
    double* tilt;
};

struct WobjCalib
{
    const char* name;
    std::size_t poses;  // how many of them it takes
    bool takesUser;
    KineResult (*run)(const WobjArguments& at);
};

inline bool operator==(const WobjCalib& a, const WobjCalib& b) { return a.run == b.run; }

inline const WobjCalib kUser2P = {"Kine_CalcExtWobj_UserPrm_2P", 2, false, [](const WobjArguments& at) {
                                      return Kine_CalcExtWobj_UserPrm_2P(at.poses[0], at.poses[1], at.frame,
                                                                         at.tilt);
                                  }};
inline const WobjCalib kExtUser3P = {"Kine_CalcExtWobj_UserPrm_3P", 3, false, [](const WobjArguments& at) {
                                         return Kine_CalcExtWobj_UserPrm_3P(at.poses[0], at.poses[1],
                                                                            at.poses[2], at.frame, at.tilt);
                                     }};
inline const WobjCalib kGripUser3P = {"Kine_CalcGripWobj_UserPrm_3P", 3, false, [](const WobjArguments& at) {
                                          return Kine_CalcGripWobj_UserPrm_3P(at.poses[0], at.poses[1],
                                                                              at.poses[2], at.frame, at.tilt);
                                      }};
inline const WobjCalib kCircle = {"Kine_CalcExtWobj_UserPrm_Cirle3P", 3, false, [](const WobjArguments& at) {
                                      return Kine_CalcExtWobj_UserPrm_Cirle3P(at.poses[0], at.poses[1],
                                                                              at.poses[2], at.frame, at.tilt);
                                  }};
inline const WobjCalib kExtObject = {
    "Kine_CalcExtWobj_ObjPrm_3P", 3, true, [](const WobjArguments& at) {
        return Kine_CalcExtWobj_ObjPrm_3P(at.poses[0], at.poses[1], at.poses[2], at.user, at.frame, at.tilt);
    }};
inline const WobjCalib kGripObject = {
    "Kine_CalcGripWobj_ObjPrm_3P", 3, true, [](const WobjArguments& at) {
        return Kine_CalcGripWobj_ObjPrm_3P(at.poses[0], at.poses[1], at.poses[2], at.user, at.frame, at.tilt);
    }};
inline const WobjCalib kUnFixObject = {"Kine_CalcUnFixWobj_ObjPrm_3P", 3, false, [](const WobjArguments& at) {
                                           return Kine_CalcUnFixWobj_ObjPrm_3P(at.unit, at.poses[0],
                                                                               at.poses[1], at.poses[2],
                                                                               at.frame, at.tilt);
                                       }};

inline const std::vector<WobjCalib> kWobjCalibs = {kUser2P,    kExtUser3P,  kGripUser3P, kCircle,
                                                   kExtObject, kGripObject, kUnFixObject};
// Those that end in the same solution by origin, X point and XY point.
inline const std::vector<WobjCalib> kThreePointCalibs = {kExtUser3P, kGripUser3P, kExtObject, kGripObject,
                                                         kUnFixObject};

struct WobjCalibOutcome
{
    KineResult code;
    KineFrame frame;
    double tilt;
};

// Whether frame and tilt kept every bit.
inline bool IsUntouched(const WobjCalibOutcome& outcome)
{
    return IsUntouched(outcome.frame) && IsUntouched(outcome.tilt);
}

inline bool HoldsOnlyTheNan(const WobjCalibOutcome& outcome)
{
    return HoldsOnlyTheNan(outcome.frame) && IsNumberOrTheNan(outcome.tilt);
}

inline WobjCalibOutcome Perform(const WobjCalib& call, const WobjCalibRequest& request)
{
    const WobjCalibRequest given = request;
    WobjCalibOutcome outcome{0, Untouched<KineFrame>(), Untouched<double>()};
    outcome.code = call.run(
        {{AddressUnless(given.nullPose[0], given.poses[0]), AddressUnless(given.nullPose[1], given.poses[1]),
          AddressUnless(given.nullPose[2], given.poses[2])},
         AddressUnless(given.nullUser, given.user),
         given.unit,
         given.nullFrame ? nullptr : &outcome.frame,
         given.nullTilt ? nullptr : &outcome.tilt});
    for (std::size_t i = 0; i < given.poses.size(); ++i) {
        EXPECT_TRUE(SameBits(given.poses[i], request.poses[i])) << call.name << " pose " << i;
    }
    EXPECT_TRUE(SameBits(given.user, request.user)) << call.name;
    return outcome;
}

// The result of a call that succeeds.
inline WobjCalibOutcome Solved(const WobjCalib& call, const WobjCalibRequest& request)
{
    const WobjCalibOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, KINE_OK) << call.name << std::hex << " " << outcome.code;
    return outcome;
}

inline bool SameResult(const WobjCalibOutcome& a, const WobjCalibOutcome& b)
{
    return a.code == b.code && SameBits(a.frame, b.frame) && SameBits(a.tilt, b.tilt);
}

// A refusal: this code, nothing printed, and results that keep every bit.
inline void ExpectRefused(const WobjCalib& call, const WobjCalibRequest& request, KineResult code)
{
    WobjCalibOutcome outcome{};
    EXPECT_EQ(PrintedBy([&] { outcome = Perform(call, request); }), "") << call.name;
    EXPECT_EQ(outcome.code, code) << call.name << std::hex << " " << outcome.code;
    EXPECT_TRUE(IsUntouched(outcome)) << call.name;
}

// Success, or a refusal.
inline void ExpectCode(const WobjCalib& call, const WobjCalibRequest& request, KineResult code)
{
    if (code == KINE_OK) {
        Solved(call, request);
    } else {
        ExpectRefused(call, request, code);
    }
}

inline WobjCalibRequest Points(const Point& first, const Point& second, const Point& third = {})
{
    WobjCalibRequest request;
    request.poses = TaughtPoints(first, second, third);
    return request;
}

// Origin, a point on X and a point in the XY plane on the side of Y of a frame, at distances of any size that
// a part has.
inline WobjCalibRequest PointsOf(const Mat4& frame, SeededRandom& random)
{
    const double along = random.Uniform(50.0, 500.0);
    const double x = random.Uniform(-300.0, 300.0);
    const double y = random.Uniform(50.0, 500.0);
    return Points(PositionOf(frame), frame * Point{along, 0.0, 0.0}, frame * Point{x, y, 0.0});
}

// A request that every call accepts, with the plain unit set up.
inline WobjCalibRequest GoodWobjRequest()
{
    WobjCalibRequest request = Points({100.0, -50.0, 30.0}, {160.0, -45.0, 35.0}, {95.0, 20.0, 10.0});
    request.user = {40.0, 50.0, 60.0, 25.0, -35.0, 45.0};
    return request;
}

// The first number of an interval for which a condition holds that no number below it fulfils and every
// number above it does.
template <class Condition>
double FirstNumber(double below, double above, Condition holds)
{
    while (JustAbove(below) < above) {
        double middle = below + 0.5 * (above - below);
        if (middle <= below || middle >= above) middle = JustAbove(below);
        (holds(middle) ? above : below) = middle;
    }
    return above;
}

// An initialised arm and one usable unit whose axis frame is the world, at external axis 0 of value 0.
inline void SetUpPlainUnit()
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    StoreUnit(kPlainUnit, LinearUnit({}, {}, 0));
}

}  // namespace kine::test
