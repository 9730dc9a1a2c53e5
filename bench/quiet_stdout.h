// Standard output to nowhere: refused calls print a line.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace kine::bench {

// While one of these lives, what goes to standard output is lost.
class QuietStdout
{
public:
    QuietStdout() : kept_(Kept())
    {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }

    ~QuietStdout()
    {
        static_cast<void>(std::fflush(stdout));
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }

    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    static int Kept()
    {
        static_cast<void>(std::fflush(stdout));
        return dup(STDOUT_FILENO);
    }

    int kept_;
};

}  // namespace kine::bench
