// No call of any export calls the operating system, but for write(2) to standard output by the calls that
// print: once for each line.
//
// The first line that anything in the process prints makes the C library look at standard output (fstat),
// unless the program has given it a buffer.
#include "support/system_calls.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "quiet/fresh_stdout.h"
#include "support/export_inputs.h"
#include "support/quiet_stdout.h"

using namespace kine::test;

namespace {

constexpr std::size_t kInputsPerCell = 24;

// All exports on some inputs. Every call starts from the cell as it was set up.
class Calls
{
public:
    Calls(const TrialCell& cell, std::uint64_t seed) : cell_(cell)
    {
        SetUpCell(cell_);
        SeededRandom random(seed);
        inputs_ = DrawInputs(random, cell_, kInputsPerCell);
        calls_ = ReadingCalls(inputs_);
        for (const CallInputs& in : inputs_) {
            for (std::size_t place = 0; place < kSetupCount; ++place) calls_.push_back({place, &in});
        }
    }

    [[nodiscard]] std::size_t Size() const { return calls_.size(); }
    [[nodiscard]] const char* NameOf(std::size_t i) const { return kExportCalls[calls_[i].place].name; }

    void Make(std::size_t i) const
    {
        CallResults results;
        MakeCall(calls_[i], results);
        if (calls_[i].place < kSetupCount) SetUpCell(cell_);
    }

private:
    TrialCell cell_;
    std::vector<CallInputs> inputs_;
    std::vector<ReadingCall> calls_;
};

// Which of the calls print.
std::vector<bool> FindPrinting(const Calls& calls)
{
    std::FILE* file = std::tmpfile();
    const auto size = [&] {
        struct stat status
        {
        };
        fstat(fileno(file), &status);
        return status.st_size;
    };
    std::vector<bool> prints(calls.Size());
    {
        const StdoutTo there(fileno(file));
        for (std::size_t i = 0; i < calls.Size(); ++i) {
            const auto before = size();
            calls.Make(i);
            prints[i] = size() != before;
        }
    }
    static_cast<void>(std::fclose(file));
    return prints;
}

// A pipe that keeps writes apart: each is read on its own.
class PacketPipe
{
public:
    PacketPipe() { EXPECT_EQ(pipe2(ends_.data(), O_DIRECT | O_NONBLOCK | O_CLOEXEC), 0); }
    ~PacketPipe()
    {
        close(ends_[0]);
        close(ends_[1]);
    }
    PacketPipe(const PacketPipe&) = delete;
    PacketPipe& operator=(const PacketPipe&) = delete;

    [[nodiscard]] int In() const { return ends_[1]; }

    // What was written since it was last asked.
    std::vector<std::string> Writes() const
    {
        std::vector<std::string> writes;
        std::array<char, 4096> text{};
        for (ssize_t size = 0; (size = read(ends_[0], text.data(), text.size())) > 0;) {
            writes.emplace_back(text.data(), static_cast<std::size_t>(size));
        }
        return writes;
    }

private:
    std::array<int, 2> ends_{};
};

}  // namespace

// What does not notice would find nothing.
TEST(MakesSystemCalls, notices_a_system_call)
{
    const auto write = [](int file) { return [file] { static_cast<void>(::write(file, "", 0)); }; };
    EXPECT_FALSE(MakesSystemCalls([] {}));
    EXPECT_FALSE(MakesSystemCalls([] {}, Allowed::kWriteToStdout));
    EXPECT_TRUE(MakesSystemCalls([] { static_cast<void>(getppid()); }));
    EXPECT_TRUE(MakesSystemCalls([] { static_cast<void>(getppid()); }, Allowed::kWriteToStdout));
    EXPECT_TRUE(MakesSystemCalls(write(STDOUT_FILENO)));
    EXPECT_FALSE(MakesSystemCalls(write(STDOUT_FILENO), Allowed::kWriteToStdout));
    EXPECT_TRUE(MakesSystemCalls(write(STDERR_FILENO), Allowed::kWriteToStdout));
}

TEST(exports, that_print_nothing_make_no_system_call)
{
    std::size_t silent = 0;
    for (const TrialCell& cell : TrialCells()) {
        bool isCalling = false;
        {
            const QuietStdout quiet;
            const Calls calls(cell, 7401);
            const std::vector<bool> prints = FindPrinting(calls);
            silent += static_cast<std::size_t>(std::count(prints.begin(), prints.end(), false));
            isCalling = MakesSystemCalls([&] {
                for (std::size_t i = 0; i < calls.Size(); ++i) {
                    if (!prints[i]) calls.Make(i);
                }
            });
        }
        EXPECT_FALSE(isCalling) << "arm type " << cell.armType;
    }
    EXPECT_GT(silent, 10000U);
}

TEST(exports, that_print_make_no_system_call_but_the_write)
{
    for (const TrialCell& cell : TrialCells()) {
        bool isCalling = false;
        {
            const QuietStdout quiet;
            const Calls calls(cell, 7402);
            isCalling = MakesSystemCalls(
                [&] {
                    for (std::size_t i = 0; i < calls.Size(); ++i) calls.Make(i);
                },
                Allowed::kWriteToStdout);
        }
        EXPECT_FALSE(isCalling) << "arm type " << cell.armType;
    }
}

TEST(exports, write_a_line_at_once)
{
    std::size_t lines = 0;
    for (const TrialCell& cell : TrialCells()) {
        std::vector<std::string> broken;
        {
            const PacketPipe pipe;
            const StdoutTo there(pipe.In());
            const Calls calls(cell, 7403);
            static_cast<void>(pipe.Writes());
            for (std::size_t i = 0; i < calls.Size(); ++i) {
                calls.Make(i);
                for (const std::string& text : pipe.Writes()) {
                    ++lines;
                    if (text.find('\n') != text.size() - 1) broken.push_back(calls.NameOf(i) + (": " + text));
                }
            }
        }
        EXPECT_EQ(broken, std::vector<std::string>{});
    }
    EXPECT_GT(lines, 1000U);
}

TEST(first_line, is_one_write_where_standard_output_has_been_given_a_buffer)
{
    bool isCalling = true;
    {
        const FreshStdout fresh;
        fresh.GiveBuffer();
        isCalling = MakesSystemCalls([] { static_cast<void>(Kine_SetMechUnitGlobalCfg(4, 0, 1)); },
                                     Allowed::kWriteToStdout);
    }
    EXPECT_FALSE(isCalling);
}
