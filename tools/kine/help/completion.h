// Completion of the command line in three shells.
#pragma once

#include <string>

#include "help/command_tree.h"

namespace kine_cli {

std::string BashCompletion(const CommandInfo& program);
std::string ZshCompletion(const CommandInfo& program);
std::string FishCompletion(const CommandInfo& program);

}  // namespace kine_cli
