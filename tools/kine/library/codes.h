// Result codes in words.
#pragma once

#include <string>
#include <string_view>

#include "KineDll.hpp"

namespace kine_cli {

// The texts of a code, or null for a number that is no code.
const kinedll::CodeText* TextsOf(KineResult code);

// "KINE_ERR_IK_7", or "unknown"
std::string_view NameOf(KineResult code);

// "0x6097 KINE_ERR_IK_7: six-axis inverse: ..."
std::string InWords(KineResult code);

}  // namespace kine_cli
