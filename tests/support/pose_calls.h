// The calls that turn a pose into a pose without an arm - four conversions, two offsets - behind one face, so
// that rules they share are tested on each. Every run also checks that the inputs keep their bits.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "KineDll.h"
#include "support/random_records.h"
#include "support/records.h"
#include "support/stdout_capture.h"

namespace kine::test {

struct PoseRequest
{
    KinePose pose{};
    KinePose flange{};
    KineFrame offset{};
    KineTool tool{};
    KineWobj wobj{};
    KineLoad load{};
    int32_t mode = 0;
    bool nullPose = false;
    bool nullFlange = false;
    bool nullOffset = false;
    bool nullTool = false;
    bool nullWobj = false;
    bool nullLoad = false;
    bool nullOut = false;
};

struct PoseCall
{
    const char* name;
    KineResult (*run)(const PoseRequest& request, KinePose* out);
};

inline KineResult RunFix(const PoseRequest& r, KinePose* out)
{
    return Kine_WorldPosToFixWobjPos(AddressUnless(r.nullPose, r.pose), AddressUnless(r.nullWobj, r.wobj),
                                     out);
}

inline KineResult RunGrip(const PoseRequest& r, KinePose* out)
{
    return Kine_WorldPosToGripWobjPos(AddressUnless(r.nullPose, r.pose), AddressUnless(r.nullWobj, r.wobj),
                                      AddressUnless(r.nullFlange, r.flange), out);
}

inline KineResult RunGripBack(const PoseRequest& r, KinePose* out)
{
    return Kine_GripWobjPosToWorldPos(AddressUnless(r.nullPose, r.pose), AddressUnless(r.nullWobj, r.wobj),
                                      AddressUnless(r.nullFlange, r.flange), out);
}

inline KineResult RunCrd(const PoseRequest& r, KinePose* out)
{
    return Kine_CrdPosToWobjPos(AddressUnless(r.nullPose, r.pose), r.mode, AddressUnless(r.nullTool, r.tool),
                                AddressUnless(r.nullWobj, r.wobj), AddressUnless(r.nullLoad, r.load), out);
}

inline KineResult RunToolOffset(const PoseRequest& r, KinePose* out)
{
    return Kine_ToolCoordOffset(AddressUnless(r.nullPose, r.pose), AddressUnless(r.nullOffset, r.offset),
                                out);
}

inline KineResult RunWobjOffset(const PoseRequest& r, KinePose* out)
{
    return Kine_WobjCoordOffset(AddressUnless(r.nullPose, r.pose), AddressUnless(r.nullOffset, r.offset),
                                out);
}

inline const PoseCall kFixCall = {"Kine_WorldPosToFixWobjPos", RunFix};
inline const PoseCall kGripCall = {"Kine_WorldPosToGripWobjPos", RunGrip};
inline const PoseCall kGripBackCall = {"Kine_GripWobjPosToWorldPos", RunGripBack};
inline const PoseCall kCrdCall = {"Kine_CrdPosToWobjPos", RunCrd};
inline const PoseCall kToolOffsetCall = {"Kine_ToolCoordOffset", RunToolOffset};
inline const PoseCall kWobjOffsetCall = {"Kine_WobjCoordOffset", RunWobjOffset};

inline const std::array<PoseCall, 6> kPoseCalls = {
    {kFixCall, kGripCall, kGripBackCall, kCrdCall, kToolOffsetCall, kWobjOffsetCall}};

struct PoseOutcome
{
    KineResult code;
    bool untouched;  // the result record kept every bit
    std::string printed;
    KinePose pose;
};

inline PoseOutcome Perform(const PoseCall& call, const PoseRequest& request)
{
    const PoseRequest given = request;
    PoseOutcome outcome{};
    outcome.pose = Untouched<KinePose>();
    outcome.printed =
        PrintedBy([&] { outcome.code = call.run(given, given.nullOut ? nullptr : &outcome.pose); });
    outcome.untouched = IsUntouched(outcome.pose);
    EXPECT_TRUE(SameBits(given.pose, request.pose)) << call.name;
    EXPECT_TRUE(SameBits(given.flange, request.flange)) << call.name;
    EXPECT_TRUE(SameBits(given.offset, request.offset)) << call.name;
    EXPECT_TRUE(SameBits(given.tool, request.tool)) << call.name;
    EXPECT_TRUE(SameBits(given.wobj, request.wobj)) << call.name;
    EXPECT_TRUE(SameBits(given.load, request.load)) << call.name;
    return outcome;
}

// The result of a call that succeeds and prints nothing.
inline KinePose Converted(const PoseCall& call, const PoseRequest& request)
{
    const PoseOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, KINE_OK) << call.name << std::hex << " " << outcome.code;
    EXPECT_EQ(outcome.printed, "") << call.name;
    return outcome.pose;
}

// A refusal: this code, this text, and a result record that keeps every bit.
inline void ExpectRefused(const PoseCall& call, const PoseRequest& request, KineResult code,
                          const std::string& printed = "")
{
    const PoseOutcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, code) << call.name << std::hex << " " << outcome.code;
    EXPECT_EQ(outcome.printed, printed) << call.name;
    EXPECT_TRUE(outcome.untouched) << call.name;
}

// A pose with values in every field.
inline KinePose FullPose(const KineFrame& frame)
{
    KinePose pose{};
    pose.Frame = frame;
    pose.Cfg1 = std::numeric_limits<int32_t>::min();
    pose.Cfg2 = -7;
    pose.Cfg3 = 123456789;
    pose.Cfg4 = std::numeric_limits<int32_t>::max();
    for (int i = 0; i < 6; ++i) pose.ExtAxis[i] = 10.5 * i - 20.0;
    return pose;
}

// Whether everything but the frame is the same, bit for bit.
inline bool SameBesideFrame(const KinePose& a, KinePose b)
{
    b.Frame = a.Frame;
    return SameBits(a, b);
}

// A request that every call accepts; the byte of the work object is the one that fits the call.
inline PoseRequest GoodPoseRequest(const PoseCall& call)
{
    PoseRequest request;
    request.pose = FullPose({700.0, -100.0, 900.0, 20.0, 30.0, 40.0});
    request.flange = FullPose({300.0, 250.0, 150.0, -15.0, 25.0, 35.0});
    request.offset = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    request.tool = StationaryTool({10.0, 20.0, 30.0, 40.0, 50.0, 60.0});
    request.wobj = FixedWobj({100.0, 200.0, 300.0, 70.0, -60.0, 50.0}, {5.0, 6.0, 7.0, 8.0, 9.0, 10.0});
    if (call.run == kGripCall.run || call.run == kGripBackCall.run) request.wobj.HeldByRobot = 1;
    request.load = MakeLoad(2.0, 3.0, 4.0, 5.0);
    return request;
}

}  // namespace kine::test
