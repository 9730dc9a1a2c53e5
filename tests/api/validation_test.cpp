// The rules by which records are refused, on every field and through every call that takes the record.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/numbers.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr double kDenormal = std::numeric_limits<double>::denorm_min();

struct Field
{
    std::string name;
    std::function<double*(Request&)> in;
    KineResult code;
};

void AddAngles(std::vector<Field>& fields, const std::string& record,
               const std::function<KineFrame*(Request&)>& frame, KineResult code)
{
    fields.push_back({record + ".A", [frame](Request& r) { return &frame(r)->A; }, code});
    fields.push_back({record + ".B", [frame](Request& r) { return &frame(r)->B; }, code});
    fields.push_back({record + ".C", [frame](Request& r) { return &frame(r)->C; }, code});
}

// Every field that must lie within +-180 degrees. The target is an input of the inverse call only.
std::vector<Field> Angles(const ChainCall& call)
{
    std::vector<Field> fields;
    AddAngles(
        fields, "TFrame", [](Request& r) { return &r.tool.TFrame; }, KINE_ERR_TOOL);
    AddAngles(
        fields, "UFrame", [](Request& r) { return &r.wobj.UFrame; }, KINE_ERR_WOBJ);
    AddAngles(
        fields, "OFrame", [](Request& r) { return &r.wobj.OFrame; }, KINE_ERR_WOBJ);
    if (call.forward == nullptr) {
        AddAngles(
            fields, "target", [](Request& r) { return &r.target.Frame; }, KINE_ERR_POSE);
    }
    for (std::size_t i = 0; i < 3; ++i) {
        fields.push_back({"TLoad.Aom", [i](Request& r) { return &r.tool.TLoad.Aom[i]; }, KINE_ERR_TOOL});
        fields.push_back({"load.Aom", [i](Request& r) { return &r.load.Aom[i]; }, KINE_ERR_LOAD});
    }
    return fields;
}

// Every field that must not be negative.
std::vector<Field> Amounts()
{
    std::vector<Field> fields = {{"TLoad.Mass", [](Request& r) { return &r.tool.TLoad.Mass; }, KINE_ERR_TOOL},
                                 {"load.Mass", [](Request& r) { return &r.load.Mass; }, KINE_ERR_LOAD}};
    for (std::size_t i = 0; i < 3; ++i) {
        fields.push_back(
            {"TLoad.Inertia", [i](Request& r) { return &r.tool.TLoad.Inertia[i]; }, KINE_ERR_TOOL});
        fields.push_back({"load.Inertia", [i](Request& r) { return &r.load.Inertia[i]; }, KINE_ERR_LOAD});
    }
    return fields;
}

// Every field of the records that no rule looks at.
std::vector<Field> Unchecked()
{
    std::vector<Field> fields;
    for (double KineFrame::*position : {&KineFrame::X, &KineFrame::Y, &KineFrame::Z}) {
        fields.push_back({"TFrame", [=](Request& r) { return &(r.tool.TFrame.*position); }, 0});
        fields.push_back({"UFrame", [=](Request& r) { return &(r.wobj.UFrame.*position); }, 0});
        fields.push_back({"OFrame", [=](Request& r) { return &(r.wobj.OFrame.*position); }, 0});
        fields.push_back({"target", [=](Request& r) { return &(r.target.Frame.*position); }, 0});
    }
    for (std::size_t i = 0; i < 3; ++i) {
        fields.push_back({"TLoad.Cog", [i](Request& r) { return &r.tool.TLoad.Cog[i]; }, 0});
        fields.push_back({"load.Cog", [i](Request& r) { return &r.load.Cog[i]; }, 0});
    }
    for (std::size_t i = 0; i < 8; ++i) {
        fields.push_back({"joints.Axis", [i](Request& r) { return &r.joints.Axis[i]; }, 0});
    }
    for (std::size_t i = 0; i < 6; ++i) {
        fields.push_back({"joints.ExtAxis", [i](Request& r) { return &r.joints.ExtAxis[i]; }, 0});
        fields.push_back({"target.ExtAxis", [i](Request& r) { return &r.target.ExtAxis[i]; }, 0});
    }
    return fields;
}

// Not refused as a record. The forward calls then succeed; the inverse may find that no joints fit.
void ExpectAccepted(const ChainCall& call, const Request& request)
{
    const Outcome outcome = Perform(call, request);
    if (call.forward != nullptr) {
        EXPECT_EQ(outcome.code, KINE_OK) << std::hex << outcome.code;
    } else {
        EXPECT_TRUE(outcome.code == KINE_OK || outcome.code >= KINE_ERR_SINGULAR) << std::hex << outcome.code;
    }
}

void SetUpCell()
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    for (int index = 0; index < 3; ++index) {
        StoreUnit(index, RotaryUnit({500.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0));
    }
}

}  // namespace

TEST(angles, up_to_180_degrees_and_nan_are_accepted)
{
    SetUpCell();
    for (const ChainCall& call : kChainCalls) {
        for (const Field& field : Angles(call)) {
            SCOPED_TRACE(std::string(call.name) + " " + field.name);
            for (const double angle :
                 {0.0, -0.0, 90.0, 180.0, -180.0, 179.9999999, -179.9999999, kNan, -kNan}) {
                Request request = PlainRequest();
                *field.in(request) = angle;
                ExpectAccepted(call, request);
            }
        }
    }
}

TEST(angles, beyond_180_degrees_are_refused_with_the_code_of_the_record)
{
    SetUpCell();
    for (const ChainCall& call : kChainCalls) {
        for (const Field& field : Angles(call)) {
            SCOPED_TRACE(field.name);
            for (const double angle : {180.0000001, -180.0000001, std::nextafter(180.0, 200.0),
                                       std::nextafter(-180.0, -200.0), 360.0, 1e300, kInf, -kInf}) {
                Request request = PlainRequest();
                *field.in(request) = angle;
                ExpectRefused(call, request, field.code, "");
            }
        }
    }
}

TEST(angles, of_the_target_of_Kine_IsArmTypeValid)
{
    SetUpCell();
    for (double KineFrame::*angle : {&KineFrame::A, &KineFrame::B, &KineFrame::C}) {
        KinePose pose{};
        for (const double inside : {180.0, -180.0, kNan, 0.0}) {
            pose.Frame.*angle = inside;
            EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_OK) << inside;
        }
        for (const double outside : {180.0000001, -180.0000001, std::nextafter(180.0, 200.0), kInf, -kInf}) {
            pose.Frame.*angle = outside;
            EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_POSE) << outside;
        }
    }
}

TEST(mass_and_inertia, from_zero_up_and_nan_are_accepted)
{
    SetUpCell();
    for (const ChainCall& call : kChainCalls) {
        for (const Field& field : Amounts()) {
            SCOPED_TRACE(std::string(call.name) + " " + field.name);
            for (const double amount : {0.0, -0.0, kDenormal, 1.0, 1e300, kInf, kNan, -kNan}) {
                Request request = PlainRequest();
                *field.in(request) = amount;
                ExpectAccepted(call, request);
            }
        }
    }
}

TEST(mass_and_inertia, below_zero_are_refused_with_the_code_of_the_record)
{
    SetUpCell();
    for (const ChainCall& call : kChainCalls) {
        for (const Field& field : Amounts()) {
            SCOPED_TRACE(field.name);
            for (const double amount : {-kDenormal, -0.0001, -1.0, -1e300, -kInf}) {
                Request request = PlainRequest();
                *field.in(request) = amount;
                ExpectRefused(call, request, field.code, "");
            }
        }
    }
}

TEST(other_fields, may_hold_any_number)
{
    SetUpCell();
    for (const ChainCall& call : kChainCalls) {
        for (const Field& field : Unchecked()) {
            SCOPED_TRACE(std::string(call.name) + " " + field.name);
            for (const double value : {kNan, kInf, -kInf, 1e308, -1e308, kDenormal, -0.0}) {
                Request request = PlainRequest();
                *field.in(request) = value;
                ExpectAccepted(call, request);
            }
        }
    }
}

TEST(work_object, with_a_fixed_user_frame_may_name_any_unit)
{
    SetUpCell();
    for (int index = -128; index < 128; ++index) {
        Request request = PlainRequest();
        request.wobj.MechUnitIndex = static_cast<int8_t>(index);
        for (const ChainCall& call : kChainCalls) ExpectAccepted(call, request);
    }
}

TEST(work_object, on_a_unit_needs_an_index_from_1_to_below_the_count)
{
    for (uint32_t count = 0; count <= 3; ++count) {
        SetUpCell();
        SetUnitCounts(count, 6);
        const std::string line = "IsLegalWobj,!pWobj->UFFix:" + std::to_string(count) + ";\n";
        for (const int index : {0, 1, 2, 3, 4, 127}) {
            SCOPED_TRACE(::testing::Message() << "index " << index << ", count " << count);
            Request request = PlainRequest();
            request.wobj = WobjOnUnit(index);
            const bool legal = index != 0 && index < static_cast<int>(count);
            for (const ChainCall& call : kChainCalls) {
                if (legal) {
                    ExpectAccepted(call, request);
                } else {
                    ExpectRefused(call, request, KINE_ERR_WOBJ, line);
                }
            }
        }
    }
}

TEST(work_object, held_by_the_robot_is_held_to_the_same_index)
{
    SetUpCell();
    Request request = PlainRequest();
    request.tool.HeldByRobot = 0;
    request.wobj = WobjOnUnit(3);
    request.wobj.HeldByRobot = 1;
    for (const ChainCall& call : kChainCalls) {
        ExpectRefused(call, request, KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:3;\n");
    }
    request.wobj.MechUnitIndex = 2;
    for (const ChainCall& call : kChainCalls) ExpectAccepted(call, request);
}

TEST(work_object, user_frame_angles_count_even_where_the_frame_is_ignored)
{
    SetUpCell();
    for (const uint8_t byte : {uint8_t{0}, uint8_t{2}}) {
        Request request = PlainRequest();
        request.wobj = WobjOnUnit(1);
        request.wobj.UFFix = byte;
        request.wobj.UFrame.C = 180.0000001;
        for (const ChainCall& call : kChainCalls) ExpectRefused(call, request, KINE_ERR_WOBJ, "");
    }
}

TEST(work_object, refused_user_frame_comes_before_the_index_and_prints_nothing)
{
    SetUpCell();
    Request request = PlainRequest();
    request.wobj = WobjOnUnit(0);
    request.wobj.UFrame.A = -181.0;
    for (const ChainCall& call : kChainCalls) ExpectRefused(call, request, KINE_ERR_WOBJ, "");
}

TEST(work_object, index_comes_before_the_object_frame)
{
    SetUpCell();
    Request request = PlainRequest();
    request.wobj = WobjOnUnit(0);
    request.wobj.OFrame.A = -181.0;
    for (const ChainCall& call : kChainCalls) {
        ExpectRefused(call, request, KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:3;\n");
    }
    // With a good index, or one that is not tested, the object frame decides without a line.
    for (const int index : {1, -1}) {
        request.wobj.MechUnitIndex = static_cast<int8_t>(index);
        for (const ChainCall& call : kChainCalls) ExpectRefused(call, request, KINE_ERR_WOBJ, "");
    }
    request.wobj.MechUnitIndex = 0;
    request.wobj.UFFix = 2;
    for (const ChainCall& call : kChainCalls) ExpectRefused(call, request, KINE_ERR_WOBJ, "");
}

TEST(hold, equal_bytes_are_0x6016_without_a_line)
{
    SetUpCell();
    for (const uint8_t byte : {uint8_t{0}, uint8_t{1}, uint8_t{2}, uint8_t{255}}) {
        Request request = PlainRequest();
        request.tool.HeldByRobot = byte;
        request.wobj.HeldByRobot = byte;
        for (const ChainCall& call : kChainCalls) ExpectRefused(call, request, KINE_ERR_HOLD, "");
    }
}

TEST(hold, different_bytes_that_are_both_set_are_0x6050)
{
    SetUpCell();
    for (const auto& [tool, wobj] : {std::pair<int, int>{1, 2}, std::pair<int, int>{2, 1},
                                     std::pair<int, int>{255, 254}, std::pair<int, int>{128, 1}}) {
        Request request = PlainRequest();
        request.tool.HeldByRobot = static_cast<uint8_t>(tool);
        request.wobj.HeldByRobot = static_cast<uint8_t>(wobj);
        for (const ChainCall& call : kForwardCalls) {
            ExpectRefused(call, request, KINE_ERR_HOLD_CONFLICT, "FK Error 2:24656\n");
        }
        ExpectRefused(kInverseCall, request, KINE_ERR_HOLD_CONFLICT, "IK error 0:24656\n");
    }
}
