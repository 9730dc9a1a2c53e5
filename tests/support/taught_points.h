// The seven work-object calibrations behind one face, so that rules they share are tested on each, and the
// taught points they start from. Every run also checks that the inputs keep their bits.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "KineDll.h"
#include "support/cell_setup.h"
#include "support/numbers.h"
#include "support/pose_calls.h"
#include "support/records.h"
#include "support/rigid_matrix.h"
#include "support/sample_arms.h"
#include "support/stdout_capture.h"

namespace kine::test {

// Where SetUpPlainUnit puts a unit that stands at the world origin.
inline constexpr int32_t kPlainUnit = 1;

struct TaughtRequest
{
    std::array<KinePose, 3> points{};  // origin, X point, XY point; or three points of a circle
    KineFrame user{};
    int32_t unit = kPlainUnit;
    std::array<bool, 3> nullPoint{};
    bool nullUser = false;
    bool nullFrame = false;
    bool nullTilt = false;
};

// Where the records of one call lie. A call leaves what it has no argument for.
struct WobjArguments
{
    std::array<const KinePose*, 3> points;
    const KineFrame* user;
    int32_t unit;
    KineFrame* frame;
    double* tilt;
};

struct WobjCalib
{
    const char* name;
    std::size_t points;  // how many of the taught points it takes
    bool takesUser;
    KineResult (*run)(const WobjArguments& at);
};

inline bool operator==(const WobjCalib& a, const WobjCalib& b) { return a.run == b.run; }

inline const WobjCalib kUser2P = {"Kine_CalcExtWobj_UserPrm_2P", 2, false, [](const WobjArguments& at) {
                                      return Kine_CalcExtWobj_UserPrm_2P(at.points[0], at.points[1], at.frame,
                                                                         at.tilt);
                                  }};
inline const WobjCalib kExtUser3P = {"Kine_CalcExtWobj_UserPrm_3P", 3, false, [](const WobjArguments& at) {
                                         return Kine_CalcExtWobj_UserPrm_3P(at.points[0], at.points[1],
                                                                            at.points[2], at.frame, at.tilt);
                                     }};
inline const WobjCalib kGripUser3P = {"Kine_CalcGripWobj_UserPrm_3P", 3, false, [](const WobjArguments& at) {
                                          return Kine_CalcGripWobj_UserPrm_3P(
                                              at.points[0], at.points[1], at.points[2], at.frame, at.tilt);
                                      }};
inline const WobjCalib kCircle = {"Kine_CalcExtWobj_UserPrm_Cirle3P", 3, false, [](const WobjArguments& at) {
                                      return Kine_CalcExtWobj_UserPrm_Cirle3P(
                                          at.points[0], at.points[1], at.points[2], at.frame, at.tilt);
                                  }};
inline const WobjCalib kExtObject = {"Kine_CalcExtWobj_ObjPrm_3P", 3, true, [](const WobjArguments& at) {
                                         return Kine_CalcExtWobj_ObjPrm_3P(at.points[0], at.points[1],
                                                                           at.points[2], at.user, at.frame,
                                                                           at.tilt);
                                     }};
inline const WobjCalib kGripObject = {"Kine_CalcGripWobj_ObjPrm_3P", 3, true, [](const WobjArguments& at) {
                                          return Kine_CalcGripWobj_ObjPrm_3P(at.points[0], at.points[1],
                                                                             at.points[2], at.user, at.frame,
                                                                             at.tilt);
                                      }};
inline const WobjCalib kUnFixObject = {"Kine_CalcUnFixWobj_ObjPrm_3P", 3, false, [](const WobjArguments& at) {
                                           return Kine_CalcUnFixWobj_ObjPrm_3P(at.unit, at.points[0],
                                                                               at.points[1], at.points[2],
                                                                               at.frame, at.tilt);
                                       }};

inline const std::vector<WobjCalib> kWobjCalibs = {kUser2P,    kExtUser3P,  kGripUser3P, kCircle,
                                                   kExtObject, kGripObject, kUnFixObject};
// Those that end in the same solution by origin, X point and XY point.
inline const std::vector<WobjCalib> kThreePointCalibs = {kExtUser3P, kGripUser3P, kExtObject, kGripObject,
                                                         kUnFixObject};

struct WobjOutcome
{
    KineResult code;
    KineFrame frame;
    double tilt;
    bool untouched;  // frame and tilt kept every bit
};

inline WobjOutcome Perform(const WobjCalib& call, const TaughtRequest& request)
{
    const TaughtRequest given = request;
    WobjOutcome outcome{0, Untouched<KineFrame>(), Untouched<double>(), false};
    outcome.code = call.run({{AddressUnless(given.nullPoint[0], given.points[0]),
                              AddressUnless(given.nullPoint[1], given.points[1]),
                              AddressUnless(given.nullPoint[2], given.points[2])},
                             AddressUnless(given.nullUser, given.user),
                             given.unit,
                             given.nullFrame ? nullptr : &outcome.frame,
                             given.nullTilt ? nullptr : &outcome.tilt});
    outcome.untouched = IsUntouched(outcome.frame) && IsUntouched(outcome.tilt);
    for (std::size_t i = 0; i < given.points.size(); ++i) {
        EXPECT_TRUE(SameBits(given.points[i], request.points[i])) << call.name << " point " << i;
    }
    EXPECT_TRUE(SameBits(given.user, request.user)) << call.name;
    return outcome;
}

// The result of a call that succeeds.
inline WobjOutcome Calibrated(const WobjCalib& call, const TaughtRequest& request)
{
    const WobjOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, KINE_OK) << call.name << std::hex << " " << outcome.code;
    return outcome;
}

inline bool SameResult(const WobjOutcome& a, const WobjOutcome& b)
{
    return a.code == b.code && SameBits(a.frame, b.frame) && SameBits(a.tilt, b.tilt);
}

// A refusal: this code, nothing printed, and results that keep every bit.
inline void ExpectRefused(const WobjCalib& call, const TaughtRequest& request, KineResult code)
{
    WobjOutcome outcome{};
    EXPECT_EQ(PrintedBy([&] { outcome = Perform(call, request); }), "") << call.name;
    EXPECT_EQ(outcome.code, code) << call.name << std::hex << " " << outcome.code;
    EXPECT_TRUE(outcome.untouched) << call.name;
}

// A pose at a point. Its angles and configuration are no part of the point.
inline KinePose TaughtAt(double x, double y, double z)
{
    KinePose pose{};
    pose.Frame = {x, y, z, 12.5, -33.0, 170.0};
    pose.Cfg1 = -3;
    pose.Cfg4 = 5;
    return pose;
}

// The same at a point given in a frame.
inline KinePose TaughtIn(const Mat4& frame, double x, double y, double z)
{
    const Mat4 at = frame * Shift(x, y, z);
    return TaughtAt(at[0][3], at[1][3], at[2][3]);
}

inline TaughtRequest Points(const KinePose& first, const KinePose& second, const KinePose& third = {})
{
    TaughtRequest request;
    request.points = {first, second, third};
    return request;
}

// Origin, a point on X and a point in the XY plane on the side of Y of a frame, at distances of any size that
// a part has.
inline TaughtRequest PointsOf(const Mat4& frame, SeededRandom& random)
{
    const double along = random.Uniform(50.0, 500.0);
    const double x = random.Uniform(-300.0, 300.0);
    const double y = random.Uniform(50.0, 500.0);
    return Points(TaughtIn(frame, 0.0, 0.0, 0.0), TaughtIn(frame, along, 0.0, 0.0),
                  TaughtIn(frame, x, y, 0.0));
}

// A request that every call accepts, with the plain unit set up.
inline TaughtRequest GoodTaughtRequest()
{
    TaughtRequest request =
        Points(TaughtAt(100.0, -50.0, 30.0), TaughtAt(160.0, -45.0, 35.0), TaughtAt(95.0, 20.0, 10.0));
    request.user = {40.0, 50.0, 60.0, 25.0, -35.0, 45.0};
    return request;
}

// The angle between Z of a frame and Z of the frame it is given in.
inline double TiltOf(const Mat4& m) { return std::atan2(std::hypot(m[0][2], m[1][2]), m[2][2]); }

// The cosine of a tilt is exact to rounding; the tilt itself is where it is not close to 0 or half a turn.
inline void ExpectTilt(double actual, const Mat4& frame)
{
    EXPECT_NEAR(std::cos(actual), frame[2][2], 1e-12);
    EXPECT_NEAR(actual, TiltOf(frame), 1e-7);
}

// Whether the angles are the given ones up to whole turns; they lie within +-180 in any case.
inline void ExpectFrameUpToTurns(const KineFrame& actual, const KineFrame& expected, double tolerance = 1e-9)
{
    EXPECT_NEAR(actual.X, expected.X, tolerance);
    EXPECT_NEAR(actual.Y, expected.Y, tolerance);
    EXPECT_NEAR(actual.Z, expected.Z, tolerance);
    for (const auto angle : kAngles) {
        EXPECT_NEAR(std::remainder(actual.*angle - expected.*angle, 360.0), 0.0, tolerance);
        EXPECT_LE(std::fabs(actual.*angle), 180.0);
    }
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
