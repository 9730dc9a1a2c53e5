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

inline const ChainCall kInverseCall = {"Kine_WobjPosToJoint", nullptr};

inline const std::array<ChainCall, 5> kChainCalls = {
    {kForwardCalls[0], kForwardCalls[1], kForwardCalls[2], kForwardCalls[3], kInverseCall}};

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
