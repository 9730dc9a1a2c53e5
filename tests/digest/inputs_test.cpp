// What the digest, the tests of threads and those of allocations run on: all exports, each with successes and
// refusals.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <string>

#include "digest/tally.h"
#include "support/export_inputs.h"
#include "support/stdout_capture.h"

using namespace kine::test;

namespace {

Tally TallyOfAllCells()
{
    constexpr std::size_t kInputsPerCell = 40;
    SeededRandom random(7003);
    Tally tally;
    for (const TrialCell& cell : TrialCells()) {
        SetUpCell(cell);
        for (const CallInputs& in : DrawInputs(random, cell, kInputsPerCell)) {
            // A setup call that is accepted makes another cell.
            for (std::size_t i = kExportCount; i-- > 0;) {
                CallResults results;
                MakeCall(kExportCalls[i], in, results);
                tally.Add(i, results);
            }
            SetUpCell(cell);
        }
    }
    return tally;
}

}  // namespace

TEST(kExportCalls, are_the_exported_functions)
{
    std::ifstream file(KINE_EXPORTED_SYMBOLS);
    std::multiset<std::string> listed;
    for (std::string name; file >> name;) listed.insert(name);
    std::multiset<std::string> called;
    for (const ExportCall& call : kExportCalls) called.insert(call.name);
    EXPECT_EQ(called, listed);
}

// Each entry calls the function it names: no two of them may answer alike to everything.
TEST(kExportCalls, differ_from_one_another)
{
    Tally tally;
    static_cast<void>(PrintedBy([&] { tally = TallyOfAllCells(); }));
    std::map<std::uint64_t, std::string> seen;
    for (std::size_t i = 0; i < kExportCount; ++i) {
        const auto [other, isNew] = seen.emplace(tally.Of(i).digest.Value(), kExportCalls[i].name);
        // One computation behind two names, as the header says.
        const bool isTwin = std::string(kExportCalls[i].name) == "Kine_CalcGripWobj_UserPrm_3P" &&
                            other->second == "Kine_CalcExtWobj_UserPrm_3P";
        EXPECT_TRUE(isNew || isTwin) << kExportCalls[i].name << " answers like " << other->second;
    }
}

TEST(kExportCalls, succeed_and_fail_on_the_drawn_inputs)
{
    Tally tally;
    const std::string printed = PrintedBy([&] { tally = TallyOfAllCells(); });
    EXPECT_NE(printed, "");
    for (std::size_t i = 0; i < kExportCount; ++i) {
        const std::string name = kExportCalls[i].name;
        const std::uint64_t calls = tally.Of(i).calls;
        const std::uint64_t successes = tally.Of(i).successes;
        // One succeeds always and one never, as the header says.
        EXPECT_EQ(successes >= 10, name != "SafeArea_Check") << name << ": " << successes << " of " << calls;
        EXPECT_EQ(calls - successes >= 10, name != "Kine_CalcZVec")
            << name << ": " << successes << " of " << calls;
    }
}
