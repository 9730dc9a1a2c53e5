// How much of a stack the calls really touch, what they call in the C library included. stack_depth.py adds
// up what they could touch at most, with allowances for the C library that are compared here with what its
// functions touch.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <new>
#include <vector>

#include "quiet/fresh_stdout.h"
#include "support/export_inputs.h"
#include "support/quiet_stdout.h"

using namespace kine::test;

namespace {

constexpr std::size_t kLimit = 16 * 1024;
constexpr std::size_t kStackSize = 2 * kLimit;
constexpr std::size_t kBlock = 64;
constexpr unsigned char kPaint = 0xC9;

// A painted stack with an inaccessible page at its end.
class PaintedStack
{
public:
    PaintedStack()
        : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          base_(static_cast<unsigned char*>(
              mmap(nullptr, page_ + kStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        if (base_ == MAP_FAILED || mprotect(base_, page_, PROT_NONE) != 0) throw std::bad_alloc();
        std::memset(Begin(), kPaint, kStackSize);
    }
    ~PaintedStack() { munmap(base_, page_ + kStackSize); }
    PaintedStack(const PaintedStack&) = delete;
    PaintedStack& operator=(const PaintedStack&) = delete;

    // Bytes that the code touches, with those that the way to it takes. Paints them anew.
    std::size_t UseOf(const std::function<void()>& code)
    {
        Switch there{};
        there.code = &code;
        getcontext(&there.inside);
        there.inside.uc_stack.ss_sp = Begin();
        there.inside.uc_stack.ss_size = kStackSize;
        there.inside.uc_link = &there.outside;
        current = &there;
        makecontext(&there.inside, Enter, 0);
        swapcontext(&there.outside, &there.inside);

        const std::size_t untouched = Untouched();
        std::memset(Begin() + untouched, kPaint, kStackSize - untouched);
        return kStackSize - untouched;
    }

private:
    struct Switch
    {
        ucontext_t outside;
        ucontext_t inside;
        const std::function<void()>* code;
    };

    static void Enter() { (*current->code)(); }

    // From the far end, in whole blocks.
    [[nodiscard]] std::size_t Untouched() const
    {
        std::array<unsigned char, kBlock> paint{};
        paint.fill(kPaint);
        std::size_t bytes = 0;
        while (bytes < kStackSize && std::memcmp(Begin() + bytes, paint.data(), kBlock) == 0) bytes += kBlock;
        return bytes;
    }

    unsigned char* Begin() const { return base_ + page_; }

    static Switch* current;
    std::size_t page_;
    unsigned char* base_;
};

PaintedStack::Switch* PaintedStack::current = nullptr;

}  // namespace

TEST(PaintedStack, sees_what_a_function_touches)
{
    PaintedStack stack;
    const std::size_t way = stack.UseOf([] {});
    EXPECT_LT(way, 1024U);
    EXPECT_EQ(stack.UseOf([] {}), way);
    const std::size_t use = stack.UseOf([] {
        volatile unsigned char bytes[5000];
        bytes[0] = 1;
        static_cast<void>(bytes[0]);
    });
    EXPECT_GE(use, 5000U);
    EXPECT_LT(use, 5000U + way + 2 * kBlock);
}

TEST(c_library, mathematics_and_memory_stay_within_their_allowance)
{
    PaintedStack stack;
    const double numbers[] = {0.0,  0.1,   0.5,    0.999999, -0.5, 3.0,  1e5,  2.5e8,
                              1e22, 1e300, 1e-300, 5e-324,   kNan, kInf, -kInf};
    std::size_t most = 0;
    for (const double x : numbers) {
        for (const double y : numbers) {
            volatile double result = 0.0;
            std::array<unsigned char, 4096> from{};
            std::array<unsigned char, 4096> to{};
            for (const std::function<void()>& code : std::initializer_list<std::function<void()>>{
                     [&] { result = std::sin(x); },
                     [&] { result = std::cos(x); },
                     [&] {
                         double sine = 0.0;
                         double cosine = 0.0;
                         ::sincos(x, &sine, &cosine);
                         result = sine;
                     },
                     [&] { result = std::asin(x); },
                     [&] { result = std::acos(x); },
                     [&] { result = std::sqrt(x); },
                     [&] { result = std::atan2(x, y); },
                     [&] { std::memcpy(to.data(), from.data(), to.size()); },
                     [&] { std::memset(to.data(), 1, to.size()); },
                     [&] { result = std::memchr(to.data(), 2, to.size()) == nullptr ? 1.0 : 2.0; },
                 }) {
                static_cast<void>(stack.UseOf(code));  // by now the loader has found the function
                most = std::max(most, stack.UseOf(code));
            }
        }
    }
    EXPECT_LE(most, std::size_t{KINE_STACK_OF_MATHEMATICS});
    RecordProperty("bytes", static_cast<int>(most));
}

TEST(c_library, output_stays_within_its_allowance)
{
    PaintedStack stack;
    std::size_t most = 0;
    {
        const FreshStdout fresh;
        const auto print = [] {
            static_cast<void>(std::fwrite("line\n", 1, 5, stdout));
            static_cast<void>(std::fflush(stdout));
        };
        // The first line fetches the buffer. The loader may look functions up for it.
        for (int i = 0; i < 3; ++i) most = std::max(most, stack.UseOf(print));
    }
    EXPECT_LE(most, std::size_t{KINE_STACK_OF_OUTPUT + KINE_STACK_OF_LOADER});
    RecordProperty("bytes", static_cast<int>(most));
}

// A function that nothing here has called before.
TEST(c_library, loader_stays_within_its_allowance)
{
    PaintedStack stack;
    volatile double result = 0.5;
    const std::function<void()> code = [&] { result = std::tgamma(result); };
    const std::size_t first = stack.UseOf(code);
    const std::size_t second = stack.UseOf(code);
    EXPECT_LE(first, second + KINE_STACK_OF_LOADER);
    RecordProperty("bytes", static_cast<int>(first - second));
}

// The library is bound when it is loaded: no call waits for the loader to look up what it calls. Nothing but
// the initialisation has run in this process; the two exports are called through pointers, as the test itself
// is bound late.
TEST(exports, touch_no_more_of_the_stack_at_their_first_call_than_later)
{
    PaintedStack stack;
    KineKinematicParam arm{};
    arm.FourAxis.Link1Length = 400.0;
    arm.FourAxis.Link2Length = 300.0;
    arm.FourAxis.ScrewLead = 20.0;
    ASSERT_EQ(Kine_InitKinematicParam(KINE_ARM_FOUR_AXIS, &arm), KINE_OK);
    KineTool tool{};
    tool.HeldByRobot = 1;
    KineWobj wobj{};
    wobj.UFFix = 1;
    const KineLoad load{};
    const KineJoint joints{.Axis = {10.0, 20.0, 30.0, 40.0}, .ExtAxis = {}};
    KinePose pose{};
    KineJoint solved{};
    const auto volatile forward = &Kine_JointToWobjPos;
    const auto volatile inverse = &Kine_WobjPosToJoint;
    KineResult code = KINE_ERR_POSE;
    const std::function<void()> forwardCall = [&] { code = forward(&joints, &tool, &wobj, &load, &pose); };
    const std::function<void()> inverseCall = [&] { code = inverse(&pose, &tool, &wobj, &load, &solved); };
    for (const auto& call : {forwardCall, inverseCall}) {
        const std::size_t first = stack.UseOf(call);
        ASSERT_EQ(code, KINE_OK);
        EXPECT_LE(first, stack.UseOf(call));
    }
}

TEST(exports, touch_less_than_16_KiB_of_the_stack)
{
    constexpr std::size_t kInputsPerCell = 24;
    PaintedStack stack;
    std::array<std::size_t, kExportCount> most{};
    {
        const QuietStdout quiet;
        SeededRandom random(7501);
        CallResults results;
        const auto make = [&](std::size_t place, const CallInputs& in) {
            const std::size_t use = stack.UseOf([&] { MakeCall(kExportCalls[place], in, results); });
            most[place] = std::max(most[place], use);
        };
        for (const TrialCell& cell : TrialCells()) {
            SetUpCell(cell, make);
            const std::vector<CallInputs> inputs = DrawInputs(random, cell, kInputsPerCell);
            for (const ReadingCall& call : ReadingCalls(inputs)) make(call.place, *call.in);
            for (const CallInputs& in : inputs) {
                for (std::size_t place = 0; place < kSetupCount; ++place) make(place, in);
            }
        }
    }
    std::size_t deepest = 0;
    for (std::size_t place = 0; place < kExportCount; ++place) {
        EXPECT_LT(most[place], kLimit) << kExportCalls[place].name;
        if (most[place] > most[deepest]) deepest = place;
    }
    std::cout << "the most: " << most[deepest] << " bytes, " << kExportCalls[deepest].name << std::endl;
}
