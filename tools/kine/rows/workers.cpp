#include "rows/workers.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <exception>
#include <string>
#include <thread>
#include <vector>

#include "failure.h"

namespace kine_cli {
namespace {

// What goes through the pipes before the bytes themselves.
struct BlockHead
{
    std::uint64_t firstLine;
    std::uint64_t size;
};
struct AnswerHead
{
    std::uint64_t data;
    std::uint64_t diagnostics;
    std::uint64_t rows;
    std::uint64_t refused;
    std::uint64_t failureText;
    std::uint64_t blockSize;
    std::int64_t failure;
};

// All of it, or false when the other end is closed.
bool WriteBytes(int descriptor, const void* bytes, std::size_t size)
{
    const char* at = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t count = write(descriptor, at, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        at += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

bool ReadBytes(int descriptor, void* bytes, std::size_t size)
{
    char* at = static_cast<char*>(bytes);
    while (size > 0) {
        const ssize_t count = read(descriptor, at, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        at += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

bool WriteBlock(int descriptor, const LineBlock& block)
{
    const BlockHead head = {block.firstLine, block.text.size()};
    return WriteBytes(descriptor, &head, sizeof head) &&
           WriteBytes(descriptor, block.text.data(), block.text.size());
}

bool ReadBlock(int descriptor, LineBlock& block)
{
    BlockHead head{};
    if (!ReadBytes(descriptor, &head, sizeof head)) return false;
    block.firstLine = head.firstLine;
    block.text.resize(head.size);
    return ReadBytes(descriptor, block.text.data(), head.size);
}

bool WriteAnswer(int descriptor, const BlockAnswer& answer, std::size_t blockSize)
{
    const AnswerHead head = {answer.data.size(),
                             answer.diagnostics.size(),
                             answer.rows,
                             answer.refused,
                             answer.failureText.size(),
                             blockSize,
                             static_cast<std::int64_t>(answer.failure)};
    bool isWritten = WriteBytes(descriptor, &head, sizeof head);
    for (const std::string* text : {&answer.data, &answer.diagnostics, &answer.failureText}) {
        isWritten = isWritten && WriteBytes(descriptor, text->data(), text->size());
    }
    return isWritten;
}

bool ReadAnswer(int descriptor, BlockAnswer& answer, std::size_t& blockSize)
{
    AnswerHead head{};
    if (!ReadBytes(descriptor, &head, sizeof head)) return false;
    answer.data.resize(head.data);
    answer.diagnostics.resize(head.diagnostics);
    answer.failureText.resize(head.failureText);
    answer.rows = head.rows;
    answer.refused = head.refused;
    answer.failure = static_cast<ExitCode>(head.failure);
    blockSize = head.blockSize;
    bool isRead = true;
    for (std::string* text : {&answer.data, &answer.diagnostics, &answer.failureText}) {
        isRead = isRead && ReadBytes(descriptor, text->data(), text->size());
    }
    return isRead;
}

struct Worker
{
    pid_t process = -1;
    int blocks = -1;   // to the worker
    int answers = -1;  // from it
};

std::array<int, 2> Pipe()
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) FailFile(std::string("pipe: ") + std::strerror(errno));
    return ends;
}

// The child never returns: it has no business with the rest of the program.
Worker Start(const std::vector<Worker>& others, const std::function<void()>& prepare,
             const std::function<BlockAnswer(const LineBlock&)>& run)
{
    const std::array<int, 2> blocks = Pipe();
    const std::array<int, 2> answers = Pipe();
    const pid_t process = fork();
    if (process < 0) FailFile(std::string("fork: ") + std::strerror(errno));
    if (process > 0) {
        close(blocks[0]);
        close(answers[1]);
        return {process, blocks[1], answers[0]};
    }
    // A pipe ends when its last writer closes it: the ends of the parent's side are not kept open here.
    for (const Worker& other : others) {
        close(other.blocks);
        close(other.answers);
    }
    close(blocks[1]);
    close(answers[0]);
    int status = 1;
    try {
        prepare();
        status = 0;
        for (LineBlock block; status == 0 && ReadBlock(blocks[0], block);) {
            if (!WriteAnswer(answers[1], run(block), block.text.size())) status = 1;
        }
    } catch (const std::exception&) {
        status = 1;
    }
    _exit(status);
}

// A worker that has ended shows in the failing write to it, not in a signal. For the calling thread alone:
// one that writes to the standard output is still ended by the signal when nobody reads it any more.
class NoBrokenPipeSignal
{
public:
    NoBrokenPipeSignal()
    {
        sigemptyset(&signal_);
        sigaddset(&signal_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &signal_, &before_);
    }
    ~NoBrokenPipeSignal()
    {
        const timespec atOnce = {};
        if (sigismember(&before_, SIGPIPE) == 0) sigtimedwait(&signal_, nullptr, &atOnce);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    NoBrokenPipeSignal(const NoBrokenPipeSignal&) = delete;
    NoBrokenPipeSignal& operator=(const NoBrokenPipeSignal&) = delete;

private:
    sigset_t signal_{};
    sigset_t before_{};
};

// Wakes a reader that waits for input when there is no more use for it.
class WakeUp
{
public:
    WakeUp() : ends_(Pipe()) {}
    ~WakeUp()
    {
        close(ends_[0]);
        close(ends_[1]);
    }
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    void Call()
    {
        called_ = true;
        WriteBytes(ends_[1], "", 1);
    }
    // Whether there is input to read, rather than a call.
    bool WaitForInput(int descriptor)
    {
        std::array<pollfd, 2> waiting = {pollfd{descriptor, POLLIN, 0}, pollfd{ends_[0], POLLIN, 0}};
        while (!called_ && poll(waiting.data(), waiting.size(), -1) < 0 && errno == EINTR) {
        }
        return !called_;
    }

private:
    std::array<int, 2> ends_;
    std::atomic<bool> called_ = false;
};

}  // namespace

void RunInProcesses(int jobs, LineBlocks& blocks, LineBlock first, const std::function<void()>& prepare,
                    const std::function<BlockAnswer(const LineBlock&)>& run,
                    const std::function<bool(const BlockAnswer&, std::size_t)>& take)
{
    std::vector<Worker> workers;
    for (int i = 0; i < jobs; ++i) workers.push_back(Start(workers, prepare, run));

    // The answers are taken by a thread, so that neither side waits for the other with full pipes. Block n
    // belongs to worker n modulo their number; the first worker without an answer marks the end.
    WakeUp wakeUp;
    std::exception_ptr thrown;
    std::thread taker([&] {
        bool isWanted = true;
        BlockAnswer answer;
        std::size_t blockSize = 0;
        for (std::size_t n = 0; ReadAnswer(workers[n % workers.size()].answers, answer, blockSize); ++n) {
            if (!isWanted) continue;
            try {
                isWanted = take(answer, blockSize);
            } catch (...) {
                thrown = std::current_exception();
                isWanted = false;
            }
            if (!isWanted) wakeUp.Call();
        }
        // Where a worker was killed, others may wait to be read from, and this program for them.
        for (const Worker& worker : workers) close(worker.answers);
        wakeUp.Call();
    });
    const NoBrokenPipeSignal noSignal;
    std::exception_ptr unreadable;
    LineBlock block = std::move(first);
    try {
        for (std::size_t n = 0; WriteBlock(workers[n % workers.size()].blocks, block); ++n) {
            if (!wakeUp.WaitForInput(blocks.Descriptor()) || !blocks.Next(block)) break;
        }
    } catch (...) {
        unreadable = std::current_exception();
    }
    for (const Worker& worker : workers) close(worker.blocks);
    taker.join();
    bool isWhole = true;
    for (const Worker& worker : workers) {
        int status = 0;
        while (waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
        }
        isWhole = isWhole && status == 0;
    }
    if (thrown) std::rethrow_exception(thrown);
    if (unreadable) std::rethrow_exception(unreadable);
    if (!isWhole) FailFile("a process of --jobs ended early");
}

}  // namespace kine_cli
