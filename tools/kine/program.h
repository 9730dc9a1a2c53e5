// The command line of the program.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>

#include "options.h"

namespace kine_cli {

// All commands. Parsing the command line sets the action.
std::unique_ptr<CLI::App> MakeProgram(Action& action);

}  // namespace kine_cli
