// Standard output to another place, or to nowhere: refused calls print a line.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
#endif

namespace kine::test {

#if defined(_WIN32)
inline constexpr const char* kNowhere = "NUL";
inline constexpr int kNotInherited = _O_NOINHERIT;
#else
inline constexpr const char* kNowhere = "/dev/null";
inline constexpr int kNotInherited = O_CLOEXEC;
#endif

// While one of these lives, what goes to standard output goes to another file.
class StdoutTo
{
public:
    explicit StdoutTo(int descriptor) : kept_(Kept()) { dup2(descriptor, STDOUT_FILENO); }

    ~StdoutTo()
    {
        static_cast<void>(std::fflush(stdout));
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }

    StdoutTo(const StdoutTo&) = delete;
    StdoutTo& operator=(const StdoutTo&) = delete;

private:
    static int Kept()
    {
        static_cast<void>(std::fflush(stdout));
        return dup(STDOUT_FILENO);
    }

    int kept_;
};

// While one of these lives, what goes to standard output is lost.
class QuietStdout
{
public:
    QuietStdout() : nowhere_(open(kNowhere, O_WRONLY | kNotInherited)), there_(nowhere_) { close(nowhere_); }

private:
    int nowhere_;
    StdoutTo there_;
};

}  // namespace kine::test
