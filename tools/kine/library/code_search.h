// Which result code a person means: its number in any of the ways it is written, its name, or a line or row
// that holds it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "KineDll.hpp"

namespace kine_cli {

// The code that one word is: 0x6097, 6097 (hexadecimal, as codes are spoken of), 24727 (decimal, as the
// library prints it), -1, or a name of any case with or without KINE_ERR_. Null for a word that is none.
const kinedll::CodeText* CodeOfWord(std::string_view word);

// The code that a printed line, a message or a row of this program tells. Null when it tells none.
const kinedll::CodeText* CodeInLine(std::string_view line);

// "step 5 of the inverse chain: the arm" for a line such as "IK error 5:24727"; empty for others.
std::string StepInLine(std::string_view line);

// The code that a number or a misspelt name comes nearest to; null when none is near.
const kinedll::CodeText* NearestCode(std::string_view word);

}  // namespace kine_cli
