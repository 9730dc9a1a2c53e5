// Numbers to text and back, without the locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kine_cli {

std::string_view Trim(std::string_view text);

// The number that the whole text is, blanks around it aside. Nothing for any other text, and for infinity and
// NaN: no target and no dimension is one.
std::optional<double> ParseNumber(std::string_view text);

// Appends the shortest text that reads back to the same bits.
void AppendNumber(std::string& text, double value);

// Appends a number rounded to 10 decimals, without zeros at its end: for a million rows, where the shortest
// exact text takes as long as the forward kinematics. Numbers too large to be rounded so are exact.
void AppendRounded(std::string& text, double value);

// Appends a number for people, right-aligned: fixed decimals and no "-0.00"; a number too large for that in
// the shortest form.
void AppendFixed(std::string& text, double value, int width, int decimals);
std::string Fixed(double value, int decimals);

// "0x6097", and back. Nothing for any other text.
std::string HexCode(unsigned code);
std::optional<std::uint32_t> ParseHexCode(std::string_view text);

}  // namespace kine_cli
