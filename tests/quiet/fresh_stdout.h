// Standard output as a process finds it: nothing has been printed, there is no buffer. It leads nowhere.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <stdexcept>

namespace kine::test {

// One to a process: standard output keeps the buffer that it has been given.
class FreshStdout
{
public:
    FreshStdout()
    {
        static_cast<void>(std::fflush(stdout));
        kept_ = dup(STDOUT_FILENO);
        if (std::freopen("/dev/null", "w", stdout) == nullptr || fileno(stdout) != STDOUT_FILENO) {
            throw std::runtime_error("standard output cannot be opened anew");
        }
    }

    ~FreshStdout()
    {
        static_cast<void>(std::fflush(stdout));
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }

    FreshStdout(const FreshStdout&) = delete;
    FreshStdout& operator=(const FreshStdout&) = delete;

    static void GiveBuffer()
    {
        static char buffer[BUFSIZ];
        static_cast<void>(std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer));
    }

private:
    int kept_ = -1;
};

}  // namespace kine::test
