#include "library/printed_lines.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "failure.h"

namespace kine_cli {
namespace {

void Check(int result, const char* what)
{
    if (result < 0) FailFile(std::string(what) + ": " + std::strerror(errno));
}

// A program may be started with standard descriptors closed. The pipe must not take their numbers; what
// stands there instead refuses what is asked of it, as a closed one does.
void FillGaps()
{
    if (fcntl(STDIN_FILENO, F_GETFD) < 0) Check(open("/dev/null", O_WRONLY), "/dev/null");
    if (fcntl(STDERR_FILENO, F_GETFD) < 0) Check(open("/dev/null", O_RDONLY), "/dev/null");
}

}  // namespace

PrintedLines::PrintedLines()
{
    FillGaps();
    std::fflush(stdout);
    data_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    Check(data_, "standard output");
    Open();
}

PrintedLines::~PrintedLines()
{
    std::fflush(stdout);
    dup2(data_, STDOUT_FILENO);
    close(data_);
    close(read_);
}

void PrintedLines::Open()
{
    std::array<int, 2> ends{};
    Check(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), "pipe");
    Check(dup2(ends[1], STDOUT_FILENO), "pipe");
    close(ends[1]);
    read_ = ends[0];
}

void PrintedLines::Renew()
{
    close(read_);
    Open();
}

std::string PrintedLines::Take()
{
    std::string lines;
    std::array<char, 4096> block;  // NOLINT(cppcoreguidelines-pro-type-member-init): read below
    for (;;) {
        const ssize_t count = read(read_, block.data(), block.size());
        if (count <= 0) return lines;
        lines.append(block.data(), static_cast<std::size_t>(count));
        if (static_cast<std::size_t>(count) < block.size()) return lines;
    }
}

std::string AsUtf8(const std::string& lines)
{
    constexpr std::string_view kGbkColon = "\xA3\xBA";
    constexpr std::string_view kUtf8Colon = "\xEF\xBC\x9A";
    std::string text = lines;
    for (std::size_t at = text.find(kGbkColon); at != std::string::npos; at = text.find(kGbkColon, at)) {
        text.replace(at, kGbkColon.size(), kUtf8Colon);
    }
    return text;
}

}  // namespace kine_cli
