// A line is out when the call that prints it returns, also where standard output is buffered in full.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>

#include "KineDll.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace {

int OpenPipe(int (&ends)[2])
{
#if defined(_WIN32)
    return _pipe(ends, 4096, _O_BINARY);
#else
    return pipe(ends);
#endif
}

// What has reached the file descriptor of standard output while code ran, without flushing the stream.
template <class Code>
std::string ReachedDescriptor(Code&& code)
{
    int ends[2] = {};
    std::fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    EXPECT_EQ(OpenPipe(ends), 0);
    dup2(ends[1], STDOUT_FILENO);
    std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
    code();
    dup2(saved, STDOUT_FILENO);
    close(saved);
    close(ends[1]);
    std::array<char, 256> text{};
    const ssize_t length = read(ends[0], text.data(), text.size());
    close(ends[0]);
    return std::string(text.data(), static_cast<std::size_t>(length < 0 ? 0 : length));
}

}  // namespace

TEST(line, is_flushed_before_the_call_returns)
{
    EXPECT_EQ(ReachedDescriptor([] { static_cast<void>(Kine_SetMechUnitGlobalCfg(4, 2, 1)); }),
              "IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3\n");
}
