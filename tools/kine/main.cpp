// kine: the library at the prompt. Reads the command line, runs the command, and turns what is thrown into a
// message and an exit status.
#include <cstdio>
#include <exception>

#include "failure.h"
#include "library/printed_lines.h"
#include "program.h"

namespace {

using kine_cli::ExitCode;

ExitCode Run(int argc, char** argv)
{
    kine_cli::Action action;
    const std::unique_ptr<CLI::App> program = kine_cli::MakeProgram(action);
    try {
        program->parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program->exit(error) == 0 ? ExitCode::kDone : ExitCode::kUsage;
    }
    kine_cli::PrintedLines printed;
    return action(printed);
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        return static_cast<int>(Run(argc, argv));
    } catch (const kine_cli::Failure& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return static_cast<int>(failure.code);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kine: %s\n", error.what());
        return static_cast<int>(ExitCode::kBadFile);
    }
}
