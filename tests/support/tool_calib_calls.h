// The eight tool calibrations behind one face, so that the rules they share are tested on each. Every run
// checks that the taught poses keep their bits.
//
// The poses of a request are in the order of the call's arguments. Good poses are taught with the tool point
// kGoodTool at kGoodPoint, without error; the frame to be found by origin, Z point and X point is kGoodFrame.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <vector>

#include "KineDll.h"
#include "support/calib_results.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/taught_poses.h"

namespace kine::test {

struct ToolCalib
{
    const char* name;
    std::size_t poses;
    std::size_t touches;  // how many of them, from the first, go into the tool point
    bool reports;         // has an error report
    KineResult (*run)(const KinePose* const* p, KineFrame* frame, KineCalibError* error);
};

inline bool operator==(const ToolCalib& a, const ToolCalib& b) { return a.run == b.run; }

inline const ToolCalib kExt1P = {
    "Kine_CalcExtToolPrm_1P", 1, 0, false,
    [](const KinePose* const* p, KineFrame* f, KineCalibError*) { return Kine_CalcExtToolPrm_1P(p[0], f); }};
inline const ToolCalib kExt1PZX = {"Kine_CalcExtToolPrm_1PZX", 3, 0, false,
                                   [](const KinePose* const* p, KineFrame* f, KineCalibError*) {
                                       return Kine_CalcExtToolPrm_1PZX(p[0], p[1], p[2], f);
                                   }};
inline const ToolCalib kExt3P = {"Kine_CalcExtToolPrm_3P", 3, 3, true,
                                 [](const KinePose* const* p, KineFrame* f, KineCalibError* e) {
                                     return Kine_CalcExtToolPrm_3P(p[0], p[1], p[2], f, e);
                                 }};
inline const ToolCalib kExt3PZX = {
    "Kine_CalcExtToolPrm_3PZX", 6, 3, true, [](const KinePose* const* p, KineFrame* f, KineCalibError* e) {
        return Kine_CalcExtToolPrm_3PZX(p[0], p[1], p[2], p[3], p[4], p[5], f, e);
    }};
inline const ToolCalib kGrip3P = {"Kine_CalcGripToolPrm_3P", 3, 3, true,
                                  [](const KinePose* const* p, KineFrame* f, KineCalibError* e) {
                                      return Kine_CalcGripToolPrm_3P(p[0], p[1], p[2], f, e);
                                  }};
inline const ToolCalib kGrip3PZX = {
    "Kine_CalcGripToolPrm_3PZX", 6, 3, true, [](const KinePose* const* p, KineFrame* f, KineCalibError* e) {
        return Kine_CalcGripToolPrm_3PZX(p[0], p[1], p[2], p[3], p[4], p[5], f, e);
    }};
inline const ToolCalib kGrip5P = {"Kine_CalcGripToolPrm_5P", 5, 5, true,
                                  [](const KinePose* const* p, KineFrame* f, KineCalibError* e) {
                                      return Kine_CalcGripToolPrm_5P(p[0], p[1], p[2], p[3], p[4], f, e);
                                  }};
inline const ToolCalib kScara2P = {"Kine_CalcGripToolPrm_Scara2P", 2, 2, false,
                                   [](const KinePose* const* p, KineFrame* f, KineCalibError*) {
                                       return Kine_CalcGripToolPrm_Scara2P(p[0], p[1], f);
                                   }};

inline const std::vector<ToolCalib> kToolCalibs = {kExt1P,  kExt1PZX,  kExt3P,  kExt3PZX,
                                                   kGrip3P, kGrip3PZX, kGrip5P, kScara2P};
// Those that end in a frame of origin, Z point and X point.
inline const std::vector<ToolCalib> kFrameCalibs = {kExt1PZX, kExt3PZX, kGrip3PZX};

inline constexpr std::uint32_t kCalibArmTypes[] = {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110,
                                                   KINE_ARM_SIX_AXIS};
inline constexpr std::uint32_t kFlatArmTypes[] = {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110};

inline bool IsFlat(std::uint32_t armType) { return armType != KINE_ARM_SIX_AXIS; }

inline bool Serves(const ToolCalib& call, std::uint32_t armType)
{
    if (call == kGrip5P) return !IsFlat(armType);
    return call != kScara2P || IsFlat(armType);
}

// An arm of this type. Of a type that does not exist only the type is stored.
inline void UseArm(std::uint32_t armType)
{
    const bool exists =
        std::find(std::begin(kCalibArmTypes), std::end(kCalibArmTypes), armType) != std::end(kCalibArmTypes);
    const KineKinematicParam param = IsFlat(armType) ? Scara() : Puma();
    ASSERT_EQ(Kine_InitKinematicParam(armType, &param), exists ? KINE_OK : KINE_ERR_UNKNOWN_ARM_TYPE);
}

struct ToolCalibRequest
{
    std::vector<KinePose> poses;
    std::array<bool, 6> nullPose{};
    bool nullFrame = false;
    bool nullReport = false;
};

struct ToolCalibOutcome
{
    KineResult code;
    KineFrame frame;
    KineCalibError report;
};

inline ToolCalibOutcome Perform(const ToolCalib& call, const ToolCalibRequest& request)
{
    EXPECT_EQ(request.poses.size(), call.poses) << call.name;
    const std::vector<KinePose> taught = request.poses;
    std::array<const KinePose*, 6> addresses{};
    for (std::size_t i = 0; i < taught.size(); ++i) {
        addresses[i] = AddressUnless(request.nullPose[i], taught[i]);
    }
    ToolCalibOutcome outcome{0, Untouched<KineFrame>(), Untouched<KineCalibError>()};
    outcome.code = call.run(addresses.data(), request.nullFrame ? nullptr : &outcome.frame,
                            request.nullReport ? nullptr : &outcome.report);
    for (std::size_t i = 0; i < taught.size(); ++i) {
        EXPECT_TRUE(SameBits(taught[i], request.poses[i])) << call.name << " pose " << i;
    }
    EXPECT_TRUE(call.reports || IsUntouched(outcome.report)) << call.name;
    return outcome;
}

// The result of a call that succeeds; it writes all that it has to write.
inline ToolCalibOutcome Solved(const ToolCalib& call, const ToolCalibRequest& request)
{
    const ToolCalibOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, KINE_OK) << call.name << std::hex << " " << outcome.code;
    const bool expectReport = call.reports && !request.nullReport;
    EXPECT_EQ(IsUntouched(outcome.report), !expectReport) << call.name;
    EXPECT_FALSE(IsUntouched(outcome.frame)) << call.name;
    return outcome;
}

inline bool SameResult(const ToolCalibOutcome& a, const ToolCalibOutcome& b)
{
    return a.code == b.code && SameBits(a.frame, b.frame) && SameBits(a.report, b.report);
}

// A refusal: this code, and both result records keep every bit.
inline void ExpectRefused(const ToolCalib& call, const ToolCalibRequest& request, KineResult code)
{
    const ToolCalibOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, code) << call.name << std::hex << " " << outcome.code;
    EXPECT_TRUE(IsUntouched(outcome.frame)) << call.name;
    EXPECT_TRUE(IsUntouched(outcome.report)) << call.name;
}

// A refusal by the frame step: the three touching poses are solved, and their report is written.
inline void ExpectRefusedAfterReport(const ToolCalib& call, const ToolCalibRequest& request, KineResult code)
{
    const ToolCalibOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, code) << call.name << std::hex << " " << outcome.code;
    EXPECT_TRUE(IsUntouched(outcome.frame)) << call.name;
    const ToolCalibRequest touches{{request.poses.begin(), request.poses.begin() + 3}};
    EXPECT_TRUE(SameBits(outcome.report, Solved(kGrip3P, touches).report)) << call.name;
}

inline constexpr Point kGoodTool = {12.0, -7.0, 150.0};
inline constexpr Point kGoodPoint = {400.0, -250.0, 300.0};

// Orientations of an arm that can tilt its flange, and of one that cannot.
inline Angles AsFor(std::uint32_t armType, const Angles& angles)
{
    return IsFlat(armType) ? Angles{angles[0], 0.0, 0.0} : angles;
}

inline KineFrame GoodFrame(std::uint32_t armType)
{
    const Angles angles = AsFor(armType, {30.0, -40.0, 50.0});
    return {kGoodPoint[0], kGoodPoint[1], kGoodPoint[2], angles[0], angles[1], angles[2]};
}

// Touching orientations spread so that any two, three or five of them, counted from the first, determine the
// tool point well.
inline constexpr Angles kGoodTouchingAngles[] = {{20.0, 10.0, -30.0},
                                                 {-70.0, 35.0, 40.0},
                                                 {110.0, -25.0, 75.0},
                                                 {-150.0, 50.0, 10.0},
                                                 {60.0, -60.0, -100.0}};

inline ToolCalibRequest GoodRequest(const ToolCalib& call, std::uint32_t armType)
{
    ToolCalibRequest request;
    for (std::size_t i = 0; i < call.touches; ++i) {
        request.poses.push_back(TouchingPose(kGoodTool, kGoodPoint, AsFor(armType, kGoodTouchingAngles[i])));
    }
    const Mat4 frame = MatrixOf(GoodFrame(armType));
    // Without a tool point to be found, the positions themselves are the points.
    const Point tool = call.touches == 0 ? Point{} : kGoodTool;
    const auto teach = [&](const Point& inFrame, const Angles& angles) {
        request.poses.push_back(TouchingPose(tool, frame * inFrame, AsFor(armType, angles)));
    };
    if (call.poses > call.touches) teach({0.0, 0.0, 0.0}, {15.0, -20.0, 25.0});
    if (call.poses > call.touches + 1) {
        teach({0.0, 0.0, 60.0}, {-25.0, 5.0, 35.0});
        teach({45.0, 0.0, 10.0}, {80.0, 30.0, -5.0});
    }
    return request;
}

// Touching poses that solve to a tool of exactly (0, 0, 0), so that every pose after them has its tip at its
// own position to the last bit. A turn about Z leaves Z as it is: a step along Z says nothing about the tool,
// its share of the right-hand side is 0. The same holds for X; and, in the plane, for a step along X with a
// turn about X and one along Y with a turn about Y. Zeros of these matrices are exact where the angles are 0.
inline std::vector<KinePose> TouchesWithZeroTool(std::uint32_t armType)
{
    if (IsFlat(armType)) {
        return {TaughtPose({}), TaughtPose({30.0, 0.0, 0.0}, {0.0, 0.0, 90.0}),
                TaughtPose({0.0, 40.0, 0.0}, {0.0, 90.0, 0.0})};
    }
    return {TaughtPose({}), TaughtPose({0.0, 0.0, 30.0}, {90.0, 0.0, 0.0}),
            TaughtPose({40.0, 0.0, 0.0}, {0.0, 0.0, 90.0})};
}

inline ToolCalibRequest ZeroToolRequest(std::uint32_t armType, std::initializer_list<KinePose> further = {})
{
    ToolCalibRequest request{TouchesWithZeroTool(armType)};
    request.poses.insert(request.poses.end(), further);
    return request;
}

}  // namespace kine::test
