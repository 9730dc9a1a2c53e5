// A caller on 32-bit Windows keeps the stack aligned to 4 bytes, and the library's own arithmetic wants 16: every
// export gives the same bits, and none stops the process, from each of the four places that the stack may have.
//
// This file is compiled for a stack of 4 bytes, so that what lies between a test and an export does not align it.
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdint>
#include <set>
#include <vector>

#include "support/export_inputs.h"
#include "support/quiet_stdout.h"

using namespace kine::test;

namespace {

constexpr std::size_t kOffsets[] = {0, 4, 8, 12};
constexpr std::size_t kInputsPerCell = 3;

// Where the stack stands, modulo 16.
std::uintptr_t Place()
{
    std::uintptr_t top = 0;
    __asm__ volatile("movl %%esp, %0" : "=r"(top));
    return top % 16;
}

// Runs the code further down the stack by some bytes.
template <class Code>
[[gnu::noinline]] void LowerBy(std::size_t offset, Code code)
{
    struct
    {
        std::size_t offset;
        Code* code;
        void (*run)(Code*);
    } const plan = {offset, &code, [](Code* given) { (*given)(); }};
    __asm__ volatile(
        "movl %%esp, %%ebx\n\t"
        "subl (%%esi), %%esp\n\t"
        "pushl 4(%%esi)\n\t"
        "call *8(%%esi)\n\t"
        "movl %%ebx, %%esp"
        :
        : "S"(&plan)
        : "eax", "ecx", "edx", "ebx", "memory", "cc");
}

}  // namespace

TEST(stack_of_4_bytes, reaches_every_place)
{
    std::set<std::uintptr_t> places;
    for (const std::size_t offset : kOffsets) LowerBy(offset, [&places] { places.insert(Place()); });
    EXPECT_EQ(places, (std::set<std::uintptr_t>{0, 4, 8, 12}));
}

TEST(stack_of_4_bytes, gives_every_export_the_same_results_from_every_place)
{
    std::size_t calls = 0;
    std::vector<const char*> different;
    for (const TrialCell& cell : TrialCells()) {
        const QuietStdout quiet;
        SetUpCell(cell);
        SeededRandom random(8301);
        const std::vector<CallInputs> inputs = DrawInputs(random, cell, kInputsPerCell);
        for (const CallInputs& in : inputs) {
            for (const ExportCall& call : kExportCalls) {
                CallResults expected{};
                for (const std::size_t offset : kOffsets) {
                    SetUpCell(cell);
                    CallResults results;
                    LowerBy(offset, [&] { MakeCall(call, in, results); });
                    if (offset == kOffsets[0]) expected = results;
                    if (!SameResults(results, expected)) different.push_back(call.name);
                    ++calls;
                }
            }
        }
    }
    EXPECT_GT(calls, 4U * kExportCount);
    EXPECT_EQ(different, std::vector<const char*>{});
}
