// The reader of cell files on any bytes: it gives a cell, or a message with file, line and column. A cell
// goes to the library as the program sends it, and a few calls are made with it.
#include <cstddef>
#include <cstdint>
#include <optional>

#include "cell/cell_reader.h"
#include "library/session.h"
#include "program_checks.h"

namespace kine_cli::fuzz {
namespace {

constexpr std::string_view kFile = "cell.json";

std::optional<Cell> Read(std::string_view text)
{
    try {
        return ParseCell(text, std::string(kFile));
    } catch (const Failure& failure) {
        CheckMessage(failure, kFile);
        return std::nullopt;
    }
}

void Call(const KineJoint& joints, const CellRecords& records)
{
    for (const Reference reference : {Reference::kBase, Reference::kFlange, Reference::kWorld,
                                      Reference::kVision, Reference::kWorkObject}) {
        KinePose pose{};
        const KineResult code = JointsToPose(joints, records, reference, pose);
        if (code != KINE_OK || reference != Reference::kWorkObject) continue;
        KineJoint back{};
        static_cast<void>(Kine_WobjPosToJoint(&pose, &records.tool, &records.wobj, &records.load, &back));
    }
}

void Use(const Cell& cell, PrintedLines& printed)
{
    for (const RefusedSetup& refusal : SetUpLibrary(cell, printed))
        Require(cell.PlaceOf(refusal.path).starts_with(kFile), "no place", refusal.path);
    const CellRecords records = RecordsOf(cell, {});
    Call(KineJoint{}, records);
    for (const Named<KineJoint>& joints : cell.joints) Call(joints.record, records);
    for (const Expectation& expectation : cell.expectations)
        Call(expectation.joints, RecordsOf(cell, expectation.selection));
    for (const Named<PoseTarget>& target : cell.poses) {
        KineJoint joints{};
        static_cast<void>(
            Kine_WobjPosToJoint(&target.record.pose, &records.tool, &records.wobj, &records.load, &joints));
    }
    static_cast<void>(printed.Take());
}

}  // namespace
}  // namespace kine_cli::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static kine_cli::PrintedLines printed;
    const std::string text(data, data + size);
    if (const std::optional<kine_cli::Cell> cell = kine_cli::fuzz::Read(text))
        kine_cli::fuzz::Use(*cell, printed);
    return 0;
}
