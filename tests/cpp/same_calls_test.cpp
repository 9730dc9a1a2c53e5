// Every wrapper of KineDll.hpp against the call it wraps: the same code and the same bits, on random records
// of every arm, good ones and spoiled ones.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cpp/wrapped_calls.h"
#include "support/export_inputs.h"
#include "support/quiet_stdout.h"

using namespace kine::test;

namespace {

// A wrapper takes references: no record is missing.
std::vector<CallInputs> DrawWholeInputs(std::uint64_t seed, const TrialCell& cell)
{
    constexpr std::size_t kInputsPerCell = 60;
    SeededRandom random(seed);
    std::vector<CallInputs> inputs = DrawInputs(random, cell, kInputsPerCell);
    for (CallInputs& in : inputs) in.missing = 0;
    return inputs;
}

void SetUpWrapped(const TrialCell& cell)
{
    SetUpCell(cell, [](std::size_t place, const CallInputs& in) {
        CallResults out;
        MakeWrappedCall(place, in, out);
    });
}

// How often a wrapper was compared where the call succeeds, and where it is refused; and the first
// difference, told when standard output is back.
struct Comparison
{
    std::size_t succeeded[kExportCount];
    std::size_t refused[kExportCount];
    std::string difference;
};

void Compare(std::size_t place, const CallInputs& in, Comparison& found)
{
    CallResults direct;
    CallResults wrapped;
    MakeCallOverZeros(kExportCalls[place], in, direct);
    MakeWrappedCall(place, in, wrapped);
    ++(direct.code == KINE_OK ? found.succeeded : found.refused)[place];
    if (!SameResults(wrapped, direct) && found.difference.empty()) {
        found.difference = std::string(kExportCalls[place].name) + ", code " + std::to_string(direct.code) +
                           ", wrapped " + std::to_string(wrapped.code);
    }
}

// What is refused by these is a null pointer, which a wrapper cannot pass, or an arm that is not initialised.
bool AcceptsAnyRecord(std::string_view name)
{
    return name == "Kine_CalcZVec" || name == "Kine_SetAxisLimit" || name == "Kine_GetArmType" ||
           name == "Kine_FKineVision";
}

}  // namespace

TEST(wrapped_calls, stand_in_the_order_of_the_exports)
{
    for (std::size_t place = 0; place < kExportCount; ++place) {
        EXPECT_STREQ(kWrappedCalls[place].name, kExportCalls[place].name);
    }
}

TEST(wrapped_calls, give_the_code_and_the_bits_of_the_call)
{
    Comparison found{};
    {
        const QuietStdout quiet;
        std::uint64_t seed = 8801;
        for (const TrialCell& cell : TrialCells()) {
            SetUpCell(cell);
            const std::vector<CallInputs> inputs = DrawWholeInputs(seed++, cell);
            for (const ReadingCall& call : ReadingCalls(inputs)) Compare(call.place, *call.in, found);
            for (const CallInputs& in : inputs) {
                for (std::size_t place = 0; place < kSetupCount; ++place) Compare(place, in, found);
            }
        }
    }
    EXPECT_EQ(found.difference, "");
    for (std::size_t place = 0; place < kExportCount; ++place) {
        const std::string_view name = kExportCalls[place].name;
        EXPECT_TRUE(found.succeeded[place] > 0 || name == "SafeArea_Check") << name;
        EXPECT_TRUE(found.refused[place] > 0 || AcceptsAnyRecord(name)) << name;
    }
}

// A cell described through the wrappers answers as one described through the calls.
TEST(wrapped_setup, leads_to_the_same_answers)
{
    std::string difference;
    {
        const QuietStdout quiet;
        for (const TrialCell& cell : TrialCells()) {
            SetUpCell(cell);
            const std::vector<CallInputs> inputs = DrawWholeInputs(8850, cell);
            const std::vector<ReadingCall> calls = ReadingCalls(inputs);
            std::vector<CallResults> expected(calls.size());
            for (std::size_t i = 0; i < calls.size(); ++i) MakeCall(calls[i], expected[i]);

            // Of another arm and without units, so that nothing of the cell is left.
            SetUpCell({cell.armType == KINE_ARM_SIX_AXIS ? KINE_ARM_FOUR_AXIS : KINE_ARM_SIX_AXIS,
                       cell.armType == KINE_ARM_SIX_AXIS ? Scara() : Puma(),
                       {},
                       {}});
            SetUpWrapped(cell);
            for (std::size_t i = 0; i < calls.size(); ++i) {
                CallResults again;
                MakeCall(calls[i], again);
                if (!SameResults(again, expected[i])) difference = kExportCalls[calls[i].place].name;
            }
        }
    }
    EXPECT_EQ(difference, "");
}

TEST(InitKinematicParam, record_of_one_arm_is_the_view_of_the_union)
{
    struct Case
    {
        std::uint32_t armType;
        KineKinematicParam arm;
    };
    const Case cases[] = {{KINE_ARM_SIX_AXIS, CalibratedWristArm()},
                          {KINE_ARM_FOUR_AXIS, TiltedScara()},
                          {KINE_ARM_FOUR_AXIS_4110, TiltedScara()}};
    const KineJoint joints = MakeJoints({10.0, 20.0, 30.0, 40.0, 50.0, 60.0});
    for (const Case& with : cases) {
        KinePose expected{};
        KinePose pose{};
        ASSERT_EQ(Kine_InitKinematicParam(with.armType, &with.arm), KINE_OK);
        ASSERT_EQ(Kine_FKineVision(&joints, &expected), KINE_OK);
        ASSERT_EQ(Kine_InitKinematicParam(0, nullptr), KINE_ERR_UNKNOWN_ARM_TYPE);
        const kinedll::Code code =
            with.armType == KINE_ARM_SIX_AXIS ? kinedll::InitKinematicParam(with.arm.SixAxis)
            : with.armType == KINE_ARM_FOUR_AXIS
                ? kinedll::InitKinematicParam(with.arm.FourAxis)
                : kinedll::InitKinematicParam(with.arm.FourAxis, kinedll::ArmType::kFourAxis4110);
        ASSERT_EQ(code.value, KINE_OK);
        ASSERT_EQ(Kine_FKineVision(&joints, &pose), KINE_OK);
        EXPECT_TRUE(SameBits(pose, expected)) << with.armType;
    }
}
