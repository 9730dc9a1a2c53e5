// The five calls through the chains - four forward, one inverse - behind one face, so that rules they share
// are tested on each. Every run also checks that the inputs keep their bits.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "KineDll.h"
#include "support/records.h"
#include "support/stdout_capture.h"

namespace kine::test {

struct Request
{
    KineJoint joints{};  // of the forward calls
    KinePose target{};   // of the inverse call
    KineTool tool{};
    KineWobj wobj{};
    KineLoad load{};
    bool nullJoints = false;  // the input of the forward calls, see nullResult for the inverse call
    bool nullTarget = false;
    bool nullTool = false;
    bool nullWobj = false;
    bool nullLoad = false;
    bool nullResult = false;
};

// The same with the work object on the robot and the tool in the cell.
inline Request Swapped(Request request)
{
    request.tool.HeldByRobot = 0;
    request.wobj.HeldByRobot = 1;
    return request;
}

// Regular joints and a target in reach, with nothing on the tool and the work object at the origin.
inline Request PlainRequest()
{
    Request request;
    request.joints = MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0});
    request.target.Frame = {700.0, 100.0, 900.0, 20.0, 30.0, 40.0};
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    return request;
}

struct Outcome
{
    KineResult code;
    bool untouched;  // the result record kept every bit
    std::string printed;
    KinePose pose;     // result of the forward calls
    KineJoint joints;  // result of the inverse call
};

using ForwardCall = KineResult(KINE_CALL*)(const KineJoint*, const KineTool*, const KineWobj*,
                                           const KineLoad*, KinePose*);

struct ChainCall
{
    const char* name;
    ForwardCall forward;  // null for the inverse call
};

inline const std::array<ChainCall, 4> kForwardCalls = {{{"Kine_JointToBasePos", Kine_JointToBasePos},
                                                        {"Kine_JointToFlangePos", Kine_JointToFlangePos},
                                                        {"Kine_JointToWorldPos", Kine_JointToWorldPos},
                                                        {"Kine_JointToWobjPos", Kine_JointToWobjPos}}};

inline const ChainCall& kBase = kForwardCalls[0];
inline const ChainCall& kFlange = kForwardCalls[1];
inline const ChainCall& kWorld = kForwardCalls[2];
inline const ChainCall& kWobj = kForwardCalls[3];

inline const ChainCall kInverseCall = {"Kine_WobjPosToJoint", nullptr};

inline const std::array<ChainCall, 5> kChainCalls = {{kBase, kFlange, kWorld, kWobj, kInverseCall}};

inline Outcome Perform(const ChainCall& call, const Request& request)
{
    Request given = request;
    Outcome outcome{};
    outcome.pose = Untouched<KinePose>();
    outcome.joints = Untouched<KineJoint>();
    const KineTool* tool = given.nullTool ? nullptr : &given.tool;
    const KineWobj* wobj = given.nullWobj ? nullptr : &given.wobj;
    const KineLoad* load = given.nullLoad ? nullptr : &given.load;
    outcome.printed = PrintedBy([&] {
        outcome.code = call.forward != nullptr
                           ? call.forward(given.nullJoints ? nullptr : &given.joints, tool, wobj, load,
                                          given.nullResult ? nullptr : &outcome.pose)
                           : Kine_WobjPosToJoint(given.nullTarget ? nullptr : &given.target, tool, wobj, load,
                                                 given.nullResult ? nullptr : &outcome.joints);
    });
    outcome.untouched = IsUntouched(outcome.pose) && IsUntouched(outcome.joints);
    EXPECT_TRUE(SameBits(given.joints, request.joints)) << call.name;
    EXPECT_TRUE(SameBits(given.target, request.target)) << call.name;
    EXPECT_TRUE(SameBits(given.tool, request.tool)) << call.name;
    EXPECT_TRUE(SameBits(given.wobj, request.wobj)) << call.name;
    EXPECT_TRUE(SameBits(given.load, request.load)) << call.name;
    return outcome;
}

// A refusal: this code, this text, and a result record that keeps every bit.
inline void ExpectRefused(const ChainCall& call, const Request& request, KineResult code,
                          const std::string& printed)
{
    SCOPED_TRACE(call.name);
    const Outcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, code) << std::hex << outcome.code;
    EXPECT_EQ(outcome.printed, printed);
    EXPECT_TRUE(outcome.untouched);
}

}  // namespace kine::test
