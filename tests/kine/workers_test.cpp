// Blocks dealt out to child processes.
#include "rows/workers.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <thread>

#include "failure_text.h"

namespace kine_cli {
namespace {

// Gives the blocks to workers through a pipe that a thread fills. Every child must be gone at the end.
class Workers : public testing::Test
{
protected:
    void SetUp() override { alarm(60); }
    void TearDown() override
    {
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
        alarm(0);
    }

    using Run = std::function<BlockAnswer(const LineBlock&)>;

    // The data of all answers, in the order in which they come.
    std::string Through(int jobs, const std::string& text, const Run& run)
    {
        return Through(jobs, text, run, [&](const BlockAnswer& answer, std::size_t) {
            refused += answer.refused;
            rows += answer.rows;
            return answer.failure == ExitCode::kDone;
        });
    }
    template <typename Take>
    std::string Through(int jobs, const std::string& text, const Run& run, const Take& take)
    {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe(ends.data()), 0);
        LineBlocks blocks("/dev/fd/" + std::to_string(ends[0]));
        // A process of its own: children of this one would keep the writing end of a thread open.
        const pid_t writer = fork();
        if (writer == 0) {
            close(ends[0]);
            std::size_t at = 0;
            while (at < text.size()) {
                const ssize_t count =
                    write(ends[1], text.data() + at, std::min<std::size_t>(text.size() - at, 4096));
                if (count <= 0) break;
                at += static_cast<std::size_t>(count);
            }
            _exit(0);
        }
        close(ends[0]);
        close(ends[1]);
        std::string data;
        LineBlock first;
        EXPECT_TRUE(blocks.Next(first));
        try {
            RunInProcesses(
                jobs, blocks, first, [] {}, run,
                [&](const BlockAnswer& answer, std::size_t size) {
                    data += answer.data;
                    bytes += size;
                    return take(answer, size);
                });
        } catch (const Failure& failure) {
            message = failure.what();
        }
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        return data;
    }

    static BlockAnswer Echo(const LineBlock& block)
    {
        BlockAnswer answer;
        ForEachLine(block, [&](std::string_view line, std::uint64_t number) {
            answer.data += std::to_string(number) + ":" + std::string(line) + "\n";
            ++answer.rows;
            answer.refused += line == "7" ? 1U : 0U;
        });
        return answer;
    }

    static std::string Numbers(int count)
    {
        std::string text;
        for (int i = 1; i <= count; ++i) text += std::to_string(i % 10) + "\n";
        return text;
    }
    static std::string Echoed(int first, int last)
    {
        std::string text;
        for (int i = first; i <= last; ++i) text += std::to_string(i) + ":" + std::to_string(i % 10) + "\n";
        return text;
    }

    std::uint64_t refused = 0;
    std::uint64_t rows = 0;
    std::size_t bytes = 0;
    std::string message;
};

TEST_F(Workers, answers_come_in_order_and_are_counted)
{
    for (const int jobs : {1, 2, 3, 8}) {
        refused = rows = bytes = 0;
        EXPECT_TRUE(Through(jobs, Numbers(50000), Echo) == Echoed(1, 50000)) << jobs;
        EXPECT_EQ(refused, 5000U);
        EXPECT_EQ(rows, 50000U);
        EXPECT_EQ(bytes, 100000U);
        EXPECT_EQ(message, "");
    }
}

TEST_F(Workers, answers_much_larger_than_blocks_do_not_block)
{
    const std::string much(1U << 20U, 'x');
    const std::string data = Through(2, Numbers(200000), [&](const LineBlock&) {
        BlockAnswer answer;
        answer.data = much;
        return answer;
    });
    EXPECT_GT(data.size(), much.size());
    EXPECT_EQ(data.size() % much.size(), 0U);
}

TEST_F(Workers, everything_before_a_bad_row_is_taken_and_nothing_behind_it)
{
    ExitCode failure = ExitCode::kDone;
    std::string text;
    const auto run = [](const LineBlock& block) {
        BlockAnswer answer;
        ForEachLine(block, [&](std::string_view line, std::uint64_t number) {
            if (answer.failure != ExitCode::kDone) return;
            if (number >= 30000) {
                answer.failure = ExitCode::kBadFile;
                answer.failureText = "line " + std::to_string(number);
                return;
            }
            answer.data += std::to_string(number) + ":" + std::string(line) + "\n";
        });
        return answer;
    };
    const std::string data = Through(3, Numbers(200000), run, [&](const BlockAnswer& answer, std::size_t) {
        failure = answer.failure;
        text = answer.failureText;
        return failure == ExitCode::kDone;
    });
    EXPECT_TRUE(data == Echoed(1, 29999));
    EXPECT_EQ(failure, ExitCode::kBadFile);
    EXPECT_EQ(text, "line 30000");
    EXPECT_EQ(message, "");
}

TEST_F(Workers, a_worker_that_is_killed_ends_the_run_with_a_message)
{
    // The others answer more than a pipe holds, so that they wait to be read from.
    const std::string much(1U << 20U, 'x');
    const auto run = [&](const LineBlock& block) {
        if (block.firstLine > 5000) kill(getpid(), SIGKILL);
        BlockAnswer answer;
        answer.data = much;
        return answer;
    };
    for (const int jobs : {1, 2, 4}) {
        message.clear();
        Through(jobs, Numbers(500000), run);
        EXPECT_EQ(message, "a process of --jobs ended early") << jobs;
    }
}

TEST_F(Workers, a_worker_that_throws_ends_the_run_with_a_message)
{
    Through(2, Numbers(50000), [](const LineBlock&) -> BlockAnswer { throw std::runtime_error("x"); });
    EXPECT_EQ(message, "a process of --jobs ended early");
}

TEST_F(Workers, a_failing_taker_ends_the_run_with_its_own_message)
{
    Through(2, Numbers(200000), Echo, [](const BlockAnswer&, std::size_t) -> bool { FailFile("no room"); });
    EXPECT_EQ(message, "no room");
}

TEST_F(Workers, a_source_that_fails_ends_the_run_after_what_came_before)
{
    const std::string text = Numbers(10000) + std::string(1'000'001, 'x') + "\n";
    EXPECT_TRUE(Through(2, text, Echo) == Echoed(1, 10000));
    EXPECT_TRUE(message.ends_with(":10001: a line of more than a million bytes")) << message;
}

TEST_F(Workers, the_signal_of_a_broken_pipe_is_as_before_at_the_end)
{
    Through(2, Numbers(500000), [](const LineBlock&) -> BlockAnswer { _exit(1); });
    sigset_t blocked{};
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGPIPE), 0);
    sigset_t pending{};
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

}  // namespace
}  // namespace kine_cli
