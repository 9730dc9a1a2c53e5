// No call of any export allocates or frees memory, whether it succeeds or is refused.
//
// A refused call may print. The first line that anything in the process prints makes the C library allocate
// the buffer of standard output, unless the program has given it one.
#include "support/allocations.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "quiet/fresh_stdout.h"
#include "support/export_inputs.h"
#include "support/quiet_stdout.h"

using namespace kine::test;

namespace {

std::uint64_t MemoryCalls() { return AllocationCount() + FreeCount(); }

template <class Code>
std::uint64_t MemoryCallsOf(Code code)
{
    const std::uint64_t before = MemoryCalls();
    code();
    return MemoryCalls() - before;
}

// The calls for memory of each export, over all its calls.
using Counts = std::array<std::uint64_t, kExportCount>;

void Count(std::size_t place, const CallInputs& in, Counts& counts)
{
    CallResults results;
    counts[place] += MemoryCallsOf([&] { MakeCall(kExportCalls[place], in, results); });
}

// The library's own, as a shared library calls them.
KineResult RefusedCall() { return Kine_SetMechUnitGlobalCfg(4, 0, 1); }

}  // namespace

// What does not count would find nothing.
TEST(memory_calls, are_counted)
{
    void* memory = nullptr;
    EXPECT_EQ(MemoryCallsOf([&] { memory = std::malloc(10); }), 1U);
    EXPECT_EQ(MemoryCallsOf([&] { memory = std::realloc(memory, 100000); }), 1U);
    EXPECT_EQ(MemoryCallsOf([&] { std::free(memory); }), 1U);
    EXPECT_EQ(MemoryCallsOf([&] { memory = std::calloc(10, 10); }), 1U);
    std::free(memory);
    EXPECT_EQ(MemoryCallsOf([&] { memory = std::aligned_alloc(64, 640); }), 1U);
    std::free(memory);
    EXPECT_EQ(MemoryCallsOf([&] { EXPECT_EQ(posix_memalign(&memory, 64, 640), 0); }), 1U);
    std::free(memory);
    EXPECT_EQ(MemoryCallsOf([] { std::make_unique<std::array<int, 100>>(); }), 2U);
    EXPECT_EQ(MemoryCallsOf([] { const std::string text(100, 'x'); }), 2U);
    // Those of a shared library: strdup is the C library's.
    EXPECT_EQ(MemoryCallsOf([] { std::free(strdup("text")); }), 2U);
    EXPECT_EQ(MemoryCallsOf([] {}), 0U);
}

TEST(exports, neither_allocate_nor_free)
{
    constexpr std::size_t kInputsPerCell = 40;
    SeededRandom random(7301);
    Counts counts{};
    {
        const QuietStdout quiet;
        static_cast<void>(RefusedCall());  // prints the first line
        for (const TrialCell& cell : TrialCells()) {
            const auto setUp = [&] {
                SetUpCell(cell, [&](std::size_t place, const CallInputs& in) { Count(place, in, counts); });
            };
            setUp();
            const std::vector<CallInputs> inputs = DrawInputs(random, cell, kInputsPerCell);
            for (const ReadingCall& call : ReadingCalls(inputs)) Count(call.place, *call.in, counts);
            for (const CallInputs& in : inputs) {
                for (std::size_t place = 0; place < kSetupCount; ++place) Count(place, in, counts);
            }
            // Where nothing is initialised.
            for (const ReadingCall& call : ReadingCalls(inputs)) Count(call.place, *call.in, counts);
        }
    }
    for (std::size_t place = 0; place < kExportCount; ++place) {
        EXPECT_EQ(counts[place], 0U) << kExportCalls[place].name;
    }
}

TEST(first_line, allocates_nothing_where_standard_output_has_been_given_a_buffer)
{
    std::uint64_t count = 0;
    {
        const FreshStdout fresh;
        fresh.GiveBuffer();
        count = MemoryCallsOf([] { static_cast<void>(RefusedCall()); });
    }
    EXPECT_EQ(count, 0U);
}

TEST(first_line, allocates_at_most_the_buffer_of_standard_output_and_the_next_one_nothing)
{
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    {
        const FreshStdout fresh;
        first = MemoryCallsOf([] { static_cast<void>(RefusedCall()); });
        second = MemoryCallsOf([] { static_cast<void>(RefusedCall()); });
    }
    EXPECT_LE(first, 1U);
    EXPECT_EQ(second, 0U);
}
