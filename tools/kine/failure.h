// How the program ends, and the one exception it throws.
#pragma once

#include <stdexcept>
#include <string>

namespace kine_cli {

enum class ExitCode : int
{
    kDone = 0,
    kRefused = 1,  // the library refused a target, or `kine check` found a fault
    kUsage = 2,    // the command line makes no sense
    kBadFile = 3   // a file that cannot be read, or does not say what it should
};

// Ends the command. The text says what is wrong and where: file, line and field for a file.
class Failure : public std::runtime_error
{
public:
    Failure(ExitCode exitCode, const std::string& text) : std::runtime_error(text), code(exitCode) {}

    ExitCode code;
};

[[noreturn]] inline void FailUsage(const std::string& text) { throw Failure(ExitCode::kUsage, text); }
[[noreturn]] inline void FailFile(const std::string& text) { throw Failure(ExitCode::kBadFile, text); }

}  // namespace kine_cli
