// Whether a piece of code calls the operating system.
#pragma once

#include <functional>

namespace kine::bench {

// Runs the code in a child process that the kernel ends at its first system call other than the exit. Throws
// where such a child cannot be set up.
bool MakesSystemCalls(const std::function<void()>& code);

}  // namespace kine::bench
