// Every command of the program; each in a file of its own.
#pragma once

#include "options.h"

namespace kine_cli {

void AddFk(CLI::App& program, Action& action);

}  // namespace kine_cli
