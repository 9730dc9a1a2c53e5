// The manual page of the program, in the macros of man(7).
#pragma once

#include <string>

#include "help/command_tree.h"

namespace kine_cli {

// `version` stands at the foot, with the date (YYYY-MM-DD).
std::string ManPage(const CommandInfo& program, const std::string& version, const std::string& date);

}  // namespace kine_cli
