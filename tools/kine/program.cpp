#include "program.h"

#include "commands/commands.h"

namespace kine_cli {

std::unique_ptr<CLI::App> MakeProgram(Action& action)
{
    auto program = std::make_unique<CLI::App>("The kinematics of a robot cell at the prompt.", "kine");
    program->require_subcommand(1);
    program->set_version_flag("--version", "kine " KINE_VERSION);
    program->footer(
        "Exit status: 0 done, 1 refused by the library or found wrong, 2 wrong usage, 3 a bad file.\n"
        "`kine COMMAND --help` shows the options and examples of a command.");
    for (const AddCommand add :
         {&AddFk, &AddIk, &AddConvert, &AddOffset, &AddDiff, &AddJog, &AddAlign, &AddCalib, &AddCheck,
          &AddPlot, &AddExplain, &AddBench, &AddCompletion, &AddMan}) {
        add(*program, action);
    }
    return program;
}

}  // namespace kine_cli
