// The one way to standard output. Math, models and calibrations do not include this file: they print
// nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace kine {

// Bytes of the longest line; what goes beyond is cut.
inline constexpr std::size_t kMaxLine = 256;

// Prints the text, each "%d" in it replaced by the next of the numbers while there are any, and flushes, so
// that a line is out before the call that caused it returns. A line goes out in one piece.
void Print(std::string_view text, std::initializer_list<std::int32_t> numbers = {});

}  // namespace kine
