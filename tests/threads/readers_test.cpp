// Any number of threads may read at once after setup: each gets, bit for bit, what one thread alone gets.
// Built with the checks of the preset "thread", every access of two threads to one place is watched as well.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

#include "support/export_inputs.h"
#include "support/quiet_stdout.h"

#if defined(__SANITIZE_THREAD__)
#define KINE_TEST_THREAD_CHECKS 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define KINE_TEST_THREAD_CHECKS 1
#endif
#endif

#if defined(KINE_TEST_THREAD_CHECKS)
// The first race ends the test: thousands of calls would report it over and over.
extern "C" const char* __tsan_default_options();  // NOLINT: the name that the checks look for
extern "C" const char* __tsan_default_options() { return "halt_on_error=1"; }
#endif

using namespace kine::test;

namespace {

constexpr std::size_t kThreads = 8;
constexpr std::size_t kInputsPerCell = 24;

// Runs work(0) to work(kThreads - 1), each in a thread of its own; none starts before all are there.
void AtOnce(const std::function<void(std::size_t)>& work)
{
    std::atomic<std::size_t> ready{0};
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            ++ready;
            while (ready < kThreads) std::this_thread::yield();
            work(i);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

struct Cases
{
    std::vector<CallInputs> inputs;
    std::vector<ReadingCall> calls;
    std::vector<CallResults> alone;
};

// For the library as it is set up.
Cases DrawCases(const TrialCell& cell, std::uint64_t seed)
{
    SeededRandom random(seed);
    Cases cases{DrawInputs(random, cell, kInputsPerCell), {}, {}};
    cases.calls = ReadingCalls(cases.inputs);
    cases.alone.resize(cases.calls.size());
    for (std::size_t i = 0; i < cases.calls.size(); ++i) MakeCall(cases.calls[i], cases.alone[i]);
    return cases;
}

// All threads make all calls; thread i starts with the call at starts(i). Gives the number of results that
// are not those of one thread, and names one such call.
template <class Starts>
std::size_t DifferentResults(const Cases& cases, Starts starts, const char*& name)
{
    std::array<std::size_t, kThreads> firstWrong{};
    std::array<std::size_t, kThreads> wrong{};
    AtOnce([&](std::size_t thread) {
        for (std::size_t n = 0; n < cases.calls.size(); ++n) {
            const std::size_t i = (starts(thread) + n) % cases.calls.size();
            CallResults results;
            MakeCall(cases.calls[i], results);
            if (SameResults(results, cases.alone[i])) continue;
            ++wrong[thread];
            firstWrong[thread] = i;
        }
    });
    std::size_t sum = 0;
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
        if (wrong[thread] != 0) name = kExportCalls[cases.calls[firstWrong[thread]].place].name;
        sum += wrong[thread];
    }
    return sum;
}

template <class Starts>
void ExpectTheResultsOfOneThread(std::uint64_t seed, Starts starts)
{
    // What refused calls print goes nowhere. Failures are reported where standard output is back.
    for (const TrialCell& cell : TrialCells()) {
        const char* name = "";
        std::size_t different = 0;
        {
            const QuietStdout quiet;
            SetUpCell(cell);
            const Cases cases = DrawCases(cell, seed);
            const std::size_t calls = cases.calls.size();
            different = DifferentResults(
                cases, [&](std::size_t thread) { return starts(thread, calls); }, name);
        }
        EXPECT_EQ(different, 0U) << name << " on arm type " << cell.armType << ", units of kind "
                                 << cell.carrier.UnitKind << " and " << cell.positioner.UnitKind;
    }
}

}  // namespace

TEST(readers, on_the_same_inputs_get_the_results_of_one_thread)
{
    ExpectTheResultsOfOneThread(7101, [](std::size_t, std::size_t) { return std::size_t{0}; });
}

TEST(readers, on_different_inputs_get_the_results_of_one_thread)
{
    ExpectTheResultsOfOneThread(
        7102, [](std::size_t thread, std::size_t calls) { return thread * calls / kThreads; });
}

TEST(readers, before_any_successful_setup_get_the_results_of_one_thread)
{
    const TrialCell cell = TrialCells().front();
    std::size_t different = 0;
    const char* name = "";
    {
        const QuietStdout quiet;
        SetUpCell(cell);
        ASSERT_EQ(Kine_InitKinematicParam(cell.armType, nullptr), KINE_ERR_MODEL_PARAM);
        const Cases cases = DrawCases(cell, 7103);
        different = DifferentResults(
            cases, [](std::size_t) { return std::size_t{0}; }, name);
    }
    EXPECT_EQ(different, 0U) << name;
}

#if defined(KINE_TEST_THREAD_CHECKS)
// Readers without a fault would pass as well if nothing watched them: a setup call beside a reading call is a
// data race, and is seen.
TEST(thread_checks, see_a_setup_call_beside_a_reading_call)
{
    const TrialCell cell = TrialCells().front();
    SetUpCell(cell);
    const auto race = [&cell] {
        const KineJoint joints{};
        std::thread reader([&joints] {
            for (int i = 0; i < 1000; ++i) static_cast<void>(Kine_IsSingularity(&joints, 0));
        });
        for (int i = 0; i < 1000; ++i) static_cast<void>(Kine_InitKinematicParam(cell.armType, &cell.arm));
        reader.join();
        std::exit(0);
    };
    // What the checks leave with when they have found something.
    constexpr int kFound = 66;
    EXPECT_EXIT(race(), ::testing::ExitedWithCode(kFound), "data race");
}
#endif
