// Code under a filter of system calls.
#include "support/system_calls.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <stdexcept>

namespace kine::test {

namespace {

constexpr int kNoFilter = 3;

bool Install(const sock_fprog& filter)
{
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter, 0, 0) == 0;
}

// From here on the process may only exit.
bool ForbidSystemCalls()
{
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
    };
    return Install({sizeof program / sizeof *program, program});
}

// From here on the process may only exit and write to standard output. The descriptor is the low half of the
// first argument.
bool ForbidAllButWriting()
{
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 3, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_write, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, STDOUT_FILENO, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
    };
    return Install({sizeof program / sizeof *program, program});
}

}  // namespace

bool MakesSystemCalls(const std::function<void()>& code, Allowed allowed)
{
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no child process");
    if (child == 0) {
        if (!(allowed == Allowed::kNothing ? ForbidSystemCalls() : ForbidAllButWriting())) _exit(kNoFilter);
        code();
        _exit(0);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child) throw std::runtime_error("lost the child process");
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNoFilter) {
        throw std::runtime_error("system calls cannot be filtered");
    }
    return !(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

}  // namespace kine::test
