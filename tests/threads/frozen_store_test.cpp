// Reading calls write no static data at all, not even what holds the configuration: once all writable memory
// of the library has been made read-only, a write would end the process.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "support/export_inputs.h"
#include "support/quiet_stdout.h"
#include "support/writable_segments.h"

using namespace kine::test;

namespace {

constexpr const char* kLibrary = "libKineDll.so";
constexpr std::size_t kInputsPerCell = 24;
constexpr std::size_t kReadingExports = kExportCount - kSetupCount;

// How a child process leaves.
constexpr int kAsExpected = 0;
constexpr int kNotFrozen = 3;
constexpr int kOtherResults = 4;

// Inputs and results of one cell, in memory that parent and children share.
struct Cases
{
    std::array<CallInputs, kInputsPerCell> inputs;
    std::array<CallResults, kInputsPerCell * kReadingExports> results;
};

class SharedCases
{
public:
    SharedCases()
        : memory_(mmap(nullptr, sizeof(Cases), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
    {
        if (memory_ == MAP_FAILED) throw std::bad_alloc();
    }
    ~SharedCases() { munmap(memory_, sizeof(Cases)); }
    SharedCases(const SharedCases&) = delete;
    SharedCases& operator=(const SharedCases&) = delete;

    Cases& operator*() const { return *static_cast<Cases*>(memory_); }

private:
    void* memory_;
};

[[noreturn]] void Prepare(const TrialCell& cell, Cases& cases)
{
    const QuietStdout quiet;
    SetUpCell(cell);
    SeededRandom random(7201);
    const std::vector<CallInputs> inputs = DrawInputs(random, cell, kInputsPerCell);
    std::copy(inputs.begin(), inputs.end(), cases.inputs.begin());
    const std::vector<ReadingCall> calls = ReadingCalls(cases.inputs);
    for (std::size_t i = 0; i < calls.size(); ++i) MakeCall(calls[i], cases.results[i]);
    _exit(kAsExpected);
}

// Here the reading exports have never been called before: what a first call puts aside for the next one would
// show.
[[noreturn]] void ReadFrozen(const TrialCell& cell, const Cases& cases)
{
    const QuietStdout quiet;
    SetUpCell(cell);
    if (!MakeReadOnly(WritablePagesOf(kLibrary))) _exit(kNotFrozen);
    const std::vector<ReadingCall> calls = ReadingCalls(cases.inputs);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        CallResults results;
        MakeCall(calls[i], results);
        if (!SameResults(results, cases.results[i])) _exit(kOtherResults);
    }
    _exit(kAsExpected);
}

[[noreturn]] void SetUpFrozen(const TrialCell& cell, std::size_t wanted)
{
    const QuietStdout quiet;
    SetUpCell(cell);
    if (!MakeReadOnly(WritablePagesOf(kLibrary))) _exit(kNotFrozen);
    SetUpCell(cell, [wanted](std::size_t place, const CallInputs& in) {
        CallResults results;
        if (place == wanted) MakeCall(kExportCalls[place], in, results);
    });
    _exit(kAsExpected);
}

// A sanitizer catches the signal and leaves with 1.
bool IsEndedByAWrite(int status)
{
    return (WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV) ||
           (WIFEXITED(status) && WEXITSTATUS(status) == 1);
}

}  // namespace

TEST(frozen_store, is_found)
{
    const std::vector<Pages> pages = WritablePagesOf(kLibrary);
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_GT(pages[0].size, 0U);
    EXPECT_TRUE(WritablePagesOf("libNoSuch.so").empty());
}

TEST(frozen_store, serves_every_reading_call)
{
    const SharedCases cases;
    for (const TrialCell& cell : TrialCells()) {
        SCOPED_TRACE(::testing::Message() << "arm type " << cell.armType << ", units of kind "
                                          << cell.carrier.UnitKind << " and " << cell.positioner.UnitKind);
        EXPECT_EXIT(Prepare(cell, *cases), ::testing::ExitedWithCode(kAsExpected), "");
        EXPECT_EXIT(ReadFrozen(cell, *cases), ::testing::ExitedWithCode(kAsExpected), "");
    }
}

TEST(frozen_store, stops_every_setup_call)
{
    const TrialCell cell = TrialCells().back();
    for (std::size_t place = 0; place < kSetupCount; ++place) {
        EXPECT_EXIT(SetUpFrozen(cell, place), IsEndedByAWrite, "") << kExportCalls[place].name;
    }
}

// The loader is to have written its own tables before anything is frozen.
int main(int argc, char** argv)
{
    if (std::getenv("LD_BIND_NOW") == nullptr) {
        setenv("LD_BIND_NOW", "1", 1);
        execv("/proc/self/exe", argv);
        return EXIT_FAILURE;
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
