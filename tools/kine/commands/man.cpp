// kine man: the manual page of the program.
#include <CLI/CLI.hpp>
#include "commands/commands.h"
#include "help/man_page.h"
#include "plot/svg.h"
#include "program.h"

namespace kine_cli {
namespace {

struct ManOptions
{
    std::string output = "-";
};

ExitCode RunMan(const ManOptions& options, PrintedLines& printed)
{
    Action notRun;
    const CommandInfo tree = DescribeProgram(*MakeProgram(notRun));
    WriteDocument(options.output, ManPage(tree, "kine " KINE_VERSION, KINE_BUILD_DATE),
                  printed.DataDescriptor());
    return ExitCode::kDone;
}

}  // namespace

void AddMan(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<ManOptions>();
    CLI::App& command = *program.add_subcommand("man", "The manual page, as man reads it");
    command.add_option("-o,--output", options->output, "Write to a file; - is the standard output")
        ->capture_default_str()
        ->type_name("FILE");
    command.footer(
        "Examples:\n"
        "  kine man | man -l -\n"
        "  kine man -o kine.1");
    SetAction(command, action, options, RunMan);
}

}  // namespace kine_cli
