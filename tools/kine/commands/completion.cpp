// kine completion: what a shell needs to complete the command line.
#include "help/completion.h"
#include <CLI/CLI.hpp>
#include "commands/commands.h"
#include "plot/svg.h"
#include "program.h"

namespace kine_cli {
namespace {

struct CompletionOptions
{
    std::string shell;
    std::string output = "-";
};

ExitCode RunCompletion(const CompletionOptions& options, PrintedLines& printed)
{
    Action notRun;
    const CommandInfo tree = DescribeProgram(*MakeProgram(notRun));
    const std::string script = options.shell == "bash"  ? BashCompletion(tree)
                               : options.shell == "zsh" ? ZshCompletion(tree)
                                                        : FishCompletion(tree);
    WriteDocument(options.output, script, printed.DataDescriptor());
    return ExitCode::kDone;
}

}  // namespace

void AddCompletion(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<CompletionOptions>();
    CLI::App& command =
        *program.add_subcommand("completion", "The script that completes this command line in a shell");
    command.add_option("SHELL", options->shell, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    command.add_option("-o,--output", options->output, "Write to a file; - is the standard output")
        ->capture_default_str()
        ->type_name("FILE");
    command.footer(
        "Examples:\n"
        "  source <(kine completion bash)\n"
        "  kine completion zsh -o ~/.zsh/functions/_kine\n"
        "  kine completion fish -o ~/.config/fish/completions/kine.fish");
    SetAction(command, action, options, RunCompletion);
}

}  // namespace kine_cli
