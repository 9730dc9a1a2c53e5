// Every command of the program; each in a file of its own.
#pragma once

#include "options.h"

namespace kine_cli {

void AddAlign(CLI::App& program, Action& action);
void AddBench(CLI::App& program, Action& action);
void AddCalib(CLI::App& program, Action& action);
void AddCheck(CLI::App& program, Action& action);
void AddCompletion(CLI::App& program, Action& action);
void AddConvert(CLI::App& program, Action& action);
void AddDiff(CLI::App& program, Action& action);
void AddExplain(CLI::App& program, Action& action);
void AddFk(CLI::App& program, Action& action);
void AddIk(CLI::App& program, Action& action);
void AddJog(CLI::App& program, Action& action);
void AddMan(CLI::App& program, Action& action);
void AddOffset(CLI::App& program, Action& action);
void AddPlot(CLI::App& program, Action& action);

}  // namespace kine_cli
