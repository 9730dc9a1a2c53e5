// What the conversions and offsets refuse, and in which order.
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

#include "support/cell_setup.h"
#include "support/pose_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

const char* const kLine = "IsLegalWobj,!pWobj->UFFix:2;\n";

void SetUpTwoUnits()
{
    SetUpArm(WristArm());
    SetUnitCounts(2, 6);
}

// One way of being refused. Faults of a lower place answer first.
struct Fault
{
    const char* name;
    int place;
    KineResult code;
    const char* printed;
    void (*make)(PoseRequest&);
};

std::vector<Fault> WobjFaults(int place)
{
    return {{"wobj null", place, KINE_ERR_WOBJ, "", [](PoseRequest& r) { r.nullWobj = true; }},
            {"user frame", place + 1, KINE_ERR_WOBJ, "", [](PoseRequest& r) { r.wobj.UFrame.B = 180.5; }},
            {"mechanical unit 0", place + 2, KINE_ERR_WOBJ, kLine,
             [](PoseRequest& r) {
                 r.wobj.UFFix = 0;
                 r.wobj.MechUnitIndex = 0;
             }},
            {"mechanical unit at the count", place + 2, KINE_ERR_WOBJ, kLine,
             [](PoseRequest& r) {
                 r.wobj.UFFix = 0;
                 r.wobj.MechUnitIndex = 2;
             }},
            {"object frame", place + 3, KINE_ERR_WOBJ, "", [](PoseRequest& r) { r.wobj.OFrame.C = -181.0; }}};
}

std::vector<Fault> PoseFaults(int place)
{
    return {{"pose null", place, KINE_ERR_POSE, "", [](PoseRequest& r) { r.nullPose = true; }},
            {"pose angle", place, KINE_ERR_POSE, "", [](PoseRequest& r) { r.pose.Frame.A = 181.0; }}};
}

std::vector<Fault> FlangeFaults(int place)
{
    return {{"flange null", place, KINE_ERR_POSE, "", [](PoseRequest& r) { r.nullFlange = true; }},
            {"flange angle", place, KINE_ERR_POSE, "", [](PoseRequest& r) { r.flange.Frame.C = -181.0; }}};
}

std::vector<Fault> OutFault(int place)
{
    return {{"out null", place, KINE_ERR_POSE, "", [](PoseRequest& r) { r.nullOut = true; }}};
}

std::vector<Fault> Join(std::initializer_list<std::vector<Fault>> parts)
{
    std::vector<Fault> all;
    for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

std::vector<Fault> FaultsOf(const PoseCall& call)
{
    if (call.run == kFixCall.run) {
        const std::vector<Fault> unfit = {
            {"on a unit", 4, KINE_ERR_WOBJ, "",
             [](PoseRequest& r) {
                 r.wobj.UFFix = 0;
                 r.wobj.MechUnitIndex = 1;
             }},
            {"held", 4, KINE_ERR_WOBJ, "", [](PoseRequest& r) { r.wobj.HeldByRobot = 1; }}};
        return Join({WobjFaults(0), unfit, PoseFaults(5), OutFault(6)});
    }
    if (call.run == kGripCall.run) {
        const std::vector<Fault> unfit = {
            {"not held", 4, KINE_ERR_WOBJ, "", [](PoseRequest& r) { r.wobj.HeldByRobot = 0; }}};
        return Join({WobjFaults(0), unfit, PoseFaults(5), FlangeFaults(6), OutFault(7)});
    }
    if (call.run == kGripBackCall.run) {
        return Join({WobjFaults(0), PoseFaults(5), FlangeFaults(6), OutFault(7)});
    }
    if (call.run == kCrdCall.run) {
        const std::vector<Fault> tool = {
            {"tool null", 1, KINE_ERR_TOOL, "", [](PoseRequest& r) { r.nullTool = true; }},
            {"tool angle", 1, KINE_ERR_TOOL, "", [](PoseRequest& r) { r.tool.TFrame.A = 181.0; }},
            {"tool load", 1, KINE_ERR_TOOL, "", [](PoseRequest& r) { r.tool.TLoad.Inertia[2] = -1e-9; }}};
        const std::vector<Fault> load = {
            {"load null", 6, KINE_ERR_LOAD, "", [](PoseRequest& r) { r.nullLoad = true; }}};
        const std::vector<Fault> inner = {
            {"held tool in mode -1", 8, KINE_ERR_CRD_WOBJ, "",
             [](PoseRequest& r) {
                 r.mode = -1;
                 r.tool.HeldByRobot = 1;
             }},
            {"neither held in mode -2", 8, KINE_ERR_HOLD_CONFLICT, "", [](PoseRequest& r) { r.mode = -2; }}};
        return Join({PoseFaults(0), tool, WobjFaults(2), load, OutFault(7), inner});
    }
    const std::vector<Fault> offset = {
        {"offset null", 1, KINE_ERR_OFFSET_FRAME, "", [](PoseRequest& r) { r.nullOffset = true; }},
        {"offset angle", 1, KINE_ERR_OFFSET_FRAME, "", [](PoseRequest& r) { r.offset.A = 181.0; }}};
    return Join({PoseFaults(0), offset, OutFault(2)});
}

// The angles that a call checks, with the code of their record.
struct CheckedFrame
{
    const PoseCall* call;
    KineResult code;
    KineFrame& (*frame)(PoseRequest&);
};

std::vector<CheckedFrame> CheckedFrames()
{
    const auto pose = [](PoseRequest& r) -> KineFrame& { return r.pose.Frame; };
    const auto flange = [](PoseRequest& r) -> KineFrame& { return r.flange.Frame; };
    const auto user = [](PoseRequest& r) -> KineFrame& { return r.wobj.UFrame; };
    const auto object = [](PoseRequest& r) -> KineFrame& { return r.wobj.OFrame; };
    const auto tool = [](PoseRequest& r) -> KineFrame& { return r.tool.TFrame; };
    const auto offset = [](PoseRequest& r) -> KineFrame& { return r.offset; };
    std::vector<CheckedFrame> frames;
    for (const PoseCall* call : {&kFixCall, &kGripCall, &kGripBackCall, &kCrdCall}) {
        frames.push_back({call, KINE_ERR_POSE, pose});
        frames.push_back({call, KINE_ERR_WOBJ, user});
        frames.push_back({call, KINE_ERR_WOBJ, object});
    }
    for (const PoseCall* call : {&kGripCall, &kGripBackCall}) frames.push_back({call, KINE_ERR_POSE, flange});
    frames.push_back({&kCrdCall, KINE_ERR_TOOL, tool});
    for (const PoseCall* call : {&kToolOffsetCall, &kWobjOffsetCall}) {
        frames.push_back({call, KINE_ERR_POSE, pose});
        frames.push_back({call, KINE_ERR_OFFSET_FRAME, offset});
    }
    return frames;
}

}  // namespace

TEST(conversion_checks, each_refusal_has_its_code_and_line_and_leaves_the_result)
{
    SetUpTwoUnits();
    for (const PoseCall& call : kPoseCalls) {
        Converted(call, GoodPoseRequest(call));
        for (const Fault& fault : FaultsOf(call)) {
            SCOPED_TRACE(fault.name);
            PoseRequest request = GoodPoseRequest(call);
            fault.make(request);
            ExpectRefused(call, request, fault.code, fault.printed);
        }
    }
}

TEST(conversion_checks, of_two_refusals_the_first_in_order_answers)
{
    SetUpTwoUnits();
    for (const PoseCall& call : kPoseCalls) {
        const std::vector<Fault> faults = FaultsOf(call);
        for (const Fault& first : faults) {
            for (const Fault& second : faults) {
                if (first.place >= second.place) continue;
                SCOPED_TRACE(std::string(first.name) + " and " + second.name);
                PoseRequest request = GoodPoseRequest(call);
                second.make(request);
                first.make(request);
                ExpectRefused(call, request, first.code, first.printed);
            }
        }
    }
}

TEST(conversion_checks, everything_wrong_gives_the_first_code)
{
    SetUpTwoUnits();
    for (const PoseCall& call : kPoseCalls) {
        const std::vector<Fault> faults = FaultsOf(call);
        PoseRequest request = GoodPoseRequest(call);
        for (auto fault = faults.rbegin(); fault != faults.rend(); ++fault) fault->make(request);
        ExpectRefused(call, request, faults.front().code, faults.front().printed);
    }
}

TEST(conversion_checks, angles_are_accepted_up_to_180_degrees)
{
    SetUpTwoUnits();
    const double justAbove = std::nextafter(180.0, kInf);
    for (const CheckedFrame& checked : CheckedFrames()) {
        for (const auto angle : kAngles) {
            for (const double sign : {1.0, -1.0}) {
                PoseRequest request = GoodPoseRequest(*checked.call);
                checked.frame(request).*angle = sign * 180.0;
                Converted(*checked.call, request);
                checked.frame(request).*angle = sign * std::nextafter(180.0, 0.0);
                Converted(*checked.call, request);
                for (const double beyond : {justAbove, 180.0000001, 181.0, 1e300, kInf}) {
                    checked.frame(request).*angle = sign * beyond;
                    ExpectRefused(*checked.call, request, checked.code);
                }
            }
            PoseRequest request = GoodPoseRequest(*checked.call);
            checked.frame(request).*angle = kNan;
            Converted(*checked.call, request);
        }
    }
}

TEST(conversion_checks, user_frame_angles_count_where_the_frame_is_ignored)
{
    SetUpTwoUnits();
    for (const PoseCall* call : {&kGripCall, &kGripBackCall, &kCrdCall}) {
        PoseRequest request = GoodPoseRequest(*call);
        request.wobj.UFFix = 0;
        request.wobj.MechUnitIndex = 1;
        Converted(*call, request);
        request.wobj.UFrame.A = 180.5;
        ExpectRefused(*call, request, KINE_ERR_WOBJ);
    }
}

TEST(conversion_checks, negative_unit_index_passes)
{
    SetUpTwoUnits();
    for (const PoseCall* call : {&kGripCall, &kGripBackCall, &kCrdCall}) {
        for (const int index : {-1, -128}) {
            PoseRequest request = GoodPoseRequest(*call);
            request.wobj.UFFix = 0;
            request.wobj.MechUnitIndex = static_cast<int8_t>(index);
            Converted(*call, request);
        }
    }
    PoseRequest request = GoodPoseRequest(kFixCall);
    request.wobj.UFFix = 0;
    request.wobj.MechUnitIndex = -1;
    ExpectRefused(kFixCall, request, KINE_ERR_WOBJ);
}

TEST(conversion_checks, refused_unit_index_is_printed_with_the_count)
{
    for (const uint32_t count : {0u, 1u, 3u}) {
        SetUpArm(WristArm());
        SetUnitCounts(count, 6);
        for (const PoseCall* call : {&kFixCall, &kGripCall, &kGripBackCall, &kCrdCall}) {
            PoseRequest request = GoodPoseRequest(*call);
            request.wobj.UFFix = 0;
            request.wobj.MechUnitIndex = static_cast<int8_t>(count);
            ExpectRefused(*call, request, KINE_ERR_WOBJ,
                          "IsLegalWobj,!pWobj->UFFix:" + std::to_string(count) + ";\n");
        }
    }
}

TEST(Kine_CrdPosToWobjPos, checks_records_in_every_mode_and_the_load_in_none)
{
    SetUpTwoUnits();
    for (const int32_t mode : {-1, -2, 0, 1, 77}) {
        for (const Fault& fault : FaultsOf(kCrdCall)) {
            if (fault.place > 7) continue;
            SCOPED_TRACE(fault.name);
            PoseRequest request = GoodPoseRequest(kCrdCall);
            request.mode = mode;
            fault.make(request);
            ExpectRefused(kCrdCall, request, fault.code, fault.printed);
        }
        PoseRequest request = GoodPoseRequest(kCrdCall);
        request.mode = mode;
        request.wobj.HeldByRobot = 1;  // fits a stationary tool in every mode
        const KinePose expected = Converted(kCrdCall, request);
        request.load.Mass = -1.0;
        request.load.Aom[1] = 500.0;
        request.load.Inertia[0] = -1.0;
        EXPECT_TRUE(SameBits(Converted(kCrdCall, request), expected)) << mode;
    }
}
