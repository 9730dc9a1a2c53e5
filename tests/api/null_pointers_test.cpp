// Null pointers in every place of the calls through the chains.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

struct NullArgument
{
    const char* name;
    bool Request::*flag;
    KineResult code;
};

// In the order of the checks.
std::vector<NullArgument> NullsOf(const ChainCall& call)
{
    if (call.forward == nullptr) {
        return {{"tool", &Request::nullTool, KINE_ERR_TOOL},
                {"wobj", &Request::nullWobj, KINE_ERR_WOBJ},
                {"load", &Request::nullLoad, KINE_ERR_LOAD},
                {"target", &Request::nullTarget, KINE_ERR_POSE},
                {"joints", &Request::nullResult, KINE_ERR_JOINT}};
    }
    return {{"joints", &Request::nullJoints, KINE_ERR_JOINT},
            {"tool", &Request::nullTool, KINE_ERR_TOOL},
            {"wobj", &Request::nullWobj, KINE_ERR_WOBJ},
            {"load", &Request::nullLoad, KINE_ERR_LOAD},
            {"pose", &Request::nullResult, KINE_ERR_POSE}};
}

Request GoodRequest()
{
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    return request;
}

}  // namespace

TEST(null_pointer, gives_the_code_of_its_record_without_a_line_in_any_state)
{
    for (const bool initialised : {true, false}) {
        if (initialised) {
            SetUpArm(WristArm());
        } else {
            SetUpRefusedArm();
        }
        for (const ChainCall& call : kChainCalls) {
            for (const NullArgument& null : NullsOf(call)) {
                SCOPED_TRACE(null.name);
                Request request = GoodRequest();
                request.*null.flag = true;
                ExpectRefused(call, request, null.code, "");
            }
        }
    }
}

TEST(null_pointer, first_of_two_answers)
{
    SetUpArm(WristArm());
    for (const ChainCall& call : kChainCalls) {
        const std::vector<NullArgument> nulls = NullsOf(call);
        for (std::size_t first = 0; first < nulls.size(); ++first) {
            for (std::size_t second = first + 1; second < nulls.size(); ++second) {
                SCOPED_TRACE(std::string(nulls[first].name) + " and " + nulls[second].name);
                Request request = GoodRequest();
                request.*nulls[first].flag = true;
                request.*nulls[second].flag = true;
                ExpectRefused(call, request, nulls[first].code, "");
            }
        }
    }
}

TEST(null_pointer, everywhere_gives_the_first_code)
{
    SetUpArm(WristArm());
    for (const ChainCall& call : kChainCalls) {
        Request request;
        for (const NullArgument& null : NullsOf(call)) request.*null.flag = true;
        ExpectRefused(call, request, NullsOf(call).front().code, "");
    }
}

// A null is refused at its record's own place: after an earlier bad record, before a later one.
TEST(null_pointer, stands_at_the_place_of_its_record)
{
    SetUpArm(WristArm());
    for (const ChainCall& call : kChainCalls) {
        Request request = GoodRequest();
        request.nullWobj = true;
        request.tool.TFrame.A = 181.0;
        ExpectRefused(call, request, KINE_ERR_TOOL, "");
        request = GoodRequest();
        request.nullTool = true;
        request.wobj = WobjOnUnit(0);  // would print a line
        ExpectRefused(call, request, KINE_ERR_TOOL, "");
        request = GoodRequest();
        request.nullWobj = true;
        request.load.Mass = -1.0;
        ExpectRefused(call, request, KINE_ERR_WOBJ, "");
        request = GoodRequest();
        request.nullLoad = true;
        request.wobj = WobjOnUnit(0);
        ExpectRefused(call, request, KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:0;\n");
        request = GoodRequest();
        request.nullLoad = true;
        request.wobj.HeldByRobot = 1;
        ExpectRefused(call, request, KINE_ERR_LOAD, "");
    }
    Request request = GoodRequest();
    request.nullTarget = true;
    request.load.Mass = -1.0;
    ExpectRefused(kInverseCall, request, KINE_ERR_LOAD, "");
    request = GoodRequest();
    request.nullTarget = true;
    request.wobj.HeldByRobot = 1;
    ExpectRefused(kInverseCall, request, KINE_ERR_POSE, "");
}

// A null result is refused after every check of the export and before the chain starts.
TEST(null_pointer, as_result_comes_after_the_hold_and_before_the_chain)
{
    SetUpRefusedArm();
    for (const ChainCall& call : kChainCalls) {
        const KineResult resultCode = NullsOf(call).back().code;
        Request request = GoodRequest();
        request.nullResult = true;
        request.wobj.HeldByRobot = 1;
        ExpectRefused(call, request, KINE_ERR_HOLD, "");
        request.wobj.HeldByRobot = 2;  // fails in the chain
        ExpectRefused(call, request, resultCode, "");
        request.wobj.HeldByRobot = 0;
        ExpectRefused(call, request, resultCode, "");
    }
}
