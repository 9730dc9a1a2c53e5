// The one way to standard output. Math, models and calibrations do not include this file: they print
// nothing.
#pragma once

namespace kine {

// Prints the text and flushes, so that a line is out before the call that caused it returns.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
void Print(const char* format, ...);

}  // namespace kine
