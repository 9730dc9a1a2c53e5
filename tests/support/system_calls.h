// Whether a piece of code calls the operating system.
#pragma once

#include <functional>

namespace kine::test {

enum class Allowed
{
    kNothing,
    kWriteToStdout,  // write(2) to the descriptor of standard output
};

// Runs the code in a child process that the kernel ends at its first system call other than the exit and what
// is allowed. Throws where such a child cannot be set up.
bool MakesSystemCalls(const std::function<void()>& code, Allowed allowed = Allowed::kNothing);

}  // namespace kine::test
