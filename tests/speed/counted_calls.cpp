// Performs one hot call over and over on distinct inputs, for a tool that counts instructions: counted_calls
// CASE CALLS. The difference between two runs that differ in CALLS alone is what the calls cost.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "KineDll.h"
#include "support/sample_arms.h"
#include "support/speed_inputs.h"

namespace kine::test {
namespace {

constexpr std::size_t kInputs = 500;
constexpr std::uint64_t kSeed = 6001;

struct Input
{
    KineJoint joints;
    KinePose target;
};

KineResult Inverse(const CellRecords& cell, const Input& input)
{
    KineJoint joints{};
    return Kine_WobjPosToJoint(&input.target, &cell.tool, &cell.wobj, &cell.load, &joints);
}

KineResult WorldPosition(const CellRecords& cell, const Input& input)
{
    KinePose pose{};
    return Kine_JointToWorldPos(&input.joints, &cell.tool, &cell.wobj, &cell.load, &pose);
}

struct Case
{
    const char* name;
    std::uint32_t armType;
    KineKinematicParam (*arm)();
    KineResult (*call)(const CellRecords& cell, const Input& input);
};

constexpr Case kCases[] = {
    {"inverse_six_axis", KINE_ARM_SIX_AXIS, CalibratedWristArm, Inverse},
    {"world_position_six_axis", KINE_ARM_SIX_AXIS, CalibratedWristArm, WorldPosition},
    {"inverse_four_axis", KINE_ARM_FOUR_AXIS, TiltedScara, Inverse},
};

const Case* FindCase(const char* name)
{
    for (const Case& entry : kCases) {
        if (std::strcmp(entry.name, name) == 0) return &entry;
    }
    return nullptr;
}

std::vector<Input> InputsOf(const Case& entry, const CellRecords& cell)
{
    std::vector<Input> inputs;
    for (const KineJoint& joints : RegularJoints(entry.armType, cell, kInputs, kSeed)) {
        Input input{joints, {}};
        if (Kine_JointToWobjPos(&joints, &cell.tool, &cell.wobj, &cell.load, &input.target) == KINE_OK) {
            inputs.push_back(input);
        }
    }
    return inputs;
}

int Run(const Case& entry, long calls)
{
    const KineKinematicParam arm = entry.arm();
    if (Kine_InitKinematicParam(entry.armType, &arm) != KINE_OK) return EXIT_FAILURE;
    const CellRecords cell = WorkingCell();
    const std::vector<Input> inputs = InputsOf(entry, cell);
    if (inputs.size() != kInputs) return EXIT_FAILURE;

    std::size_t next = 0;
    for (long i = 0; i < calls; ++i) {
        if (entry.call(cell, inputs[next]) != KINE_OK) return EXIT_FAILURE;
        if (++next == kInputs) next = 0;
    }
    return EXIT_SUCCESS;
}

}  // namespace
}  // namespace kine::test

int main(int argc, char** argv)
{
    const kine::test::Case* entry = argc == 3 ? kine::test::FindCase(argv[1]) : nullptr;
    if (entry == nullptr) {
        static_cast<void>(std::fputs("usage: counted_calls CASE CALLS\n", stderr));
        return EXIT_FAILURE;
    }
    return kine::test::Run(*entry, std::strtol(argv[2], nullptr, 10));
}
